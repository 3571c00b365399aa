#include "MPPExporter/writers/KVMPPFileReader.h"

#include "MPPCommon/storage/SSLRoot.h"
#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/storage/SSLStream.h"
#include "MPPCommon/storage/SSLTypes.h"
#include "MPPImporter/file/KVMPPCompObjReader.h"
#include "MPPImporter/file/KVMSPIClassFactory.h"
#include "MPPImporter/format/MPPFormatConstants.h"

namespace {
constexpr const char* kFormat14 = "MSProject.MPP14";
} // namespace

KVMPPFileReader::KVMPPFileReader(std::string mppFilePath) : m_mppFilePath(std::move(mppFilePath)) {}

KVMPPFileReader::~KVMPPFileReader() {
    close();
}

bool KVMPPFileReader::open() {
    m_root = SSLRoot::rootWithFilename(m_mppFilePath);
    if (!m_root || m_root->lastError() != SSL_OK) {
        close();
        return false;
    }
    std::unique_ptr<SSLStorage> storage = m_root->rootStorage();
    if (!storage) {
        close();
        return false;
    }
    if (std::unique_ptr<SSLStream> compObj = storage->childStreamWithName(kCompObjFileName)) {
        KVMPPCompObjReader reader(std::move(compObj));
        m_formatFourteen = reader.fileFormat() == kFormat14;
        m_applicationVersion =
            KVMSPIClassFactory::appVersionFromApplicationName(reader.applicationName().value_or(""));
    }
    m_rootStorage = std::make_unique<KVMPPFormatReader>(std::move(storage), "");
    return true;
}

std::string KVMPPFileReader::getName() {
    return kRootEntryName;
}

int32_t KVMPPFileReader::numberOfChildren() {
    return m_rootStorage ? m_rootStorage->numberOfChildren() : 0;
}

int32_t KVMPPFileReader::getFormatVersion() const {
    const bool writable =
        m_applicationVersion == kMSPDIVersion_2013 || m_applicationVersion == kMSPDIVersion_2016;
    return m_formatFourteen && writable ? kWritableFormatVersion : 0;
}

std::unique_ptr<KVMPPFormatReader> KVMPPFileReader::createChildReaderUnderRootAtIndex(int32_t index) {
    return m_rootStorage ? m_rootStorage->createChildReaderAtIndex(index) : nullptr;
}

std::unique_ptr<KVMPPFormatReader> KVMPPFileReader::childDirectoryReaderWithName(const std::string& name) {
    return m_rootStorage ? m_rootStorage->childDirectoryReaderWithName(name) : nullptr;
}

std::unique_ptr<KVMPPFormatReader> KVMPPFileReader::childStreamReaderWithName(const std::string& name) {
    return m_rootStorage ? m_rootStorage->childStreamReaderWithName(name) : nullptr;
}

void KVMPPFileReader::close() {
    m_rootStorage.reset();
    m_root.reset();
}
