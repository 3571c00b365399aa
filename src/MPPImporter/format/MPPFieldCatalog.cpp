#include "MPPImporter/format/MPPFieldCatalog.h"

#include "MPPCommon/support/TVException.h"
#include "MPPImporter/format/MPPAssignmentPropertyKeys.h"
#include "MPPImporter/format/MPPCalendarPropertyKeys.h"
#include "MPPImporter/format/MPPCustomFieldTables.h"
#include "MPPImporter/format/MPPFormatConstants.h"
#include "MPPImporter/format/MPPLinkPropertyKeys.h"
#include "MPPImporter/format/MPPProjectPropertyKeys.h"
#include "MPPImporter/format/MPPPropertyKeyTables.h"
#include "MPPImporter/format/MPPResourcePropertyKeys.h"
#include "MPPImporter/format/MPPTaskPropertyKeys.h"
#include "MPPImporter/format/MPPVersionTables.h"

#include <algorithm>

namespace {

using enum MPPFieldBlock;
using enum MPPFieldCodec;

constexpr MPPFieldTest bits(uint16_t mask) {
    return {.mask = mask};
}

// The row of a field's numbered copies: baselines 1 to 10.
constexpr MPPFieldRow baselines(MPPFieldRow row) {
    row.copies = kMPPBaselineCount - 1;
    return row;
}

// The row of a kind's custom fields of one type, by their numbers; the custom field tables tell how many
// a layout has.
constexpr MPPFieldRow customFields(MPPFieldRow row) {
    row.copies = kCustomFieldKeysPerType - 1;
    return row;
}

constexpr int32_t taskCustom(MPPCustomFieldType type) {
    return mppCustomFieldKey(kTaskCustomFieldKey, type);
}

constexpr int32_t resourceCustom(MPPCustomFieldType type) {
    return mppCustomFieldKey(kResourceCustomFieldKey, type);
}

// Format 9 names a task's extended field by this mark and the property number of format 12.
constexpr uint32_t kTaskExtendedFieldMark = 0x0B400000;
constexpr int32_t kExtendedFieldNumbering = 12;

constexpr MPPFieldRow kRows[] = {
    {MPPField::taskTotalCost, "taskTotalCost", kAllLayouts, fixed, kTaskTotalCostKey, hundredths},
    {MPPField::taskActualCost, "taskActualCost", kAllLayouts, fixed, kTaskActualCostKey, hundredths},
    {MPPField::taskRemainingCost, "taskRemainingCost", kAllLayouts, fixed, kTaskRemainingCostKey, hundredths},
    {MPPField::taskActualWork, "taskActualWork", kAllLayouts, fixed, kTaskActualWorkKey, work},
    {MPPField::taskRemainingWork, "taskRemainingWork", kAllLayouts, fixed, kTaskRemainingWorkKey, work},
    {MPPField::taskConstraintDate, "taskConstraintDate", kAllLayouts, fixed, kTaskConstraintDateKey,
     timestamp},
    {MPPField::taskConstraintType, "taskConstraintType", kAllLayouts, fixed, kTaskConstraintTypeKey, int16},
    {MPPField::taskDuration, "taskDuration", kAllLayouts, fixed, kTaskDurationKey, duration},
    {MPPField::taskEarlyFinish, "taskEarlyFinish", kAllLayouts, fixed, kTaskEarlyFinishKey, timestamp},
    {MPPField::taskEarlyStart, "taskEarlyStart", kAllLayouts, fixed, kTaskEarlyStartKey, timestamp},
    {MPPField::taskStart, "taskStart", kAllLayouts, fixed, kTaskStartKey, timestamp},
    {MPPField::taskFinish, "taskFinish", kAllLayouts, fixed, kTaskFinishKey, timestamp},
    {MPPField::taskLateStart, "taskLateStart", kAllLayouts, fixed, kTaskLateStartKey, timestamp},
    {MPPField::taskLateFinish, "taskLateFinish", kAllLayouts, fixed, kTaskLateFinishKey, timestamp},
    {MPPField::taskActualStart, "taskActualStart", kAllLayouts, fixed, kTaskActualStartKey, timestamp},
    {MPPField::taskActualFinish, "taskActualFinish", kAllLayouts, fixed, kTaskActualFinishKey, timestamp},
    {MPPField::taskScheduledStart, "taskScheduledStart", kAllLayouts, fixed, kTaskScheduledStartKey,
     timestamp},
    {MPPField::taskScheduledFinish, "taskScheduledFinish", kAllLayouts, fixed, kTaskScheduledFinishKey,
     timestamp},
    // Every estimated duration format code (35 to 43 for minutes to months, 53 for the default unit)
    // has this bit.
    {MPPField::taskEstimated,
     "taskEstimated",
     kAllLayouts,
     fixed,
     kTaskEstimatedKey,
     flag,
     {.mask = 0x20, .wide = true}},
    {MPPField::taskFixedCost, "taskFixedCost", kAllLayouts, fixed, kTaskFixedCostKey, hundredths},
    {MPPField::taskFixedCostAccrual, "taskFixedCostAccrual", kAllLayouts, fixed, kTaskFixedCostAccrualKey,
     int16},
    {MPPField::taskID, "taskID", kAllLayouts, fixed, kTaskIDKey, int32},
    {MPPField::taskOleLink, "taskOleLink", kAllLayouts, fixed, kTaskOleLinkKey, ubyte},
    {MPPField::taskOutlineLevel, "taskOutlineLevel", kAllLayouts, fixed, kTaskOutlineLevelKey, int16},
    {MPPField::taskParentUID, "taskParentUID", kAllLayouts, fixed, kTaskParentUIDKey, int32},
    {MPPField::taskPercentComplete, "taskPercentComplete", kAllLayouts, fixed, kTaskPercentCompleteKey,
     int16},
    {MPPField::taskPercentWorkComplete, "taskPercentWorkComplete", kAllLayouts, fixed,
     kTaskPercentWorkCompleteKey, int16},
    {MPPField::taskPriority, "taskPriority", kAllLayouts, fixed, kTaskPriorityKey, int16},
    {MPPField::taskType, "taskType", kAllLayouts, fixed, kTaskTypeKey, int16},
    {MPPField::taskWork, "taskWork", kAllLayouts, fixed, kTaskWorkKey, work},
    {MPPField::taskName, "taskName", kAllLayouts, var, kTaskNameKey, text},
    {MPPField::taskNotes, "taskNotes", kAllLayouts, var, kTaskNotesKey, text},
    {MPPField::taskPinnedDuration, "taskPinnedDuration", kAllLayouts, var, kTaskPinnedDurationKey, text},
    {MPPField::taskPinnedFinish, "taskPinnedFinish", kAllLayouts, var, kTaskPinnedFinishKey, text},
    {MPPField::taskPinnedStart, "taskPinnedStart", kAllLayouts, var, kTaskPinnedStartKey, text},
    {MPPField::taskPreLeveledFinish, "taskPreLeveledFinish", kAllLayouts, var, kTaskPreLeveledFinishKey,
     timestamp},
    {MPPField::taskPreLeveledStart, "taskPreLeveledStart", kAllLayouts, var, kTaskPreLeveledStartKey,
     timestamp},
    // Baseline 0: in the variable data of application 14's layouts and later ones, in the fixed item
    // before; cost in hundredths and duration in tenths of a minute, as stored.
    {MPPField::taskBaselineCost, "taskBaselineCost", kAllLayouts, var, kTaskBaselineCostKey, float64},
    {MPPField::taskBaselineCost, "taskBaselineCost", kAllLayouts, fixed, kTaskBaselineCostFixedKey, float64},
    {MPPField::taskBaselineDuration, "taskBaselineDuration", kAllLayouts, var, kTaskBaselineDurationKey,
     int32},
    {MPPField::taskBaselineDuration, "taskBaselineDuration", kAllLayouts, fixed,
     kTaskBaselineDurationFixedKey, int32},
    {MPPField::taskBaselineFinish, "taskBaselineFinish", kAllLayouts, var, kTaskBaselineFinishKey, timestamp},
    {MPPField::taskBaselineFinish, "taskBaselineFinish", kAllLayouts, fixed, kTaskBaselineFinishFixedKey,
     timestamp},
    {MPPField::taskBaselineStart, "taskBaselineStart", kAllLayouts, var, kTaskBaselineStartKey, timestamp},
    {MPPField::taskBaselineStart, "taskBaselineStart", kAllLayouts, fixed, kTaskBaselineStartFixedKey,
     timestamp},
    {MPPField::taskBaselineWork, "taskBaselineWork", kAllLayouts, var, kTaskBaselineWorkKey, float64},
    {MPPField::taskBaselineWork, "taskBaselineWork", kAllLayouts, fixed, kTaskBaselineWorkFixedKey, float64},
    // Baselines 1 to 10: custom field values from format 12 on, entries of the block of extended fields
    // in format 9.
    baselines({MPPField::taskBaselineCost, "taskBaselineCost", kAllLayouts, custom, kTaskBaselineCostGroupKey,
               number}),
    baselines(
        {MPPField::taskBaselineCost, "taskBaselineCost", {9}, extended, kTaskBaselineCostGroupKey, float64}),
    baselines({MPPField::taskBaselineDuration, "taskBaselineDuration", kAllLayouts, custom,
               kTaskBaselineDurationGroupKey, int32}),
    baselines({MPPField::taskBaselineDuration,
               "taskBaselineDuration",
               {9},
               extended,
               kTaskBaselineDurationGroupKey,
               int32}),
    baselines({MPPField::taskBaselineFinish, "taskBaselineFinish", kAllLayouts, custom,
               kTaskBaselineFinishGroupKey, timestamp}),
    baselines({MPPField::taskBaselineFinish,
               "taskBaselineFinish",
               {9},
               extended,
               kTaskBaselineFinishGroupKey,
               timestamp}),
    baselines({MPPField::taskBaselineStart, "taskBaselineStart", kAllLayouts, custom,
               kTaskBaselineStartGroupKey, timestamp}),
    baselines({MPPField::taskBaselineStart,
               "taskBaselineStart",
               {9},
               extended,
               kTaskBaselineStartGroupKey,
               timestamp}),
    baselines({MPPField::taskBaselineWork, "taskBaselineWork", kAllLayouts, custom, kTaskBaselineWorkGroupKey,
               number}),
    baselines(
        {MPPField::taskBaselineWork, "taskBaselineWork", {9}, extended, kTaskBaselineWorkGroupKey, float64}),
    // Applications 15 and 16 use bit 4 of the byte for something else.
    {MPPField::taskEffortDriven,
     "taskEffortDriven",
     {9, 12, 14},
     fixedMeta,
     kTaskEffortDrivenKey,
     flag,
     bits(0x10)},
    {MPPField::taskEffortDriven,
     "taskEffortDriven",
     {15, 16},
     fixedMeta,
     kTaskEffortDrivenKey,
     flag,
     bits(0x08)},
    // Milestones of formats 9 to 14 hold 0x23 as well as 0x63 in their byte, those of applications 15
    // and 16 0xFF.
    {MPPField::taskMilestone, "taskMilestone", {9, 12, 14}, fixedMeta, kTaskMilestoneKey, flag, bits(0x20)},
    {MPPField::taskMilestone, "taskMilestone", {15, 16}, fixedMeta, kTaskMilestoneKey, flag, bits(0x02)},
    {MPPField::taskExpanded, "taskExpanded", kAllLayouts, fixedMeta, kTaskExpandedKey, flag, bits(0x02)},
    {MPPField::taskHammockMark, "taskHammockMark", kAllLayouts, fixedMeta, kTaskHammockMarkKey, ubyte},
    {MPPField::taskHammockSide, "taskHammockSide", kAllLayouts, fixedMeta, kTaskHammockSideKey, ubyte},
    // Bit 3 of 0xC7 or 0xCF in application 14 (also in the format 9 and 12 copies it saves with its own
    // task items), bit 7 of 0x7F or 0xFF in applications 15 and 16. (Byte 8 of the Fixed2 data item
    // lies inside the task's GUID.)
    {MPPField::taskManual, "taskManual", {9, 12, 14}, fixed2Meta, kTaskManualKey, flag, bits(0x08)},
    {MPPField::taskManual, "taskManual", {15, 16}, fixed2Meta, kTaskManualKey, flag, bits(0x80)},

    // Resource cost and rates are read as stored; units in hundredths.
    {MPPField::resourceCost, "resourceCost", kAllLayouts, fixed, kResourceCostKey, float64},
    {MPPField::resourceWork, "resourceWork", kAllLayouts, fixed, kResourceWorkKey, work},
    // Format 9 and 12 copies saved by applications 15 and 16 cut the resource items to 172 bytes,
    // leaving out 8 bytes in front of the cost per use.
    {MPPField::resourceCostPerUse,
     "resourceCostPerUse",
     {9, 12, 14},
     fixed,
     kResourceCostPerUseKey,
     float64,
     {},
     {15, 16},
     -8},
    {MPPField::resourceCostPerUse, "resourceCostPerUse", kAllLayouts, fixed, kResourceCostPerUseKey, float64},
    {MPPField::resourceID, "resourceID", kAllLayouts, fixed, kResourceIDKey, int32},
    {MPPField::resourceMaxUnits, "resourceMaxUnits", kAllLayouts, fixed, kResourceMaxUnitsKey, hundredths},
    {MPPField::resourceStandardRate, "resourceStandardRate", kAllLayouts, fixed, kResourceStandardRateKey,
     float64},
    {MPPField::resourceType, "resourceType", kAllLayouts, fixed, kResourceTypeKey, int16},
    {MPPField::resourceUID, "resourceUID", kAllLayouts, fixed, kResourceUIDKey, int32},
    {MPPField::resourceAvailableFrom, "resourceAvailableFrom", kAllLayouts, fixed, kResourceAvailableFromKey,
     timestamp},
    {MPPField::resourceAvailableTo, "resourceAvailableTo", kAllLayouts, fixed, kResourceAvailableToKey,
     timestamp},
    {MPPField::resourceEmailAddress, "resourceEmailAddress", kAllLayouts, var, kResourceEmailAddressKey,
     text},
    {MPPField::resourceName, "resourceName", kAllLayouts, var, kResourceNameKey, text},
    {MPPField::resourceNotes, "resourceNotes", kAllLayouts, var, kResourceNotesKey, text},
    {MPPField::resourceAvailability, "resourceAvailability", kAllLayouts, var, kResourceAvailabilityKey,
     bytes},
    // The mark of a cost resource, in the Fixed2 meta item of formats 12 and 14.
    {MPPField::resourceCostResource, "resourceCostResource", kAllLayouts, fixed2Meta,
     kResourceIsCostResourceKey, flag, bits(0x10)},
    // A resource's Baseline: variable data in the files of applications 15 and 16, words of the fixed
    // item in the others. Work is kept as stored (thousandths of a minute), and so is cost (hundredths).
    {MPPField::resourceBaselineWork,
     "resourceBaselineWork",
     {15, 16},
     var,
     kResourceBaselineWorkVarKey,
     float64},
    {MPPField::resourceBaselineWork,
     "resourceBaselineWork",
     {9, 12, 14},
     fixed,
     kResourceBaselineWorkKey,
     float64},
    {MPPField::resourceBaselineCost,
     "resourceBaselineCost",
     {15, 16},
     var,
     kResourceBaselineCostVarKey,
     float64},
    {MPPField::resourceBaselineCost,
     "resourceBaselineCost",
     {9, 12, 14},
     fixed,
     kResourceBaselineCostKey,
     float64},
    // Baselines 1 to 10 of a resource are custom field values, cost as stored and work in thousandths
    // of a minute.
    baselines({MPPField::resourceBaselineCost, "resourceBaselineCost", kAllLayouts, custom,
               kResourceBaselineCostGroupKey, number}),
    baselines({MPPField::resourceBaselineWork, "resourceBaselineWork", kAllLayouts, custom,
               kResourceBaselineWorkGroupKey, number}),
    // The mark that a resource, or for the default resource the plan, holds a Baseline: the Baseline's
    // timephased work, from format 12 on.
    {MPPField::resourceBaselineMark, "resourceBaselineMark", kAllLayouts, var, kResourceBaselineZeroKey,
     bytes},

    {MPPField::calendarBaseUID, "calendarBaseUID", kAllLayouts, fixed, kCalendarBaseUIDKey, int32},
    {MPPField::calendarResourceUID, "calendarResourceUID", kAllLayouts, fixed, kCalendarResourceUIDKey,
     int32},
    {MPPField::calendarName, "calendarName", kAllLayouts, var, kCalendarNameKey, text},
    {MPPField::calendarData, "calendarData", kAllLayouts, var, kCalendarDataKey, bytes},

    // Links, in the fixed items of the constraint store.
    {MPPField::linkTaskUID, "linkTaskUID", kAllLayouts, fixed, kLinkTaskUIDKey, int32},
    {MPPField::linkPredecessorUID, "linkPredecessorUID", kAllLayouts, fixed, kLinkPredecessorUIDKey, int32},
    {MPPField::linkType, "linkType", kAllLayouts, fixed, kLinkTypeKey, int16},
    {MPPField::linkLag, "linkLag", kAllLayouts, fixed, kLinkLagKey, int32},
    {MPPField::linkLagFormat, "linkLagFormat", kAllLayouts, fixed, kLinkLagFormatKey, int16},

    // Assignment work is kept as stored (thousandths of a minute): its reader hands on seconds.
    {MPPField::assignmentFinish, "assignmentFinish", kAllLayouts, fixed, kAssignmentFinishKey, timestamp},
    {MPPField::assignmentResourceUID, "assignmentResourceUID", kAllLayouts, fixed, kAssignmentResourceUIDKey,
     int32},
    {MPPField::assignmentStart, "assignmentStart", kAllLayouts, fixed, kAssignmentStartKey, timestamp},
    {MPPField::assignmentTaskUID, "assignmentTaskUID", kAllLayouts, fixed, kAssignmentTaskUIDKey, int32},
    {MPPField::assignmentUnits, "assignmentUnits", kAllLayouts, fixed, kAssignmentUnitsKey, hundredths},
    {MPPField::assignmentWork, "assignmentWork", kAllLayouts, fixed, kAssignmentWorkKey, float64},
    {MPPField::assignmentActualWork, "assignmentActualWork", kAllLayouts, fixed, kAssignmentActualWorkKey,
     float64},
    {MPPField::assignmentRemainingWork, "assignmentRemainingWork", kAllLayouts, fixed,
     kAssignmentRemainingWorkKey, float64},
    {MPPField::assignmentCost, "assignmentCost", kAllLayouts, fixed, kAssignmentCostKey, hundredths},
    {MPPField::assignmentTimephasedWork, "assignmentTimephasedWork", kAllLayouts, var,
     kAssignmentTimephasedWorkKey, bytes},
    // An assignment's Baseline: variable data where application 14 or later saved the file, also a copy
    // of format 9 or 12, and words of the fixed item where applications 9 and 12 did. Work is kept as stored
    // (thousandths of a minute), and so is cost (hundredths).
    {MPPField::assignmentBaselineStart,
     "assignmentBaselineStart",
     kAllLayouts,
     var,
     kAssignmentBaselineStartKey,
     timestamp,
     {},
     {14, 15, 16}},
    {MPPField::assignmentBaselineStart,
     "assignmentBaselineStart",
     {9, 12},
     fixed,
     kAssignmentBaselineStartFixedKey,
     timestamp},
    {MPPField::assignmentBaselineFinish,
     "assignmentBaselineFinish",
     kAllLayouts,
     var,
     kAssignmentBaselineFinishKey,
     timestamp,
     {},
     {14, 15, 16}},
    {MPPField::assignmentBaselineFinish,
     "assignmentBaselineFinish",
     {9, 12},
     fixed,
     kAssignmentBaselineFinishFixedKey,
     timestamp},
    {MPPField::assignmentBaselineWork,
     "assignmentBaselineWork",
     kAllLayouts,
     var,
     kAssignmentBaselineWorkKey,
     float64,
     {},
     {14, 15, 16}},
    {MPPField::assignmentBaselineWork,
     "assignmentBaselineWork",
     {9, 12},
     fixed,
     kAssignmentBaselineWorkFixedKey,
     float64},
    {MPPField::assignmentBaselineCost,
     "assignmentBaselineCost",
     kAllLayouts,
     var,
     kAssignmentBaselineCostKey,
     float64,
     {},
     {14, 15, 16}},
    {MPPField::assignmentBaselineCost,
     "assignmentBaselineCost",
     {9, 12},
     fixed,
     kAssignmentBaselineCostFixedKey,
     float64},
    // Baselines 1 to 10 are custom field values.
    baselines({MPPField::assignmentBaselineStart, "assignmentBaselineStart", kAllLayouts, custom,
               kAssignmentBaselineStartGroupKey, timestamp}),
    baselines({MPPField::assignmentBaselineFinish, "assignmentBaselineFinish", kAllLayouts, custom,
               kAssignmentBaselineFinishGroupKey, timestamp}),
    baselines({MPPField::assignmentBaselineWork, "assignmentBaselineWork", kAllLayouts, custom,
               kAssignmentBaselineWorkGroupKey, number}),
    baselines({MPPField::assignmentBaselineCost, "assignmentBaselineCost", kAllLayouts, custom,
               kAssignmentBaselineCostGroupKey, number}),

    // Custom fields of tasks and resources, numbered from 1 per type; the custom field tables give their
    // property numbers. Durations are stored in tenths of a minute.
    customFields({MPPField::taskCustomCost, "taskCustomCost", kAllLayouts, custom,
                  taskCustom(MPPCustomFieldType::cost), number}),
    customFields({MPPField::taskCustomDate, "taskCustomDate", kAllLayouts, custom,
                  taskCustom(MPPCustomFieldType::date), timestamp}),
    customFields({MPPField::taskCustomDuration, "taskCustomDuration", kAllLayouts, custom,
                  taskCustom(MPPCustomFieldType::duration), duration}),
    customFields({MPPField::taskCustomFinish, "taskCustomFinish", kAllLayouts, custom,
                  taskCustom(MPPCustomFieldType::finish), timestamp}),
    customFields({MPPField::taskCustomNumber, "taskCustomNumber", kAllLayouts, custom,
                  taskCustom(MPPCustomFieldType::number), number}),
    customFields({MPPField::taskCustomStart, "taskCustomStart", kAllLayouts, custom,
                  taskCustom(MPPCustomFieldType::start), timestamp}),
    customFields({MPPField::taskCustomText, "taskCustomText", kAllLayouts, custom,
                  taskCustom(MPPCustomFieldType::text), text}),
    customFields({MPPField::resourceCustomCost, "resourceCustomCost", kAllLayouts, custom,
                  resourceCustom(MPPCustomFieldType::cost), number}),
    customFields({MPPField::resourceCustomDate, "resourceCustomDate", kAllLayouts, custom,
                  resourceCustom(MPPCustomFieldType::date), timestamp}),
    customFields({MPPField::resourceCustomDuration, "resourceCustomDuration", kAllLayouts, custom,
                  resourceCustom(MPPCustomFieldType::duration), duration}),
    customFields({MPPField::resourceCustomFinish, "resourceCustomFinish", kAllLayouts, custom,
                  resourceCustom(MPPCustomFieldType::finish), timestamp}),
    customFields({MPPField::resourceCustomNumber, "resourceCustomNumber", kAllLayouts, custom,
                  resourceCustom(MPPCustomFieldType::number), number}),
    customFields({MPPField::resourceCustomStart, "resourceCustomStart", kAllLayouts, custom,
                  resourceCustom(MPPCustomFieldType::start), timestamp}),
    customFields({MPPField::resourceCustomText, "resourceCustomText", kAllLayouts, custom,
                  resourceCustom(MPPCustomFieldType::text), text}),

    // The outline code store's value lists, by outline code UID.
    {MPPField::outlineCodeValueNumber, "outlineCodeValueNumber", kAllLayouts, var, kOutlCodeValueListValueKey,
     number},
    {MPPField::outlineCodeValueInteger, "outlineCodeValueInteger", kAllLayouts, var,
     kOutlCodeValueListValueKey, int32},
    {MPPField::outlineCodeValueDate, "outlineCodeValueDate", kAllLayouts, var, kOutlCodeValueListValueKey,
     timestamp},
    {MPPField::outlineCodeValueText, "outlineCodeValueText", kAllLayouts, var, kOutlCodeValueListValueKey,
     text},
    {MPPField::outlineCodeData, "outlineCodeData", kAllLayouts, var, kOutlCodeDataKey, text},

    // The project's properties, in its Props stream; the schedule direction is a word, 1 for scheduling
    // from the start and 0 from the finish.
    {MPPField::projectCurrencyCode, "projectCurrencyCode", kAllLayouts, props, kProjectCurrencyCodeKey, text},
    {MPPField::projectCurrencyDigits, "projectCurrencyDigits", kAllLayouts, props, kProjectCurrencyDigitsKey,
     int16},
    {MPPField::projectCurrencySymbolPosition, "projectCurrencySymbolPosition", kAllLayouts, props,
     kProjectCurrencySymbolPositionKey, int16},
    {MPPField::projectCurrencySymbol, "projectCurrencySymbol", kAllLayouts, props, kProjectCurrencySymbolKey,
     text},
    {MPPField::projectDaysPerMonth, "projectDaysPerMonth", kAllLayouts, props, kProjectDaysPerMonthKey,
     int16},
    {MPPField::projectDefaultCalendarName, "projectDefaultCalendarName", kAllLayouts, props,
     kProjectDefaultCalendarNameKey, text},
    {MPPField::projectDurationUnits, "projectDurationUnits", kAllLayouts, props, kProjectDurationUnitsKey,
     int16},
    {MPPField::projectMinutesPerDay, "projectMinutesPerDay", kAllLayouts, props, kProjectMinutesPerDayKey,
     int32},
    {MPPField::projectMinutesPerWeek, "projectMinutesPerWeek", kAllLayouts, props, kProjectMinutesPerWeekKey,
     int32},
    {MPPField::projectFinishDate, "projectFinishDate", kAllLayouts, props, kProjectFinishDateKey, timestamp},
    {MPPField::projectStartDate, "projectStartDate", kAllLayouts, props, kProjectStartDateKey, timestamp},
    {MPPField::projectScheduleFromStart,
     "projectScheduleFromStart",
     kAllLayouts,
     props,
     kProjectScheduleFromStartKey,
     flag,
     {.mask = 1, .wide = true}},
    {MPPField::projectWeekStartDay, "projectWeekStartDay", kAllLayouts, props, kProjectWeekStartDayKey,
     int16},
    {MPPField::projectWorkUnits, "projectWorkUnits", kAllLayouts, props, kProjectWorkUnitsKey, int16},

    // Task flags, bits of the fixed meta item: their numbers per layout lie in the key tables, as flags
    // 1 to 20 follow one another from a layout's first flag bit (applications 15 and 16 start flags 11 to
    // 20 anew).
    {MPPField::taskFlag1, "taskFlag1", kAllLayouts, fixedMeta, kTaskFlagBitBaseKey + 1, bit},
    {MPPField::taskFlag2, "taskFlag2", kAllLayouts, fixedMeta, kTaskFlagBitBaseKey + 2, bit},
    {MPPField::taskFlag3, "taskFlag3", kAllLayouts, fixedMeta, kTaskFlagBitBaseKey + 3, bit},
    {MPPField::taskFlag4, "taskFlag4", kAllLayouts, fixedMeta, kTaskFlagBitBaseKey + 4, bit},
    {MPPField::taskFlag5, "taskFlag5", kAllLayouts, fixedMeta, kTaskFlagBitBaseKey + 5, bit},
    {MPPField::taskFlag6, "taskFlag6", kAllLayouts, fixedMeta, kTaskFlagBitBaseKey + 6, bit},
    {MPPField::taskFlag7, "taskFlag7", kAllLayouts, fixedMeta, kTaskFlagBitBaseKey + 7, bit},
    {MPPField::taskFlag8, "taskFlag8", kAllLayouts, fixedMeta, kTaskFlagBitBaseKey + 8, bit},
    {MPPField::taskFlag9, "taskFlag9", kAllLayouts, fixedMeta, kTaskFlagBitBaseKey + 9, bit},
    {MPPField::taskFlag10, "taskFlag10", kAllLayouts, fixedMeta, kTaskFlagBitBaseKey + 10, bit},
    {MPPField::taskFlag11, "taskFlag11", kAllLayouts, fixedMeta, kTaskFlagBitBaseKey + 11, bit},
    {MPPField::taskFlag12, "taskFlag12", kAllLayouts, fixedMeta, kTaskFlagBitBaseKey + 12, bit},
    {MPPField::taskFlag13, "taskFlag13", kAllLayouts, fixedMeta, kTaskFlagBitBaseKey + 13, bit},
    {MPPField::taskFlag14, "taskFlag14", kAllLayouts, fixedMeta, kTaskFlagBitBaseKey + 14, bit},
    {MPPField::taskFlag15, "taskFlag15", kAllLayouts, fixedMeta, kTaskFlagBitBaseKey + 15, bit},
    {MPPField::taskFlag16, "taskFlag16", kAllLayouts, fixedMeta, kTaskFlagBitBaseKey + 16, bit},
    {MPPField::taskFlag17, "taskFlag17", kAllLayouts, fixedMeta, kTaskFlagBitBaseKey + 17, bit},
    {MPPField::taskFlag18, "taskFlag18", kAllLayouts, fixedMeta, kTaskFlagBitBaseKey + 18, bit},
    {MPPField::taskFlag19, "taskFlag19", kAllLayouts, fixedMeta, kTaskFlagBitBaseKey + 19, bit},
    {MPPField::taskFlag20, "taskFlag20", kAllLayouts, fixedMeta, kTaskFlagBitBaseKey + 20, bit},
};

int64_t flagValue(const MPPFieldTest& test, MPPConstBytes data) {
    return test.wide ? decodeMPPNumber<int16_t>(data) : decodeMPPNumber<uint8_t>(data);
}

bool flagAnswer(const MPPFieldTest& test, int64_t value) {
    return (value & test.mask) != 0;
}

// The stored value of a flag: its bits set or cleared in `current`.
int64_t storedFlag(const MPPFieldTest& test, bool value, int64_t current) {
    return value ? (current | test.mask) : (current & ~int64_t{test.mask});
}

double numberOfWidth(MPPConstBytes data) {
    switch (data.size()) {
    case 1:
        return decodeMPPNumber<int8_t>(data);
    case 2:
        return decodeMPPNumber<int16_t>(data);
    case 4:
        return decodeMPPNumber<int32_t>(data);
    case 8:
        return decodeMPPNumber<double>(data);
    default:
        return 0;
    }
}

template <typename Value>
const Value& held(const MPPFieldValue& value, const MPPFieldRow& row) {
    const Value* held = std::get_if<Value>(&value);
    tvAssert(held != nullptr, std::string("Value of the wrong kind for field ") + row.name + ".");
    return *held;
}

} // namespace

