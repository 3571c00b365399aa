#pragma once

#include "MPPCommon/support/TVDate.h"

#include <cstdint>
#include <optional>

// Decoders of the values of MPP streams. Each reads at `bytes + offset`; the caller has checked that
// the bytes are there. All numbers are little-endian.

int8_t memReadByte(const uint8_t* bytes, int32_t offset);
uint8_t memReadUByte(const uint8_t* bytes, int32_t offset);
int16_t memReadShort(const uint8_t* bytes, int32_t offset);
uint16_t memReadUShort(const uint8_t* bytes, int32_t offset);
int32_t memReadInt(const uint8_t* bytes, int32_t offset);
uint32_t memReadUInt(const uint8_t* bytes, int32_t offset);
float memReadFloat(const uint8_t* bytes, int32_t offset);
double memReadDouble(const uint8_t* bytes, int32_t offset);

// Copies `length` bytes to `destination`; source and destination may overlap.
void memReadByteArray(void* destination, const uint8_t* bytes, int32_t offset, size_t length);

// Raw durations, in the units of the field that holds them (mostly tenths of a minute).
int16_t memReadDurationShort(const uint8_t* bytes, int32_t offset);
int32_t memReadDurationInt(const uint8_t* bytes, int32_t offset);
int64_t memReadDurationLong(const uint8_t* bytes, int32_t offset);
// 48 bits: an unsigned 32-bit low part, then a signed 16-bit high part.
int64_t memReadDurationLong6(const uint8_t* bytes, int32_t offset);
double memReadDurationDouble(const uint8_t* bytes, int32_t offset);

// A time of day stored as unsigned tenths of a minute, as microseconds since midnight.
TVTimeSpan memReadTime(const uint8_t* bytes, int32_t offset);

// A signed 16-bit day count after the MPP epoch; 0xFFFF is no date.
std::optional<TVDate> memReadDate(const uint8_t* bytes, int32_t offset);

// A time word (tenths of a minute) followed by a day word; either one 0xFFFF is no date.
std::optional<TVDate> memReadTimestamp(const uint8_t* bytes, int32_t offset);

// One value at a pointer, as stored.
uint8_t LE_GET_UINT8(const uint8_t* bytes);
float LE_GET_FLOAT(const uint8_t* bytes);
double LE_GET_DOUBLE(const uint8_t* bytes);
