#pragma once

#include "MPPCommon/support/TVDate.h"

#include <cstdint>
#include <optional>
#include <string>

// The saved values of one assignment in one baseline: work in seconds, cost in currency units.
class KVMPPAssignmentBaseline {
public:
    double work = 0;
    double cost = 0;
    std::optional<TVDate> start;
    std::optional<TVDate> finish;
    int64_t number = 0;
    std::optional<std::string> name;
};