std::span<const MPPFieldRow> mppFieldCatalog() {
    return kRows;
}

namespace {

// The place of an entry of extended fields: its name, and the property number of the block of them.
std::optional<MPPFieldPlace> extendedFieldPlace(const MPPFieldRow& row, int32_t key,
                                                const MPPKeyPosition& keyPosition) {
    const auto number = mppPropertyID(mppVersionTables(kExtendedFieldNumbering)->keyColumn, key);
    const auto container = keyPosition(true, kTaskExtendedFieldsKey);
    if (!number || !container) {
        return std::nullopt;
    }
    return MPPFieldPlace{&row, kTaskExtendedFieldMark | *number, row.test, *container};
}

} // namespace

std::optional<MPPFieldPlace> mppFieldPlace(MPPField field, int32_t version, int32_t appVersion,
                                           const MPPKeyPosition& keyPosition, int32_t number) {
    for (const MPPFieldRow& row : kRows) {
        if (row.field != field || !row.holds(version, appVersion, number)) {
            continue;
        }
        const int32_t key = row.key + number;
        if (row.block == extended) {
            if (auto place = extendedFieldPlace(row, key, keyPosition)) {
                return place;
            }
            continue;
        }
        const bool keyed = row.block == var || row.block == props || row.block == custom;
        if (const auto position = keyPosition(keyed, key)) {
            if (row.codec == bit) {
                return MPPFieldPlace{&row,
                                     static_cast<uint32_t>(*position / 8 + row.shift),
                                     {.mask = static_cast<uint16_t>(1u << (*position % 8))}};
            }
            return MPPFieldPlace{&row, static_cast<uint32_t>(int64_t{*position} + row.shift), row.test};
        }
    }
    return std::nullopt;
}

