#include "MPPExporter/MPPObjects/KVMPPCalendarWorkWeek.h"

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
