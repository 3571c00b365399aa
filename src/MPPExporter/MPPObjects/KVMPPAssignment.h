#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPExporter/MPPObjects/KVMPPAssignmentBaseline.h"
#include "MPPExporter/MPPObjects/KVMPPAssignmentPhase.h"
#include "MPPExporter/MPPObjects/MPPDeferred.h"
#include "MPPExporter/MPPObjects/MPPGuid.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

class KVMPPResource;
class KVMPPTask;

// One resource on one task. An assignment without a resource is on the unassigned resource.
class KVMPPAssignment {
public:
    const MPPGuid& getGUID() const { return GUID; }
    int32_t getDelay() const { return 0; }

    MPPGuid GUID = newRandomMPPGuid();
    // The assignment UID.
    uint64_t ID = 0;
    MPPDeferred<KVMPPTask> task;
    MPPDeferred<KVMPPResource> resource;
    double work = 0;
    double actualWork = 0;
    double remainingWork = 0;
    // Hundredths of a percent: 100 % is 10000.
    double assignmentUnits = 10000.0;
    double cost = 0;
    double actualCost = 0;
    double remainingCost = 0;
    std::optional<TVDate> creationDate;
    std::optional<TVDate> startDate;
    std::optional<TVDate> finishDate;
    std::optional<TVDate> leveledStart;
    std::optional<TVDate> stopDate;
    std::optional<TVDate> resumeDate;
    std::vector<KVMPPAssignmentBaseline> baselines;
    std::optional<KVMPPAssignmentBaseline> baseline0;
    // The worked stretches of a split assignment.
    std::vector<KVMPPAssignmentPhase> assignmentPhases;
    std::optional<std::string> notes;
    double levelingDelay = 0;
};