std::optional<MPPFieldPlace> mppFieldPlace(MPPField field, int32_t version, int32_t appVersion,
                                           int32_t number) {
    const MPPVersionTables* tables = mppVersionTables(version);
    if (tables == nullptr) {
        return std::nullopt;
    }
    return mppFieldPlace(
        field, version, appVersion,
        [tables, version](bool propertyNumber, int32_t key) -> std::optional<uint32_t> {
            if (!propertyNumber) {
                return mppPropertyOffset(tables->keyColumn, key);
            }
            if (const auto custom = mppCustomFieldProperty(
                    key, [version](MPPCustomFieldType type) { return mppTaskCustomFields(type, version); },
                    [version](MPPCustomFieldType type) { return mppResourceCustomFields(type, version); })) {
                return custom;
            }
            return mppPropertyID(tables->keyColumn, key);
        },
        number);
}

size_t mppFieldSize(const MPPFieldRow& row) {
    switch (row.codec) {
    case ubyte:
        return 1;
    case int16:
        return 2;
    case int32:
        return 4;
    case float64:
        return 8;
    case timestamp:
        return kMPPTimestampSize;
    case duration:
        return kMPPDurationSize;
    case work:
        return kMPPWorkSize;
    case hundredths:
        return kMPPHundredthsSize;
    case flag:
        return row.test.wide ? 2 : 1;
    case bit:
        return 1;
    case text:
    case bytes:
    case number:
        break;
    }
    return 0;
}

