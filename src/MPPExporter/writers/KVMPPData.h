#pragma once

#include "MPPCommon/support/TVDate.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

// Text encodings of the stream blocks: UTF-16 little-endian without a byte order mark for every text,
// ASCII for RTF notes.
inline constexpr int32_t kMPPDataEncodingASCII = 1;
inline constexpr int32_t kMPPDataEncodingUTF16LE = 10;

// Name of the exception that a write outside a block or an index beyond its elements raises.
inline constexpr const char* kMPPDataRangeException = "NSRangeException";

// A growing little-endian byte buffer with the field encodings of MPP streams. A stream is built
// whole in such a block and then flushed in one go; flushing clears the buffer but the block keeps
// counting what was ever written, so that offsets stay valid for a meta stream written afterwards.
class KVMPPData {
public:
    KVMPPData();
    virtual ~KVMPPData() = default;
    KVMPPData(const KVMPPData&) = delete;
    KVMPPData& operator=(const KVMPPData&) = delete;

    // A new empty buffer; the count of cleared bytes stays.
    void resetData();

    const std::vector<uint8_t>& data() const { return m_data; }
    // Copies `length` bytes from the start, or from `location`, of the buffer.
    void getBytes(void* into, size_t length) const;
    void getBytes(void* into, size_t location, size_t length) const;
    uint64_t dataSize() const { return m_data.size(); }
    // Everything ever written to the block, flushed or not.
    uint64_t cumulativeDataSize() const { return dataSize() + m_bytesCleared; }

    // Forgets the buffer's bytes but keeps counting them.
    virtual void clearBuffer();

    void writeInteger(uint32_t value);
    void write2ByteInteger(uint16_t value);
    void write1ByteInteger(uint8_t value);
    // Overwrite bytes of the current buffer; a field reaching past its end raises kMPPDataRangeException.
    void writeInteger(uint32_t value, uint64_t offset);
    void write2ByteInteger(uint16_t value, uint64_t offset);
    void write1ByteInteger(uint8_t value, uint64_t offset);
    void writeDouble(double value);
    void writeData(const void* bytes, size_t length);
    void writeZeroesBlockOfSize(size_t count);
    // 16 bytes of a GUID; an empty span (no GUID) gives 16 zero bytes.
    void writeGUID(std::span<const uint8_t> guid);
    // The text's bytes in the encoding, then a 2-byte zero.
    void writeString(const std::string& text, int32_t encoding);
    // Plain text wrapped as the RTF document that the application keeps for notes.
    void writeRtfString(const std::string& text, int32_t encoding);
    // Seconds as tenths of a minute, truncated; the unit is not looked at.
    void writeDuration(double seconds, int32_t units);
    // Seconds in the unit given (tenths of that unit), truncated; 0 for a unit without a length.
    void writeDuration(double seconds, int32_t units, uint64_t offset);
    // The date's wall clock in the system zone: a time word in tenths of a minute, then a day word
    // counted from the MPP epoch; 0xFFFF twice for no date.
    void writeDate(std::optional<TVDate> date);
    // A date measured against 1984-01-12 08:00 of the system zone, as minutes at three fixed offsets
    // of a block that already holds a template element; no date writes nothing.
    void writeSpecialDate(std::optional<TVDate> date);
    // The day word alone.
    void writeDaysFromDate(std::optional<TVDate> date);
    void writeDaysFromDate(std::optional<TVDate> date, uint64_t offset);

    // The wall clock of `date` in the system zone, as a UTC instant: the form in which MPP streams
    // hold dates.
    static TVDate wallClock(TVDate date);
    static std::optional<TVDate> wallClock(std::optional<TVDate> date);

private:
    void append(std::span<const uint8_t> bytes);
    std::span<uint8_t> fieldAt(uint64_t offset, size_t width);

    std::vector<uint8_t> m_data;
    uint64_t m_bytesCleared = 0;
};
