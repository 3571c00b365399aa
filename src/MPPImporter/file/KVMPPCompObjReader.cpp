#include "MPPImporter/file/KVMPPCompObjReader.h"

#include "MPPCommon/storage/SSLStream.h"
#include "MPPCommon/support/TVException.h"

#include <algorithm>

namespace {

// The application name follows a header that isn't read.
constexpr int32_t kApplicationNameOffset = 28;

// Files of this application hold no further lengths; their format is named here, and no list reads it.
constexpr const char* kProject4ApplicationName = "Microsoft Project 4.0";
constexpr const char* kProject4FileFormat = "MSProject.MPP4";
constexpr const char* kProject4ApplicationID = "MSProject.Project.4";

} // namespace

KVMPPCompObjReader::KVMPPCompObjReader(std::unique_ptr<SSLStream> stream) : m_stream(std::move(stream)) {
    tvAssert(m_stream != nullptr, "No CompObj stream to read.");
    m_stream->seekFromStart(kApplicationNameOffset);
    m_applicationName = readLengthPrefixedString();
    if (m_applicationName == kProject4ApplicationName) {
        m_fileFormat = kProject4FileFormat;
        m_applicationID = kProject4ApplicationID;
        return;
    }
    m_fileFormat = readLengthPrefixedString();
    m_applicationID = readLengthPrefixedString();
}

KVMPPCompObjReader::~KVMPPCompObjReader() = default;

std::optional<std::string> KVMPPCompObjReader::readLengthPrefixedString() {
    const int32_t length = m_stream->readInt();
    if (m_stream->lastError() != 0 || length < 1) {
        return std::nullopt;
    }
    // Bounded by the stream, so that a corrupt length costs no more than the stream holds.
    const uint32_t count = std::min(static_cast<uint32_t>(length), m_stream->bytesAvailable());
    return m_stream->readBytesIntoString(count);
}
