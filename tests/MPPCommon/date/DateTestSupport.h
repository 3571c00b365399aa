#pragma once

#include "MPPCommon/date/TVTimeZone.h"
#include "MPPCommon/support/TVDate.h"

#include <cstdlib>
#include <ctime>
#include <gtest/gtest.h>
#include <optional>
#include <string>

// Runs a test in another system zone: sets TZ and makes the date services read it again; the
// previous TZ comes back at the end of the scope.
class SystemZoneScope {
public:
    explicit SystemZoneScope(const std::string& zone) {
        if (const char* previous = std::getenv("TZ")) {
            m_previous = previous;
        }
        setenv("TZ", zone.c_str(), 1);
        TVTimeZone::resetSystemTimeZone();
    }
    ~SystemZoneScope() {
        if (m_previous) {
            setenv("TZ", m_previous->c_str(), 1);
        } else {
            unsetenv("TZ");
        }
        TVTimeZone::resetSystemTimeZone();
    }
    SystemZoneScope(const SystemZoneScope&) = delete;
    SystemZoneScope& operator=(const SystemZoneScope&) = delete;

private:
    std::optional<std::string> m_previous;
};

// The zones every zone-dependent test runs in: no offset, an offset with daylight saving, and a
// half-hour offset.
inline const char* const kTestZones[] = {"UTC", "America/New_York", "Asia/Kolkata"};

// Expected instants, computed by the C library's zone code rather than by the code under test.
inline std::tm calendarFields(int year, int month, int day, int hour, int minute, int second) {
    std::tm fields{};
    fields.tm_year = year - 1900;
    fields.tm_mon = month - 1;
    fields.tm_mday = day;
    fields.tm_hour = hour;
    fields.tm_min = minute;
    fields.tm_sec = second;
    fields.tm_isdst = -1;
    return fields;
}

inline TVDate utcInstant(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
    std::tm fields = calendarFields(year, month, day, hour, minute, second);
    return TVDate{static_cast<double>(timegm(&fields))};
}

// The instant of a wall clock in the system zone (TZ).
inline TVDate localInstant(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
    std::tm fields = calendarFields(year, month, day, hour, minute, second);
    return TVDate{static_cast<double>(std::mktime(&fields))};
}

// An hour as a time span.
inline constexpr TVTimeSpan kHour = 3600 * kMicrosecondsPerSecond;

// The instant that an MPP stream holds as a day count and tenths of a minute.
inline TVDate mppDate(int day, int tenthsOfMinute) {
    return getMPPEpoch().addingSeconds(day * 86400.0 + tenthsOfMinute * 6.0);
}

// A wall clock of February 2026 in the system zone, clear of daylight-saving changes: Monday the 2nd
// to Sunday the 8th, then Monday the 9th.
inline TVDate february(int day, int hour = 0, int minute = 0, int second = 0) {
    return localInstant(2026, 2, day, hour, minute, second);
}

// The system zone's offset from GMT at an instant, as the C library sees it.
inline long localOffsetSeconds(TVDate date) {
    const std::time_t time = static_cast<std::time_t>(date.seconds);
    std::tm fields{};
    localtime_r(&time, &fields);
    return fields.tm_gmtoff;
}

// A zone-dependent test, run once in each test zone.
class ZoneTest : public ::testing::TestWithParam<const char*> {
protected:
    SystemZoneScope m_zone{GetParam()};
};
