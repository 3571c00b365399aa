#include "MPPImporter/readers/MPPWallClockWorkingTime.h"

#include "MPPExporter/MPPObjects/KVMSPEScheduleCalendar.h"

#include <algorithm>
#include <cmath>

namespace {

// The midnight of the UTC day of an instant.
double dayStart(TVDate date) {
    return std::floor(date.seconds / kSecondsPerDay) * kSecondsPerDay;
}

// 1 for Sunday to 7 for Saturday of the UTC day that starts at `midnight`; 1 January 1970 was a Thursday.
int64_t weekday(double midnight) {
    // In doubles, so that a corrupt date far outside the integers' range can't overflow.
    const double fromSunday = std::fmod(midnight / kSecondsPerDay + 4.0, 7.0);
    return static_cast<int64_t>(fromSunday < 0.0 ? fromSunday + 7.0 : fromSunday) + 1;
}

} // namespace

TVDate MPPWallClockWorkingTime::advanced(TVDate date, double seconds, bool allowEdgeTime) const {
    if (!std::isfinite(date.seconds)) {
        return date;
    }
    double day = dayStart(date);
    double at = date.seconds - day;
    double remaining = std::max(seconds, 0.0);
    for (int64_t walked = 0; walked <= KVMSPEScheduleCalendar::kMaxWalkDays; ++walked) {
        for (const WorkingTimePeriod& period : m_week.workingPeriods(weekday(day))) {
            const double end = workingTimePeriodEnd(period);
            if (end <= at) {
                continue;
            }
            const double from = std::max(workingTimePeriodStart(period), at);
            if (remaining < end - from) {
                return TVDate{day + from + remaining};
            }
            if (remaining == end - from && remaining > 0.0 && allowEdgeTime) {
                return TVDate{day + end};
            }
            remaining -= end - from;
            at = end;
        }
        day += kSecondsPerDay;
        at = 0.0;
    }
    return date;
}
