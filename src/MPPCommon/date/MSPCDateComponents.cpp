#include "MPPCommon/date/MSPCDateComponents.h"

#include "MPPCommon/date/TVCalendar.h"
#include "MPPCommon/support/Log.h"

#include <cstdlib>
#include <ctime>

namespace {

constexpr int64_t kSecondsPerHour = 3600;
constexpr int64_t kSecondsPerMinute = 60;
// Zone fields beyond this can't come from an offset and would overflow in seconds.
constexpr int64_t kMaxZoneField = 1000000;

TVDate now() {
    return TVDate{static_cast<double>(std::time(nullptr))};
}

} // namespace

void MSPCDateComponents::fixUTC() {
    m_isUTC = m_timeZoneHour == 0 && m_timeZoneMinute == 0;
}

void MSPCDateComponents::setTimeZoneOffset(int64_t secondsFromGMT) {
    m_timeZoneHour = secondsFromGMT / kSecondsPerHour;
    m_timeZoneMinute = (secondsFromGMT / kSecondsPerMinute) % 60;
}

TVCalendarUnits MSPCDateComponents::forceSystemTimezoneforDate(std::optional<TVDate> date) {
    m_isUTC = true;
    m_timeZoneHour = 0;
    m_timeZoneMinute = 0;
    const TVTimeZone zone = TVTimeZone::systemTimeZone();
    const TVDate present = now();
    const int64_t presentOffset = zone.secondsFromGMT(present);
    if (!date) {
        date = TVCalendar(zone).dateFromComponents(*this);
        if (!date) {
            return kMSPCParseFailed;
        }
    }
    int64_t offset = zone.secondsFromGMT(*date);
    if (!zone.isDaylightSavingTime(present) && zone.isDaylightSavingTime(*date)) {
        offset = presentOffset + zone.daylightSavingTimeOffset(*date);
    }
    if (offset != 0) {
        setTimeZoneOffset(offset);
        m_isUTC = offset > -kSecondsPerHour && offset < kSecondsPerHour && m_timeZoneMinute == 0;
    }
    return kMSPCAllUnits;
}

TVCalendarUnits MSPCDateComponents::convertToTimeZoneForSecondsFromGMT(int64_t secondsFromGMT) {
    if (std::abs(m_timeZoneHour) > kMaxZoneField || std::abs(m_timeZoneMinute) > kMaxZoneField) {
        return kMSPCParseFailed;
    }
    const auto ownZone = TVTimeZone::forSecondsFromGMT(
        m_isUTC ? 0 : m_timeZoneHour * kSecondsPerHour + m_timeZoneMinute * kSecondsPerMinute);
    const auto targetZone = TVTimeZone::forSecondsFromGMT(secondsFromGMT);
    if (!ownZone || !targetZone) {
        return kMSPCParseFailed;
    }
    TVCalendar calendar(*ownZone);
    const auto date = calendar.dateFromComponents(*this);
    if (!date) {
        return kMSPCParseFailed;
    }
    calendar.setTimeZone(*targetZone);
    const auto moved = calendar.components(kMSPCDateTimeUnits, *date);
    if (!moved) {
        return kMSPCParseFailed;
    }
    year = moved->year;
    month = moved->month;
    day = moved->day;
    hour = moved->hour;
    minute = moved->minute;
    second = moved->second;
    setTimeZoneOffset(secondsFromGMT);
    fixUTC();
    return kMSPCAllUnits;
}

TVCalendarUnits MSPCDateComponents::convertToSystemTimezone() {
    // The record's fields are read in the system zone here, not in the record's own zone.
    const TVCalendar calendar;
    const auto date = calendar.dateFromComponents(*this);
    if (!date) {
        return kMSPCParseFailed;
    }
    return convertToTimeZoneForSecondsFromGMT(calendar.timeZone().secondsFromGMT(*date));
}

TVCalendarUnits MSPCDateComponents::convertToUTC() {
    return m_isUTC ? kMSPCAllUnits : convertToTimeZoneForSecondsFromGMT(0);
}

std::string MSPCDateComponents::componentsDescription() const {
    // Undefined fields print as the platform prints them: the low 32 bits, -1.
    const auto field = [](int64_t value) { return static_cast<int>(value); };
    return stringWithFormat(
        "\n  era=%d\n  year=%d\n  month=%d\n  day=%d\n  hour=%d\n  minute=%d\n  second=%d\n  "
        "week=%d\n  weekday=%d\n  weekdayOrdinal=%d\n  quarter=%d",
        field(era), field(year), field(month), field(day), field(hour), field(minute), field(second),
        field(weekOfYear), field(weekday), field(weekdayOrdinal), field(quarter));
}

std::string MSPCDateComponents::description() const {
    const std::string zone =
        stringWithFormat("\n  isUTC=%s\n  timeZoneHour=%lld\n  timeZoneMinute=%lld", m_isUTC ? "YES" : "NO",
                         static_cast<long long>(m_timeZoneHour), static_cast<long long>(m_timeZoneMinute));
    return stringWithFormat("MSPCDateComponents:%s%s", componentsDescription().c_str(), zone.c_str());
}
