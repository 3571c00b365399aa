#pragma once

#include "MPPCommon/storage/SSLRoot.h"
#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/storage/SSLStream.h"
#include "support/TestSupport.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

// Little-endian byte literals for stream contents.
class ByteWriter {
public:
    ByteWriter& u8(uint8_t value);
    ByteWriter& u16(uint16_t value);
    ByteWriter& u32(uint32_t value);
    ByteWriter& zeros(size_t count);
    ByteWriter& bytes(const std::vector<uint8_t>& values);
    const std::vector<uint8_t>& data() const { return m_bytes; }

private:
    std::vector<uint8_t> m_bytes;
};

// A compound file holding the given streams at its root, written through the storage write side and
// opened again for reading. It must outlive the streams it hands out.
class StreamFile {
public:
    explicit StreamFile(const std::map<std::string, std::vector<uint8_t>>& streams);
    std::unique_ptr<SSLStream> stream(const std::string& name);

private:
    testsupport::TempDir m_dir;
    std::unique_ptr<SSLRoot> m_root;
    std::unique_ptr<SSLStorage> m_storage;
};

// Collects the log lines written while it lives.
class LogCapture {
public:
    LogCapture();
    ~LogCapture();
    const std::vector<std::string>& lines() const { return m_lines; }

private:
    std::vector<std::string> m_lines;
};