size_t mppEncodedSize(const MPPFieldRow& row, const MPPFieldValue& value) {
    if (const auto* text = std::get_if<std::u16string>(&value)) {
        return 2 * (text->size() + 1);
    }
    if (const auto* block = std::get_if<std::vector<uint8_t>>(&value)) {
        return block->size();
    }
    return row.codec == number ? sizeof(double) : mppFieldSize(row);
}

MPPFieldValue decodeMPPField(const MPPFieldRow& row, MPPConstBytes data) {
    tvAssert(row.codec != bit, std::string("The bit of field ") + row.name + " is known by its place.");
    return decodeMPPField(MPPFieldPlace{&row, 0, row.test}, data);
}

MPPFieldValue decodeMPPField(const MPPFieldPlace& place, MPPConstBytes data) {
    const MPPFieldRow& row = *place.row;
    switch (row.codec) {
    case ubyte:
        return int64_t{decodeMPPNumber<uint8_t>(data)};
    case int16:
        return int64_t{decodeMPPNumber<int16_t>(data)};
    case int32:
        return int64_t{decodeMPPNumber<int32_t>(data)};
    case float64:
        return decodeMPPNumber<double>(data);
    case timestamp:
        return decodeMPPTimestamp(data);
    case duration:
        return int64_t{decodeMPPDuration(data)};
    case work:
        return int64_t{decodeMPPWork(data)};
    case hundredths:
        return decodeMPPHundredths(data);
    case flag:
    case bit:
        return flagAnswer(place.test, flagValue(place.test, data));
    case text:
        return decodeMPPText(data);
    case bytes:
        return std::vector<uint8_t>(data.begin(), data.end());
    case number:
        return numberOfWidth(data);
    }
    return false;
}

