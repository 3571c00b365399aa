#include "MPPCommon/date/DateTestSupport.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/Mapper/utilities/KVMSPIUtilities.h"

#include <gtest/gtest.h>

namespace {

using Utilities = KVMSPIUtilities;

struct ParseCase {
    const char* text;
    TVCalendarUnits flags;
    bool isUTC;
    int64_t zoneHour;
    int64_t zoneMinute;
};

TEST(KVMSPIUtilitiesParseTest, FlagsAndZoneOfIsoTexts) {
    const ParseCase cases[] = {
        {"2024-01-15", kMSPCDateUnits, true, 0, 0},
        {"2024-01-15T08:00:00", kMSPCDateTimeUnits, true, 0, 0},
        {"2024-01-15T08:00:00Z", kMSPCDateTimeUnits | kMSPCUnitUTC, true, 0, 0},
        {"2024-01-15T08:00:00+01:00", kMSPCDateTimeUnits | 0x600000, false, 1, 0},
        {"2024-01-15T08:00:00+00:00", kMSPCDateTimeUnits | 0x600000, true, 0, 0},
        {"2024-01-15T08:00:00-05:30", kMSPCDateTimeUnits | 0x600000, false, -5, 30},
        {"2024-01-15T08:00:00.123Z", kMSPCDateTimeUnits | kMSPCUnitUTC, true, 0, 0},
        // A fractional second followed by an offset loses the offset.
        {"2024-01-15T08:00:00.123+05:30", kMSPCDateTimeUnits, true, 0, 0},
        {"08:30:15", kMSPCTimeUnits, true, 0, 0},
        {"2024--15", kTVCalendarUnitYear | kTVCalendarUnitDay, true, 0, 0},
        {"no date", 0, true, 0, 0},
        {"", kMSPCParseFailed, true, 0, 0},
    };
    for (const ParseCase& c : cases) {
        MSPCDateComponents components;
        EXPECT_EQ(Utilities::updateDateTimeComponents(components, c.text), c.flags) << c.text;
        EXPECT_EQ(components.isUTC(), c.isUTC) << c.text;
        EXPECT_EQ(components.timeZoneHour(), c.zoneHour) << c.text;
        EXPECT_EQ(components.timeZoneMinute(), c.zoneMinute) << c.text;
    }
    MSPCDateComponents negative;
    Utilities::updateDateTimeComponents(negative, "-2024-01-15");
    EXPECT_EQ(negative.year, 2024);
    // A date and a time must be joined by "T".
    MSPCDateComponents spaced;
    EXPECT_THROW(Utilities::updateDateTimeComponents(spaced, "2024-01-15 08:00:00"), TVException);
}

TEST(KVMSPIUtilitiesParseTest, TextsRenderBackAsTheyWere) {
    for (const char* text : {"2024-01-15", "2024-01-15T08:00:00", "2024-01-15T08:00:00Z",
                             "2024-01-15T08:00:00+05:30", "2024-01-15T08:00:00-05:00", "08:30:15"}) {
        MSPCDateComponents components;
        const TVCalendarUnits flags = Utilities::updateDateTimeComponents(components, text);
        EXPECT_EQ(Utilities::stringFromComponents(components, flags), text);
    }
    MSPCDateComponents components;
    EXPECT_FALSE(Utilities::stringFromComponents(components, kMSPCParseFailed));
    // Negative half-hour zones print the minus sign on both fields.
    components.setIsUTC(false);
    components.setTimeZoneHour(-3);
    components.setTimeZoneMinute(-30);
    EXPECT_EQ(Utilities::stringFromComponents(components, kMSPCTimeZoneUnits), "-03:-30");
}

TEST(KVMSPIUtilitiesParseTest, KindsOfText) {
    EXPECT_TRUE(Utilities::isMspdiDateTime("2024-01-15T08:00:00"));
    EXPECT_FALSE(Utilities::isMspdiDateTime("2024-01-15T08:00:00Z"));
    EXPECT_TRUE(Utilities::isTvnxDateTime("2024-01-15T08:00:00-05:00"));
    EXPECT_FALSE(Utilities::isTvnxDateTime("2024-01-15"));
    EXPECT_FALSE(Utilities::isIsoiDateTime("no date"));
    EXPECT_FALSE(Utilities::isIsoiDateTime(""));
    EXPECT_FALSE(Utilities::componentsFromISODateTime("no date"));
    EXPECT_TRUE(Utilities::isMspdiDuration("PT8H0M0S"));
    EXPECT_FALSE(Utilities::isMspdiDuration("P1D"));
    EXPECT_FALSE(Utilities::isMspdiDuration(""));
}

// Wall clocks from 1984 to 2049, with both sides of New York's daylight-saving changes.
const char* const kWallClocks[] = {
    "1984-01-01T00:00:00", "1995-10-29T00:59:59", "1995-10-29T02:00:00", "2000-02-29T12:00:00",
    "2024-03-10T01:59:59", "2024-03-10T03:00:00", "2024-11-03T00:59:59", "2024-11-03T02:00:00",
    "2037-07-04T08:30:00", "2049-12-31T23:59:59",
};

using KVMSPIUtilitiesZoneTest = ZoneTest;

TEST_P(KVMSPIUtilitiesZoneTest, WallClockKeepsThroughBundleAndFileForms) {
    for (const char* text : kWallClocks) {
        int y, mo, d, h, mi, s;
        ASSERT_EQ(std::sscanf(text, "%d-%d-%dT%d:%d:%d", &y, &mo, &d, &h, &mi, &s), 6);
        const TVDate instant = localInstant(y, mo, d, h, mi, s);
        const long offset = localOffsetSeconds(instant);

        const auto tvnx = Utilities::mspdiToTvnxDateTime(text);
        ASSERT_TRUE(tvnx);
        const std::string zone =
            offset == 0 ? "Z" : stringWithFormat("%+03ld:%02ld", offset / 3600, offset / 60 % 60);
        EXPECT_EQ(*tvnx, text + zone);
        EXPECT_EQ(Utilities::tvnxToMppDateTime(*tvnx), instant) << *tvnx;
        EXPECT_EQ(Utilities::mspdiToMppDateTime(text), instant) << text;
        EXPECT_EQ(Utilities::mppToTvnxDateTime(instant), *tvnx);
        EXPECT_EQ(Utilities::tvnxToMspdiDateTime(*tvnx), text);
        EXPECT_EQ(Utilities::mppToMspdiDateTime(instant), text);
    }
}

TEST_P(KVMSPIUtilitiesZoneTest, DateOnlyKeepsItsDayThroughBundleAndFileForms) {
    for (const char* day : {"1984-01-01", "2024-03-10", "2024-11-03", "2049-12-31"}) {
        int y, mo, d;
        ASSERT_EQ(std::sscanf(day, "%d-%d-%d", &y, &mo, &d), 3);
        const auto tvnx = Utilities::mspdiToTvnxDateTime(day);
        ASSERT_TRUE(tvnx);
        EXPECT_EQ(Utilities::tvnxToMppDateTime(*tvnx), localInstant(y, mo, d)) << *tvnx;
        const auto back = Utilities::mppToTvnxDateTime(localInstant(y, mo, d));
        ASSERT_TRUE(back);
        EXPECT_EQ(Utilities::tvnxToMspdiDateOnly(*back), day);
        EXPECT_EQ(Utilities::mspdiToMppDateTime(day), localInstant(y, mo, d));
    }
}

TEST_P(KVMSPIUtilitiesZoneTest, BundleTextsMoveToTheLocalWallClock) {
    // 22:30 UTC on the 15th: the 15th in New York and UTC, the 16th in Kolkata.
    const TVDate instant = utcInstant(2024, 1, 15, 22, 30);
    const long offset = localOffsetSeconds(instant);
    for (const char* text :
         {"2024-01-15T22:30:00Z", "2024-01-16T04:00:00+05:30", "2024-01-15T17:30:00-05:00"}) {
        EXPECT_EQ(Utilities::tvnxToMppDateTime(text), instant) << text;
        const auto local = Utilities::tvnxToMspdiDateTime(text);
        ASSERT_TRUE(local);
        MSPCDateComponents fields;
        Utilities::updateDateTimeComponents(fields, *local);
        EXPECT_EQ(
            utcInstant(fields.year, fields.month, fields.day, fields.hour, fields.minute, fields.second),
            instant.addingSeconds(offset))
            << text;
        const std::string day = local->substr(0, 10);
        EXPECT_EQ(Utilities::tvnxToMspdiDateOnly(text), day);
        EXPECT_EQ(Utilities::tvnxToMspdiDateStartTime(text), day + "T00:00:00");
        EXPECT_EQ(Utilities::tvnxToMspdiDateEndTime(text), day + "T23:59:59");
        EXPECT_EQ(Utilities::tvnxToMspdiDateTime(text, kTVCalendarUnitHour | kTVCalendarUnitMinute),
                  local->substr(11, 5) + ":");
    }
    // A bundle text without zone is read in the system zone.
    EXPECT_EQ(Utilities::tvnxToMppDateTime("2024-01-15T22:30:00"), localInstant(2024, 1, 15, 22, 30));
}

INSTANTIATE_TEST_SUITE_P(Zones, KVMSPIUtilitiesZoneTest, ::testing::ValuesIn(kTestZones));

TEST(KVMSPIUtilitiesTest, LabelAddedOrRemovedAtAnHourEast) {
    SystemZoneScope zone("Europe/Paris");
    EXPECT_EQ(Utilities::mspdiToTvnxDateTime("2024-01-15T08:00:00"), "2024-01-15T08:00:00+01:00");
    EXPECT_EQ(Utilities::tvnxToMspdiDateTime("2024-01-15T07:00:00Z"), "2024-01-15T08:00:00");
    EXPECT_EQ(Utilities::mspdiToTvnxDateTime("2024-07-15T08:00:00Z"), "2024-07-15T08:00:00Z");
    // The caller's calendar gives the wall clock; the label stays the system zone's.
    EXPECT_EQ(Utilities::mppToTvnxDateTime(utcInstant(2024, 7, 1, 12), TVCalendar(TVTimeZone::gmt())),
              "2024-07-01T12:00:00+02:00");
}

TEST(KVMSPIUtilitiesTest, TimesComparisonsAndMisfits) {
    SystemZoneScope zone("UTC");
    EXPECT_EQ(Utilities::mspdiToTvnxTimeOnly("08:30:15"), "30615");
    EXPECT_EQ(Utilities::mspdiToTvnxTimeOnly("2024-01-15T01:00:00"), "3600");
    EXPECT_FALSE(Utilities::mspdiToTvnxTimeOnly(""));
    EXPECT_EQ(Utilities::mspdiDateTimeToString("2024-01-15T08:00:00"), "2024-01-15 08:00:00 +0000");

    EXPECT_EQ(Utilities::compareMspdiDateTime("", "2024-01-15T08:00:00"), -1);
    EXPECT_EQ(Utilities::compareMspdiDateTime("2024-01-15", ""), 1);
    EXPECT_EQ(Utilities::compareMspdiDateTime("", ""), 0);
    EXPECT_EQ(Utilities::compareMspdiDateTime("2024-01-15T08:00:00", "2024-01-15T07:59:59"), 1);
    EXPECT_EQ(Utilities::compareMspdiDateTime("2024-01-15", "2024-01-15T00:00:00"), 0);

    EXPECT_THROW(Utilities::mspdiToMppDateTime("2024-01-15T08:00:00Z"), TVException);
    EXPECT_THROW(Utilities::mspdiToTvnxDateTime("garbage"), TVException);
    EXPECT_THROW(Utilities::tvnxToMspdiDateTime("garbage"), TVException);
    // Offsets and fields that name no instant.
    EXPECT_THROW(Utilities::tvnxToMppDateTime("2024-01-15T08:00:00+99:00"), TVException);
    EXPECT_THROW(Utilities::tvnxToMppDateTime("99999999999-01-15T08:00:00+01:00"), TVException);
    EXPECT_THROW(Utilities::tvnxToMspdiDateTime("2024-01-15T08:00:00+99999999999:00"), TVException);
}

} // namespace
