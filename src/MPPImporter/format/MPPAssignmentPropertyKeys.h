#pragma once

#include <cstdint>

// The property keys of assignment fields: offsets in the fixed item, and the property number of the
// timephased work block in the variable data.
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
};
