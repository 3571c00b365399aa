#pragma once

#include "MPPCommon/support/TVException.h"
#include "MPPImporter/query/frame/KVMSPIXQPredicate.h"
#include "MPPImporter/query/frame/KVMSPIXQResponder.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

class KVMSPIMPPDataDirectoryReader;
class PosixRegex;

// Base of the reader objects that stand for one element of an object store and read through the
// store's collection reader, their data provider. The provider isn't owned and must outlive them.
class KVMSPISimpleObjectReaderBase : public KVMSPIXQResponder {
public:
    explicit KVMSPISimpleObjectReaderBase(KVMSPIMPPDataDirectoryReader& dataProvider)
        : m_reader(dataProvider) {}

    KVMSPIMPPDataDirectoryReader& reader() const { return m_reader; }

    // The test that a query's predicate text stands for; none at this level.
    static KVMSPIXQPredicate predicateWithString(const std::optional<std::string>& text);
    // The test for a "UID=n" predicate, with n in `uid`; none at this level.
    static KVMSPIXQPredicate uidPredicateWithString(const std::optional<std::string>& text, int32_t* uid);

protected:
    // The texts of the groups of `expression` when it matches `text` from its first character, with
    // a non-empty match and every group non-empty; none otherwise.
    static std::optional<std::vector<std::string>> predicateGroups(const PosixRegex& expression,
                                                                   size_t groups, const std::string& text);
    // A group of digits as an integer, limited to the range of a UID.
    static int32_t predicateIntValue(const std::string& digits);
    // The object a predicate tests, as `Reader`; raises "Unexpected object in predicate block." when
    // it is of another class.
    template <typename Reader>
    static Reader& predicateObject(KVMSPIXQuery& object) {
        auto* reader = dynamic_cast<Reader*>(&object);
        tvAssert(reader != nullptr, "Unexpected object in predicate block.");
        return *reader;
    }

private:
    KVMSPIMPPDataDirectoryReader& m_reader;
};
