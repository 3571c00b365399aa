#include "MPPCommon/date/TVCalendar.h"

#include <cmath>
#include <stdexcept>
#include <unicode/gregocal.h>

namespace {

constexpr double kMillisecondsPerSecond = 1000.0;

// Calendars are cloned from one prototype: building one from its locale costs twenty times more.
std::unique_ptr<icu::Calendar> newGregorianCalendar(const TVTimeZone& zone) {
    static const std::unique_ptr<icu::Calendar> prototype = [] {
        UErrorCode status = U_ZERO_ERROR;
        auto calendar = std::make_unique<icu::GregorianCalendar>(icu::Locale("en_US_POSIX"), status);
        if (U_FAILURE(status)) {
            throw std::runtime_error("Cannot create a Gregorian calendar");
        }
        return calendar;
    }();
    std::unique_ptr<icu::Calendar> calendar(prototype->clone());
    calendar->setTimeZone(zone.icuZone());
    return calendar;
}

// Fields are held to a million either way, so that even lenient sums of them stay inside the
// calendar's range of about five million years.
bool fitsCalendarField(int64_t value) {
    constexpr int64_t kMaxFieldMagnitude = 1000000;
    return value >= -kMaxFieldMagnitude && value <= kMaxFieldMagnitude;
}

} // namespace

TVCalendar::TVCalendar() : TVCalendar(TVTimeZone::systemTimeZone()) {}

TVCalendar::TVCalendar(const TVTimeZone& zone) : m_zone(zone), m_calendar(newGregorianCalendar(zone)) {}

TVCalendar::TVCalendar(const TVCalendar& other) : TVCalendar(other.m_zone) {}

TVCalendar& TVCalendar::operator=(const TVCalendar& other) {
    if (this != &other) {
        setTimeZone(other.m_zone);
    }
    return *this;
}

TVCalendar::~TVCalendar() = default;

void TVCalendar::setTimeZone(const TVTimeZone& zone) {
    m_zone = zone;
    m_calendar->setTimeZone(zone.icuZone());
}

std::optional<TVDate> TVCalendar::dateFromComponents(const TVDateComponents& components) const {
    struct Field {
        UCalendarDateFields field;
        int64_t value;
        int32_t offset;
    };
    // The calendar counts months from 0.
    const Field fields[] = {
        {UCAL_ERA, components.era, 0},          {UCAL_YEAR, components.year, 0},
        {UCAL_MONTH, components.month, -1},     {UCAL_DATE, components.day, 0},
        {UCAL_HOUR_OF_DAY, components.hour, 0}, {UCAL_MINUTE, components.minute, 0},
        {UCAL_SECOND, components.second, 0},
    };
    m_calendar->clear();
    for (const auto& [field, value, offset] : fields) {
        if (value == TVDateComponents::kUndefined) {
            continue;
        }
        if (!fitsCalendarField(value)) {
            return std::nullopt;
        }
        m_calendar->set(field, static_cast<int32_t>(value) + offset);
    }
    UErrorCode status = U_ZERO_ERROR;
    const UDate milliseconds = m_calendar->getTime(status);
    if (U_FAILURE(status) || !std::isfinite(milliseconds)) {
        return std::nullopt;
    }
    return TVDate{milliseconds / kMillisecondsPerSecond};
}

std::optional<TVDateComponents> TVCalendar::components(TVCalendarUnits units, TVDate date) const {
    if (!std::isfinite(date.seconds)) {
        return std::nullopt;
    }
    UErrorCode status = U_ZERO_ERROR;
    m_calendar->setTime(date.seconds * kMillisecondsPerSecond, status);
    const auto field = [&](TVCalendarUnits unit, UCalendarDateFields icuField, int64_t offset = 0) {
        return (units & unit) != 0 ? m_calendar->get(icuField, status) + offset
                                   : TVDateComponents::kUndefined;
    };
    TVDateComponents result;
    result.era = field(kTVCalendarUnitEra, UCAL_ERA);
    result.year = field(kTVCalendarUnitYear, UCAL_YEAR);
    result.month = field(kTVCalendarUnitMonth, UCAL_MONTH, 1);
    result.day = field(kTVCalendarUnitDay, UCAL_DATE);
    result.hour = field(kTVCalendarUnitHour, UCAL_HOUR_OF_DAY);
    result.minute = field(kTVCalendarUnitMinute, UCAL_MINUTE);
    result.second = field(kTVCalendarUnitSecond, UCAL_SECOND);
    result.weekOfYear = field(kTVCalendarUnitWeekOfYear, UCAL_WEEK_OF_YEAR);
    result.weekday = field(kTVCalendarUnitWeekday, UCAL_DAY_OF_WEEK);
    result.weekdayOrdinal = field(kTVCalendarUnitWeekdayOrdinal, UCAL_DAY_OF_WEEK_IN_MONTH);
    if ((units & kTVCalendarUnitQuarter) != 0) {
        result.quarter = m_calendar->get(UCAL_MONTH, status) / 3 + 1;
    }
    if (U_FAILURE(status)) {
        return std::nullopt;
    }
    return result;
}
