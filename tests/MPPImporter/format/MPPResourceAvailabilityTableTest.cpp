#include "MPPImporter/format/MPPResourceAvailabilityTable.h"

#include "MPPCommon/support/TVDate.h"

#include <cstring>
#include <gtest/gtest.h>

namespace {

// A table of `rows` rows of 20 bytes from offset 12, with the row count `count` at offset 0.
class AvailabilityBytes {
public:
    AvailabilityBytes(int16_t count, size_t rows) : m_bytes(12 + 20 * rows, 0) {
        std::memcpy(m_bytes.data(), &count, sizeof count);
    }
    AvailabilityBytes& row(size_t index, uint32_t start, double units) {
        std::memcpy(&m_bytes[12 + 20 * index], &start, sizeof start);
        std::memcpy(&m_bytes[12 + 20 * index + 4], &units, sizeof units);
        return *this;
    }
    std::vector<MPPResourceAvailabilityPeriod> periods(size_t size) const {
        std::vector<MPPResourceAvailabilityPeriod> periods;
        MPPResourceAvailabilityTable(m_bytes.data(), size).appendPeriods(periods);
        return periods;
    }
    std::vector<MPPResourceAvailabilityPeriod> periods() const { return periods(m_bytes.size()); }

private:
    std::vector<uint8_t> m_bytes;
};

// Starts are tenths of a minute after the MPP epoch: 6 seconds each.
TVDate at(uint32_t start) {
    return getMPPEpoch().addingSeconds(start * 6.0);
}

TEST(MPPResourceAvailabilityTable, EachPeriodEndsWhereTheNextRowStarts) {
    const auto periods =
        AvailabilityBytes(2, 3).row(0, 1000, 10000.0).row(1, 5000, 5000.0).row(2, 9000, 0.0).periods();
    ASSERT_EQ(periods.size(), 2u);
    EXPECT_EQ(periods[0].start, at(1000));
    EXPECT_EQ(periods[0].end, at(5000));
    EXPECT_DOUBLE_EQ(periods[0].units, 100.0);
    // The last counted row takes its end from the row beyond the count.
    EXPECT_EQ(periods[1].start, at(5000));
    EXPECT_EQ(periods[1].end, at(9000));
    EXPECT_DOUBLE_EQ(periods[1].units, 50.0);
}

TEST(MPPResourceAvailabilityTable, RowsOfZeroUnitsAddNothingAndTheNextRowIsStillRead) {
    const auto periods = AvailabilityBytes(3, 4)
                             .row(0, 100, 0.0)
                             .row(1, 200, 2500.0)
                             .row(2, 300, 0.0)
                             .row(3, 400, 0.0)
                             .periods();
    ASSERT_EQ(periods.size(), 1u);
    EXPECT_EQ(periods[0].start, at(200));
    EXPECT_EQ(periods[0].end, at(300));
    EXPECT_DOUBLE_EQ(periods[0].units, 25.0);
}

TEST(MPPResourceAvailabilityTable, StartsAboveTheSignedRangeCountForward) {
    const auto periods = AvailabilityBytes(1, 2).row(0, 0, 100.0).row(1, 0x80000000u, 0.0).periods();
    ASSERT_EQ(periods.size(), 1u);
    EXPECT_EQ(periods[0].end, at(0x80000000u));
}

TEST(MPPResourceAvailabilityTable, CountsBelowOneAndTablesShorterThanTheirCountStopCleanly) {
    const AvailabilityBytes table = AvailabilityBytes(5, 2).row(0, 100, 100.0).row(1, 200, 100.0);
    EXPECT_TRUE(AvailabilityBytes(0, 2).row(0, 100, 100.0).periods().empty());
    EXPECT_TRUE(AvailabilityBytes(-1, 2).row(0, 100, 100.0).periods().empty());
    EXPECT_TRUE(table.periods(1).empty());
    // Row 1 is whole but has no row after it for its end, so only row 0 makes a period.
    EXPECT_EQ(table.periods().size(), 1u);
    // Row 0's end lies in row 1's first 4 bytes; one byte less and row 0 can't end either.
    EXPECT_EQ(table.periods(12 + 20 + 4).size(), 1u);
    EXPECT_TRUE(table.periods(12 + 20 + 3).empty());
}

} // namespace
