#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPCommon/xml/KVMSPCXMLElement.h"
#include "MPPExporter/MPPObjects/KVMPPConstraint.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// How the planning application scheduled one task of a bundle, read once from its `task` element in
// typed form, so that the task, assignment and split mappers can consult any task by id. It also
// makes the task's links. Read only after construction; missing values fall back to 0 or none.
class KVMSPEScheduledTaskInfo {
public:
    // One `prerequisite-task` as the bundle states it. Links are used in their model form
    // (`constraints`); this record keeps what the element said.
    struct Prerequisite {
        std::optional<std::string> taskId;
        std::optional<std::string> external;
        // 0 finish-to-start (also for a missing or unknown kind), 1 start-to-finish, 2 start-to-start,
        // 3 finish-to-finish.
        int32_t kind = 0;
        bool isResourceDependency = false;
        double leadTime = 0;
        bool isPercentage = false;
    };

    // A task element without `id` is an internal error ("Task attribute 'id' not found.").
    explicit KVMSPEScheduledTaskInfo(KVMSPCXMLElement& tvnxTask);

    const std::vector<Prerequisite>& prerequisites() const { return _prerequisites; }
    const std::vector<KVMPPConstraint>& constraints() const { return _constraints; }
    // The members of a group task; none for other kinds.
    const std::optional<std::vector<std::string>>& childTaskUIDs() const { return _childTaskUIDs; }
    // 1 when the limit came from the end form of the element, 0 from the start form.
    int32_t noEarlierThanConstrainedTaskEnd() const { return _noEarlierThanConstrainedTaskEnd; }
    int32_t noLaterThanConstrainedTaskEnd() const { return _noLaterThanConstrainedTaskEnd; }
    // 0 task, 1 milestone, 2 group, 3 hammock.
    static constexpr int32_t kMilestone = 1;
    static constexpr int32_t kGroup = 2;
    int32_t taskType() const { return _taskType; }
    // 0 duration, 1 effort, 2 units.
    int32_t recalculate() const { return _recalculate; }
    // 0 unstated, 1 as soon as possible, 2 as late as possible.
    int32_t scheduleType() const { return _scheduleType; }
    const std::string& uid() const { return _uid; }
    const std::optional<TVDate>& startDate() const { return _startDate; }
    const std::optional<TVDate>& endDate() const { return _endDate; }
    const std::optional<TVDate>& leveledStart() const { return _leveledStart; }
    const std::optional<TVDate>& preleveledStart() const { return _preleveledStart; }
    const std::optional<TVDate>& preleveledFinish() const { return _preleveledFinish; }
    const std::optional<TVDate>& lockedStartDate() const { return _lockedStartDate; }
    const std::optional<TVDate>& lockedEndDate() const { return _lockedEndDate; }
    const std::optional<TVDate>& noEarlierThanConstraintDate() const { return _noEarlierThanConstraintDate; }
    const std::optional<TVDate>& noLaterThanConstraintDate() const { return _noLaterThanConstraintDate; }
    int64_t priority() const { return _priority; }
    // Seconds.
    double effort() const { return _effort; }
    double effortDone() const { return _effortDone; }
    double totalCost() const { return _totalCost; }
    double costDone() const { return _costDone; }
    // Fractions: actual over planned duration, done over planned effort, and the milestone's own.
    double percentCompletion() const { return _percentCompletion; }
    double workPercentCompletion() const { return _workPercentCompletion; }
    double completionPercentage() const { return _completionPercentage; }
    // Seconds.
    double actualDuration() const { return _actualDuration; }
    double duration() const { return _duration; }
    double remainingDuration() const { return _remainingDuration; }
    double levelingDelay() const { return _levelingDelay; }

    // For logs.
    std::string description() const;

private:
    void readPrerequisite(KVMSPCXMLElement& prerequisite);

    std::vector<Prerequisite> _prerequisites;
    std::vector<KVMPPConstraint> _constraints;
    std::optional<std::vector<std::string>> _childTaskUIDs;
    int32_t _noEarlierThanConstrainedTaskEnd = 0;
    int32_t _noLaterThanConstrainedTaskEnd = 0;
    int32_t _taskType = 0;
    int32_t _recalculate = 0;
    int32_t _scheduleType = 0;
    std::string _uid;
    std::optional<TVDate> _startDate;
    std::optional<TVDate> _endDate;
    std::optional<TVDate> _leveledStart;
    std::optional<TVDate> _preleveledStart;
    std::optional<TVDate> _preleveledFinish;
    std::optional<TVDate> _lockedStartDate;
    std::optional<TVDate> _lockedEndDate;
    std::optional<TVDate> _noEarlierThanConstraintDate;
    std::optional<TVDate> _noLaterThanConstraintDate;
    int64_t _priority = 0;
    double _effort = 0;
    double _effortDone = 0;
    double _totalCost = 0;
    double _costDone = 0;
    double _percentCompletion = 0;
    double _workPercentCompletion = 0;
    double _completionPercentage = 0;
    double _actualDuration = 0;
    double _duration = 0;
    double _remainingDuration = 0;
    double _levelingDelay = 0;
};
