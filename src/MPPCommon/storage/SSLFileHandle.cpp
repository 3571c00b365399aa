#include "MPPCommon/storage/SSLFileHandle.h"

#include <cstring>
#include <sys/stat.h>

// The whole file is read into memory at once: the readers ask for many small pieces of many streams,
// and a seek and a read of the disk for each made reading a large plan spend most of its time in the
// system. The buffer is the size of the file, which the file itself justifies.
std::unique_ptr<SSLFileHandle> SSLFileHandle::openForReading(const std::string& path) {
    FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) {
        return nullptr;
    }
    struct stat status {};
    std::vector<unsigned char> bytes;
    bool read = fstat(fileno(file), &status) == 0 && S_ISREG(status.st_mode);
    if (read) {
        bytes.resize(static_cast<size_t>(status.st_size));
        read = std::fread(bytes.data(), 1, bytes.size(), file) == bytes.size();
    }
    std::fclose(file);
    return read ? fromBytes(std::move(bytes)) : nullptr;
}

std::unique_ptr<SSLFileHandle> SSLFileHandle::createForWriting(const std::string& path) {
    FILE* file = std::fopen(path.c_str(), "w+b");
    if (file == nullptr) {
        return nullptr;
    }
    return std::unique_ptr<SSLFileHandle>(new SSLFileHandle(file));
}

std::unique_ptr<SSLFileHandle> SSLFileHandle::fromBytes(std::vector<unsigned char> bytes) {
    return std::unique_ptr<SSLFileHandle>(new SSLFileHandle(std::move(bytes)));
}

SSLFileHandle::~SSLFileHandle() {
    if (m_file != nullptr) {
        std::fclose(m_file);
    }
}

std::optional<uint64_t> SSLFileHandle::length() {
    if (m_file == nullptr) {
        return m_bytes.size();
    }
    if (fseeko(m_file, 0, SEEK_END) != 0) {
        return std::nullopt;
    }
    off_t end = ftello(m_file);
    if (end < 0) {
        return std::nullopt;
    }
    return static_cast<uint64_t>(end);
}

size_t SSLFileHandle::readAt(uint64_t offset, void* destination, size_t count) {
    if (m_file == nullptr) {
        if (offset >= m_bytes.size()) {
            return 0;
        }
        size_t available = std::min<uint64_t>(count, m_bytes.size() - offset);
        std::memcpy(destination, m_bytes.data() + offset, available);
        return available;
    }
    if (offset > static_cast<uint64_t>(INT64_MAX) ||
        fseeko(m_file, static_cast<off_t>(offset), SEEK_SET) != 0) {
        return 0;
    }
    return std::fread(destination, 1, count, m_file);
}

bool SSLFileHandle::writeAt(uint64_t offset, const void* source, size_t count) {
    if (m_file == nullptr) {
        return false;
    }
    if (offset > static_cast<uint64_t>(INT64_MAX) ||
        fseeko(m_file, static_cast<off_t>(offset), SEEK_SET) != 0) {
        return false;
    }
    return std::fwrite(source, 1, count, m_file) == count;
}

bool SSLFileHandle::flush() {
    return m_file == nullptr || std::fflush(m_file) == 0;
}
