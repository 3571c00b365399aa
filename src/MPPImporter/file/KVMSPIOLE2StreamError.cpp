#include "MPPImporter/file/KVMSPIOLE2StreamError.h"

#include "MPPCommon/storage/SSLStream.h"
#include "MPPCommon/support/Log.h"

#include <array>
#include <utility>

KVMSPIOLE2StreamError KVMSPIOLE2StreamError::errorWithStream(const SSLStream& stream,
                                                             const std::string& /*description*/) {
    KVMSPIOLE2StreamError error;
    error.domain = kOLE2StreamReaderErrorDomain;
    error.code = stream.lastError();
    return error;
}

std::string KVMSPIOLE2StreamError::description() const {
    std::string text = stringWithFormat("<%s %p>:", "KVMSPIOLE2StreamError", static_cast<const void*>(this));
    text += stringWithFormat("\n  GSFErrorCode=%d", code);
    static const std::array<std::pair<const char*, const char*>, 7> kLines = {{
        {kTVErrorLocalizedDescriptionKey, "\n  description='%s'"},
        {kOLE2InputStreamGSFErrorKey, "\n  streamGSFError='%s'"},
        {kOLE2InputStreamNameKey, "\n  streamName='%s'"},
        {kOLE2InputStreamContainerNameKey, "\n  streamContainerName='%s'"},
        {kOLE2InputStreamSizeKey, "\n  streamSize=%s"},
        {kOLE2InputStreamCurPosKey, "\n  streamCurPos=%s"},
        {kOLE2InputStreamRemainingKey, "\n  streamRemaining=%s"},
    }};
    for (const auto& [key, format] : kLines) {
        const auto found = userInfo.find(key);
        if (found != userInfo.end()) {
            text += stringWithFormat(format, found->second.c_str());
        }
    }
    const auto eof = userInfo.find(kOLE2InputStreamEOFKey);
    if (eof != userInfo.end()) {
        const bool atEnd = eof->second == "YES" || eof->second == "1";
        text += stringWithFormat("\n  streamEOF=%s", atEnd ? "YES" : "NO");
    }
    return text;
}
