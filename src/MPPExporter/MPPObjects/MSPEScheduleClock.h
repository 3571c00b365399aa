#pragma once

#include "MPPCommon/date/TVCalendar.h"
#include "MPPCommon/support/TVDate.h"

#include <cstdint>
#include <optional>

// What the working-time arithmetic asks of a date, answered by a Gregorian calendar in the system
// zone: its weekday, the midnight of its day and its time of day. Each answer is none for a date
// the calendar can't hold.
class MSPEScheduleClock {
public:
    static constexpr int64_t kDaysPerWeek = 7;

    // One day on in the direction: exactly 86400 seconds, not a calendar day.
    static TVDate stepDay(TVDate date, bool forward) {
        return date.addingSeconds(forward ? kSecondsPerDay : -kSecondsPerDay);
    }

    // 1 for Sunday to 7 for Saturday.
    std::optional<int64_t> weekday(TVDate date) const;
    std::optional<TVDate> midnight(TVDate date) const;
    // hour × 3600 + minute × 60 + second of the wall clock; fractions of a second are dropped.
    std::optional<double> secondsOfDay(TVDate date) const;

private:
    TVCalendar m_calendar;
};
