#pragma once

#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPCommon/xml/KVMSPIXQuery.h"
#include "MPPImporter/query/frame/KVMSPIXQPredicate.h"
#include "MPPImporter/query/frame/MSPXQParser.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

class KVMSPIXQResponder;

// A run of components: from `location`, `length` of them; a length of 0 runs to the last one.
struct MSPXQRange {
    size_t location = 0;
    size_t length = 0;
};

// Base of the adapters that answer path queries for one reader family. The base answers nothing
// but `singleObjectForXQuery` (the first of `objectsForXQuery`): every other operation, and every
// query a subclass doesn't know, sets the not-ported error "Must implement in subclass." and gives
// an empty answer. The reader owns its adapter; the adapter keeps a plain reference back.
class KVMSPIXQAdapter : public KVMSPIXQuery {
public:
    explicit KVMSPIXQAdapter(KVMSPIXQResponder& reader) : _reader(reader) {}
    KVMSPIXQAdapter(const KVMSPIXQAdapter&) = delete;
    KVMSPIXQAdapter& operator=(const KVMSPIXQAdapter&) = delete;

    KVMSPIXQResponder& reader() const { return _reader; }

    // Appends the components of `xquery`, parsed by the shared parser.
    static void parseXQuery(const std::string& xquery, MSPXQComponents& components);
    // The names of the components in `range`, joined by "/", without predicates; the range's end is
    // limited to the array.
    static std::string stringFromXQComponents(const MSPXQComponents& components, MSPXQRange range);

    Objects objectsForXQuery(const std::string& xquery, TVError* error) override;
    Objects objectsForXQuery(const std::string& xquery, const KVMSPIXQueryConstants& constants,
                             TVError* error) override;
    std::shared_ptr<KVMSPIXQuery> singleObjectForXQuery(const std::string& xquery, TVError* error) override;
    std::shared_ptr<KVMSPIXQuery> singleObjectForXQuery(const std::string& xquery,
                                                        const KVMSPIXQueryConstants& constants,
                                                        TVError* error) override;
    std::optional<std::string> stringValueForXQuery(const std::string& xquery, TVError* error) override;
    std::optional<std::string> stringValueForXQuery(const std::string& xquery,
                                                    const KVMSPIXQueryConstants& constants,
                                                    TVError* error) override;
    int64_t intValueForXQuery(const std::string& xquery, TVError* error) override;
    int64_t intValueForXQuery(const std::string& xquery, const KVMSPIXQueryConstants& constants,
                              TVError* error) override;
    double floatValueForXQuery(const std::string& xquery, TVError* error) override;
    double floatValueForXQuery(const std::string& xquery, const KVMSPIXQueryConstants& constants,
                               TVError* error) override;
    bool boolValueForXQuery(const std::string& xquery, TVError* error) override;
    bool boolValueForXQuery(const std::string& xquery, const KVMSPIXQueryConstants& constants,
                            TVError* error) override;

    // The demangled class name of a reader, for the "Incorrect reader" assertions.
    static std::string className(const KVMSPIXQResponder& reader);

protected:
    // The reader as `Reader`; raises the internal-inconsistency exception with
    // `incorrectReaderFormat` (one "%s" for the class name) when it is of another class.
    template <typename Reader>
    static Reader& readerOfClass(KVMSPIXQResponder& reader, const char* incorrectReaderFormat) {
        auto* typed = dynamic_cast<Reader*>(&reader);
        tvAssert(typed != nullptr, stringWithFormat(incorrectReaderFormat, className(reader).c_str()));
        return *typed;
    }

    // Raises "Unexpected predicate in component ..." when the component has a predicate.
    static void assertNoPredicate(const MSPXQComponent& component);
    // Raises "Do not expect more then 1 component ..." when there is more than one component.
    static void assertSingleComponent(const MSPXQComponents& components, const std::string& xquery);
    // Keeps the objects that pass the test; no predicate keeps all.
    static void filterObjects(Objects& objects, const KVMSPIXQPredicate& predicate);
    // Asks each object `xquery` and gathers the answers in order.
    static Objects objectsFromEach(const Objects& objects, const std::string& xquery, TVError* error);
    // An answer for `child`, a part that `parent` owns: it shares the parent's owner (see
    // `KVMSPIXQResponder::answerOwner`), and a child that is a reader records that owner, so that its
    // own parts keep the same owner alive in turn. A parent without an owner (the project reader,
    // owned by the import) must outlive the answer.
    static std::shared_ptr<KVMSPIXQuery> answerOwnedBy(KVMSPIXQResponder& parent, KVMSPIXQuery& child);
    // The answers for all `children` of `parent`, in order.
    template <typename Child>
    static Objects answersOwnedBy(KVMSPIXQResponder& parent,
                                  const std::vector<std::unique_ptr<Child>>& children) {
        Objects answers;
        answers.reserve(children.size());
        for (const std::unique_ptr<Child>& child : children) {
            answers.push_back(answerOwnedBy(parent, *child));
        }
        return answers;
    }

private:
    KVMSPIXQResponder& _reader;
};
