#pragma once

#include <cstdint>

// One worked stretch of a split assignment. The shifts are working seconds from the start of the
// first stretch to this stretch's start and finish; work is in seconds.
class KVMPPAssignmentPhase {
public:
    uint32_t startShift = 0;
    uint32_t finishShift = 0;
    double work = 0;
    double workPerDay = 8.0;
};
