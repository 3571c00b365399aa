#pragma once

#include "MPPCommon/support/TVDate.h"

#include <cstdint>
#include <optional>
#include <string>

// The saved values of one task in one baseline: number 0 is the baseline called Baseline, 1 to 10
// the numbered ones. Durations and work in seconds, costs in currency units.
class KVMPPTaskBaseline {
public:
    double duration = 0;
    double work = 0;
    std::optional<TVDate> start;
    std::optional<TVDate> finish;
    double cost = 0;
    double fixedCost = 0;
    int64_t number = 0;
    std::optional<std::string> name;
};
