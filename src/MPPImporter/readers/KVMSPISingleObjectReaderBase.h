#pragma once

#include "MPPImporter/readers/KVMSPISimpleObjectReaderBase.h"

#include <cstdint>

// One object of a collection reader, known by its unique ID.
class KVMSPISingleObjectReaderBase : public KVMSPISimpleObjectReaderBase {
public:
    KVMSPISingleObjectReaderBase(int32_t uid, KVMSPIMPPDataDirectoryReader& reader)
        : KVMSPISimpleObjectReaderBase(reader), m_uid(uid) {}

    int32_t uid() const { return m_uid; }

private:
    int32_t m_uid;
};
