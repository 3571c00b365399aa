#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPExporter/MPPObjects/KVMSPEScheduleCalendar.h"
#include "MPPExporter/MPPObjects/MSPEScheduleClock.h"
#include "MPPExporter/MPPObjects/WorkingTimePeriod.h"

#include <cstdint>

// A walk over the working periods of a calendar, day by day from the day of a date, forward or
// backward. Day steps are fixed 86400 seconds; the walk ends after a week without working time.
class MSPEScheduleIterator {
public:
    // Bit of the flag handed out with a period that is the first of a day after the walk's first.
    static constexpr uint64_t kFirstPeriodOfNewDay = 1;

    MSPEScheduleIterator(const KVMSPEScheduleCalendar& calendar, TVDate date, bool forward);

    // Hands out the next period (valid until the next call), its index in its day, the day's
    // midnight and the flag; each pointer may be null. False at the end of the walk.
    bool nextTimePeriod(const WorkingTimePeriod** timePeriod, int64_t* timePeriodIndex, TVDate* date,
                        uint64_t* flag);

private:
    void prepareNextIteration();
    // Makes a working day the current one, at its first period in the walk's direction.
    void enterDay(int64_t weekday);

    const KVMSPEScheduleCalendar m_scheduleCalendar;
    const bool m_forward;
    bool m_found = false;
    int64_t m_nextWeekday = 0;
    int64_t m_nextTimePeriodIndex = 0;
    const MSPEScheduleClock m_gregorian;
    TVDate m_nextDate;
    int64_t m_nextDateTimePeriods = 0;
    WorkingTimePeriod m_nextTimePeriod;
    uint64_t m_flag = 0;
};
