#pragma once

#include "MPPImporter/format/MPPResourceAvailabilityPeriod.h"

#include <cstddef>
#include <cstdint>
#include <vector>

// A resource's availability table as stored: a signed 16-bit row count, then from offset 12 rows of
// 20 bytes, each with its start (a 32-bit count of tenths of a minute after the MPP epoch) and its
// units in hundredths (a double at row offset 4). A row's period ends where the next row starts, so
// the last counted row takes its end from the row after it. Units are handed on divided by 100.
class MPPResourceAvailabilityTable {
public:
    MPPResourceAvailabilityTable(const uint8_t* bytes, size_t size) : m_bytes(bytes), m_size(size) {}

    // Appends a period for each counted row of non-zero units. Decoding stops at a row, or an end
    // row, that the table's bytes don't hold.
    void appendPeriods(std::vector<MPPResourceAvailabilityPeriod>& periods) const;

private:
    const uint8_t* m_bytes;
    size_t m_size;
};
