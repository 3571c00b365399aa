#include "MPPCommon/storage/SSLStream.h"

#include "MPPCommon/storage/SSL.h"
#include "MPPCommon/storage/SSLLibrary.h"
#include "MPPCommon/storage/SSLUnicode.h"

#include <algorithm>
#include <bit>
#include <vector>

namespace {

constexpr uint16_t kNullDay = 0xFFFF;
// Times of day in MPP files count tenths of a minute.
constexpr int64_t kSecondsPerTimeUnit = 6;

} // namespace

SSLStream::SSLStream(_Stream* stream, _StgInfo streamInfo)
    : m_pStream(stream), m_pInfo(std::move(streamInfo)) {}

std::string SSLStream::streamName() const {
    return SSL::stringWithWCharStr(m_pInfo.name);
}

bool SSLStream::seekFromCurrentPos(int32_t offset) {
    m_lastError = streamSeek(m_pStream, offset, 1);
    return m_lastError == SSL_OK;
}

bool SSLStream::seekFromStart(int32_t offset) {
    m_lastError = streamSeek(m_pStream, offset, 0);
    return m_lastError == SSL_OK;
}

bool SSLStream::rewind() {
    return seekFromStart(0);
}

uint32_t SSLStream::position() {
    uint64_t position = 0;
    streamTell(m_pStream, &position);
    return static_cast<uint32_t>(position);
}

uint32_t SSLStream::bytesAvailable() {
    uint32_t left = 0;
    streamBytesLeft(m_pStream, &left);
    return left;
}

int32_t SSLStream::readBytes(uint32_t count, void* into) {
    uint32_t read = count;
    m_lastError = streamRead(m_pStream, into, &read);
    return m_lastError == SSL_OK ? static_cast<int32_t>(read) : -1;
}

namespace {

// Reads `width` bytes little-endian; bytes behind the end of the stream read as zero.
uint64_t readLittleEndian(_Stream* stream, uint32_t width, int32_t* result) {
    unsigned char bytes[8] = {};
    uint32_t count = width;
    *result = streamRead(stream, bytes, &count);
    uint64_t value = 0;
    for (uint32_t i = width; i-- > 0;) {
        value = (value << 8) | bytes[i];
    }
    return value;
}

} // namespace

int8_t SSLStream::readByte() {
    return static_cast<int8_t>(readUByte());
}

uint8_t SSLStream::readUByte() {
    int32_t ignored = SSL_OK;
    return static_cast<uint8_t>(readLittleEndian(m_pStream, 1, &ignored));
}

int16_t SSLStream::readShort() {
    return static_cast<int16_t>(readUShort());
}
uint16_t SSLStream::readUShort() {
    return static_cast<uint16_t>(readLittleEndian(m_pStream, 2, &m_lastError));
}
int32_t SSLStream::readInt() {
    return static_cast<int32_t>(readUInt());
}
uint32_t SSLStream::readUInt() {
    return static_cast<uint32_t>(readLittleEndian(m_pStream, 4, &m_lastError));
}
int64_t SSLStream::readLong() {
    return readInt();
}
uint64_t SSLStream::readULong() {
    return readUInt();
}
float SSLStream::readFloat() {
    return std::bit_cast<float>(readUInt());
}
double SSLStream::readDouble() {
    return std::bit_cast<double>(readLittleEndian(m_pStream, 8, &m_lastError));
}

std::optional<std::string> SSLStream::readStringWithLength(uint32_t length) {
    // Units are collected as read, so a hostile length costs no more memory than the stream holds.
    std::u32string units;
    for (uint32_t i = 0; i < length; ++i) {
        char32_t unit = readUShort();
        if (m_lastError != SSL_OK) {
            return std::nullopt;
        }
        if (unit == 0) {
            break;
        }
        units.push_back(unit);
    }
    return SSL::stringWithWCharStr(units);
}

void SSLStream::writeBuffer(const void* bytes, int32_t length) {
    if (length < 0) {
        m_lastError = SSL_ERROR_BAD_ARGUMENT;
        return;
    }
    uint32_t count = static_cast<uint32_t>(length);
    m_lastError = streamWrite(m_pStream, bytes, &count);
}

namespace {

template <typename T>
void encodeLittleEndian(T value, unsigned char (&bytes)[sizeof(T)]) {
    for (size_t i = 0; i < sizeof(T); ++i) {
        bytes[i] = static_cast<unsigned char>(value >> (8 * i));
    }
}

} // namespace

void SSLStream::writeLEshort(int16_t value) {
    writeLEword(static_cast<uint16_t>(value));
}

void SSLStream::writeLEword(uint16_t value) {
    unsigned char bytes[2];
    encodeLittleEndian(value, bytes);
    writeBuffer(bytes, sizeof bytes);
}

void SSLStream::writeLElong(int32_t value) {
    writeLEdword(static_cast<uint32_t>(value));
}

void SSLStream::writeLEdword(uint32_t value) {
    unsigned char bytes[4];
    encodeLittleEndian(value, bytes);
    writeBuffer(bytes, sizeof bytes);
}

void SSLStream::writeLEfloat(float value) {
    writeLEdword(std::bit_cast<uint32_t>(value));
}

void SSLStream::writeLEdouble(double value) {
    unsigned char bytes[8];
    encodeLittleEndian(std::bit_cast<uint64_t>(value), bytes);
    writeBuffer(bytes, sizeof bytes);
}

void SSLStream::writeLEwchar(char32_t unit) {
    writeLEword(static_cast<uint16_t>(unit));
}

uint32_t SSLStream::writeLEwstring(const std::u32string& string, uint32_t length) {
    if (length == 0) {
        length = static_cast<uint32_t>(string.size() + 1);
    }
    uint32_t written = 0;
    for (; written < length; ++written) {
        writeLEwchar(written < string.size() ? string[written] : 0);
        if (m_lastError != SSL_OK) {
            break;
        }
    }
    return written;
}

double SSLStream::readTimeInterval() {
    const uint16_t time = readUShort();
    if (m_lastError != SSL_OK) {
        return -1.0;
    }
    const uint16_t days = readUShort();
    if (m_lastError != SSL_OK || (time & days) == 0xFFFF) {
        return -1.0;
    }
    // The file's own arithmetic is 32-bit and wraps.
    return static_cast<int32_t>(days * kSecondsPerDay + time * kSecondsPerTimeUnit);
}

std::optional<TVDate> SSLStream::readDate() {
    const uint16_t days = readUShort();
    if (m_lastError != SSL_OK || days == kNullDay) {
        return std::nullopt;
    }
    return getMPPEpoch().addingSeconds(static_cast<double>(days * kSecondsPerDay));
}

std::optional<TVDate> SSLStream::readDateTime() {
    const uint16_t time = readUShort();
    if (m_lastError != SSL_OK) {
        return std::nullopt;
    }
    std::optional<TVDate> date = readDate();
    if (!date) {
        return std::nullopt;
    }
    return date->addingSeconds(static_cast<double>(time * kSecondsPerTimeUnit));
}

std::optional<std::string> SSLStream::readBytesIntoString(uint32_t count) {
    std::vector<char> bytes(std::min(count, bytesAvailable()));
    if (count != 0 && readBytes(count, bytes.data()) < 0) {
        return std::nullopt;
    }
    std::string_view text(bytes.data(), bytes.size());
    text = text.substr(0, text.find('\0'));
    bool wellFormed = true;
    sslunicode::decodeUtf8(text, &wellFormed);
    if (!wellFormed) {
        return std::nullopt;
    }
    return std::string(text);
}
