#include "MPPImporter/file/KVMSPOLE2DirectoryReader.h"

#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/support/TVException.h"

namespace {

KVMSPIParentReader* requireParent(KVMSPIParentReader* parentReader) {
    tvAssert(parentReader != nullptr, "A directory reader needs a parent reader.");
    return parentReader;
}

} // namespace

KVMSPOLE2DirectoryReader::KVMSPOLE2DirectoryReader(std::unique_ptr<SSLStorage> directory, std::string name,
                                                   KVMSPIParentReader* parentReader)
    : m_directory(std::move(directory)), m_name(std::move(name)), m_parentReader(requireParent(parentReader)),
      m_MPPPropertyList(&parentReader->MPPPropertyList()) {
    tvAssert(m_directory != nullptr, "A directory reader needs a storage.");
}

KVMSPOLE2DirectoryReader::~KVMSPOLE2DirectoryReader() = default;
