#pragma once

#include <memory>
#include <string>

class KVMPPData;
class SSLStorage;
class SSLStream;

// The output side of one entry of the walk: a storage or a stream created in the output file, with
// its name and the name of the storage that holds it.
class KVMPPFormatWriter {
public:
    KVMPPFormatWriter(std::unique_ptr<SSLStorage> storage, std::string name, std::string parentName);
    KVMPPFormatWriter(std::unique_ptr<SSLStream> stream, std::string name, std::string parentName);
    ~KVMPPFormatWriter();

    const std::string& getName() const { return m_name; }
    const std::string& getParentName() const { return m_parentName; }
    bool isDirectory() const { return m_storage != nullptr; }

    // A new storage or stream in this storage; none for a stream or when the entry can't be made.
    std::unique_ptr<KVMPPFormatWriter> newChildWriterWithName(const std::string& name, bool isDirectory);
    // Appends the block's buffer to the stream; false for a storage or a failed write.
    bool writeData(const KVMPPData& data);

private:
    std::unique_ptr<SSLStorage> m_storage;
    std::unique_ptr<SSLStream> m_stream;
    std::string m_name;
    std::string m_parentName;
};
