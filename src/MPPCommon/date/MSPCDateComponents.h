#pragma once

#include "MPPCommon/date/TVDateComponents.h"
#include "MPPCommon/support/TVDate.h"

#include <cstdint>
#include <optional>
#include <string>

// Unit flags for the zone of a components record, beside the calendar units, and the masks in use.
inline constexpr TVCalendarUnits kMSPCUnitTimeZoneHour = 0x200000;
inline constexpr TVCalendarUnits kMSPCUnitTimeZoneMinute = 0x400000;
inline constexpr TVCalendarUnits kMSPCUnitUTC = 0x800000;
inline constexpr TVCalendarUnits kMSPCDateUnits = 28;
inline constexpr TVCalendarUnits kMSPCTimeUnits = 224;
inline constexpr TVCalendarUnits kMSPCDateTimeUnits = 0xFC;
inline constexpr TVCalendarUnits kMSPCTimeZoneUnits = 0xE00000;
inline constexpr TVCalendarUnits kMSPCAllUnits = 0xE000FC;
// The flags of a failed parse; never combined with other bits.
inline constexpr TVCalendarUnits kMSPCParseFailed = 0x7FFFFFFFFFFFFFFF;

// A components record with a time zone of its own: UTC, or an offset of hours and minutes. The
// wall clock fields are read in that zone.
class MSPCDateComponents : public TVDateComponents {
public:
    MSPCDateComponents() = default;
    explicit MSPCDateComponents(const TVDateComponents& components) : TVDateComponents(components) {}

    bool isUTC() const { return m_isUTC; }
    void setIsUTC(bool isUTC) { m_isUTC = isUTC; }
    int64_t timeZoneHour() const { return m_timeZoneHour; }
    void setTimeZoneHour(int64_t hour) { m_timeZoneHour = hour; }
    int64_t timeZoneMinute() const { return m_timeZoneMinute; }
    void setTimeZoneMinute(int64_t minute) { m_timeZoneMinute = minute; }

    // UTC exactly when both zone fields are 0.
    void fixUTC();

    // Labels the wall clock with the system zone's offset at `date` (at the record's own date when
    // none is given) without moving it. Returns kMSPCAllUnits, or kMSPCParseFailed when the record
    // names no instant.
    TVCalendarUnits forceSystemTimezoneforDate(std::optional<TVDate> date);
    // Move the wall clock into another zone, keeping the instant. Each returns kMSPCAllUnits, or
    // kMSPCParseFailed when the record names no instant there.
    TVCalendarUnits convertToUTC();
    TVCalendarUnits convertToSystemTimezone();
    TVCalendarUnits convertToTimeZoneForSecondsFromGMT(int64_t secondsFromGMT);

    std::string componentsDescription() const;
    std::string description() const;

private:
    void setTimeZoneOffset(int64_t secondsFromGMT);

    bool m_isUTC = true;
    int64_t m_timeZoneHour = 0;
    int64_t m_timeZoneMinute = 0;
};
