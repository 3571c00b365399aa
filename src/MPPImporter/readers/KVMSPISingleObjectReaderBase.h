#pragma once

#include "MPPImporter/readers/KVMSPISimpleObjectReaderBase.h"

#include <cstdint>

// One object of a collection reader, known by its unique ID.
class KVMSPISingleObjectReaderBase : public KVMSPISimpleObjectReaderBase {
public:
    KVMSPISingleObjectReaderBase(int32_t uid, KVMSPIMPPDataDirectoryReader& reader)
        : KVMSPISimpleObjectReaderBase(reader), m_uid(uid) {}

    int32_t uid() const { return m_uid; }

    // "UID=n", read from the first character: a test that the object's UID is n, with n stored in
    // `uid` when it is given. None for no text or any other text (so "ResourceUID=n" is none).
    static KVMSPIXQPredicate predicateWithString(const std::optional<std::string>& text, int32_t* uid);
    static KVMSPIXQPredicate predicateWithString(const std::optional<std::string>& text) {
        return predicateWithString(text, nullptr);
    }
    static KVMSPIXQPredicate uidPredicateWithString(const std::optional<std::string>& text, int32_t* uid) {
        return predicateWithString(text, uid);
    }

private:
    int32_t m_uid;
};
