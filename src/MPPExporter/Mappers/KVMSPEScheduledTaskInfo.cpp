#include "MPPExporter/Mappers/KVMSPEScheduledTaskInfo.h"

#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPExporter/Mappers/MSPETvnxReading.h"
#include "MPPImporter/Mapper/utilities/KVMSPIUtilities.h"

#include <array>
#include <cmath>
#include <cstdlib>

namespace {

using namespace tvnx;

// A date of the task: the bundle's instant, through the wall clock of the project.
std::optional<TVDate> dateValue(KVMSPCXMLElement& task, const char* name) {
    const auto text = task.stringValueForXQuery(name, nullptr);
    const auto mspdi = text ? KVMSPIUtilities::tvnxToMspdiDateTime(*text) : std::nullopt;
    return mspdi ? KVMSPIUtilities::mspdiToMppDateTime(*mspdi) : std::nullopt;
}

// A number of the task; 0 when the query reports an error (no such element, or more than one).
double floatValue(KVMSPCXMLElement& task, const char* name) {
    TVError error;
    const double value = task.floatValueForXQuery(name, &error);
    return error.code == 0 ? value : 0.0;
}

// Work in whole seconds, to the nearest: the effort of a split task sums the efforts of its pieces, each
// kept to the hundredth, which may fall a hundredth short of the whole seconds of the plan; cut off, it
// would lose a second in every round.
double secondsValue(KVMSPCXMLElement& task, const char* name) {
    return std::round(floatValue(task, name));
}

int64_t intValue(KVMSPCXMLElement& task, const char* name) {
    TVError error;
    const int64_t value = task.intValueForXQuery(name, &error);
    return error.code == 0 ? value : 0;
}

// The position of a word in a table, or none.
template <size_t N>
std::optional<int32_t> wordIndex(const std::optional<std::string>& word,
                                 const std::array<const char*, N>& words) {
    for (size_t index = 0; word && index < N; ++index) {
        if (*word == words[index]) {
            return static_cast<int32_t>(index);
        }
    }
    return std::nullopt;
}

constexpr std::array<const char*, 4> kTaskTypes = {value::kTaskTypeTask, value::kTaskTypeMilestone,
                                                   value::kTaskTypeGroup, value::kTaskTypeHammock};
constexpr std::array<const char*, 3> kRecalculations = {value::kRecalculateDuration,
                                                        value::kRecalculateEffort, value::kRecalculateUnits};
// The bundle's link kinds in the order of the record's codes.
constexpr std::array<const char*, 4> kLinkKinds = {
    value::kDependencyFinishToStart, value::kDependencyStartToFinish, value::kDependencyStartToStart,
    value::kDependencyFinishToFinish};
// The model's link type of each kind: finish-to-finish is 0, and finish-to-start, the default, 1.
constexpr std::array<int32_t, 4> kConstraintTypes = {1, 2, 3, 0};

// The leading decimal number of a text, 0 when it has none.
double leadingNumber(const std::string& text) {
    return std::strtod(text.c_str(), nullptr);
}

// The ratio of two amounts of a task. Without a planned amount there is no ratio: dividing by it would
// put an infinite or undefined percentage into the plan, so the share counts as 0.
double shareOf(double done, double planned) {
    return planned != 0.0 ? done / planned : 0.0;
}

} // namespace

