#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPExporter/MPPObjects/KVMPPTaskBaseline.h"
#include "MPPExporter/MPPObjects/MPPCustomFields.h"
#include "MPPExporter/MPPObjects/MPPDeferred.h"
#include "MPPExporter/MPPObjects/MPPGuid.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

class KVMPPCalendar;

// One task of the plan. Times are seconds, money currency units, percentages fractions. The `get...`
// operations without a field of their own state which task fields the export leaves at a constant.
class KVMPPTask {
public:
    static constexpr uint32_t kNoID = 0xFFFFFFFF;

    KVMPPTask() = default;
    virtual ~KVMPPTask() = default;
    KVMPPTask(const KVMPPTask&) = delete;
    KVMPPTask& operator=(const KVMPPTask&) = delete;

    const MPPGuid& getGUID() const { return GUID; }
    // The parent's ID, or kNoID at the top.
    uint64_t getParentTaskID() const { return parent ? parent->ID : kNoID; }
    // The calendar's ID, or kNoID without a resolved calendar.
    uint64_t getCalendarID() const;
    bool getSplits() const { return hasSplits; }

    std::optional<TVDate> getActualStart() const { return std::nullopt; }
    std::optional<TVDate> getActualFinish() const { return std::nullopt; }
    std::optional<TVDate> getBaselineStart() const { return std::nullopt; }
    std::optional<TVDate> getBaselineFinish() const { return std::nullopt; }
    std::optional<TVDate> getDeadline() const { return std::nullopt; }
    std::optional<TVDate> getStop() const { return std::nullopt; }
    std::optional<TVDate> getResume() const { return std::nullopt; }
    std::optional<TVDate> getSummaryProgress() const { return std::nullopt; }
    double getFreeSlack() const { return 0.0; }
    double getStartSlack() const { return 0.0; }
    double getFinishSlack() const { return 0.0; }
    double getBaselineDuration() const { return 0.0; }
    double getLevelingDelay() const { return 0.0; }
    double getBaselineWork() const { return 0.0; }
    int32_t getFixedCostAccrual() const { return 3; }
    bool getRecurring() const { return false; }
    bool getMarked() const { return false; }
    bool getRollup() const { return false; }
    bool getHideBar() const { return false; }
    virtual bool getEffortDriven() const { return true; }
    bool getExpanded() const { return true; }
    bool getLevelAssignments() const { return true; }

    MPPGuid GUID = newRandomMPPGuid();
    // 0 fixed units, 1 fixed duration, 2 fixed work.
    int32_t taskType = 0;
    bool estimated = true;
    bool ignoreResourceCalendar = false;
    bool milestone = false;
    bool levelingCanSplit = true;
    // At least one baseline exists.
    bool baselineSetted = false;
    // Built from a split task of the bundle.
    bool hasSplits = false;
    // Scheduled by hand: pinned at its start and its end.
    bool manual = false;
    // 0 as soon as possible, 1 as late as possible, 2 must start on, 3 must finish on, 4 start no
    // earlier than, 5 start no later than, 6 finish no earlier than, 7 finish no later than.
    int32_t constraintType = 0;
    std::optional<TVDate> createDate;
    std::optional<TVDate> startDate;
    std::optional<TVDate> endDate;
    MPPCustomFields customFieldValues;
    // In baseline order; the writers move the first into `baseline0`.
    std::vector<KVMPPTaskBaseline> baselines;
    MPPDeferred<KVMPPCalendar> calendar;
    std::optional<KVMPPTaskBaseline> baseline0;
    std::optional<TVDate> leveledStart;
    std::optional<TVDate> preleveledStart;
    std::optional<TVDate> preleveledFinish;
    std::optional<std::string> title;
    std::optional<std::string> notes;
    std::optional<TVDate> actualStart;
    std::optional<TVDate> stop;
    std::optional<TVDate> resume;
    std::optional<TVDate> constraintDate;
    uint64_t ID = 0;
    // 0 at the top of the outline.
    uint64_t outlineLevel = 0;
    // 0 to 1000.
    uint64_t priority = 500;
    // Set from the outline levels by post-processing; the tasks list owns every task.
    KVMPPTask* parent = nullptr;
    double work = 0;
    double remainingWork = 0;
    double actualWork = 0;
    double duration = 0;
    double actualDuration = 0;
    double remainingDuration = 0;
    double levelingDelay = 0;
    double percentComplete = 0;
    double workPercentComplete = 0;
    double cost = 0;
    double fixedCost = 0;
    double actualCost = 0;
    double remainingCost = 0;
};
