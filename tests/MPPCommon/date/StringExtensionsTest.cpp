#include "MPPCommon/date/StringExtensions.h"

#include "MPPCommon/date/DateExtensions.h"
#include "MPPCommon/date/DateTestSupport.h"

#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace {

TEST(StringExtensionsTest, ClockTextOfTenthsOfMinutes) {
    EXPECT_EQ(initWithDuration(605), "1:00:30");
    EXPECT_EQ(initWithDuration(599), "0:59:54");
    EXPECT_EQ(initWithDuration(600 * 100 + 15), "100:01:30");
    // Negative remainders are held at 0.
    EXPECT_EQ(initWithDuration(-605), "-1:00:00");
}

TEST(StringExtensionsTest, TimeSpansAsClockAndMspdiText) {
    const TVTimeSpan span = ((25 * 60 + 1) * 60 + 1) * kMicrosecondsPerSecond + 999999;
    EXPECT_EQ(initWithTimeSpan(span), "25:01:01");
    EXPECT_EQ(initWithDurationTimeSpan(span), "PT25H01M01S");
    EXPECT_EQ(initWithDurationTimeSpan(0), "PT0H00M00S");
    EXPECT_EQ(initWithDurationTimeSpan(-1), "PT0H00M00S");
    EXPECT_EQ(initWithDurationTimeSpan(INT64_MAX), "PT2562047788H00M54S");
}

TEST(StringExtensionsTest, SecondsAsLogClockText) {
    EXPECT_EQ(hourMinSecFromDuration(3723.9), "01:02:03");
    EXPECT_EQ(hourMinSecFromDuration(100 * 3600), "100:00:00");
    EXPECT_EQ(hourMinSecFromDuration(NAN), "00:00:00");
}

TEST(StringExtensionsTest, BytesAsText) {
    const std::vector<uint8_t> bytes = {'A', 0xE9, 0, 255, 16};
    EXPECT_EQ(initWithBytes(bytes.data(), 2, 0), "A\xC3\xA9");
    EXPECT_EQ(initWithBytes(bytes.data(), bytes.size(), 1), "65233025516");
    EXPECT_EQ(initWithBytes(bytes.data(), bytes.size(), 2), "41e900ff 10");
    EXPECT_EQ(initWithBytes(bytes.data(), bytes.size(), 3), "");
    EXPECT_EQ(initWithBytes(nullptr, 0, 2), "");
}

TEST(StringExtensionsTest, IntegerAtTheStartOfText) {
    EXPECT_EQ(intValue(" -42abc"), -42);
    EXPECT_EQ(intValue("+7"), 7);
    EXPECT_EQ(intValue("12.9"), 12);
    EXPECT_EQ(intValue("x1"), 0);
    EXPECT_EQ(intValue(""), 0);
    EXPECT_EQ(intValue("99999999999999999999999"), INT32_MAX);
    EXPECT_EQ(intValue("-99999999999999999999999"), INT32_MIN);
    EXPECT_EQ(stringByReplacingOccurrencesOfNewline("a\nb\r\n"), "ab\r");
}

using DateExtensionsZoneTest = ZoneTest;

// A file's wall clock is held as a UTC instant: its text must not depend on the machine's zone.
TEST_P(DateExtensionsZoneTest, FileDatesAreWrittenInUTC) {
    EXPECT_EQ(initWithDateTime(utcInstant(2024, 3, 10, 2, 30, 0)), "2024-03-10T02:30:00");
    EXPECT_EQ(initWithDateTime(utcInstant(1984, 1, 1)), "1984-01-01T00:00:00");
    EXPECT_EQ(dateDescription(utcInstant(2049, 12, 31, 23, 59, 59)), "2049-12-31 23:59:59 +0000");
}

INSTANTIATE_TEST_SUITE_P(Zones, DateExtensionsZoneTest, ::testing::ValuesIn(kTestZones));

} // namespace
