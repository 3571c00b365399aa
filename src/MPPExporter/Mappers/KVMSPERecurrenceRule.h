#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// A recurrence rule of the iCalendar kind on whole days, as the import writes them on repeated
// calendar events: FREQ of DAILY, WEEKLY, MONTHLY or YEARLY, with INTERVAL, COUNT, UNTIL, BYDAY (an
// ordinal such as 1WE or -1FR within a month), BYMONTHDAY (negative from the month's end), BYMONTH and
// WKST. Weeks start on the WKST day, Monday by default.
class KVMSPERecurrenceRule {
public:
    using Day = std::chrono::sys_days;

    // None for a text with a part this rule doesn't know (BYSETPOS, hours, ...), without a frequency,
    // or with a value out of range; an ordinal BYDAY is known only within a month.
    static std::optional<KVMSPERecurrenceRule> initWithString(const std::string& text);

    // The days of the series that starts on `first`, in order: those the rule selects from `first` to
    // `last` and UNTIL, at most COUNT and `limit` of them. A `first` the rule doesn't select is no
    // occurrence. A weekly series with a count is counted back from `last`, its last occurrence. The
    // periods looked at are bounded too, so a rule that selects nothing ends.
    std::vector<Day> occurrences(Day first, Day last, size_t limit) const;

private:
    enum class Frequency { daily, weekly, monthly, yearly };
    struct WeekdayEntry {
        unsigned weekday; // 0 Sunday to 6, as std::chrono::weekday::c_encoding
        int ordinal;      // 0 for every such day of the period
    };

    bool parsePart(const std::string& name, const std::string& value);
    // The days the rule selects in the period that starts on `periodStart`, sorted, before the
    // series' bounds.
    std::vector<Day> daysOfPeriod(Day periodStart, Day first) const;
    std::vector<Day> weeklyBackwards(Day first, Day end, size_t most) const;
    std::vector<Day> daysOfMonth(std::chrono::year_month month, Day first) const;
    bool selectsMonth(std::chrono::month month) const;
    bool selectsWeekday(std::chrono::weekday weekday) const;
    bool selectsMonthDay(std::chrono::year_month_day date) const;

    std::optional<Frequency> _frequency;
    int64_t _interval = 1;
    std::optional<int64_t> _count;
    std::optional<Day> _until;
    std::vector<WeekdayEntry> _byDay;
    std::vector<int> _byMonthDay;
    std::vector<unsigned> _byMonth;
    std::chrono::weekday _weekStart = std::chrono::Monday;
};
