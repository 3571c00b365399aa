#pragma once

#include <cstdint>

class KVMSPIMPPPropertyList;

// What a directory reader asks of the reader it stands under: the file reader for the project reader,
// the project reader for the object readers. Children take its property list, and the versions come
// from the file reader at the top.
class KVMSPIParentReader {
public:
    virtual const KVMSPIMPPPropertyList& MPPPropertyList() const = 0;
    // The reader above this one; none at the top.
    virtual KVMSPIParentReader* parentReader() const = 0;
    // Format version of the file's property list, and the version of the application that wrote it.
    virtual int32_t version() const = 0;
    virtual int32_t appVersion() const = 0;

protected:
    ~KVMSPIParentReader() = default;
};
