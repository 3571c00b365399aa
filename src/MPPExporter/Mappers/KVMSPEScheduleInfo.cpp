#include "MPPExporter/Mappers/KVMSPEScheduleInfo.h"

#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"

#include <algorithm>

namespace {

// The default working day: 08:00-12:00 and 13:00-17:00, seconds of the day.
KVMSPEScheduleInfo::WorkingTimes defaultWorkingTimes(int64_t dayType) {
    if (!kTVNXWorkingDay[static_cast<size_t>(dayType)]) {
        return {};
    }
    return {KVMSPEWorkingTime(28800.0, 43200.0), KVMSPEWorkingTime(46800.0, 61200.0)};
}

} // namespace

KVMSPEScheduleInfo::KVMSPEScheduleInfo(ElementPtr tvnxResource, std::optional<std::string> parentKey,
                                       int64_t calendarUID, std::string calendarName)
    : _tvnxResource(std::move(tvnxResource)), _parentKey(std::move(parentKey)), _calendarUID(calendarUID),
      _calendarName(std::move(calendarName)), _isBaseCalendar(!_parentKey.has_value()) {}

void KVMSPEScheduleInfo::setProjetDefaults() {
    _isBaseCalendar = true;
    for (int64_t dayType = 1; dayType <= 7; ++dayType) {
        _workingTimes[static_cast<size_t>(dayType)] = defaultWorkingTimes(dayType);
    }
    _overtimeExceptions.clear();
    _timeOffExceptions.clear();
}

void KVMSPEScheduleInfo::ensureProjetDefaultWeekDays() {
    for (int64_t dayType = 1; dayType <= 7; ++dayType) {
        auto& workingTimes = _workingTimes[static_cast<size_t>(dayType)];
        if (!workingTimes) {
            workingTimes = defaultWorkingTimes(dayType);
        }
    }
}

bool KVMSPEScheduleInfo::hasWeekDaysData() const {
    return std::any_of(_workingTimes.begin() + 1, _workingTimes.end(),
                       [](const auto& workingTimes) { return workingTimes.has_value(); });
}

size_t KVMSPEScheduleInfo::dayIndex(int64_t dayType) {
    tvAssert(dayType >= 0 && dayType <= 7,
             stringWithFormat("Incorrect value of argument dayType (%d).", static_cast<int>(dayType)));
    return static_cast<size_t>(dayType);
}

KVMSPEScheduleInfo::WorkingTimes& KVMSPEScheduleInfo::resetWorkingTimesForDayType(int64_t dayType) {
    return _workingTimes[dayIndex(dayType)].emplace();
}

void KVMSPEScheduleInfo::addWorkingTimes(const std::optional<WorkingTimes>& workingTimes, int64_t dayType) {
    _workingTimes[dayIndex(dayType)] = workingTimes;
}

const std::optional<KVMSPEScheduleInfo::WorkingTimes>&
KVMSPEScheduleInfo::workingTimesForDayType(int64_t dayType) const {
    return _workingTimes[dayIndex(dayType)];
}
