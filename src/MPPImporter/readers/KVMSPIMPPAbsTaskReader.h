#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPCommon/support/TVError.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class KVMSPISingleExtendedAttribute;

// What the project reader, the single task readers and the query layer ask of the tasks of a plan.
// Every field operation answers false when the value is absent or unreadable, and then gives the
// stream reader's error; text operations append to `value`. Money is in currency units, work and
// durations are time spans.
class KVMSPIMPPAbsTaskReader {
public:
    virtual ~KVMSPIMPPAbsTaskReader() = default;

    // -1 for the actual plan, else the baseline 0 to 10 that cost, duration, start, finish and work
    // follow.
    virtual int32_t baselineNumber() const = 0;
    virtual void setBaselineNumber(int32_t baselineNumber) = 0;

    // The tasks' UIDs in task ID order, deleted and null tasks included.
    virtual const std::vector<int32_t>& uniqueIDs() const = 0;
    // Whether the UID has a task item of at least the minimum size of the file's version.
    virtual bool isValidUID(int32_t uid) const = 0;
    // The task's row number, -1 if unknown.
    virtual int64_t objectIDforUniqueID(int32_t uid) const = 0;

    virtual bool taskTotalCost(int32_t uid, double& value, TVError* error = nullptr) = 0;
    virtual bool taskActualCost(int32_t uid, double& value, TVError* error = nullptr) = 0;
    virtual bool taskRemainingCost(int32_t uid, double& value, TVError* error = nullptr) = 0;
    virtual bool taskActualWork(int32_t uid, TVTimeSpan& value, TVError* error = nullptr) = 0;
    virtual bool taskRemainingWork(int32_t uid, TVTimeSpan& value, TVError* error = nullptr) = 0;
    virtual bool taskConstraintDate(int32_t uid, TVDate& value, TVError* error = nullptr) = 0;
    virtual bool taskConstraintType(int32_t uid, int16_t& value, TVError* error = nullptr) = 0;
    virtual bool taskEarlyFinish(int32_t uid, TVDate& value, TVError* error = nullptr) = 0;
    virtual bool taskEarlyStart(int32_t uid, TVDate& value, TVError* error = nullptr) = 0;
    virtual bool taskLateStart(int32_t uid, TVDate& value, TVError* error = nullptr) = 0;
    virtual bool taskLateFinish(int32_t uid, TVDate& value, TVError* error = nullptr) = 0;
    virtual bool taskActualStart(int32_t uid, TVDate& value, TVError* error = nullptr) = 0;
    virtual bool taskActualFinish(int32_t uid, TVDate& value, TVError* error = nullptr) = 0;
    virtual bool taskScheduledStart(int32_t uid, TVDate& value, TVError* error = nullptr) = 0;
    virtual bool taskScheduledFinish(int32_t uid, TVDate& value, TVError* error = nullptr) = 0;
    // `value` is false also when the answer is false.
    virtual bool taskEstimated(int32_t uid, bool& value, TVError* error = nullptr) = 0;
    virtual bool taskFixedCost(int32_t uid, double& value, TVError* error = nullptr) = 0;
    virtual bool taskFixedCostAccrual(int32_t uid, int16_t& value, TVError* error = nullptr) = 0;
    virtual bool taskID(int32_t uid, int32_t& value, TVError* error = nullptr) = 0;
    virtual bool taskOleLink(int32_t uid, uint8_t& value, TVError* error = nullptr) = 0;
    virtual bool taskOutlineLevel(int32_t uid, int16_t& value, TVError* error = nullptr) = 0;
    virtual bool taskParentUID(int32_t uid, int32_t& value, TVError* error = nullptr) = 0;
    virtual bool taskPercentComplete(int32_t uid, int16_t& value, TVError* error = nullptr) = 0;
    virtual bool taskPercentWorkComplete(int32_t uid, int16_t& value, TVError* error = nullptr) = 0;
    virtual bool taskPriority(int32_t uid, int16_t& value, TVError* error = nullptr) = 0;
    virtual bool taskType(int32_t uid, int16_t& value, TVError* error = nullptr) = 0;
    // The stored start and finish, whatever baseline is selected.
    virtual bool taskManualStart(int32_t uid, TVDate& value, TVError* error = nullptr) = 0;
    virtual bool taskManualFinish(int32_t uid, TVDate& value, TVError* error = nullptr) = 0;

    virtual bool taskName(int32_t uid, std::string& value, TVError* error = nullptr) = 0;
    virtual bool taskNotes(int32_t uid, std::string& value, TVError* error = nullptr) = 0;
    virtual bool taskPinnedDuration(int32_t uid, std::string& value, TVError* error = nullptr) = 0;
    virtual bool taskPinnedFinish(int32_t uid, std::string& value, TVError* error = nullptr) = 0;
    virtual bool taskPinnedStart(int32_t uid, std::string& value, TVError* error = nullptr) = 0;
    virtual bool taskPreLeveledFinish(int32_t uid, TVDate& value, TVError* error = nullptr) = 0;
    virtual bool taskPreLeveledStart(int32_t uid, TVDate& value, TVError* error = nullptr) = 0;

    // These follow the selected baseline.
    virtual bool taskCost(int32_t uid, double& value, TVError* error = nullptr) = 0;
    virtual bool taskDuration(int32_t uid, TVTimeSpan& value, TVError* error = nullptr) = 0;
    virtual bool taskStart(int32_t uid, TVDate& value, TVError* error = nullptr) = 0;
    virtual bool taskFinish(int32_t uid, TVDate& value, TVError* error = nullptr) = 0;
    virtual bool taskWork(int32_t uid, TVTimeSpan& value, TVError* error = nullptr) = 0;

    virtual bool taskEffortDriven(int32_t uid, bool& value, TVError* error = nullptr) = 0;
    virtual bool taskMilestone(int32_t uid, bool& value, TVError* error = nullptr) = 0;
    virtual bool taskExpanded(int32_t uid, bool& value, TVError* error = nullptr) = 0;
    // Flags 1 to 20; any other number answers false with no error.
    virtual bool taskFlag(int32_t flagNumber, int32_t uid, bool& value, TVError* error = nullptr) = 0;
    virtual bool taskOleLinkMeta(int32_t uid, uint8_t& value, TVError* error = nullptr) = 0;
    virtual bool taskHammock(int32_t uid, bool& value, TVError* error = nullptr) = 0;
    virtual bool taskPreHammock(int32_t uid, bool& value, TVError* error = nullptr) = 0;
    virtual bool taskPostHammock(int32_t uid, bool& value, TVError* error = nullptr) = 0;
    virtual bool taskManual(int32_t uid, bool& value, TVError* error = nullptr) = 0;
    // Whether the task holds data in baseline `index` (0 to 10).
    virtual bool hasBaseline(int32_t uid, int32_t index, bool& value, TVError* error = nullptr) = 0;

    // These always succeed.
    virtual bool taskIsNull(int32_t uid, bool& value, TVError* error = nullptr) = 0;
    virtual bool taskSummary(int32_t uid, bool& value, TVError* error = nullptr) = 0;
    virtual bool taskUID(int32_t uid, int32_t& value, TVError* error = nullptr) = 0;
    // Appends the task's custom field values that can be read, outline codes left out.
    virtual bool taskCustomFields(int32_t uid,
                                  std::vector<std::unique_ptr<KVMSPISingleExtendedAttribute>>& value,
                                  TVError* error = nullptr) = 0;
};
