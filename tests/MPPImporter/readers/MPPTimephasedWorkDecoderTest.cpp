#include "MPPImporter/readers/MPPTimephasedWorkDecoder.h"

#include "MPPCommon/date/DateTestSupport.h"

#include <cstring>
#include <gtest/gtest.h>
#include <limits>

namespace {

// A block with the record count `count` and `records` records of 28 bytes from offset 40: a working-time
// offset in 80ths of a minute and the cumulative work in thousandths of a minute.
class TimephasedBytes {
public:
    TimephasedBytes(int16_t count, size_t records) : m_bytes(40 + 28 * records, 0xEE) {
        std::memcpy(m_bytes.data(), &count, sizeof count);
    }
    TimephasedBytes& record(size_t index, int32_t offsetMinutes, double cumulativeWorkMinutes) {
        return storedRecord(index, offsetMinutes * 80, cumulativeWorkMinutes * 1000.0);
    }
    // A record with its values as stored.
    TimephasedBytes& storedRecord(size_t index, int32_t offset, double work) {
        std::memcpy(&m_bytes[40 + 28 * index], &offset, sizeof offset);
        std::memcpy(&m_bytes[44 + 28 * index], &work, sizeof work);
        return *this;
    }
    std::vector<MPPTimephasedPhase> decode(TVDate start, size_t size) const {
        return MPPTimephasedWorkDecoder(m_bytes.data(), size).decode(start);
    }
    std::vector<MPPTimephasedPhase> decode(TVDate start) const { return decode(start, m_bytes.size()); }

private:
    std::vector<uint8_t> m_bytes;
};

// Phases lie on the standard calendar (Monday to Friday, 08:00-12:00 and 13:00-17:00), on the wall
// clock of the assignment's start, whatever the system zone.
class MPPTimephasedWorkDecoderTest : public ::testing::Test {
protected:
    SystemZoneScope m_zone{"UTC"};
    // Monday 4 January 2016, 08:00.
    const TVDate m_monday = utcInstant(2016, 1, 4, 8);
};

TEST_F(MPPTimephasedWorkDecoderTest, PhasesStartAtTheirWorkingOffsetAndLastForTheWorkTheyAdd) {
    const auto phases = TimephasedBytes(3, 3)
                            .record(0, 0, 240)   // 08:00 to the lunch break
                            .record(1, 240, 360) // an offset ending at 12:00 starts after lunch
                            .record(2, 900, 840) // Tuesday 16:00, on into Wednesday
                            .decode(m_monday);
    ASSERT_EQ(phases.size(), 3u);
    EXPECT_EQ(phases[0].start, utcInstant(2016, 1, 4, 8));
    EXPECT_EQ(phases[0].end, utcInstant(2016, 1, 4, 12));
    EXPECT_DOUBLE_EQ(phases[0].seconds, 4 * 3600.0);
    EXPECT_EQ(phases[1].start, utcInstant(2016, 1, 4, 13));
    EXPECT_EQ(phases[1].end, utcInstant(2016, 1, 4, 15));
    EXPECT_DOUBLE_EQ(phases[1].seconds, 2 * 3600.0);
    EXPECT_EQ(phases[2].start, utcInstant(2016, 1, 5, 16));
    EXPECT_EQ(phases[2].end, utcInstant(2016, 1, 6, 16));
    EXPECT_DOUBLE_EQ(phases[2].seconds, 8 * 3600.0);
}

TEST_F(MPPTimephasedWorkDecoderTest, RecordsWhoseCumulativeWorkDoesNotGrowMakeNoPhase) {
    const auto phases = TimephasedBytes(4, 4)
                            .record(0, 0, 120)
                            .record(1, 120, 120) // no growth
                            .record(2, 240, 60)  // a drop still becomes the new base
                            .record(3, 300, 90)
                            .decode(m_monday);
    ASSERT_EQ(phases.size(), 2u);
    EXPECT_DOUBLE_EQ(phases[0].seconds, 2 * 3600.0);
    EXPECT_EQ(phases[1].start, utcInstant(2016, 1, 4, 14));
    EXPECT_DOUBLE_EQ(phases[1].seconds, 30 * 60.0);
}

TEST_F(MPPTimephasedWorkDecoderTest, GrowthThatVanishesInSecondsMakesNoPhase) {
    const double smallestWork = std::numeric_limits<double>::denorm_min();
    EXPECT_TRUE(TimephasedBytes(1, 1).storedRecord(0, 0, smallestWork).decode(m_monday).empty());
}

TEST_F(MPPTimephasedWorkDecoderTest, DecodingEndsAtTheLastWholeRecord) {
    const TimephasedBytes block = TimephasedBytes(5, 2).record(0, 0, 60).record(1, 60, 120);
    EXPECT_EQ(block.decode(m_monday).size(), 2u);
    EXPECT_EQ(block.decode(m_monday, 40 + 28 + 27).size(), 1u);
    EXPECT_TRUE(block.decode(m_monday, 40 + 27).empty());
    EXPECT_TRUE(block.decode(m_monday, 1).empty());
}

TEST_F(MPPTimephasedWorkDecoderTest, CountsBelowOneAndNegativeOffsetsGiveNoPhases) {
    EXPECT_TRUE(TimephasedBytes(0, 1).record(0, 0, 60).decode(m_monday).empty());
    EXPECT_TRUE(TimephasedBytes(-3, 1).record(0, 0, 60).decode(m_monday).empty());
    const auto phases = TimephasedBytes(2, 2).record(0, 0, 60).record(1, -60, 120).decode(m_monday);
    EXPECT_EQ(phases.size(), 1u);
}

TEST_F(MPPTimephasedWorkDecoderTest, BlocksAskingForEndlessWalksAreCutShort) {
    // Work that jumps between nothing and centuries would make a phase at every other record.
    constexpr size_t kRecords = 2000;
    TimephasedBytes block(static_cast<int16_t>(kRecords), kRecords);
    for (size_t index = 0; index < kRecords; ++index) {
        block.record(index, 0, index % 2 == 0 ? 0.0 : 1e8);
    }
    EXPECT_LT(block.decode(m_monday).size(), kRecords / 4);
}

} // namespace
