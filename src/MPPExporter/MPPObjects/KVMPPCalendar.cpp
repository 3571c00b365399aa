#include "MPPExporter/MPPObjects/KVMPPCalendar.h"

#include "MPPCommon/date/TVCalendar.h"

#include <algorithm>
#include <array>

namespace {

struct SecondRange {
    int64_t start;
    int64_t end;
};
constexpr int64_t kSecondsPerHour = 3600;
constexpr std::array<SecondRange, 2> kFixedRanges = {
    {{8 * kSecondsPerHour, 12 * kSecondsPerHour}, {13 * kSecondsPerHour, 17 * kSecondsPerHour}}};
constexpr int64_t kSecondsInDay = 24 * kSecondsPerHour;
constexpr int64_t kSunday = 1;
constexpr int64_t kSaturday = 7;
// The span an MPP date can hold (its day number has 16 bits); longer spans come only from corrupt
// dates and are cut there.
constexpr int64_t kMaxDays = 65536;

int64_t fixedWorkingTime(int64_t fromSecond, int64_t toSecond) {
    int64_t seconds = 0;
    for (const SecondRange& range : kFixedRanges) {
        seconds += KVMPPCalendar::workingTimeFromTime(fromSecond, toSecond, range.start, range.end);
    }
    return seconds;
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

int64_t KVMPPCalendar::workingTimeFromTime(int64_t fromTime, int64_t toTime, int64_t rangeStart,
                                           int64_t rangeEnd) {
    return std::max<int64_t>(0, std::min(rangeEnd, toTime) - std::max(rangeStart, fromTime));
}

int64_t KVMPPCalendar::workingTimeFromDate(TVDate fromDate, TVDate toDate) {
    const TVCalendar calendar;
    constexpr TVCalendarUnits kUnits = kTVCalendarUnitYear | kTVCalendarUnitMonth | kTVCalendarUnitDay |
                                       kTVCalendarUnitWeekday | kTVCalendarUnitHour | kTVCalendarUnitMinute |
                                       kTVCalendarUnitSecond;
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
    const int64_t startSecond = from->hour * kSecondsPerHour + from->minute * 60 + from->second;
    const int64_t endSecond = to->hour * kSecondsPerHour + to->minute * 60 + to->second;
    const int64_t dayLength = fixedWorkingTime(0, kSecondsInDay);

    int64_t seconds = fixedWorkingTime(startSecond, days != 0 ? kSecondsInDay : endSecond);
    if (days >= 2) {
        // The days in between, from the weekday after the start: whole weeks hold five working days.
        const int64_t between = days - 1;
        seconds += between / 7 * 5 * dayLength;
        int64_t weekday = from->weekday;
        for (int64_t i = 0; i < between % 7; ++i) {
            weekday = weekday == kSaturday ? kSunday : weekday + 1;
            if (weekday != kSunday && weekday != kSaturday) {
                seconds += dayLength;
            }
        }
    }
    if (days > 0) {
        seconds += fixedWorkingTime(0, endSecond);
    }
    return seconds;
}
