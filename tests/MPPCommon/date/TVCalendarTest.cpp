#include "MPPCommon/date/TVCalendar.h"

#include "MPPCommon/date/DateExtensions.h"
#include "MPPCommon/date/DateTestSupport.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace {

TVDateComponents fields(int64_t year, int64_t month, int64_t day, int64_t hour = 0, int64_t minute = 0,
                        int64_t second = 0) {
    TVDateComponents components;
    components.year = year;
    components.month = month;
    components.day = day;
    components.hour = hour;
    components.minute = minute;
    components.second = second;
    return components;
}

using SystemZoneTest = ZoneTest;

TEST_P(SystemZoneTest, SystemZoneFollowsTZAndAgreesWithTheCLibrary) {
    const TVTimeZone zone = TVTimeZone::systemTimeZone();
    EXPECT_EQ(zone.name(), GetParam());
    for (const TVDate date :
         {utcInstant(1984, 1, 1), utcInstant(2024, 7, 1, 12), utcInstant(2049, 12, 31, 23)}) {
        EXPECT_EQ(zone.secondsFromGMT(date), localOffsetSeconds(date)) << date.seconds;
    }
}

TEST_P(SystemZoneTest, CalendarMakesTheLocalInstantOfFieldsAndBack) {
    const TVCalendar calendar;
    for (int year : {1984, 2000, 2024, 2049}) {
        for (int month : {1, 3, 7, 11}) {
            const auto date = calendar.dateFromComponents(fields(year, month, 15, 8, 30, 5));
            ASSERT_TRUE(date);
            EXPECT_EQ(*date, localInstant(year, month, 15, 8, 30, 5));
            const auto back =
                calendar.components(kTVCalendarUnitYear | kTVCalendarUnitMonth | kTVCalendarUnitDay |
                                        kTVCalendarUnitHour | kTVCalendarUnitMinute | kTVCalendarUnitSecond,
                                    *date);
            ASSERT_TRUE(back);
            EXPECT_EQ(back->year, year);
            EXPECT_EQ(back->month, month);
            EXPECT_EQ(back->day, 15);
            EXPECT_EQ(back->hour, 8);
            EXPECT_EQ(back->minute, 30);
            EXPECT_EQ(back->second, 5);
            EXPECT_EQ(back->weekday, TVDateComponents::kUndefined);
        }
    }
    EXPECT_EQ(initWithDateComponents(fields(2024, 2, 29, 23, 59, 59)), localInstant(2024, 2, 29, 23, 59, 59));
}

INSTANTIATE_TEST_SUITE_P(Zones, SystemZoneTest, ::testing::ValuesIn(kTestZones));

TEST(TVCalendarTest, LenientFieldsAndWeekFields) {
    const TVCalendar calendar(TVTimeZone::gmt());
    // Month 13 is January of the next year; day 0 the last day of the month before.
    EXPECT_EQ(calendar.dateFromComponents(fields(2023, 13, 1)), utcInstant(2024, 1, 1));
    EXPECT_EQ(calendar.dateFromComponents(fields(2024, 3, 0)), utcInstant(2024, 2, 29));
    // 2024-03-10 is the second Sunday of March, in the first quarter.
    const auto week = calendar.components(kTVCalendarUnitWeekday | kTVCalendarUnitWeekdayOrdinal |
                                              kTVCalendarUnitQuarter | kTVCalendarUnitEra,
                                          utcInstant(2024, 3, 10, 12));
    ASSERT_TRUE(week);
    EXPECT_EQ(week->weekday, 1);
    EXPECT_EQ(week->weekdayOrdinal, 2);
    EXPECT_EQ(week->quarter, 1);
    EXPECT_EQ(week->era, 1);
}

TEST(TVCalendarTest, FieldsThatNameNoInstantGiveNone) {
    const TVCalendar calendar(TVTimeZone::gmt());
    EXPECT_FALSE(calendar.dateFromComponents(fields(std::numeric_limits<int64_t>::max() - 1, 1, 1)));
    EXPECT_FALSE(calendar.dateFromComponents(fields(2024, std::numeric_limits<int64_t>::min(), 1)));
    EXPECT_FALSE(calendar.dateFromComponents(fields(std::numeric_limits<int32_t>::max(), 1, 1)));
    EXPECT_FALSE(calendar.components(kTVCalendarUnitYear, TVDate{std::nan("")}));
    EXPECT_FALSE(calendar.components(kTVCalendarUnitYear, TVDate{INFINITY}));
    // The widest fields still name an instant, far out.
    const auto far =
        calendar.dateFromComponents(fields(1000000, 1000000, 1000000, 1000000, 1000000, 1000000));
    ASSERT_TRUE(far);
    EXPECT_GT(far->seconds, 3.0e13);
}

} // namespace
