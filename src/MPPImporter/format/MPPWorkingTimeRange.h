#pragma once

#include "MPPCommon/support/TVDate.h"

// One working range of a day: from `from` up to `to`, both counted from the day's midnight.
struct MPPWorkingTimeRange {
    TVTimeSpan from = 0;
    TVTimeSpan to = 0;

    bool operator==(const MPPWorkingTimeRange&) const = default;
};
