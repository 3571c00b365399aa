#include "StreamFileFixture.h"

#include "MPPCommon/support/Log.h"

#include <stdexcept>

ByteWriter& ByteWriter::u8(uint8_t value) {
    m_bytes.push_back(value);
    return *this;
}

ByteWriter& ByteWriter::u16(uint16_t value) {
    return u8(value & 0xFF).u8(value >> 8);
}

ByteWriter& ByteWriter::u32(uint32_t value) {
    return u16(value & 0xFFFF).u16(value >> 16);
}

ByteWriter& ByteWriter::zeros(size_t count) {
    m_bytes.insert(m_bytes.end(), count, 0);
    return *this;
}

ByteWriter& ByteWriter::bytes(const std::vector<uint8_t>& values) {
    m_bytes.insert(m_bytes.end(), values.begin(), values.end());
    return *this;
}

StreamFile::StreamFile(const std::map<std::string, std::vector<uint8_t>>& streams) {
    const std::string path = (m_dir.path() / "streams.cfb").string();
    {
        auto writer = SSLRoot::forWritingToFile(path);
        auto storage = writer->rootStorage();
        for (const auto& [name, bytes] : streams) {
            auto stream = storage->createChildStreamWithName(name);
            stream->writeBuffer(bytes.data(), static_cast<int32_t>(bytes.size()));
        }
    }
    m_root = SSLRoot::rootWithFilename(path);
    m_storage = m_root->rootStorage();
    if (!m_storage) {
        throw std::runtime_error("compound file written for the test can't be read");
    }
}

std::unique_ptr<SSLStream> StreamFile::stream(const std::string& name) {
    return m_storage->childStreamWithName(name);
}

LogCapture::LogCapture() {
    tvSetLogSink([this](const std::string& line) { m_lines.push_back(line); });
}

LogCapture::~LogCapture() {
    tvSetLogSink({});
}
