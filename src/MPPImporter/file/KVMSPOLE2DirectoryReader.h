#pragma once

#include "MPPImporter/file/KVMSPIParentReader.h"
#include "MPPImporter/query/frame/KVMSPIXQResponder.h"

#include <memory>
#include <string>

class SSLStorage;

// Base of the readers that sit on one storage of the file. It owns the storage view and keeps the
// property list of its parent, which it doesn't own. The file's root must outlive it.
class KVMSPOLE2DirectoryReader : public KVMSPIXQResponder, public KVMSPIParentReader {
public:
    KVMSPOLE2DirectoryReader(std::unique_ptr<SSLStorage> directory, std::string name,
                             KVMSPIParentReader* parentReader);
    ~KVMSPOLE2DirectoryReader() override;

    SSLStorage& directory() const { return *m_directory; }
    const std::string& name() const { return m_name; }

    const KVMSPIMPPPropertyList& MPPPropertyList() const override { return *m_MPPPropertyList; }
    KVMSPIParentReader* parentReader() const override { return m_parentReader; }
    // Asked of the parent, and so in the end of the file reader.
    int32_t version() const override { return m_parentReader->version(); }
    int32_t appVersion() const override { return m_parentReader->appVersion(); }

private:
    std::unique_ptr<SSLStorage> m_directory;
    std::string m_name;
    KVMSPIParentReader* m_parentReader;
    const KVMSPIMPPPropertyList* m_MPPPropertyList;
};
