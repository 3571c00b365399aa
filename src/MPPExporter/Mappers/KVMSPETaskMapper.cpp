#include "MPPExporter/Mappers/KVMSPETaskMapper.h"

#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPCommon/date/StringExtensions.h"
#include "MPPCommon/shared/MSPCNotes.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPExporter/MPPObjects/KVMSPEScheduleCalendar.h"
#include "MPPExporter/Mappers/KVMSPEIdMapper.h"
#include "MPPExporter/Mappers/KVMSPEMapper.h"
#include "MPPExporter/Mappers/KVMSPEProjectMapper.h"
#include "MPPExporter/Mappers/KVMSPEScheduledTaskInfo.h"
#include "MPPExporter/Mappers/KVMSPETaskBaselineMapper.h"
#include "MPPExporter/Mappers/KVMSPEUserDataMapper.h"
#include "MPPExporter/Mappers/MSPETvnxReading.h"

#include <algorithm>

namespace {

// Schedule types of the scheduled information.
constexpr int32_t kAsSoonAsPossible = 1;
constexpr int32_t kAsLateAsPossible = 2;
// Constraint types of the plan.
constexpr int32_t kConstraintAsLateAsPossible = 1;
constexpr int32_t kConstraintMustStartOn = 2;
constexpr int32_t kConstraintMustFinishOn = 3;
constexpr int32_t kConstraintStartNoEarlierThan = 4;
constexpr int32_t kConstraintStartNoLaterThan = 5;
constexpr int32_t kConstraintFinishNoEarlierThan = 6;
constexpr int32_t kConstraintFinishNoLaterThan = 7;
// A "recalculate" word that leaves the task type as it is.
constexpr const char* kRecalculateNothing = "something_else";

void setIfPresent(std::optional<TVDate>& field, const std::optional<TVDate>& value) {
    if (value) {
        field = value;
    }
}

void setIfNonZero(double& field, double value) {
    if (value != 0) {
        field = value;
    }
}

} // namespace

std::shared_ptr<KVMPPTask> KVMSPETaskMapper::newTaskFromTVNXTask(const ElementPtr& tvnxTask,
                                                                 const ElementPtr&) {
    KVMSPCXMLElement& element = *tvnxTask;
    auto task = std::make_shared<KVMPPTask>();
    const std::optional<std::string> id = tvnxread::attribute(element, tvnx::attribute::kId);
    tvAssert(id.has_value(),
             stringWithFormat("Task <%p> has no 'id' attribute.", static_cast<void*>(&element)));
    std::optional<std::string> title;
    if (const auto titleElement = tvnxread::singleElement(element, tvnx::element::kTitle)) {
        title = stringByReplacingOccurrencesOfNewline(titleElement->stringValue().value_or(""));
    }

    const std::string uid = mapper().idMapper()->taskUIDFromTvnxId(*id);
    task->ID = static_cast<uint64_t>(KVMSPEMapper::nextTaskID());
    KVMSPEProjectMapper::UidToIdMap& uidToId = mapper().projectMapper()->taskUidToIdMap();
    tvAssert(uidToId.count(uid) == 0,
             "Duplicated Task UID='" + uid + "' found (tvnx Task id='" + *id + "').");
    uidToId[uid] = std::to_string(task->ID);

    const KVMSPEScheduledTaskInfo& info = scheduledTask(*id);
    task->title = title;
    mapTaskType(*task, element.stringValueForXQuery(tvnx::element::kRecalculate, nullptr), info);
    task->priority = static_cast<uint64_t>(std::clamp<int64_t>(info.priority(), 0, 1000));

    setIfPresent(task->startDate, info.startDate());
    setIfPresent(task->endDate, info.endDate());
    setIfNonZero(task->duration, info.duration());
    setIfNonZero(task->actualDuration, info.actualDuration());
    setIfNonZero(task->remainingDuration, info.remainingDuration());
    setIfPresent(task->preleveledStart, info.preleveledStart());
    setIfPresent(task->preleveledFinish, info.preleveledFinish());
    setIfPresent(task->leveledStart, info.leveledStart());
    setIfNonZero(task->levelingDelay, info.levelingDelay());
    setIfNonZero(task->work, info.effort());
    if (info.effortDone() >= 0) {
        task->actualWork = info.effortDone();
        task->remainingWork = task->work - task->actualWork;
    }
    task->fixedCost = tvnxread::number(element, tvnx::element::kStaticCost, task->fixedCost);
    setIfNonZero(task->cost, info.totalCost());
    task->actualCost = info.costDone();
    task->remainingCost = task->cost - task->actualCost;
    task->estimated = false;
    task->milestone = info.taskType() == KVMSPEScheduledTaskInfo::kMilestone;
    mapProgress(*task, element, info);
    mapConstraint(*task, info);
    completeSchedule(*task, element, info);

    TVError error;
    const bool splittable = element.boolValueForXQuery(tvnx::element::kSplittable, &error);
    task->levelingCanSplit = error.code == 0 ? splittable : true;
    task->ignoreResourceCalendar = true;
    if (const auto note = tvnxread::singleElement(element, tvnx::element::kNote)) {
        task->notes = newNotesFromTVNXNote(*note);
    }
    if (const auto userData = tvnxread::singleElement(element, tvnx::element::kUserData)) {
        for (KVMPPExtendedAttribute& attribute :
             KVMSPEUserDataMapper::newExtendedAttributesFromUserData(*userData)) {
            task->customFieldValues.addAttribute(std::move(attribute));
        }
    }
    mapLinks(info);
    mapBaselines(*task, element);
    return task;
}

