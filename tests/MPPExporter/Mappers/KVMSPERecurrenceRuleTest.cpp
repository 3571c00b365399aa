#include "MPPExporter/Mappers/KVMSPERecurrenceRule.h"

#include <cstdio>
#include <gtest/gtest.h>

namespace {

using namespace std::chrono;

std::string text(sys_days day) {
    const year_month_day date(day);
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "%04d-%02u-%02u", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
    return buffer;
}

// The occurrences of a rule as "YYYY-MM-DD ..." from `first` to `last`.
std::string occurrences(const std::string& rule, year_month_day first, year_month_day last,
                        size_t limit = 1000) {
    const auto parsed = KVMSPERecurrenceRule::initWithString(rule);
    if (!parsed) {
        return "unreadable";
    }
    std::string days;
    for (const sys_days day : parsed->occurrences(sys_days(first), sys_days(last), limit)) {
        days += (days.empty() ? "" : " ") + text(day);
    }
    return days;
}

TEST(RecurrenceRuleTest, RulesOfEachFrequencySelectTheirDays) {
    const auto end = 2026y / December / 31;
    EXPECT_EQ(occurrences("FREQ=DAILY;INTERVAL=2;COUNT=3", 2026y / February / 2, end),
              "2026-02-02 2026-02-04 2026-02-06");
    // A first day the rule doesn't select is no occurrence; every other week counts from the week
    // (Monday to Sunday) of the first day, or with a count back from the last day, the last
    // occurrence, as far as the interval and a week before the first day.
    EXPECT_EQ(occurrences("FREQ=WEEKLY;INTERVAL=2;BYDAY=MO,WE", 2026y / February / 1, 2026y / February / 25),
              "2026-02-09 2026-02-11 2026-02-23 2026-02-25");
    EXPECT_EQ(
        occurrences("FREQ=WEEKLY;INTERVAL=2;COUNT=4;BYDAY=TU", 2001y / January / 7, 2001y / February / 13),
        "2001-01-02 2001-01-16 2001-01-30 2001-02-13");
    EXPECT_EQ(occurrences("FREQ=WEEKLY;COUNT=2", 2026y / February / 4, 2026y / February / 11),
              "2026-02-04 2026-02-11");
    // The first Wednesday and the last Friday of a month; the 31st skips the shorter months.
    EXPECT_EQ(occurrences("FREQ=MONTHLY;INTERVAL=1;COUNT=3;BYDAY=1WE", 2026y / February / 4, end),
              "2026-02-04 2026-03-04 2026-04-01");
    EXPECT_EQ(occurrences("FREQ=MONTHLY;COUNT=3;BYDAY=-1FR", 2026y / January / 30, end),
              "2026-01-30 2026-02-27 2026-03-27");
    EXPECT_EQ(occurrences("FREQ=MONTHLY;INTERVAL=1;COUNT=4;BYMONTHDAY=31", 2026y / January / 31, end),
              "2026-01-31 2026-03-31 2026-05-31 2026-07-31");
    EXPECT_EQ(occurrences("FREQ=MONTHLY;INTERVAL=3;COUNT=2;BYMONTHDAY=-1", 2026y / January / 31, end),
              "2026-01-31 2026-04-30");
    // The fourth Thursday of November; the 29th of February every leap year.
    EXPECT_EQ(occurrences("FREQ=YEARLY;INTERVAL=1;COUNT=3;BYMONTH=11;BYDAY=4TH", 2026y / November / 26,
                          2030y / December / 31),
              "2026-11-26 2027-11-25 2028-11-23");
    EXPECT_EQ(occurrences("FREQ=YEARLY;COUNT=3;BYMONTH=2;BYMONTHDAY=29", 2024y / February / 29,
                          2040y / December / 31),
              "2024-02-29 2028-02-29 2032-02-29");
    EXPECT_EQ(occurrences("FREQ=DAILY;BYDAY=SA,SU;BYMONTH=2", 2026y / January / 30, 2026y / February / 10),
              "2026-02-01 2026-02-07 2026-02-08");
}

TEST(RecurrenceRuleTest, SeriesEndAtTheirBoundsAndUnknownRulesAreRefused) {
    EXPECT_EQ(occurrences("FREQ=DAILY;UNTIL=20260204T235959Z", 2026y / February / 2, 2026y / February / 28),
              "2026-02-02 2026-02-03 2026-02-04");
    EXPECT_EQ(occurrences("FREQ=DAILY;COUNT=9", 2026y / February / 2, 2026y / February / 3),
              "2026-02-02 2026-02-03");
    EXPECT_EQ(occurrences("FREQ=DAILY;COUNT=0", 2026y / February / 2, 2026y / February / 3),
              "2026-02-02 2026-02-03");
    EXPECT_EQ(occurrences("FREQ=DAILY;COUNT=100000", 2026y / February / 2, 9999y / December / 31, 2),
              "2026-02-02 2026-02-03");
    // Rules that select nothing end, however far their last day.
    EXPECT_EQ(occurrences("FREQ=MONTHLY;BYMONTH=2;BYMONTHDAY=30", 1900y / January / 1, 9999y / December / 31),
              "");
    EXPECT_EQ(occurrences("FREQ=DAILY;INTERVAL=32767;BYMONTH=2;BYMONTHDAY=30", 1900y / January / 1,
                          9999y / December / 31),
              "");
    for (const char* rule : {"", "COUNT=2", "FREQ=HOURLY", "FREQ=DAILY;BYSETPOS=1", "FREQ=WEEKLY;BYDAY=1MO",
                             "FREQ=YEARLY;BYDAY=1MO", "FREQ=MONTHLY;BYDAY=6MO", "FREQ=MONTHLY;BYDAY=0MO",
                             "FREQ=DAILY;INTERVAL=0", "FREQ=DAILY;BYMONTHDAY=32", "FREQ=WEEKLY;BYMONTHDAY=2",
                             "FREQ=DAILY;UNTIL=2026-02-05", "FREQ=DAILY;COUNT=x", "FREQ=DAILY;BYDAY=XX",
                             "FREQ=DAILY;BYMONTH=13", "FREQ"}) {
        EXPECT_EQ(occurrences(rule, 2026y / February / 2, 2026y / February / 3), "unreadable") << rule;
    }
}

} // namespace
