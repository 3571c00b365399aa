#include "MPPImporter/file/KVMSPIMPPReader.h"

#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/storage/SSLStream.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/file/KVMSPIMPPPropertyList.h"
#include "MPPImporter/file/KVMSPIPropsReader.h"
#include "MPPImporter/file/KVMSPOLE2DirectoryReader.h"

namespace {

// The code page is property 1 of the summary information.
constexpr int32_t kCodePageProperty = 1;
constexpr uint16_t kCodePageUTF8 = 65001;

std::unique_ptr<KVMSPIPropsReader> newPropsReader(SSLStorage& storage, const std::string& streamName) {
    std::unique_ptr<SSLStream> stream = storage.childStreamWithName(streamName);
    return stream ? std::make_unique<KVMSPIPropsReader>(std::move(stream)) : nullptr;
}

} // namespace

KVMSPIMPPReader::KVMSPIMPPReader(std::unique_ptr<SSLStorage> rootStorage,
                                 const KVMSPIMPPPropertyList* propertyList, int32_t appVersion,
                                 const ProjectReaderFactory& projectReaderFactory)
    : m_rootStorage(std::move(rootStorage)), m_MPPPropertyList(propertyList), m_version(0),
      m_appVersion(appVersion) {
    tvAssert(m_rootStorage != nullptr, "Input stuctured storage is not specified for this reader.");
    tvAssert(m_MPPPropertyList != nullptr, "Property List class is not specified for this reader.");
    m_version = m_MPPPropertyList->mppVersion();

    m_docPropsReader = newPropsReader(*m_rootStorage, m_MPPPropertyList->ole2PropsName());
    m_summaryInfoReader = newPropsReader(*m_rootStorage, m_MPPPropertyList->ole2PSummaryInfoName());
    if (m_summaryInfoReader) {
        parseEncoding();
    }
    m_docSummaryInfoReader = newPropsReader(*m_rootStorage, m_MPPPropertyList->ole2DocSummaryInfoName());

    const std::string dataDirectoryName = m_MPPPropertyList->ole2DataDirectoryName();
    std::unique_ptr<SSLStorage> dataDirectory = m_rootStorage->childStorageWithName(dataDirectoryName);
    if (dataDirectory && projectReaderFactory) {
        m_projectReader = projectReaderFactory(std::move(dataDirectory), dataDirectoryName, *this);
    }
}

KVMSPIMPPReader::~KVMSPIMPPReader() = default;

void KVMSPIMPPReader::parseEncoding() {
    int16_t codepage = 0;
    const bool found =
        m_summaryInfoReader && m_summaryInfoReader->readPropertyShort(codepage, kCodePageProperty, false);
    m_codepage = found ? codepage : static_cast<int16_t>(kCodePageUTF8);
}
