#pragma once

#include "MPPExporter/MPPObjects/MPPDeferred.h"
#include "MPPExporter/MPPObjects/MPPGuid.h"

#include <cstdint>
#include <optional>
#include <string>

class KVMPPTask;

// One task link: `task1` depends on its prerequisite `task2`. While mapping both hold task UIDs.
class KVMPPConstraint {
public:
    const MPPGuid& getGUID() const { return GUID; }

    MPPGuid GUID = newRandomMPPGuid();
    // `lag` is a percentage.
    bool isPercentage = false;
    // 0 finish-to-finish, 1 finish-to-start, 2 start-to-finish, 3 start-to-start.
    int32_t constraintType = 0;
    uint64_t ID = 0;
    MPPDeferred<KVMPPTask> task1;
    MPPDeferred<KVMPPTask> task2;
    // Seconds, or percent when `isPercentage`.
    double lag = 0;
    // The task ids of the bundle.
    std::optional<std::string> task1ID;
    std::optional<std::string> task2ID;
    std::optional<uint64_t> task1UID;
    std::optional<uint64_t> task2UID;
};
