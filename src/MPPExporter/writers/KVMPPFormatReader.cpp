#include "MPPExporter/writers/KVMPPFormatReader.h"

#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/storage/SSLStream.h"
#include "MPPCommon/storage/SSLTypes.h"

KVMPPFormatReader::KVMPPFormatReader(std::unique_ptr<SSLStorage> storage, std::string parentName)
    : m_storage(std::move(storage)), m_parentName(std::move(parentName)) {}

KVMPPFormatReader::KVMPPFormatReader(std::unique_ptr<SSLStream> stream, std::string parentName)
    : m_stream(std::move(stream)), m_parentName(std::move(parentName)) {}

KVMPPFormatReader::~KVMPPFormatReader() = default;

int32_t KVMPPFormatReader::numberOfChildren() {
    return m_storage ? m_storage->childCount() : 0;
}

std::string KVMPPFormatReader::getName() {
    return m_storage ? m_storage->storageName().value_or("") : m_stream->streamName();
}

uint32_t KVMPPFormatReader::getDataSize() {
    if (m_storage) {
        return kStorageDataSize;
    }
    m_stream->rewind();
    return m_stream->bytesAvailable();
}

bool KVMPPFormatReader::getData(std::vector<uint8_t>& data) {
    if (m_storage) {
        return false;
    }
    data.resize(getDataSize());
    if (data.empty()) {
        return true;
    }
    const int32_t read = m_stream->readBytes(static_cast<uint32_t>(data.size()), data.data());
    return read >= 0 && static_cast<size_t>(read) == data.size();
}

std::unique_ptr<KVMPPFormatReader> KVMPPFormatReader::createChildReaderAtIndex(int32_t index) {
    if (!m_storage || index < 0 || index >= numberOfChildren()) {
        return nullptr;
    }
    const std::string name = m_storage->childNameByIndex(index);
    return m_storage->childTypeByIndex(index) == kSSLInfoTypeStorage ? childDirectoryReaderWithName(name)
                                                                     : childStreamReaderWithName(name);
}

std::unique_ptr<KVMPPFormatReader> KVMPPFormatReader::childDirectoryReaderWithName(const std::string& name) {
    std::unique_ptr<SSLStorage> child = m_storage ? m_storage->childStorageWithName(name) : nullptr;
    return child ? std::make_unique<KVMPPFormatReader>(std::move(child), getName()) : nullptr;
}

std::unique_ptr<KVMPPFormatReader> KVMPPFormatReader::childStreamReaderWithName(const std::string& name) {
    std::unique_ptr<SSLStream> child = m_storage ? m_storage->childStreamWithName(name) : nullptr;
    return child ? std::make_unique<KVMPPFormatReader>(std::move(child), getName()) : nullptr;
}
