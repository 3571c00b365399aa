#pragma once

#include "MPPCommon/support/TVDate.h"

#include <cstdint>
#include <string>

// A time of day as a calendar range holds it: hours and minutes, 8 bits each, and the minutes since
// midnight they make. Seconds are not kept.
class MPPCalendarTime {
public:
    MPPCalendarTime() = default;
    // From seconds since midnight; the parts are truncated toward zero and kept to 8 bits.
    static MPPCalendarTime initWithTime(double seconds);
    // From a time span since midnight, in microseconds; the parts are truncated toward zero.
    static MPPCalendarTime initWithTimeSpan(TVTimeSpan span);
    static MPPCalendarTime initWithTotalMinutes(int32_t totalMinutes);

    uint8_t hours() const { return _hours; }
    uint8_t minutes() const { return _minutes; }
    int32_t totalMinutes() const { return _totalMinutes; }
    void setTotalMinutes(int32_t totalMinutes);
    // 24 and above store 0; the total minutes stay as they were.
    void setHours(int64_t hours);
    // Above 59 stores 59; the total minutes stay as they were.
    void setMinutes(int64_t minutes);

    // Seconds since midnight of the hours and minutes, as decimal text.
    std::string ToTvnxTime() const;

private:
    uint8_t _hours = 0;
    uint8_t _minutes = 0;
    int32_t _totalMinutes = 0;
};
