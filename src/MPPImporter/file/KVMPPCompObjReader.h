#pragma once

#include <memory>
#include <optional>
#include <string>

class SSLStream;

// Reads the "\001CompObj" stream, which names the application that wrote the file, the format
// string and the application id. Each of them may be absent.
class KVMPPCompObjReader {
public:
    // Reads the stream at once.
    explicit KVMPPCompObjReader(std::unique_ptr<SSLStream> stream);
    ~KVMPPCompObjReader();

    const std::optional<std::string>& applicationName() const { return m_applicationName; }
    const std::optional<std::string>& applicationID() const { return m_applicationID; }
    const std::optional<std::string>& fileFormat() const { return m_fileFormat; }

private:
    // A 32-bit length that counts the terminator, then that many bytes of UTF-8; none for a length
    // below 1. A length beyond the stream's end reads what is there.
    std::optional<std::string> readLengthPrefixedString();

    std::unique_ptr<SSLStream> m_stream;
    std::optional<std::string> m_applicationName;
    std::optional<std::string> m_applicationID;
    std::optional<std::string> m_fileFormat;
};
