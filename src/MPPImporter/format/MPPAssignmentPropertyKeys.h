#pragma once

#include <cstdint>

// The property keys of assignment fields: offsets in the fixed item, and property numbers of the
// variable data (the timephased work block, and the baselines).
enum MPPAssignmentPropertyKey : int32_t {
    kAssignmentFinishKey = 1,
    kAssignmentTimephasedWorkKey = 2,
    kAssignmentResourceUIDKey = 3,
    kAssignmentStartKey = 4,
    kAssignmentTaskUIDKey = 5,
    kAssignmentUnitsKey = 7,
    kAssignmentWorkKey = 8,
    kAssignmentActualWorkKey = 9,
    kAssignmentRemainingWorkKey = 10,
    kAssignmentCostKey = 11,
    // Baseline 0: properties of the variable data in the files of applications 14 and later, and
    // words of the fixed item in those of applications 9 and 12.
    kAssignmentBaselineStartKey = 340,
    kAssignmentBaselineFinishKey = 341,
    kAssignmentBaselineWorkKey = 342,
    kAssignmentBaselineCostKey = 343,
    kAssignmentBaselineStartFixedKey = 344,
    kAssignmentBaselineFinishFixedKey = 345,
    kAssignmentBaselineWorkFixedKey = 346,
    kAssignmentBaselineCostFixedKey = 347,
    // Baselines 1 to 10, properties of the variable data: the baseline number is added to these group
    // keys.
    kAssignmentBaselineStartGroupKey = 350,
    kAssignmentBaselineFinishGroupKey = 361,
    kAssignmentBaselineWorkGroupKey = 372,
    kAssignmentBaselineCostGroupKey = 383,
};
