#include "MPPExporter/writers/KVMPPFormatWriter.h"

#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/storage/SSLStream.h"
#include "MPPCommon/storage/SSLTypes.h"
#include "MPPExporter/writers/KVMPPData.h"

#include <algorithm>

namespace {
// Streams are written in pieces of at most a sector.
constexpr size_t kPieceSize = 512;
} // namespace

KVMPPFormatWriter::KVMPPFormatWriter(std::unique_ptr<SSLStorage> storage, std::string name,
                                     std::string parentName)
    : m_storage(std::move(storage)), m_name(std::move(name)), m_parentName(std::move(parentName)) {}

KVMPPFormatWriter::KVMPPFormatWriter(std::unique_ptr<SSLStream> stream, std::string name,
                                     std::string parentName)
    : m_stream(std::move(stream)), m_name(std::move(name)), m_parentName(std::move(parentName)) {}

KVMPPFormatWriter::~KVMPPFormatWriter() = default;

std::unique_ptr<KVMPPFormatWriter> KVMPPFormatWriter::newChildWriterWithName(const std::string& name,
                                                                             bool isDirectory) {
    if (!m_storage) {
        return nullptr;
    }
    if (isDirectory) {
        std::unique_ptr<SSLStorage> child = m_storage->createChildStorageWithName(name);
        return child ? std::make_unique<KVMPPFormatWriter>(std::move(child), name, m_name) : nullptr;
    }
    std::unique_ptr<SSLStream> child = m_storage->createChildStreamWithName(name);
    return child ? std::make_unique<KVMPPFormatWriter>(std::move(child), name, m_name) : nullptr;
}

bool KVMPPFormatWriter::writeData(const KVMPPData& data) {
    if (!m_stream) {
        return false;
    }
    const std::vector<uint8_t>& bytes = data.data();
    for (size_t at = 0; at < bytes.size(); at += kPieceSize) {
        const size_t length = std::min(kPieceSize, bytes.size() - at);
        m_stream->writeBuffer(bytes.data() + at, static_cast<int32_t>(length));
        if (m_stream->lastError() != SSL_OK) {
            return false;
        }
    }
    return m_stream->lastError() == SSL_OK;
}
