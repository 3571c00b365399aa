#pragma once

#include "MPPCommon/support/TVDate.h"

#include <optional>

// One piece of a split task as the bundle states it: its dates, and its effort and durations in
// seconds.
class KVMSPETimephasedDataInfo {
public:
    std::optional<TVDate> startDate;
    std::optional<TVDate> endDate;
    double effort = 0;
    double effortDone = 0;
    double duration = 0;
    double actualDuration = 0;
};
