#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPExporter/MPPObjects/KVMPPCalendarTimeRange.h"

#include <optional>
#include <string>
#include <vector>

// A stretch of days whose working time differs from the calendar's weeks: working ranges for
// overtime, none for time off.
class KVMPPCalendarException {
public:
    std::optional<TVDate> startDate;
    std::optional<TVDate> endDate;
    std::vector<KVMPPCalendarTimeRange> workRanges;
    std::optional<std::string> name;
};
