#include "MPPExporter/writers/KVMPPFileWriter.h"

#include "MPPCommon/storage/SSLRoot.h"
#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/storage/SSLTypes.h"
#include "MPPImporter/format/MPPFormatConstants.h"

KVMPPFileWriter::KVMPPFileWriter(std::string mppFilePath) : m_mppFilePath(std::move(mppFilePath)) {}

KVMPPFileWriter::~KVMPPFileWriter() {
    close();
}

bool KVMPPFileWriter::open() {
    m_root = SSLRoot::forWritingToFile(m_mppFilePath);
    std::unique_ptr<SSLStorage> storage =
        m_root && m_root->lastError() == SSL_OK ? m_root->rootStorage() : nullptr;
    if (!storage) {
        m_root.reset();
        return false;
    }
    m_rootStorage = std::make_unique<KVMPPFormatWriter>(std::move(storage), kRootEntryName, "");
    return true;
}

std::string KVMPPFileWriter::getName() const {
    return kRootEntryName;
}

std::unique_ptr<KVMPPFormatWriter> KVMPPFileWriter::createChildWriterWithName(const std::string& name,
                                                                              bool isDirectory) {
    return m_rootStorage ? m_rootStorage->newChildWriterWithName(name, isDirectory) : nullptr;
}

void KVMPPFileWriter::close() {
    m_rootStorage.reset();
    m_root.reset();
}
