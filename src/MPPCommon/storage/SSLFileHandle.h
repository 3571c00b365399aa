#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// The bytes under a compound file, read and written at offsets: a file on disk being written, or a
// read-only buffer in memory.
class SSLFileHandle {
public:
    // The whole regular file in memory; none when the path is no readable regular file.
    static std::unique_ptr<SSLFileHandle> openForReading(const std::string& path);
    // Creates or truncates the file; none on failure.
    static std::unique_ptr<SSLFileHandle> createForWriting(const std::string& path);
    static std::unique_ptr<SSLFileHandle> fromBytes(std::vector<unsigned char> bytes);

    ~SSLFileHandle();
    SSLFileHandle(const SSLFileHandle&) = delete;
    SSLFileHandle& operator=(const SSLFileHandle&) = delete;

    std::optional<uint64_t> length();
    // Bytes read at `offset`: fewer than asked at the end of the file, 0 on failure.
    size_t readAt(uint64_t offset, void* destination, size_t count);
    bool writeAt(uint64_t offset, const void* source, size_t count);
    bool flush();

private:
    explicit SSLFileHandle(FILE* file) : m_file(file) {}
    explicit SSLFileHandle(std::vector<unsigned char> bytes) : m_bytes(std::move(bytes)) {}

    FILE* m_file = nullptr;
    std::vector<unsigned char> m_bytes;
};
