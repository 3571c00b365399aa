#include "MPPImporter/format/MPPMemRead.h"

#include "MPPImporter/format/MPPValueCodecs.h"

#include <cstring>

namespace {

// The `size` bytes at `bytes + offset`, which the caller has checked.
MPPConstBytes at(const uint8_t* bytes, int32_t offset, size_t size) {
    return {bytes + offset, size};
}

template <typename Number>
Number numberAt(const uint8_t* bytes, int32_t offset) {
    return decodeMPPNumber<Number>(at(bytes, offset, sizeof(Number)));
}

} // namespace

int8_t memReadByte(const uint8_t* bytes, int32_t offset) {
    return numberAt<int8_t>(bytes, offset);
}

uint8_t memReadUByte(const uint8_t* bytes, int32_t offset) {
    return numberAt<uint8_t>(bytes, offset);
}

int16_t memReadShort(const uint8_t* bytes, int32_t offset) {
    return numberAt<int16_t>(bytes, offset);
}

uint16_t memReadUShort(const uint8_t* bytes, int32_t offset) {
    return numberAt<uint16_t>(bytes, offset);
}

int32_t memReadInt(const uint8_t* bytes, int32_t offset) {
    return numberAt<int32_t>(bytes, offset);
}

uint32_t memReadUInt(const uint8_t* bytes, int32_t offset) {
    return numberAt<uint32_t>(bytes, offset);
}

float memReadFloat(const uint8_t* bytes, int32_t offset) {
    return numberAt<float>(bytes, offset);
}

double memReadDouble(const uint8_t* bytes, int32_t offset) {
    return numberAt<double>(bytes, offset);
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
    return numberAt<int64_t>(bytes, offset);
}

int64_t memReadDurationLong6(const uint8_t* bytes, int32_t offset) {
    return static_cast<int64_t>(memReadShort(bytes, offset + 4)) * (int64_t{1} << 32) +
           memReadUInt(bytes, offset);
}

double memReadDurationDouble(const uint8_t* bytes, int32_t offset) {
    return memReadDouble(bytes, offset);
}

TVTimeSpan memReadTime(const uint8_t* bytes, int32_t offset) {
    return decodeMPPTime(at(bytes, offset, kMPPTimeSize));
}

std::optional<TVDate> memReadDate(const uint8_t* bytes, int32_t offset) {
    return decodeMPPDate(at(bytes, offset, kMPPDateSize));
}

std::optional<TVDate> memReadTimestamp(const uint8_t* bytes, int32_t offset) {
    return decodeMPPTimestamp(at(bytes, offset, kMPPTimestampSize));
}

uint8_t LE_GET_UINT8(const uint8_t* bytes) {
    return *bytes;
}

float LE_GET_FLOAT(const uint8_t* bytes) {
    return memReadFloat(bytes, 0);
}

double LE_GET_DOUBLE(const uint8_t* bytes) {
    return memReadDouble(bytes, 0);
}
