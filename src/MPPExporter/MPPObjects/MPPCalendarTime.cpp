#include "MPPExporter/MPPObjects/MPPCalendarTime.h"

#include "MPPCommon/support/Log.h"

#include <cmath>

namespace {

constexpr int64_t kMicrosecondsPerHour = 3600000000;
constexpr int64_t kMicrosecondsPerMinute = 60000000;

} // namespace

MPPCalendarTime MPPCalendarTime::initWithTime(double seconds) {
    // Only a finite value whose microseconds fit in 64 bits converts; anything else reads as midnight,
    // where a plain conversion would be undefined.
    const bool convertible = std::isfinite(seconds) && std::fabs(seconds) < 1e12;
    return initWithTimeSpan(convertible ? static_cast<TVTimeSpan>(seconds) * kMicrosecondsPerSecond : 0);
}

MPPCalendarTime MPPCalendarTime::initWithTimeSpan(TVTimeSpan span) {
    MPPCalendarTime time;
    time._hours = static_cast<uint8_t>(span / kMicrosecondsPerHour);
    time._minutes = static_cast<uint8_t>(span % kMicrosecondsPerHour / kMicrosecondsPerMinute);
    time._totalMinutes = time._hours * 60 + time._minutes;
    return time;
}

MPPCalendarTime MPPCalendarTime::initWithTotalMinutes(int32_t totalMinutes) {
    MPPCalendarTime time;
    time.setTotalMinutes(totalMinutes);
    return time;
}

void MPPCalendarTime::setTotalMinutes(int32_t totalMinutes) {
    _hours = static_cast<uint8_t>(totalMinutes / 60);
    _minutes = static_cast<uint8_t>(totalMinutes % 60);
    _totalMinutes = totalMinutes;
}

void MPPCalendarTime::setHours(int64_t hours) {
    _hours = hours >= 24 || hours < 0 ? 0 : static_cast<uint8_t>(hours);
}

void MPPCalendarTime::setMinutes(int64_t minutes) {
    _minutes = minutes > 59 ? 59 : minutes < 0 ? 0 : static_cast<uint8_t>(minutes);
}

std::string MPPCalendarTime::ToTvnxTime() const {
    return stringWithFormat("%d", _hours * 3600 + _minutes * 60);
}
