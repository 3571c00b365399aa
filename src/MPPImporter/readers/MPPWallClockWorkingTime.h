#pragma once

#include "MPPCommon/support/TVDate.h"

class KVMSPEScheduleCalendar;

// Working-time arithmetic on the wall clock that MPP dates hold: an MPP date is its wall clock read as
// a UTC instant, so the days and times of day of these walks are those of UTC. The schedule calendar's
// own arithmetic reads dates in the machine's zone, which would move the results of an import with
// the zone it runs in; this takes only the calendar's week.
class MPPWallClockWorkingTime {
public:
    explicit MPPWallClockWorkingTime(const KVMSPEScheduleCalendar& week) : m_week(week) {}

    // `date` moved forward by `seconds` of working time; `date` itself when the week has too little
    // working time within the longest walk. With `allowEdgeTime` false, a result on the end of a
    // working period is the start of the next one, however many free days lie between: the schedule
    // calendar's advance looks for that start only within the first week of its walk and otherwise
    // goes on with the rest of the work from the next day, which laid the phases after a long walk
    // hours late.
    TVDate advanced(TVDate date, double seconds, bool allowEdgeTime) const;

private:
    const KVMSPEScheduleCalendar& m_week;
};