void KVMSPETaskMapper::mapBaselines(KVMPPTask& task, const KVMSPCXMLElement& element) const {
    const size_t count = mapper().tvnxBaselines().size();
    task.baselines.reserve(count);
    if (count == 0) {
        return;
    }
    tvLog(stringWithFormat("      Mapping %ld baselines for Task ...", static_cast<long>(count)));
    task.baselineSetted = true;
    // A baseline that doesn't hold the task leaves a gap in the numbers of the task's baselines.
    for (size_t number = 0; number < count; ++number) {
        if (auto baseline = KVMSPETaskBaselineMapper(number, mapper()).newBaselineFromTvnxTask(element)) {
            task.baselines.push_back(std::move(*baseline));
        }
    }
}

const KVMSPEScheduledTaskInfo& KVMSPETaskMapper::scheduledTask(const std::string& id) const {
    const KVMSPEProjectMapper::ScheduledTasks* scheduledTasks = mapper().projectMapper()->scheduledTasks();
    tvAssert(scheduledTasks != nullptr, "Can not get scheduled tasks from project mapper.");
    const auto found = scheduledTasks->find(id);
    tvAssert(found != scheduledTasks->end(),
             "Can not get scheduled task with id='" + id + "' from the list of scheduled tasks.");
    const KVMSPEScheduledTaskInfo& info = *found->second;
    tvAssert(info.uid() == id, "Task, retrieved from the list of scheduled tasks by id='" + id +
                                   "', has different id='" + info.uid() + "'");
    return info;
}

void KVMSPETaskMapper::mapTaskType(KVMPPTask& task, const std::optional<std::string>& recalculate,
                                   const KVMSPEScheduledTaskInfo& info) {
    const auto require = [&info](int32_t expected) {
        tvAssert(
            info.recalculate() == expected,
            stringWithFormat("Unexpected task recalculate value (%d) in task info.", info.recalculate()));
    };
    if (!recalculate) {
        require(0);
        task.taskType = info.taskType() == KVMSPEScheduledTaskInfo::kGroup ? 1 : 2;
    } else if (*recalculate == tvnx::value::kRecalculateDuration) {
        require(0);
        task.taskType = 0;
    } else if (*recalculate == tvnx::value::kRecalculateEffort) {
        require(1);
        task.taskType = 1;
    } else if (*recalculate == tvnx::value::kRecalculateUnits) {
        require(2);
        task.taskType = 2;
    } else {
        tvAssert(*recalculate == kRecalculateNothing, "tvnxRecalculate is undefined");
    }
}

void KVMSPETaskMapper::mapProgress(KVMPPTask& task, KVMSPCXMLElement& element,
                                   const KVMSPEScheduledTaskInfo& info) const {
    task.percentComplete = info.percentCompletion();
    // A milestone has no duration to take a share of, a group states no actual duration of its own,
    // and a bundle that an import wrote states completion without actual durations; the completion
    // that the bundle states would otherwise be lost, and a finished task would read as not begun.
    if (task.percentComplete == 0) {
        task.percentComplete = tvnxread::number(element, tvnx::element::kCompletionPercentage, 0.0);
    }
    task.workPercentComplete = info.workPercentCompletion();
    if (info.taskType() != KVMSPEScheduledTaskInfo::kGroup || info.workPercentCompletion() != 0 ||
        !info.childTaskUIDs() || info.childTaskUIDs()->empty()) {
        return;
    }
    // A group of effortless milestones shows their progress: the milestones' shares over all members.
    const KVMSPEProjectMapper::ScheduledTasks& scheduledTasks = *mapper().projectMapper()->scheduledTasks();
    double completion = 0;
    for (const std::string& member : *info.childTaskUIDs()) {
        const auto found = scheduledTasks.find(member);
        if (found != scheduledTasks.end() &&
            found->second->taskType() == KVMSPEScheduledTaskInfo::kMilestone) {
            completion += found->second->completionPercentage();
        }
    }
    completion /= static_cast<double>(info.childTaskUIDs()->size());
    if (completion > 0) {
        task.workPercentComplete = completion;
    }
}

