#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPImporter/format/MPPWorkingTimeRange.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

// A bounds-checked view of one record of a calendar data block (a day or an exception). Every read
// answers none when its bytes lie outside the record, so a short or corrupt block reads as absent
// values and never beyond its end.
class MPPCalendarRecord {
public:
    explicit MPPCalendarRecord(std::span<const uint8_t> bytes) : m_bytes(bytes) {}

    int64_t size() const { return static_cast<int64_t>(m_bytes.size()); }

    std::optional<uint8_t> readUByte(int64_t offset) const;
    std::optional<int16_t> readShort(int64_t offset) const;
    std::optional<uint16_t> readUShort(int64_t offset) const;
    std::optional<int32_t> readInt(int64_t offset) const;
    // A day count after the MPP epoch; none when unreadable or null.
    std::optional<TVDate> readDate(int64_t offset) const;

    // Appends the working ranges of a record: a signed 16-bit range count at `countOffset`, then for
    // range i its start (tenths of a minute after midnight) at `startsOffset` + 2i and its length (in
    // tenths of a minute) at `lengthsOffset` + 4i. A count below 1 gives no ranges. False, appending
    // nothing, when the count or a range lies outside the record.
    bool readWorkingRanges(int64_t countOffset, int64_t startsOffset, int64_t lengthsOffset,
                           std::vector<MPPWorkingTimeRange>& value) const;

private:
    // Whether `length` bytes from `offset` lie inside the record.
    bool holds(int64_t offset, int64_t length) const { return offset >= 0 && offset <= size() - length; }

    std::span<const uint8_t> m_bytes;
};
