#pragma once

#include <cstdint>

// The property keys of task fields, which the version's property list turns into an offset in the
// task's fixed, second fixed or meta item, or into a property number of its variable data.
enum MPPTaskPropertyKey : int32_t {
    kTaskTotalCostKey = 104,
    kTaskActualCostKey = 105,
    kTaskRemainingCostKey = 106,
    kTaskActualWorkKey = 107,
    kTaskRemainingWorkKey = 108,
    // Baseline 0 of formats 14 and later (variable data) and of formats 9 and 12 (fixed data).
    kTaskBaselineCostKey = 109,
    kTaskBaselineCostFixedKey = 110,
    kTaskBaselineDurationKey = 111,
    kTaskBaselineDurationFixedKey = 112,
    kTaskBaselineFinishKey = 113,
    kTaskBaselineFinishFixedKey = 114,
    kTaskBaselineStartKey = 115,
    kTaskBaselineStartFixedKey = 116,
    // Baselines 1 to 10: the baseline number is added to these group keys.
    kTaskBaselineCostGroupKey = 118,
    kTaskBaselineDurationGroupKey = 130,
    kTaskBaselineFinishGroupKey = 142,
    kTaskBaselineStartGroupKey = 154,
    kTaskBaselineWorkGroupKey = 166,
    kTaskConstraintDateKey = 189,
    kTaskConstraintTypeKey = 190,
    kTaskDurationKey = 192,
    kTaskPinnedDurationKey = 193,
    kTaskEarlyFinishKey = 194,
    kTaskEarlyStartKey = 195,
    kTaskStartKey = 196,
    kTaskFinishKey = 197,
    kTaskLateStartKey = 198,
    kTaskLateFinishKey = 199,
    kTaskActualStartKey = 202,
    kTaskActualFinishKey = 203,
    kTaskScheduledStartKey = 204,
    kTaskScheduledFinishKey = 205,
    kTaskEffortDrivenKey = 206,
    kTaskHammockMarkKey = 207,
    kTaskHammockSideKey = 208,
    kTaskMilestoneKey = 209,
    kTaskEstimatedKey = 210,
    kTaskExpandedKey = 211,
    kTaskPinnedFinishKey = 212,
    kTaskFixedCostKey = 213,
    kTaskFixedCostAccrualKey = 214,
    // Flag n (1 to 20) is at this key plus n.
    kTaskFlagBaseKey = 215,
    kTaskIDKey = 237,
    kTaskManualKey = 238,
    kTaskNameKey = 239,
    kTaskNotesKey = 240,
    kTaskOleLinkKey = 241,
    kTaskOutlineLevelKey = 243,
    kTaskParentUIDKey = 244,
    kTaskPercentCompleteKey = 245,
    kTaskPercentWorkCompleteKey = 246,
    kTaskPreLeveledFinishKey = 247,
    kTaskPreLeveledStartKey = 248,
    kTaskPriorityKey = 249,
    kTaskPinnedStartKey = 250,
    kTaskTypeKey = 251,
    // Work of the actual plan, and of baseline 0.
    kTaskWorkKey = 253,
    // The block of extended fields in which format 9 keeps baselines 1 to 10.
    kTaskExtendedFieldsKey = 256,
    // Flag n (1 to 20) is the bit numbered by this key plus n, counted from the meta item's start.
    kTaskFlagBitBaseKey = 300,
};
