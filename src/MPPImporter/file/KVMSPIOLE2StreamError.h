#pragma once

#include "MPPCommon/support/TVError.h"

#include <string>

class SSLStream;

inline constexpr const char* kOLE2StreamReaderErrorDomain = "TVMSPFilter.OLE2StreamReaderErrorDomain";

// Keys of the user data that a stream error may carry.
inline constexpr const char* kOLE2InputStreamGSFErrorKey = "OLE2InputStreamGSFError";
inline constexpr const char* kOLE2InputStreamNameKey = "OLE2InputStreamName";
inline constexpr const char* kOLE2InputStreamContainerNameKey = "OLE2InputStreamContainerName";
inline constexpr const char* kOLE2InputStreamSizeKey = "OLE2InputStreamSize";
inline constexpr const char* kOLE2InputStreamCurPosKey = "OLE2InputStreamCurPos";
inline constexpr const char* kOLE2InputStreamRemainingKey = "OLE2InputStreamRemaining";
inline constexpr const char* kOLE2InputStreamEOFKey = "OLE2InputStreamEOF";

// An error of a compound-file stream: the stream's result code, and a readable account of it.
class KVMSPIOLE2StreamError : public TVError {
public:
    // An error with the stream's last result code. The description isn't kept.
    static KVMSPIOLE2StreamError errorWithStream(const SSLStream& stream, const std::string& description);

    // "<KVMSPIOLE2StreamError 0x...>:" and the code, then one line per user data entry present.
    std::string description() const;
};
