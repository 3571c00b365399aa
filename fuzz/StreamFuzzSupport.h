#pragma once

// Shared by the stream-level fuzz targets: turns fuzz input into the streams of one object storage,
// writes them into a compound file through the storage write side, and opens the storage with the
// object reader of a chosen format version.

#include "MPPCommon/storage/SSLRoot.h"
#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/storage/SSLStream.h"
#include "MPPCommon/support/Log.h"
#include "MPPImporter/file/KVMSPIMPP12PropertyList.h"
#include "MPPImporter/file/KVMSPIMPP14PropertyList.h"
#include "MPPImporter/file/KVMSPIMPP15PropertyList.h"
#include "MPPImporter/file/KVMSPIMPP16PropertyList.h"
#include "MPPImporter/file/KVMSPIMPP9PropertyList.h"
#include "MPPImporter/file/KVMSPIParentReader.h"
#include "MPPImporter/format/MPPFormatConstants.h"
#include "MPPImporter/format/MPPStreamLayout.h"

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <unistd.h>
#include <vector>

namespace streamfuzz {

// Reads the fuzz input front to back: single bytes, and parts prefixed with a 16-bit length.
class InputReader {
public:
    InputReader(const uint8_t* data, size_t size) : m_data(data), m_size(size) {}

    uint8_t byte() { return m_position < m_size ? m_data[m_position++] : 0; }

    std::vector<uint8_t> part() {
        size_t length = byte();
        length |= static_cast<size_t>(byte()) << 8;
        return take(length);
    }

    std::vector<uint8_t> rest() { return take(m_size - m_position); }

private:
    std::vector<uint8_t> take(size_t length) {
        length = std::min(length, m_size - m_position);
        std::vector<uint8_t> bytes(m_data + m_position, m_data + m_position + length);
        m_position += length;
        return bytes;
    }

    const uint8_t* m_data;
    size_t m_size;
    size_t m_position = 0;
};

// A meta stream: the magic number, so that the input goes on into the header and items.
inline std::vector<uint8_t> metaStream(const std::vector<uint8_t>& afterMagic) {
    std::vector<uint8_t> bytes = {0xBA, 0xAD, 0xDF, 0xFA};
    bytes.insert(bytes.end(), afterMagic.begin(), afterMagic.end());
    return bytes;
}

// The file reader above the object storage, for one format and application version.
class FileReader : public KVMSPIParentReader {
public:
    explicit FileReader(uint8_t selector) {
        static const std::array<std::pair<const KVMSPIMPPPropertyList*, int32_t>, 5> versions = {{
            {&KVMSPIMPP9PropertyList::shared(), 9},
            {&KVMSPIMPP12PropertyList::shared(), 12},
            {&KVMSPIMPP14PropertyList::shared(), 14},
            {&KVMSPIMPP15PropertyList::shared(), 15},
            {&KVMSPIMPP16PropertyList::shared(), 16},
        }};
        std::tie(m_list, m_appVersion) = versions[selector % versions.size()];
    }

    const KVMSPIMPPPropertyList& MPPPropertyList() const override { return *m_list; }
    KVMSPIParentReader* parentReader() const override { return nullptr; }
    int32_t version() const override { return m_list->mppVersion(); }
    int32_t appVersion() const override { return m_appVersion; }

private:
    const KVMSPIMPPPropertyList* m_list = nullptr;
    int32_t m_appVersion = 0;
};

inline const char* storageName(uint8_t selector) {
    static const std::array<const char*, 6> names = {kTaskStorageName,       kResourceStorageName,
                                                     kAssignmentStorageName, kCalendarStorageName,
                                                     kConstraintStorageName, kOutlCodeStorageName};
    return names[selector % names.size()];
}

// A compound file holding one storage with the given streams, opened again for reading.
class StorageFile {
public:
    StorageFile(const std::string& storage, const std::map<std::string, std::vector<uint8_t>>& streams)
        : m_path("/tmp/tvmsp-stream-fuzz-" + std::to_string(getpid()) + ".cfb") {
        {
            auto writer = SSLRoot::forWritingToFile(m_path);
            auto top = writer->rootStorage();
            auto child = top->createChildStorageWithName(storage);
            for (const auto& [name, bytes] : streams) {
                auto stream = child->createChildStreamWithName(name);
                stream->writeBuffer(bytes.data(), static_cast<int32_t>(bytes.size()));
            }
        }
        m_root = SSLRoot::rootWithFilename(m_path);
        if (auto top = m_root->rootStorage()) {
            m_storage = top->childStorageWithName(storage);
        }
    }
    ~StorageFile() { unlink(m_path.c_str()); }

    // The storage, once; none if the file couldn't be read back.
    std::unique_ptr<SSLStorage> takeStorage() { return std::move(m_storage); }

private:
    std::string m_path;
    std::unique_ptr<SSLRoot> m_root;
    std::unique_ptr<SSLStorage> m_storage;
};

// Silences the readers' error lines while fuzzing.
inline void silenceLog() {
    static bool silenced = false;
    if (!silenced) {
        tvSetLogSink([](const std::string&) {});
        silenced = true;
    }
}

} // namespace streamfuzz
