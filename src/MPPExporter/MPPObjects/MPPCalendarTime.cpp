#include "MPPExporter/MPPObjects/MPPCalendarTime.h"

#include "MPPCommon/support/Log.h"

namespace {

constexpr int64_t kMicrosecondsPerHour = 3600000000;
constexpr int64_t kMicrosecondsPerMinute = 60000000;

} // namespace

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

std::string MPPCalendarTime::ToTvnxTime() const {
    return stringWithFormat("%d", _hours * 3600 + _minutes * 60);
}
