#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class SSLStorage;
class SSLStream;

// The template side of one entry of the walk: a storage or a stream of the template file, with the
// name of the storage that holds it. Views must not outlive the template's root.
class KVMPPFormatReader {
public:
    static constexpr uint32_t kStorageDataSize = 0xFFFFFFFF;

    KVMPPFormatReader(std::unique_ptr<SSLStorage> storage, std::string parentName);
    KVMPPFormatReader(std::unique_ptr<SSLStream> stream, std::string parentName);
    ~KVMPPFormatReader();

    // 0 for a stream.
    int32_t numberOfChildren();
    std::string getName();
    const std::string& getParentName() const { return m_parentName; }
    bool isDirectory() const { return m_storage != nullptr; }
    // The stream's size; kStorageDataSize for a storage.
    uint32_t getDataSize();
    // The whole stream into `data`; false for a storage or a read that fails.
    bool getData(std::vector<uint8_t>& data);

    // The child at `index` of a storage; none for a stream or an entry that can't be opened.
    std::unique_ptr<KVMPPFormatReader> createChildReaderAtIndex(int32_t index);
    std::unique_ptr<KVMPPFormatReader> childDirectoryReaderWithName(const std::string& name);
    std::unique_ptr<KVMPPFormatReader> childStreamReaderWithName(const std::string& name);

private:
    std::unique_ptr<SSLStorage> m_storage;
    std::unique_ptr<SSLStream> m_stream;
    std::string m_parentName;
};
