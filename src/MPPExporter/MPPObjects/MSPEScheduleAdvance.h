#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPExporter/MPPObjects/MSPEScheduleClock.h"
#include "MPPExporter/MPPObjects/WorkingTimePeriod.h"

#include <cstdint>
#include <optional>
#include <vector>

class KVMSPEScheduleCalendar;

// One advance of a date by working time: the walk from period to period and from day to day that
// uses the duration up. The calendar snaps the date first and hands the walk its day, its time of
// day and its period.
class MSPEScheduleAdvance {
public:
    MSPEScheduleAdvance(const KVMSPEScheduleCalendar& calendar, bool forward, bool allowEdgeTime)
        : m_calendar(calendar), m_forward(forward), m_allowEdgeTime(allowEdgeTime) {}

    // The date at which `duration` seconds of working time from `at` seconds after `day` (a
    // midnight) in period `index` are used up; none when the walk can't end.
    std::optional<TVDate> endOfDuration(TVDate day, double at, int64_t index, double duration);

private:
    // Uses the periods of the current day from the current index on; the end's seconds of the day
    // when the duration runs out on it.
    std::optional<double> endOnDay(const std::vector<WorkingTimePeriod>& periods);
    // An end exactly on the edge of period `index`, moved to where work goes on: the next period of
    // the day, else the first working day of the rest of the week. None when the week has none.
    std::optional<double> endOffEdge(const std::vector<WorkingTimePeriod>& periods, int64_t index);
    // The periods of the current day; empty for a non-working day, null for a day the calendar can't
    // hold.
    const std::vector<WorkingTimePeriod>* periodsOfDay() const;
    void stepDay();

    const KVMSPEScheduleCalendar& m_calendar;
    const MSPEScheduleClock m_clock;
    const bool m_forward;
    const bool m_allowEdgeTime;
    TVDate m_day;
    double m_at = 0.0;
    int64_t m_index = 0;
    double m_remaining = 0.0;
    int64_t m_usedPeriods = 0;
    int64_t m_days = 0;
};
