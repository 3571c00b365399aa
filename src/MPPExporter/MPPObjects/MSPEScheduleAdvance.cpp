#include "MPPExporter/MPPObjects/MSPEScheduleAdvance.h"

#include "MPPCommon/support/TVException.h"
#include "MPPExporter/MPPObjects/KVMSPEScheduleCalendar.h"

std::optional<TVDate> MSPEScheduleAdvance::endOfDuration(TVDate day, double at, int64_t index,
                                                         double duration) {
    m_day = day;
    m_at = at;
    m_index = index;
    m_remaining = duration;
    while (m_remaining > 0.0 && m_days <= KVMSPEScheduleCalendar::kMaxWalkDays) {
        const auto* periods = periodsOfDay();
        if (!periods) {
            return std::nullopt;
        }
        if (!periods->empty()) {
            const auto count = static_cast<int64_t>(periods->size());
            // The index still names the period of the day before: a day of exactly that many periods
            // is sound, since later days start again from their first or last period.
            tvAssert(count >= m_index, "Working day has no or too few working time periods.");
            if (m_days > 0) {
                m_index = m_forward ? 0 : count - 1;
            }
            if (const auto end = endOnDay(*periods)) {
                return m_day.addingSeconds(*end);
            }
        }
        stepDay();
    }
    return std::nullopt;
}

std::optional<double> MSPEScheduleAdvance::endOnDay(const std::vector<WorkingTimePeriod>& periods) {
    const auto count = static_cast<int64_t>(periods.size());
    for (int64_t index = m_index; index >= 0 && index < count; index += m_forward ? 1 : -1) {
        const double start = workingTimePeriodStart(periods[index]);
        const double end = workingTimePeriodEnd(periods[index]);
        if (m_usedPeriods > 0) {
            m_at = m_forward ? start : end;
        }
        const double target = m_forward ? m_at + m_remaining : m_at - m_remaining;
        if (m_forward ? end >= target : target >= start) {
            const bool onEdge = target == (m_forward ? end : start);
            return m_allowEdgeTime || !onEdge ? std::optional<double>(target) : endOffEdge(periods, index);
        }
        m_remaining -= m_forward ? end - m_at : m_at - start;
        ++m_usedPeriods;
    }
    return std::nullopt;
}

std::optional<double> MSPEScheduleAdvance::endOffEdge(const std::vector<WorkingTimePeriod>& periods,
                                                      int64_t index) {
    const int64_t next = index + (m_forward ? 1 : -1);
    if (next >= 0 && next < static_cast<int64_t>(periods.size())) {
        return m_forward ? workingTimePeriodStart(periods[next]) : workingTimePeriodEnd(periods[next]);
    }
    // The search counts the days of the whole advance, so an advance that has already walked most
    // of a week may find nothing here and go on with the rest of the duration from the next day.
    constexpr int64_t kLastDayOfSearch = MSPEScheduleClock::kDaysPerWeek - 1;
    while (m_days <= kLastDayOfSearch) {
        stepDay();
        const auto* nextPeriods = periodsOfDay();
        if (!nextPeriods) {
            return std::nullopt;
        }
        if (!nextPeriods->empty()) {
            return m_forward ? workingTimePeriodStart(nextPeriods->front())
                             : workingTimePeriodEnd(nextPeriods->back());
        }
    }
    return std::nullopt;
}

const std::vector<WorkingTimePeriod>* MSPEScheduleAdvance::periodsOfDay() const {
    const auto weekday = m_clock.weekday(m_day);
    return weekday ? &m_calendar.workingPeriods(*weekday) : nullptr;
}

void MSPEScheduleAdvance::stepDay() {
    m_day = MSPEScheduleClock::stepDay(m_day, m_forward);
    ++m_days;
}