KVMSPEScheduledTaskInfo::KVMSPEScheduledTaskInfo(KVMSPCXMLElement& tvnxTask) {
    _leveledStart = dateValue(tvnxTask, element::kLeveledStart);
    _startDate = dateValue(tvnxTask, element::kStartDate);
    _endDate = dateValue(tvnxTask, element::kEndDate);
    _preleveledStart = dateValue(tvnxTask, element::kPreleveledStart);
    _preleveledFinish = dateValue(tvnxTask, element::kPreleveledFinish);

    _duration = floatValue(tvnxTask, element::kDuration);
    _levelingDelay = floatValue(tvnxTask, element::kElapsedLevelingDelay);
    _actualDuration = floatValue(tvnxTask, element::kActualDuration);
    _remainingDuration = _duration - _actualDuration;
    _percentCompletion = _actualDuration != 0.0 ? shareOf(_actualDuration, _duration) : 0.0;

    const auto uid = tvnxread::attribute(tvnxTask, attribute::kId);
    tvAssert(uid.has_value(), "Task attribute 'id' not found.");
    _uid = *uid;

    const auto scheduleType = tvnxTask.stringValueForXQuery(element::kScheduleType, nullptr);
    if (scheduleType == value::kScheduleTypeAsap) {
        _scheduleType = 1;
    } else if (scheduleType == value::kScheduleTypeAlap) {
        _scheduleType = 2;
    }

    _priority = intValue(tvnxTask, element::kPriority);
    _costDone = floatValue(tvnxTask, element::kCostDone);
    _totalCost = floatValue(tvnxTask, element::kTotalCost);

    _taskType = wordIndex(tvnxTask.stringValueForXQuery(element::kType, nullptr), kTaskTypes).value_or(0);
    if (_taskType == kMilestone) {
        _completionPercentage = floatValue(tvnxTask, element::kCompletionPercentage);
        _workPercentCompletion = _completionPercentage;
    } else {
        _effort = secondsValue(tvnxTask, element::kEffort);
        _effortDone = secondsValue(tvnxTask, element::kEffortDone);
        _workPercentCompletion = shareOf(_effortDone, _effort);
    }

    _lockedStartDate = dateValue(tvnxTask, element::kLockedStartDate);
    _lockedEndDate = dateValue(tvnxTask, element::kLockedEndDate);
    // The start form of a limit wins over the end form.
    for (auto [limit, constrainedEnd, startForm, endForm] :
         {std::tuple{&_noEarlierThanConstraintDate, &_noEarlierThanConstrainedTaskEnd,
                     element::kStartNoEarlierThan, element::kEndNoEarlierThan},
          std::tuple{&_noLaterThanConstraintDate, &_noLaterThanConstrainedTaskEnd, element::kStartNoLaterThan,
                     element::kEndNoLaterThan}}) {
        *limit = dateValue(tvnxTask, startForm);
        if (!*limit) {
            *limit = dateValue(tvnxTask, endForm);
            *constrainedEnd = *limit ? 1 : 0;
        }
    }

    _recalculate =
        wordIndex(tvnxTask.stringValueForXQuery(element::kRecalculate, nullptr), kRecalculations).value_or(0);

    for (const auto& prerequisite : tvnxTask.elementsForName(element::kPrerequisiteTask)) {
        readPrerequisite(*prerequisite);
    }

    if (_taskType == kGroup) {
        _childTaskUIDs.emplace();
        for (const auto& child : tvnxTask.elementsForName(element::kChildTask)) {
            if (auto idref = tvnxread::attribute(*child, attribute::kIdref)) {
                _childTaskUIDs->push_back(std::move(*idref));
            }
        }
    }
}

void KVMSPEScheduledTaskInfo::readPrerequisite(KVMSPCXMLElement& prerequisite) {
    Prerequisite record;
    KVMPPConstraint constraint;
    constraint.task1ID = _uid;
    record.taskId = tvnxread::attribute(prerequisite, attribute::kIdref);
    constraint.task2ID = record.taskId;
    record.external = tvnxread::attribute(prerequisite, attribute::kExternal);
    const auto kind = wordIndex(tvnxread::attribute(prerequisite, attribute::kKind), kLinkKinds);
    record.kind = kind.value_or(0);
    constraint.constraintType = kConstraintTypes[static_cast<size_t>(record.kind)];
    TVError error;
    const bool resourceDependency = prerequisite.boolValueForXQuery(element::kIsResourceDependency, &error);
    record.isResourceDependency = error.code == 0 && resourceDependency;
    const auto leadTimes = prerequisite.elementsForName(element::kLeadTime);
    if (!leadTimes.empty()) {
        const auto& leadTime = *leadTimes.front();
        record.leadTime = leadingNumber(leadTime.stringValue().value_or(""));
        record.isPercentage = tvnxread::attribute(leadTime, attribute::kIsPercentage) == value::kTrue;
        constraint.lag = record.leadTime;
        constraint.isPercentage = record.isPercentage;
    }
    _prerequisites.push_back(record);
    _constraints.push_back(std::move(constraint));
}

std::string KVMSPEScheduledTaskInfo::description() const {
    return stringWithFormat("KVMSPEScheduledTaskInfo: uid='%s' type=%d duration=%.0f actual=%.0f effort=%.0f "
                            "done=%.0f links=%zu",
                            _uid.c_str(), _taskType, _duration, _actualDuration, _effort, _effortDone,
                            _constraints.size());
}
