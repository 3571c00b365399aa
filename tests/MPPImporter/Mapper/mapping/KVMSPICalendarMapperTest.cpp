#include "MPPImporter/Mapper/mapping/KVMSPICalendarMapper.h"

#include "MPPCommon/date/DateTestSupport.h"

#include <gtest/gtest.h>

namespace {

using CalendarMapper = KVMSPICalendarMapper;

std::string eventsText(const CalendarMapper::Events& events) {
    std::string text;
    for (const auto& event : events) {
        text += event->attributeForName("start")->stringValue().value_or("").substr(0, 16) + "/" +
                event->attributeForName("end")->stringValue().value_or("").substr(0, 16);
        if (const auto rule = event->attributeForName("rrule")) {
            text += " " + rule->stringValue().value_or("");
        }
        text += ";";
    }
    return text;
}

TEST(KVMSPICalendarMapperTest, RecurrenceRulesOfEachRecurrenceType) {
    const struct {
        int32_t freq;
        std::vector<int32_t> parameters;
        int32_t count;
        std::string rule;
    } rows[] = {
        {1, {1}, 1, ""},
        {7, {}, 5, ""},
        {7, {2}, 5, "FREQ=DAILY;INTERVAL=2;COUNT=5"},
        {6, {1, 0b0001010}, 4, "FREQ=WEEKLY;INTERVAL=1;COUNT=4;BYDAY=MO,WE"},
        {6, {2, 0b1000001}, 3, "FREQ=WEEKLY;INTERVAL=2;COUNT=3;BYDAY=SU,SA"},
        {6, {1, 0b10000000}, 3, "FREQ=WEEKLY;INTERVAL=1;COUNT=3"},
        {5, {1, 4, 5}, 6, "FREQ=MONTHLY;INTERVAL=1;COUNT=6;BYDAY=-1FR"},
        {5, {3, 1, 2}, 2, "FREQ=MONTHLY;INTERVAL=3;COUNT=2;BYDAY=2TU"},
        {4, {1, 15}, 12, "FREQ=MONTHLY;INTERVAL=1;COUNT=12;BYMONTHDAY=15"},
        {3, {10, 3, 4}, 5, "FREQ=YEARLY;INTERVAL=1;COUNT=5;BYMONTH=11;BYDAY=4TH"},
        {2, {1, 0, 1}, 10, "FREQ=YEARLY;INTERVAL=1;COUNT=10;BYMONTH=1;BYMONTHDAY=1"},
        {2, {3, 11, 25}, 2, "FREQ=YEARLY;INTERVAL=1;COUNT=2;BYMONTH=12;BYMONTHDAY=25"},
        {8, {1}, 1, ""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(CalendarMapper::reoccurenceRule(row.freq, row.parameters, row.count), row.rule) << row.freq;
    }
}

TEST(KVMSPICalendarMapperTest, FirstOccurrencesOfRecurringExceptions) {
    // 2024-01-01 is a Monday.
    const struct {
        const char* what;
        int32_t freq;
        std::vector<int32_t> parameters;
        TVDate from, first;
    } rows[] = {
        {"daily starts where it starts", 7, {1}, utcInstant(2024, 1, 1), utcInstant(2024, 1, 1)},
        {"weekly, a later day of the mask: the next Sunday",
         6,
         {1, 0b0001010},
         utcInstant(2024, 1, 1),
         utcInstant(2024, 1, 7)},
        {"weekly, Monday alone: the next Monday",
         6,
         {1, 0b0000010},
         utcInstant(2024, 1, 1),
         utcInstant(2024, 1, 8)},
        {"weekly every second week from a Wednesday, Monday alone",
         6,
         {2, 0b0000010},
         utcInstant(2024, 1, 3),
         utcInstant(2024, 1, 15)},
        {"monthly on the 15th, from the 3rd",
         4,
         {1, 15},
         utcInstant(2024, 1, 3, 9),
         utcInstant(2024, 1, 15, 9)},
        {"monthly on the 15th, from the 15th", 4, {1, 15}, utcInstant(2024, 1, 15), utcInstant(2024, 1, 15)},
        {"monthly on the 2nd every 2 months, from the 20th",
         4,
         {2, 2},
         utcInstant(2024, 1, 20),
         utcInstant(2024, 3, 2)},
        {"monthly on the last Friday", 5, {1, 4, 5}, utcInstant(2024, 1, 3), utcInstant(2024, 1, 26)},
        {"monthly on the first Monday, past it",
         5,
         {1, 0, 1},
         utcInstant(2024, 1, 3),
         utcInstant(2024, 2, 5)},
        {"yearly on 1 January, from 2 January", 2, {1, 0, 1}, utcInstant(2024, 1, 2), utcInstant(2025, 1, 1)},
        {"yearly on 25 December", 2, {1, 11, 25}, utcInstant(2024, 1, 2), utcInstant(2024, 12, 25)},
        {"yearly on the fourth Thursday of November",
         3,
         {10, 3, 4},
         utcInstant(2024, 1, 2),
         utcInstant(2024, 11, 28)},
        {"yearly on the last Monday of May, past it",
         3,
         {4, 4, 1},
         utcInstant(2024, 6, 1),
         utcInstant(2025, 5, 26)},
        {"without parameters", 4, {}, utcInstant(2024, 1, 3), utcInstant(2024, 1, 3)},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(CalendarMapper::firstOcurrenceDate(row.freq, row.parameters, row.from).seconds,
                  row.first.seconds)
            << row.what;
    }
}

TEST(KVMSPICalendarMapperTest, ExceptionsBecomeOvertimeAndTimeOff) {
    CalendarMapper::Events overtime;
    CalendarMapper::Events offtime;
    CalendarMapper::addEventsFrom(utcInstant(2024, 3, 4), utcInstant(2024, 3, 4, 23, 59), {}, "", overtime,
                                  offtime);
    EXPECT_EQ(eventsText(overtime), "");
    EXPECT_EQ(eventsText(offtime), "2024-03-04T00:00/2024-03-04T23:59;");

    overtime.clear();
    offtime.clear();
    CalendarMapper::addEventsFrom(utcInstant(2024, 3, 4), utcInstant(2024, 3, 8, 23, 59),
                                  {KVMPPCalendarTimeRange::initWithStartTotalMinutes(9 * 60, 12 * 60)},
                                  "FREQ=DAILY;INTERVAL=1;COUNT=5", overtime, offtime);
    EXPECT_EQ(eventsText(overtime), "2024-03-04T09:00/2024-03-08T12:00 FREQ=DAILY;INTERVAL=1;COUNT=5;");
    EXPECT_EQ(eventsText(offtime), "2024-03-04T00:00/2024-03-08T09:00 FREQ=DAILY;INTERVAL=1;COUNT=5;"
                                   "2024-03-04T12:00/2024-03-08T23:59 FREQ=DAILY;INTERVAL=1;COUNT=5;");
}

TEST(KVMSPICalendarMapperTest, GapsOfADayBetweenAvailabilityPeriodsAreTimeOff) {
    const auto period = [](TVDate start, TVDate end) {
        return MPPResourceAvailabilityPeriod{start, end, 1.0};
    };
    CalendarMapper::Events offtime;
    CalendarMapper::addCalendarEventFromAvailability({period(utcInstant(2024, 1, 1), utcInstant(2024, 1, 5))},
                                                     offtime);
    CalendarMapper::addCalendarEventFromAvailability(
        {period(utcInstant(2024, 1, 1), utcInstant(2024, 1, 5)),
         period(utcInstant(2024, 1, 5, 23), utcInstant(2024, 1, 8)),
         period(utcInstant(2024, 1, 9), utcInstant(2024, 2, 1))},
        offtime);
    EXPECT_EQ(eventsText(offtime), "2024-01-08T00:00/2024-01-09T00:00;");
}

} // namespace
