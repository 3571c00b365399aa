#pragma once

#include "MPPCommon/date/TVDateComponents.h"
#include "MPPCommon/date/TVTimeZone.h"

#include <memory>
#include <optional>
#include <unicode/uversion.h>

U_NAMESPACE_BEGIN
class Calendar;
U_NAMESPACE_END

// A Gregorian calendar with a settable zone: the fields of an instant, and the instant of fields.
// Making a date is lenient (month 13 is January of the next year); undefined fields take the
// calendar's defaults (1970-01-01 00:00:00).
class TVCalendar {
public:
    // A Gregorian calendar in the system zone.
    TVCalendar();
    explicit TVCalendar(const TVTimeZone& zone);
    TVCalendar(const TVCalendar& other);
    TVCalendar& operator=(const TVCalendar& other);
    ~TVCalendar();

    const TVTimeZone& timeZone() const { return m_zone; }
    void setTimeZone(const TVTimeZone& zone);

    // The instant of the era, year, month, day, hour, minute and second given; none when the
    // fields can't name an instant (any field beyond a million either way).
    std::optional<TVDate> dateFromComponents(const TVDateComponents& components) const;
    // The fields named by `units` of an instant; the others stay undefined. None for an instant
    // the calendar can't hold.
    std::optional<TVDateComponents> components(TVCalendarUnits units, TVDate date) const;

private:
    TVTimeZone m_zone;
    std::unique_ptr<icu::Calendar> m_calendar;
};
