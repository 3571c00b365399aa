#include "MPPExporter/MPPObjects/MSPEScheduleIterator.h"

#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"

MSPEScheduleIterator::MSPEScheduleIterator(const KVMSPEScheduleCalendar& calendar, TVDate date, bool forward)
    : m_scheduleCalendar(calendar), m_forward(forward) {
    const auto midnight = m_gregorian.midnight(date);
    const auto weekday = m_gregorian.weekday(date);
    if (!midnight || !weekday) {
        return;
    }
    m_nextDate = *midnight;
    if (m_scheduleCalendar.isWorkingDayWeekday(*weekday)) {
        enterDay(*weekday);
        m_found = true;
    } else {
        prepareNextIteration();
    }
}

bool MSPEScheduleIterator::nextTimePeriod(const WorkingTimePeriod** timePeriod, int64_t* timePeriodIndex,
                                          TVDate* date, uint64_t* flag) {
    if (!m_found) {
        return false;
    }
    m_nextTimePeriod = m_scheduleCalendar.workingPeriods(m_nextWeekday)[m_nextTimePeriodIndex];
    if (timePeriod) {
        *timePeriod = &m_nextTimePeriod;
    }
    if (timePeriodIndex) {
        *timePeriodIndex = m_nextTimePeriodIndex;
    }
    if (date) {
        *date = m_nextDate;
    }
    if (flag) {
        *flag = m_flag;
    }
    prepareNextIteration();
    return true;
}

void MSPEScheduleIterator::prepareNextIteration() {
    m_found = false;
    m_flag = 0;
    const int64_t nextIndex = m_nextTimePeriodIndex + (m_forward ? 1 : -1);
    if (nextIndex >= 0 && nextIndex < m_nextDateTimePeriods) {
        m_nextTimePeriodIndex = nextIndex;
        m_found = true;
        return;
    }
    for (int64_t step = 0; step < MSPEScheduleClock::kDaysPerWeek; ++step) {
        m_nextDate = MSPEScheduleClock::stepDay(m_nextDate, m_forward);
        const auto weekday = m_gregorian.weekday(m_nextDate);
        if (!weekday) {
            return;
        }
        if (m_scheduleCalendar.isWorkingDayWeekday(*weekday)) {
            enterDay(*weekday);
            m_flag |= kFirstPeriodOfNewDay;
            m_found = true;
            return;
        }
    }
}

void MSPEScheduleIterator::enterDay(int64_t weekday) {
    m_nextWeekday = weekday;
    m_nextDateTimePeriods = m_scheduleCalendar.timePeriodsInWeekday(weekday);
    m_nextTimePeriodIndex = m_forward ? 0 : m_nextDateTimePeriods - 1;
    tvAssert(m_nextTimePeriodIndex >= 0 && m_nextTimePeriodIndex < m_nextDateTimePeriods,
             stringWithFormat("Incorrect time period index: %ld", static_cast<long>(m_nextTimePeriodIndex)));
}
