#include "MPPExporter/MPPObjects/MSPEScheduleClock.h"

std::optional<int64_t> MSPEScheduleClock::weekday(TVDate date) const {
    const auto components = m_calendar.components(kTVCalendarUnitWeekday, date);
    if (!components) {
        return std::nullopt;
    }
    return components->weekday;
}

std::optional<TVDate> MSPEScheduleClock::midnight(TVDate date) const {
    const auto components = m_calendar.components(
        kTVCalendarUnitEra | kTVCalendarUnitYear | kTVCalendarUnitMonth | kTVCalendarUnitDay, date);
    if (!components) {
        return std::nullopt;
    }
    return m_calendar.dateFromComponents(*components);
}

std::optional<double> MSPEScheduleClock::secondsOfDay(TVDate date) const {
    const auto components =
        m_calendar.components(kTVCalendarUnitHour | kTVCalendarUnitMinute | kTVCalendarUnitSecond, date);
    if (!components) {
        return std::nullopt;
    }
    return static_cast<double>(components->hour * 3600 + components->minute * 60 + components->second);
}
