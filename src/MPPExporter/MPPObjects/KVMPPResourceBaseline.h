#pragma once

#include <cstdint>

// The saved work (seconds) and cost of one resource in one baseline.
class KVMPPResourceBaseline {
public:
    double work = 0;
    double cost = 0;
    int64_t number = 0;
};
