#include "MPPImporter/file/KVMPPDataReader.h"

#include "MPPCommon/support/Log.h"

#include <limits>

KVMPPDataReader::KVMPPDataReader(std::unique_ptr<SSLStream> metaStream, std::string metaStreamName,
                                 std::unique_ptr<SSLStream> dataStream, std::string dataStreamName,
                                 KVMSPIMPPDataDirectoryReader* dataDirectoryReader)
    : _metaStream(std::move(metaStream)), _dataStream(std::move(dataStream)),
      _metaStreamName(std::move(metaStreamName)), _dataStreamName(std::move(dataStreamName)),
      _dataDirectoryReader(dataDirectoryReader) {}

bool KVMPPDataReader::processError() {
    if (_error) {
        return processError(TVError(*_error));
    }
    return true;
}

bool KVMPPDataReader::processError(const TVError& error) {
    tvLog(stringWithFormat("ERROR: %s", error.localizedDescription().c_str()));
    _error.reset();
    return true;
}

bool KVMPPDataReader::checkError(const SSLStream& stream, const std::string& errorDescription) {
    if (stream.lastError() == 0) {
        return true;
    }
    return reportStreamError(stream, errorDescription);
}

bool KVMPPDataReader::reportStreamError(const SSLStream& stream, const std::string& domain) {
    _error = TVError{domain, stream.lastError(), {}};
    processError();
    return false;
}

uint32_t KVMPPDataReader::streamSize(SSLStream& stream) {
    stream.rewind();
    return stream.bytesAvailable();
}

bool KVMPPDataReader::seekStream(SSLStream& stream, int64_t offset) {
    // An offset beyond the 32-bit seek goes in as -1, which the stream refuses and records.
    const bool fits = offset >= 0 && offset <= std::numeric_limits<int32_t>::max();
    return stream.seekFromStart(fits ? static_cast<int32_t>(offset) : -1);
}

bool streamGetByteArrayPtr(SSLStream& stream, void* destination, uint32_t length) {
    stream.readBytes(length, destination);
    return stream.lastError() == 0;
}
