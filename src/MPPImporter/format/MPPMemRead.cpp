#include "MPPImporter/format/MPPMemRead.h"

#include "MPPCommon/support/TVException.h"
#include "MPPImporter/text/RTFPlainTextReader.h"
#include "MPPImporter/text/UnicodeText.h"

#include <cstring>

namespace {

constexpr int32_t kSecondsPerDay = 86400;
constexpr int32_t kSecondsPerTimeUnit = 6;
constexpr uint16_t kNullWord = 0xFFFF;

// Seconds of a day count and a time in tenths of a minute, summed in 32 bits as the MPP formats do:
// large day counts wrap the same way here.
int32_t mppSeconds(int32_t days, int32_t timeUnits) {
    return static_cast<int32_t>(static_cast<uint32_t>(days) * kSecondsPerDay +
                                static_cast<uint32_t>(timeUnits) * kSecondsPerTimeUnit);
}

} // namespace

int8_t memReadByte(const uint8_t* bytes, int32_t offset) {
    return static_cast<int8_t>(bytes[offset]);
}

uint8_t memReadUByte(const uint8_t* bytes, int32_t offset) {
    return bytes[offset];
}

int16_t memReadShort(const uint8_t* bytes, int32_t offset) {
    return static_cast<int16_t>(memReadUShort(bytes, offset));
}

uint16_t memReadUShort(const uint8_t* bytes, int32_t offset) {
    return static_cast<uint16_t>(bytes[offset] | (bytes[offset + 1] << 8));
}

int32_t memReadInt(const uint8_t* bytes, int32_t offset) {
    return static_cast<int32_t>(memReadUInt(bytes, offset));
}

uint32_t memReadUInt(const uint8_t* bytes, int32_t offset) {
    return static_cast<uint32_t>(bytes[offset]) | (static_cast<uint32_t>(bytes[offset + 1]) << 8) |
           (static_cast<uint32_t>(bytes[offset + 2]) << 16) |
           (static_cast<uint32_t>(bytes[offset + 3]) << 24);
}

float memReadFloat(const uint8_t* bytes, int32_t offset) {
    return LE_GET_FLOAT(bytes + offset);
}

double memReadDouble(const uint8_t* bytes, int32_t offset) {
    return LE_GET_DOUBLE(bytes + offset);
}

void memReadByteArray(void* destination, const uint8_t* bytes, int32_t offset, size_t length) {
    std::memmove(destination, bytes + offset, length);
}

int16_t memReadDurationShort(const uint8_t* bytes, int32_t offset) {
    return memReadShort(bytes, offset);
}

int32_t memReadDurationInt(const uint8_t* bytes, int32_t offset) {
    return memReadInt(bytes, offset);
}

int64_t memReadDurationLong(const uint8_t* bytes, int32_t offset) {
    return static_cast<int64_t>(static_cast<uint64_t>(memReadUInt(bytes, offset)) |
                                (static_cast<uint64_t>(memReadUInt(bytes, offset + 4)) << 32));
}

int64_t memReadDurationLong6(const uint8_t* bytes, int32_t offset) {
    return static_cast<int64_t>(memReadShort(bytes, offset + 4)) * (int64_t{1} << 32) +
           memReadUInt(bytes, offset);
}

double memReadDurationDouble(const uint8_t* bytes, int32_t offset) {
    return memReadDouble(bytes, offset);
}

TVTimeSpan memReadTime(const uint8_t* bytes, int32_t offset) {
    return static_cast<TVTimeSpan>(memReadUShort(bytes, offset)) * 6000000;
}

std::optional<TVDate> memReadDate(const uint8_t* bytes, int32_t offset) {
    int16_t days = memReadShort(bytes, offset);
    if (days == -1) {
        return std::nullopt;
    }
    return getMPPEpoch().addingSeconds(mppSeconds(days, 0));
}

std::optional<TVDate> memReadTimestamp(const uint8_t* bytes, int32_t offset) {
    uint16_t time = memReadUShort(bytes, offset);
    uint16_t day = memReadUShort(bytes, offset + 2);
    if (time == kNullWord || day == kNullWord) {
        return std::nullopt;
    }
    return getMPPEpoch().addingSeconds(mppSeconds(static_cast<int16_t>(day), static_cast<int16_t>(time)));
}

int32_t memReadUnicode(std::string& text, const uint8_t* bytes, int32_t start, int32_t end) {
    tvAssert(start < end, "Invalid offset in the buffer.");
    std::string_view range(reinterpret_cast<const char*>(bytes + start), static_cast<size_t>(end - start));
    if (auto plainText = RTFPlainTextReader::plainText(range)) {
        text += *plainText;
        return static_cast<int32_t>(utf16Length(*plainText));
    }
    std::u16string units;
    for (int32_t at = start; at + 1 < end; at += 2) {
        char16_t unit = memReadUShort(bytes, at);
        if (unit == 0) {
            break;
        }
        units.push_back(unit);
    }
    text += utf8FromUTF16(units);
    return static_cast<int32_t>(units.size());
}

uint8_t LE_GET_UINT8(const uint8_t* bytes) {
    return *bytes;
}

float LE_GET_FLOAT(const uint8_t* bytes) {
    float value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

double LE_GET_DOUBLE(const uint8_t* bytes) {
    double value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}
