#pragma once

#include "MPPImporter/query/frame/KVMSPIXQResponder.h"

class KVMSPIMPPDataDirectoryReader;

// Base of the reader objects that stand for one element of an object store and read through the
// store's collection reader, their data provider. The provider isn't owned and must outlive them.
class KVMSPISimpleObjectReaderBase : public KVMSPIXQResponder {
public:
    explicit KVMSPISimpleObjectReaderBase(KVMSPIMPPDataDirectoryReader& dataProvider)
        : m_reader(dataProvider) {}

    KVMSPIMPPDataDirectoryReader& reader() const { return m_reader; }

private:
    KVMSPIMPPDataDirectoryReader& m_reader;
};
