#pragma once

#include "MPPImporter/file/KVMSPIParentReader.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

class KVMSPIMPPPropertyList;
class KVMSPIPropsReader;
class KVMSPOLE2DirectoryReader;
class SSLStorage;

// The top of the reader tree of one MPP file: its root storage, the property list of its format,
// the two versions, the readers of the three property sets at the root and the project reader of the
// data directory. The compound file's root must outlive it.
class KVMSPIMPPReader final : public KVMSPIParentReader {
public:
    // Makes the project reader on the data directory. The object readers live in a layer above this
    // one, which supplies it; without one the reader stands without a project reader.
    using ProjectReaderFactory = std::function<std::unique_ptr<KVMSPOLE2DirectoryReader>(
        std::unique_ptr<SSLStorage> directory, const std::string& name, KVMSPIMPPReader& parent)>;

    // A missing root storage or property list is an assertion failure. Streams and storages that the
    // file doesn't hold leave their readers empty.
    KVMSPIMPPReader(std::unique_ptr<SSLStorage> rootStorage, const KVMSPIMPPPropertyList* propertyList,
                    int32_t appVersion, const ProjectReaderFactory& projectReaderFactory = {});
    ~KVMSPIMPPReader();
    KVMSPIMPPReader(const KVMSPIMPPReader&) = delete;
    KVMSPIMPPReader& operator=(const KVMSPIMPPReader&) = delete;

    SSLStorage& rootStorage() const { return *m_rootStorage; }
    const KVMSPIMPPPropertyList& MPPPropertyList() const override { return *m_MPPPropertyList; }
    KVMSPIParentReader* parentReader() const override { return nullptr; }
    int32_t version() const override { return m_version; }
    int32_t appVersion() const override { return m_appVersion; }

    KVMSPIPropsReader* docPropsReader() const { return m_docPropsReader.get(); }
    KVMSPIPropsReader* summaryInfoReader() const { return m_summaryInfoReader.get(); }
    KVMSPIPropsReader* docSummaryInfoReader() const { return m_docSummaryInfoReader.get(); }
    KVMSPOLE2DirectoryReader* projectReader() const { return m_projectReader.get(); }
    // The Windows code page of the file's narrow strings, as the summary information stores it: a
    // 16-bit field, so code pages above 32767 (65001) read back negative and are meant unsigned.
    int16_t codepage() const { return m_codepage; }

    // Takes the code page from the summary information; 65001 if it names none.
    void parseEncoding();

private:
    std::unique_ptr<SSLStorage> m_rootStorage;
    const KVMSPIMPPPropertyList* m_MPPPropertyList;
    int32_t m_version;
    int32_t m_appVersion;
    std::unique_ptr<KVMSPIPropsReader> m_docPropsReader;
    std::unique_ptr<KVMSPIPropsReader> m_summaryInfoReader;
    std::unique_ptr<KVMSPIPropsReader> m_docSummaryInfoReader;
    std::unique_ptr<KVMSPOLE2DirectoryReader> m_projectReader;
    int16_t m_codepage = 0;
};