void KVMSPETaskMapper::mapConstraint(KVMPPTask& task, const KVMSPEScheduledTaskInfo& info) const {
    const bool forward = info.scheduleType() == kAsSoonAsPossible ? true
                         : info.scheduleType() == kAsLateAsPossible
                             ? false
                             : mapper().projectMapper()->scheduleFromStart();
    const auto set = [&task](int32_t type, const std::optional<TVDate>& date) {
        task.constraintType = type;
        task.constraintDate = date;
    };
    const auto& lockedStart = info.lockedStartDate();
    const auto& lockedEnd = info.lockedEndDate();
    const auto& noEarlier = info.noEarlierThanConstraintDate();
    const auto& noLater = info.noLaterThanConstraintDate();
    const auto setNoEarlier = [&] {
        set(info.noEarlierThanConstrainedTaskEnd() ? kConstraintFinishNoEarlierThan
                                                   : kConstraintStartNoEarlierThan,
            noEarlier);
    };
    const auto setNoLater = [&] {
        set(info.noLaterThanConstrainedTaskEnd() ? kConstraintFinishNoLaterThan : kConstraintStartNoLaterThan,
            noLater);
    };
    if (lockedStart && lockedEnd) {
        forward ? set(kConstraintMustStartOn, lockedStart) : set(kConstraintMustFinishOn, lockedEnd);
        // One constraint holds one end only; the other lock would be lost. A task scheduled by hand
        // keeps both: it spans from its locked start to its locked end where the bundle states no
        // dates of its own.
        task.manual = true;
        task.startDate = task.startDate ? task.startDate : lockedStart;
        task.endDate = task.endDate ? task.endDate : lockedEnd;
    } else if (lockedStart) {
        set(kConstraintMustStartOn, lockedStart);
    } else if (lockedEnd) {
        set(kConstraintMustFinishOn, lockedEnd);
    } else if (noEarlier && noLater) {
        forward ? setNoEarlier() : setNoLater();
    } else if (noEarlier) {
        setNoEarlier();
    } else if (noLater) {
        setNoLater();
    } else if (info.scheduleType() == kAsLateAsPossible || (info.scheduleType() == 0 && !forward)) {
        set(kConstraintAsLateAsPossible, std::nullopt);
    } else if (info.scheduleType() == kAsSoonAsPossible) {
        set(0, std::nullopt);
    }
}

void KVMSPETaskMapper::completeSchedule(KVMPPTask& task, KVMSPCXMLElement& element,
                                        const KVMSPEScheduledTaskInfo& info) const {
    // A bundle states the computed dates and duration of a task only for the pieces of split tasks;
    // elsewhere the planning application computes them. A plan file needs them: a task without
    // duration reads as a milestone, one without dates has none to show. They are derived from what
    // the bundle holds: the start from the leveled start, the duration from the effort over the units
    // of the task's staff (the whole effort without any), the end by working time from the start.
    // Groups take their dates from their members after the outline is built, split tasks from their
    // pieces.
    if (info.taskType() == KVMSPEScheduledTaskInfo::kGroup ||
        tvnxread::singleElement(element, tvnx::element::kSplit)) {
        return;
    }
    if (!task.startDate) {
        task.startDate = info.leveledStart();
    }
    if (info.taskType() != KVMSPEScheduledTaskInfo::kMilestone && task.duration == 0 && info.effort() > 0) {
        double units = 0;
        for (const auto& assignment : element.elementsForName(tvnx::element::kAssignment)) {
            const auto resource = mapper().projectMapper()->resourceElement(
                tvnxread::attribute(*assignment, tvnx::attribute::kIdref).value_or(""));
            const auto type =
                resource ? resource->stringValueForXQuery(tvnx::element::kType, nullptr) : std::nullopt;
            if (type && type != tvnx::value::kResourceTypeMaterial) {
                const auto text = tvnxread::attribute(*assignment, tvnx::attribute::kUnits);
                units += text && !text->empty() ? tvnxread::doubleValue(*text) : 1.0;
            }
        }
        task.duration = info.effort() / (units > 0 ? units : 1.0);
        task.remainingDuration = task.duration - task.actualDuration;
    }
    // Without working time to cover, both ends are the same moment.
    const double span = std::max(0.0, task.duration);
    const auto moved = [span](const std::optional<TVDate>& from, bool forward) {
        return span < 1 ? from : KVMSPEScheduleCalendar::standardCalendar().date(from, span, forward);
    };
    if (task.startDate && !task.endDate) {
        task.endDate = moved(task.startDate, true);
    } else if (task.endDate && !task.startDate) {
        task.startDate = moved(task.endDate, false);
    }
}

void KVMSPETaskMapper::mapLinks(const KVMSPEScheduledTaskInfo& info) const {
    const KVMSPEIdMapper& ids = *mapper().idMapper();
    for (const KVMPPConstraint& link : info.constraints()) {
        auto constraint = std::make_shared<KVMPPConstraint>(link);
        constraint->task1.setKey(ids.taskUIDFromTvnxId(link.task1ID.value_or("")));
        constraint->task2.setKey(ids.taskUIDFromTvnxId(link.task2ID.value_or("")));
        mapper().constraints().push_back(std::move(constraint));
    }
}