void encodeMPPField(const MPPFieldRow& row, const MPPFieldValue& value, MPPMutableBytes data) {
    tvAssert(row.codec != bit, std::string("The bit of field ") + row.name + " is known by its place.");
    encodeMPPField(MPPFieldPlace{&row, 0, row.test}, value, data);
}

void encodeMPPField(const MPPFieldPlace& place, const MPPFieldValue& value, MPPMutableBytes data) {
    const MPPFieldRow& row = *place.row;
    switch (row.codec) {
    case ubyte:
        return encodeMPPNumber(static_cast<uint8_t>(held<int64_t>(value, row)), data);
    case int16:
        return encodeMPPNumber(static_cast<int16_t>(held<int64_t>(value, row)), data);
    case int32:
        return encodeMPPNumber(static_cast<int32_t>(held<int64_t>(value, row)), data);
    case float64:
        return encodeMPPNumber(held<double>(value, row), data);
    case timestamp:
        return encodeMPPTimestamp(held<std::optional<TVDate>>(value, row), data);
    case duration:
        return encodeMPPDuration(held<int64_t>(value, row), data);
    case work:
        return encodeMPPWork(held<int64_t>(value, row), data);
    case hundredths:
        return encodeMPPHundredths(held<double>(value, row), data);
    case flag:
    case bit: {
        const int64_t stored = storedFlag(place.test, held<bool>(value, row), flagValue(place.test, data));
        return place.test.wide ? encodeMPPNumber(static_cast<int16_t>(stored), data)
                               : encodeMPPNumber(static_cast<uint8_t>(stored), data);
    }
    case text:
        return encodeMPPText(held<std::u16string>(value, row), data);
    case bytes: {
        const auto& block = held<std::vector<uint8_t>>(value, row);
        std::copy(block.begin(), block.end(), data.begin());
        return;
    }
    case number:
        return encodeMPPNumber(held<double>(value, row), data);
    }
}
