#include "MPPExporter/MPPObjects/KVMPPCalendar.h"

#include "MPPCommon/date/TVCalendar.h"

#include <algorithm>
#include <array>

namespace {

struct MinuteRange {
    int64_t start;
    int64_t end;
};
constexpr std::array<MinuteRange, 2> kFixedRanges = {{{8 * 60, 12 * 60}, {13 * 60, 17 * 60}}};
constexpr int64_t kMinutesPerDay = 1440;
constexpr int64_t kSunday = 1;
constexpr int64_t kSaturday = 7;
// The span an MPP date can hold (its day number has 16 bits); longer spans come only from corrupt
// dates and are cut there.
constexpr int64_t kMaxDays = 65536;

int64_t fixedWorkingTime(int64_t fromMinute, int64_t toMinute) {
    int64_t minutes = 0;
    for (const MinuteRange& range : kFixedRanges) {
        minutes += KVMPPCalendar::workingTimeFromTime(fromMinute, toMinute, range.start, range.end);
    }
    return minutes;
}

// Days since 1970-01-01 of a Gregorian date.
int64_t dayNumber(int64_t year, int64_t month, int64_t day) {
    year -= month <= 2 ? 1 : 0;
    const int64_t era = (year >= 0 ? year : year - 399) / 400;
    const int64_t yearOfEra = year - era * 400;
    const int64_t dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    const int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146097 + dayOfEra - 719468;
}

} // namespace

int64_t KVMPPCalendar::workingTimeFromTime(int64_t fromMinute, int64_t toMinute, int64_t rangeStart,
                                           int64_t rangeEnd) {
    return std::max<int64_t>(0, std::min(rangeEnd, toMinute) - std::max(rangeStart, fromMinute));
}

int64_t KVMPPCalendar::workingTimeFromDate(TVDate fromDate, TVDate toDate) {
    const TVCalendar calendar;
    constexpr TVCalendarUnits kUnits = kTVCalendarUnitYear | kTVCalendarUnitMonth | kTVCalendarUnitDay |
                                       kTVCalendarUnitWeekday | kTVCalendarUnitHour | kTVCalendarUnitMinute;
    const auto from = calendar.components(kUnits, fromDate);
    const auto to = calendar.components(kUnits, toDate);
    if (!from || !to) {
        return 0;
    }
    // The days between are counted by the wall-clock dates, not by elapsed 24-hour spans: those
    // would lose a whole day of work wherever the end's clock is earlier than the start's (12:00 on
    // Monday to 10:00 on Tuesday would count nothing).
    const int64_t days =
        std::clamp(dayNumber(to->year, to->month, to->day) - dayNumber(from->year, from->month, from->day),
                   -kMaxDays, kMaxDays);
    const int64_t startMinute = from->hour * 60 + from->minute;
    const int64_t endMinute = to->hour * 60 + to->minute;
    const int64_t dayLength = fixedWorkingTime(0, kMinutesPerDay);

    int64_t minutes = fixedWorkingTime(startMinute, days != 0 ? kMinutesPerDay : endMinute);
    if (days >= 2) {
        // The days in between, from the weekday after the start: whole weeks hold five working days.
        const int64_t between = days - 1;
        minutes += between / 7 * 5 * dayLength;
        int64_t weekday = from->weekday;
        for (int64_t i = 0; i < between % 7; ++i) {
            weekday = weekday == kSaturday ? kSunday : weekday + 1;
            if (weekday != kSunday && weekday != kSaturday) {
                minutes += dayLength;
            }
        }
    }
    if (days > 0) {
        minutes += fixedWorkingTime(0, endMinute);
    }
    return minutes;
}
