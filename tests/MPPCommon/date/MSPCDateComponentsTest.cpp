#include "MPPCommon/date/MSPCDateComponents.h"

#include "MPPCommon/date/DateTestSupport.h"

#include <gtest/gtest.h>

namespace {

MSPCDateComponents wallClock(int64_t year, int64_t month, int64_t day, int64_t hour, int64_t minute = 0) {
    MSPCDateComponents components;
    components.year = year;
    components.month = month;
    components.day = day;
    components.hour = hour;
    components.minute = minute;
    components.second = 0;
    return components;
}

using MSPCDateComponentsZoneTest = ZoneTest;

TEST_P(MSPCDateComponentsZoneTest, ForcingTheSystemZoneLabelsWithoutMoving) {
    for (const auto& [month, day] :
         {std::pair{1, 15}, std::pair{7, 15}, std::pair{3, 10}, std::pair{11, 3}}) {
        MSPCDateComponents components = wallClock(2024, month, day, 12);
        ASSERT_EQ(components.forceSystemTimezoneforDate(std::nullopt), kMSPCAllUnits);
        const long offset = localOffsetSeconds(localInstant(2024, month, day, 12));
        EXPECT_EQ(components.hour, 12);
        EXPECT_EQ(components.day, day);
        EXPECT_EQ(components.timeZoneHour(), offset / 3600);
        EXPECT_EQ(components.timeZoneMinute(), offset / 60 % 60);
        EXPECT_EQ(components.isUTC(), offset == 0);
    }
}

TEST_P(MSPCDateComponentsZoneTest, ConvertingToTheSystemZoneMovesTheWallClock) {
    // 2024-01-15 22:30 UTC is the 15th in New York and already the 16th in Kolkata.
    MSPCDateComponents components = wallClock(2024, 1, 15, 22, 30);
    ASSERT_EQ(components.convertToSystemTimezone(), kMSPCAllUnits);
    const TVDate instant = utcInstant(2024, 1, 15, 22, 30);
    const long offset = localOffsetSeconds(instant);
    const TVDate local = instant.addingSeconds(offset);
    EXPECT_EQ(
        utcInstant(components.year, components.month, components.day, components.hour, components.minute),
        local);
    EXPECT_EQ(components.timeZoneHour() * 3600 + components.timeZoneMinute() * 60, offset);

    ASSERT_EQ(components.convertToUTC(), kMSPCAllUnits);
    EXPECT_EQ(components.day, 15);
    EXPECT_EQ(components.hour, 22);
    EXPECT_EQ(components.minute, 30);
    EXPECT_TRUE(components.isUTC());
}

INSTANTIATE_TEST_SUITE_P(Zones, MSPCDateComponentsZoneTest, ::testing::ValuesIn(kTestZones));

TEST(MSPCDateComponentsTest, ConvertingBetweenOffsetsKeepsTheInstant) {
    // 07:00 at UTC-03:30 is 10:30 UTC, 16:00 at UTC+05:30.
    MSPCDateComponents components = wallClock(2024, 12, 31, 7);
    components.setIsUTC(false);
    components.setTimeZoneHour(-3);
    components.setTimeZoneMinute(-30);
    ASSERT_EQ(components.convertToTimeZoneForSecondsFromGMT(19800), kMSPCAllUnits);
    EXPECT_EQ(components.hour, 16);
    EXPECT_EQ(components.minute, 0);
    EXPECT_EQ(components.timeZoneHour(), 5);
    EXPECT_EQ(components.timeZoneMinute(), 30);
    EXPECT_FALSE(components.isUTC());
    // Across the end of the year.
    ASSERT_EQ(components.convertToTimeZoneForSecondsFromGMT(14 * 3600), kMSPCAllUnits);
    EXPECT_EQ(components.year, 2025);
    EXPECT_EQ(components.day, 1);
    EXPECT_EQ(components.hour, 0);
    EXPECT_EQ(components.minute, 30);
}

TEST(MSPCDateComponentsTest, ImpossibleZonesAndFieldsFail) {
    MSPCDateComponents components = wallClock(2024, 1, 1, 0);
    components.setIsUTC(false);
    components.setTimeZoneHour(INT64_MAX);
    EXPECT_EQ(components.convertToUTC(), kMSPCParseFailed);
    components.setTimeZoneHour(0);
    EXPECT_EQ(components.convertToTimeZoneForSecondsFromGMT(30 * 3600), kMSPCParseFailed);
    MSPCDateComponents noInstant = wallClock(INT64_MAX - 1, 1, 1, 0);
    EXPECT_EQ(noInstant.convertToSystemTimezone(), kMSPCParseFailed);
    EXPECT_EQ(noInstant.forceSystemTimezoneforDate(std::nullopt), kMSPCParseFailed);
}

} // namespace
