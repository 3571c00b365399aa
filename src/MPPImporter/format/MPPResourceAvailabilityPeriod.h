#pragma once

#include "MPPCommon/support/TVDate.h"

// One period of a resource's availability table: from `start` up to `end` the resource is available
// with `units`, the stored value divided by 100.
struct MPPResourceAvailabilityPeriod {
    TVDate start;
    TVDate end;
    double units = 0;
};
