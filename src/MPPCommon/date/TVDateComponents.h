#pragma once

#include <cstdint>

// Calendar unit flags of the platform calendar: a 64-bit set naming the fields of a date.
using TVCalendarUnits = uint64_t;
inline constexpr TVCalendarUnits kTVCalendarUnitEra = 2;
inline constexpr TVCalendarUnits kTVCalendarUnitYear = 4;
inline constexpr TVCalendarUnits kTVCalendarUnitMonth = 8;
inline constexpr TVCalendarUnits kTVCalendarUnitDay = 16;
inline constexpr TVCalendarUnits kTVCalendarUnitHour = 32;
inline constexpr TVCalendarUnits kTVCalendarUnitMinute = 64;
inline constexpr TVCalendarUnits kTVCalendarUnitSecond = 128;
inline constexpr TVCalendarUnits kTVCalendarUnitWeekday = 512;
inline constexpr TVCalendarUnits kTVCalendarUnitWeekdayOrdinal = 1024;
inline constexpr TVCalendarUnits kTVCalendarUnitQuarter = 2048;
inline constexpr TVCalendarUnits kTVCalendarUnitWeekOfYear = 8192;

// The platform's date-components record: calendar fields of a date, each either a value or
// kUndefined. Months and days count from 1, weekdays from 1 for Sunday.
struct TVDateComponents {
    static constexpr int64_t kUndefined = INT64_MAX;

    int64_t era = kUndefined;
    int64_t year = kUndefined;
    int64_t month = kUndefined;
    int64_t day = kUndefined;
    int64_t hour = kUndefined;
    int64_t minute = kUndefined;
    int64_t second = kUndefined;
    int64_t weekOfYear = kUndefined;
    int64_t weekday = kUndefined;
    int64_t weekdayOrdinal = kUndefined;
    int64_t quarter = kUndefined;
};
