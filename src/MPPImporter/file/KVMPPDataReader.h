#pragma once

#include "MPPCommon/storage/SSLStream.h"
#include "MPPCommon/support/TVError.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

class KVMSPIMPPDataDirectoryReader;

// Base of the readers of a meta and data stream pair of one object kind. It owns the two streams
// and reports read errors: an error is logged and the read that met it answers false, so a value
// that can't be read is simply absent.
class KVMPPDataReader {
public:
    KVMPPDataReader(std::unique_ptr<SSLStream> metaStream, std::string metaStreamName,
                    std::unique_ptr<SSLStream> dataStream, std::string dataStreamName,
                    KVMSPIMPPDataDirectoryReader* dataDirectoryReader);
    virtual ~KVMPPDataReader() = default;
    KVMPPDataReader(const KVMPPDataReader&) = delete;
    KVMPPDataReader& operator=(const KVMPPDataReader&) = delete;

    // Checks the streams and builds the reader's maps; true if both streams opened.
    virtual bool open() = 0;

    // Logs the error in hand, if any, and clears it. Always true.
    bool processError();
    // Logs `error` as "ERROR: ..." and clears the error in hand. Always true.
    bool processError(const TVError& error);
    // False, after reporting an error with `errorDescription` as domain, if the stream's last
    // operation failed.
    bool checkError(const SSLStream& stream, const std::string& errorDescription);

    SSLStream& metaStream() { return *_metaStream; }
    const std::string& metaStreamName() const { return _metaStreamName; }
    SSLStream& dataStream() { return *_dataStream; }
    const std::string& dataStreamName() const { return _dataStreamName; }
    const std::optional<TVError>& error() const { return _error; }

protected:
    // Reports an error in `domain` with the stream's result code; false, for the caller to return.
    bool reportStreamError(const SSLStream& stream, const std::string& domain);
    // Size of a stream, leaving its position at the start.
    static uint32_t streamSize(SSLStream& stream);
    // Seeks to an absolute offset; false, with the stream's reason in lastError(), if it can't.
    static bool seekStream(SSLStream& stream, int64_t offset);

    std::unique_ptr<SSLStream> _metaStream;
    std::unique_ptr<SSLStream> _dataStream;
    std::string _metaStreamName;
    std::string _dataStreamName;
    KVMSPIMPPDataDirectoryReader* _dataDirectoryReader;
    std::optional<TVError> _error;
};

// Reads `length` bytes of the stream at its position into `destination`; true if the stream reported
// no error.
bool streamGetByteArrayPtr(SSLStream& stream, void* destination, uint32_t length);
