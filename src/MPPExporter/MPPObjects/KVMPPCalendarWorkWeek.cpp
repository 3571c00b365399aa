#include "MPPExporter/MPPObjects/KVMPPCalendarWorkWeek.h"

#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"

const std::optional<KVMPPCalendarWorkWeek::Ranges>&
KVMPPCalendarWorkWeek::workRangesForDay(int64_t dayType) const {
    static const std::optional<Ranges> kNone;
    return isDayType(dayType) ? _workRanges[static_cast<size_t>(dayType)] : kNone;
}

void KVMPPCalendarWorkWeek::setWorkRanges(std::optional<Ranges> ranges, int64_t dayType) {
    if (isDayType(dayType)) {
        _workRanges[static_cast<size_t>(dayType)] = std::move(ranges);
    }
}

void KVMPPCalendarWorkWeek::addWorkDay(Ranges ranges, int64_t dayType) {
    tvAssert(isDayType(dayType),
             stringWithFormat("Unexpected WeekDay dayType: %lld", static_cast<long long>(dayType)));
    const std::optional<Ranges>& current = workRangesForDay(dayType);
    tvAssert(!current || current->empty(),
             "Expected MPPCalendarWorkWeek." + dayName(dayType) + "WorkRanges to be nil");
    setWorkRanges(std::move(ranges), dayType);
}

std::string KVMPPCalendarWorkWeek::dayName(int64_t dayType) {
    static const std::array<const char*, 8> kNames = {"",          "sunday",   "monday", "tuesday",
                                                      "wednesday", "thursday", "friday", "saturday"};
    return isDayType(dayType) ? kNames[static_cast<size_t>(dayType)] : "";
}
