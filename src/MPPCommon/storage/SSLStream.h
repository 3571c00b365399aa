#pragma once

#include "MPPCommon/storage/SSLObject.h"
#include "MPPCommon/storage/SSLTypes.h"
#include "MPPCommon/support/TVDate.h"

#include <cstdint>
#include <optional>
#include <string>

struct _Stream;

// A view on one stream of a compound file: a position, little-endian reads and writes, and the date
// and text forms of MPP files. The record under it belongs to the root; a stream being written is
// finished when the root ends.
class SSLStream : public SSLObject {
public:
    SSLStream(_Stream* stream, _StgInfo streamInfo);

    std::string streamName() const;

    bool seekFromCurrentPos(int32_t offset);
    bool seekFromStart(int32_t offset);
    bool rewind();
    // Position and stream size minus position; lastError() is not touched.
    uint32_t position();
    uint32_t bytesAvailable();

    // Reads up to `count` bytes; the number read, or -1 on error. A read that meets the end is
    // clamped and succeeds; one that starts at or behind the end fails with code 15.
    int32_t readBytes(uint32_t count, void* into);
    // Fixed-width little-endian reads. A value read across the end of the stream is short and its
    // missing bytes are zero; readByte and readUByte leave lastError() alone.
    int8_t readByte();
    uint8_t readUByte();
    int16_t readShort();
    uint16_t readUShort();
    int32_t readInt();
    uint32_t readUInt();
    // These two read 4 bytes, widened with and without sign.
    int64_t readLong();
    uint64_t readULong();
    float readFloat();
    double readDouble();
    // Up to `length` 16-bit units, ending after the first NUL; none on error.
    std::optional<std::string> readStringWithLength(uint32_t length);

    // Little-endian writes; the result goes to lastError().
    void writeBuffer(const void* bytes, int32_t length);
    void writeLEshort(int16_t value);
    void writeLEword(uint16_t value);
    void writeLElong(int32_t value);
    void writeLEdword(uint32_t value);
    void writeLEfloat(float value);
    void writeLEdouble(double value);
    // The low 16 bits of `unit`.
    void writeLEwchar(char32_t unit);
    // `length` units of `string` as 16-bit units; a length of 0 writes the whole string and its
    // terminator. Gives the number of units written.
    uint32_t writeLEwstring(const std::u32string& string, uint32_t length);

    // MPP forms. A duration (time in tenths of a minute, then days) in seconds, -1.0 for null or on
    // error; a day count from the MPP epoch; a time then a day count; and `count` bytes holding
    // NUL-terminated UTF-8 (none if they are no valid UTF-8 or can't be read).
    double readTimeInterval();
    std::optional<TVDate> readDate();
    std::optional<TVDate> readDateTime();
    std::optional<std::string> readBytesIntoString(uint32_t count);

private:
    _Stream* m_pStream;
    _StgInfo m_pInfo;
};
