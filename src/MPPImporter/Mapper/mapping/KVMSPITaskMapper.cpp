#include "MPPImporter/Mapper/mapping/KVMSPITaskMapper.h"

#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/Mapper/mapping/KVMSPIHammockTaskMapper.h"
#include "MPPImporter/Mapper/mapping/KVMSPIIdMapper.h"
#include "MPPImporter/Mapper/mapping/KVMSPIMapper.h"
#include "MPPImporter/Mapper/mapping/KVMSPINoteMapper.h"
#include "MPPImporter/Mapper/mapping/KVMSPIProjectMapper.h"
#include "MPPImporter/Mapper/mapping/MSPIDateTexts.h"
#include "MPPImporter/Mapper/mapping/MSPIQueryAnswers.h"
#include "MPPImporter/Mapper/utilities/KVMSPIUtilities.h"
#include "MPPImporter/Mapper/utilities/MSPExtendedAttributeDictionary.h"
#include "MPPImporter/readers/KVMSPIMPPProjectReader.h"
#include "MPPImporter/readers/KVMSPISinglePredecessorLinkReader.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace {

using ElementPtr = KVMSPCXMLElement::ElementPtr;

// MSPDI constraint types.
constexpr int64_t kAsLateAsPossible = 1;
constexpr int64_t kMustStartOn = 2;
constexpr int64_t kMustFinishOn = 3;
// Lag formats of a percentage ("%" and elapsed "%").
constexpr int64_t kPercentLagFormat = 19;
constexpr int64_t kElapsedPercentLagFormat = 20;

// The first of the queries that answers a date.
std::optional<std::string> firstTvnxDate(KVMSPIXQuery& mspTask, std::initializer_list<const char*> names) {
    for (const char* name : names) {
        if (auto date = tvnxDateTimeOfMspdi(queryString(mspTask, name))) {
            return date;
        }
    }
    return std::nullopt;
}

} // namespace

KVMSPITaskMapper::KVMSPITaskMapper(KVMSPIMapper& mapper, bool scheduleFromStart,
                                   MSPIUserDataTOCElements& userDataTOCElements, int64_t* mspTaskMaxId)
    : KVMSPIObjectMapperBase(mapper), _userDataTOCElements(userDataTOCElements),
      _mspScheduleFromStart(scheduleFromStart), _mspTaskMaxId(mspTaskMaxId) {}

KVMSPITaskMapper::ElementPtr KVMSPITaskMapper::newTaskFromMSPTask(KVMSPIXQuery& mspTask) {
    using namespace tvnx;
    const std::optional<std::string> uid = queryString(mspTask, "UID");
    tvAssert(uid.has_value(), "Failed to get UID from Task.");
    _mspTaskUID = std::strtoll(uid->c_str(), nullptr, 10);
    const ElementPtr task = KVMSPCXMLElement::initWithName(element::kTask);
    task->setAttributeWithName(attribute::kId, _mapper.idMapper().taskIdFromMspdiUID(*uid));
    if (_mspTaskUID > 0 && _mspTaskUID > *_mspTaskMaxId) {
        *_mspTaskMaxId = _mspTaskUID;
    }
    addTextChild(*task, element::kTitle, queryString(mspTask, "Name"));
    const std::optional<std::string> duration = queryString(mspTask, "Duration");
    const int64_t durationSeconds = duration ? KVMSPIUtilities::mspdiDurationInSecs(*duration) : 0;
    const bool summary = queryBool(mspTask, "Summary").value_or(false);
    task->addChildElementWithName(element::kType, taskType(summary, durationSeconds,
                                                           queryBool(mspTask, "Milestone").value_or(false),
                                                           queryBool(mspTask, "Hammock").value_or(false)));
    const int64_t constraintType = queryInt(mspTask, "ConstraintType").value_or(-1);
    task->addChildElementWithName(element::kScheduleType, constraintType == kAsLateAsPossible
                                                              ? value::kScheduleTypeAlap
                                                              : value::kScheduleTypeAsap);
    const bool manual = queryBool(mspTask, "Manual").value_or(false);
    const bool leveledStartWritten = addLeveledStart(mspTask, *task, manual);
    TaskDates dates;
    dates.start = queryString(mspTask, "Start");
    dates.finish = queryString(mspTask, "Finish");
    dates.tvnxStart = tvnxDateTimeOfMspdi(dates.start);
    dates.tvnxFinish = tvnxDateTimeOfMspdi(dates.finish);
    if (constraintType >= 0 && !leveledStartWritten && dates.tvnxStart) {
        task->addChildElementWithName(element::kLeveledStart, *dates.tvnxStart);
    }
    addTextChild(*task, element::kPriority, queryString(mspTask, "Priority"));
    addCompletion(mspTask, *task, addEffort(mspTask, *task, durationSeconds));

    // A manual task is pinned where it stands and gets no constraint date.
    const std::optional<std::string> constraintDate =
        !manual && constraintType >= kMustStartOn ? queryString(mspTask, "ConstraintDate") : std::nullopt;
    if (manual) {
        addManualTaskLocks(mspTask, *task, dates);
    } else {
        addAutomaticTaskLocks(mspTask, *task, dates, constraintType, constraintDate);
    }
    if (!addRecalculate(mspTask, *task)) {
        return nullptr;
    }
    if (_mapper.mspSaveVersion() >= 12) {
        if (const auto fixedCost = queryFloat(mspTask, "FixedCost")) {
            task->addChildElementWithName(element::kStaticCost, stringWithFormat("%f", *fixedCost));
        }
    }
    if (const auto notes = queryString(mspTask, "Notes"); notes && !notes->empty()) {
        task->addChild(KVMSPINoteMapper().newNoteFromMSPNotes(*notes));
    }
    addUserData(mspTask, *task);
    if (_mspTaskUID > 0) {
        addDependencies(mspTask, *task);
    }
    addConstraintDate(*task, constraintType, constraintDate);
    addHammockLinks(mspTask, task);
    return task;
}

bool KVMSPITaskMapper::addLeveledStart(KVMSPIXQuery& mspTask, KVMSPCXMLElement& task, bool manual) const {
    TVError ignored;
    if (mspTask.singleObjectForXQuery("PreLeveledStart", &ignored) == nullptr &&
        mspTask.singleObjectForXQuery("PreLeveledFinish", &ignored) == nullptr) {
        return false;
    }
    const std::optional<std::string> start = !_mapper.isBaselineScenario() && manual
                                                 ? firstTvnxDate(mspTask, {"PinnedStart", "ManualTaskStart"})
                                                 : tvnxDateTimeOfMspdi(queryString(mspTask, "Start"));
    addTextChild(task, tvnx::element::kLeveledStart, start);
    return start.has_value();
}

// A task without work takes its duration as its effort.
int64_t KVMSPITaskMapper::addEffort(KVMSPIXQuery& mspTask, KVMSPCXMLElement& task,
                                    int64_t durationSeconds) const {
    if (const auto work = queryString(mspTask, "Work")) {
        const int64_t workSeconds = KVMSPIUtilities::mspdiDurationInSecs(*work);
        const auto effort = KVMSPIUtilities::mspdiToTvnxDuration(*work);
        if (workSeconds > 0 && effort) {
            task.addChildElementWithName(tvnx::element::kEffort, *effort);
            return workSeconds;
        }
    }
    task.addChildElementWithName(tvnx::element::kEffort,
                                 stringWithFormat("%lld", static_cast<long long>(durationSeconds)));
    return durationSeconds;
}

void KVMSPITaskMapper::addCompletion(KVMSPIXQuery& mspTask, KVMSPCXMLElement& task,
                                     int64_t effortSeconds) const {
    using namespace tvnx;
    if (const auto percent = queryInt(mspTask, "PercentComplete"); percent && *percent > 0) {
        task.addChildElementWithName(
            element::kCompletionPercentage,
            stringWithFormat("%.02f", static_cast<double>(std::min<int64_t>(*percent, 100)) / 100.0));
    }
    if (const auto percent = queryInt(mspTask, "PercentWorkComplete"); percent && *percent > 0) {
        const double done = static_cast<double>(std::min<int64_t>(*percent, 100)) *
                            static_cast<double>(effortSeconds) / 100.0;
        task.addChildElementWithName(element::kEffortDone,
                                     stringWithFormat("%lld", static_cast<long long>(done)));
    }
}

void KVMSPITaskMapper::addManualTaskLocks(KVMSPIXQuery& mspTask, KVMSPCXMLElement& task,
                                          const TaskDates& dates) const {
    using namespace tvnx;
    const bool baseline = _mapper.isBaselineScenario();
    const std::optional<std::string> start =
        queryString(mspTask, baseline && dates.start ? "Start" : "ManualTaskStart");
    const std::optional<std::string> finish =
        queryString(mspTask, baseline && dates.finish ? "Finish" : "ManualTaskFinish");
    std::optional<std::string> lockStart;
    std::optional<std::string> lockEnd;
    if (start || finish) {
        lockStart = start ? tvnxDateTimeOfMspdi(start) : dates.tvnxStart;
        lockEnd = finish ? tvnxDateTimeOfMspdi(finish) : dates.tvnxFinish;
    } else {
        lockStart = firstTvnxDate(mspTask, {"ManualStart", "LateStart", "EarlyStart"});
        lockEnd = firstTvnxDate(mspTask, {"ManualFinish", "LateFinish", "EarlyFinish"});
        lockStart = lockStart ? lockStart : dates.tvnxStart;
        lockEnd = lockEnd ? lockEnd : dates.tvnxFinish;
    }
    addTextChild(task, element::kLockedStartDate, lockStart);
    addTextChild(task, element::kLockedEndDate, lockEnd);
}

void KVMSPITaskMapper::addAutomaticTaskLocks(KVMSPIXQuery& mspTask, KVMSPCXMLElement& task,
                                             const TaskDates& dates, int64_t constraintType,
                                             const std::optional<std::string>& constraintDate) const {
    const KVMSPIProjectMapper& project = *_mapper.projectMapper();
    AutomaticDates automatic;
    automatic.constraintType = constraintType;
    automatic.constraintDate = mppDateTimeOfMspdi(constraintDate);
    automatic.start = mppDateTimeOfMspdi(dates.start);
    automatic.finish = mppDateTimeOfMspdi(dates.finish);
    automatic.projectStart = mppDateTimeOfMspdi(project.mspStartDate());
    automatic.projectFinish = mppDateTimeOfMspdi(project.mspFinishDate());
    automatic.scheduleFromStart = _mspScheduleFromStart;
    automatic.summary = queryBool(mspTask, "Summary").value_or(false);
    const Locks locks = automaticTaskLocks(automatic);
    if (locks.start) {
        addTextChild(task, tvnx::element::kLockedStartDate, KVMSPIUtilities::mppToTvnxDateTime(*locks.start));
    }
    if (locks.end) {
        addTextChild(task, tvnx::element::kLockedEndDate, KVMSPIUtilities::mppToTvnxDateTime(*locks.end));
    }
}

// MSPDI task types: 0 fixed units, 1 fixed duration, 2 fixed work.
bool KVMSPITaskMapper::addRecalculate(KVMSPIXQuery& mspTask, KVMSPCXMLElement& task) const {
    using namespace tvnx;
    const auto type = queryInt(mspTask, "Type");
    if (!type) {
        return true;
    }
    if (*type == 0 || *type == 2) {
        task.addChildElementWithName(element::kRecalculate, value::kRecalculateDuration);
    } else if (*type == 1) {
        task.addChildElementWithName(element::kRecalculate, value::kRecalculateEffort);
    }
    return *type >= 0 && *type <= 2;
}

void KVMSPITaskMapper::addUserData(KVMSPIXQuery& mspTask, KVMSPCXMLElement& task) {
    const KVMSPIXQuery::Objects attributes = queryObjectsOrEmpty(mspTask, "ExtendedAttribute");
    if (attributes.empty()) {
        return;
    }
    const KVMSPIUserDataMapper::Fields fields = newDictionaryWithMSPExtendedAttributes(attributes);
    if (fields.empty()) {
        return;
    }
    KVMSPIUserDataMapper userDataMapper(_userDataTOCElements);
    if (const ElementPtr userData = userDataMapper.newUserDataFromDictionary(fields)) {
        task.addChild(userData);
    }
    _userDataChanged = userDataMapper.setUserDataTOCElementsForTag(tvnx::element::kTaskUserDataKeys, fields);
}

// A link to a task that the plan doesn't hold is dropped.
void KVMSPITaskMapper::addDependencies(KVMSPIXQuery& mspTask, KVMSPCXMLElement& task) const {
    using namespace tvnx;
    for (const auto& link : queryObjectsOrEmpty(mspTask, "PredecessorLink")) {
        tvAssert(dynamic_cast<KVMSPISinglePredecessorLinkReader*>(link.get()) != nullptr,
                 "Expected MSPISinglePredecessorLinkReader as a PredecessorLink object.");
        const auto predecessor = queryInt(*link, "PredecessorUID");
        if (!predecessor || *predecessor < 0) {
            continue;
        }
        const std::string predecessorUID = stringWithFormat("%lld", static_cast<long long>(*predecessor));
        const auto found = queryObjects(*_mapper.mspProject(),
                                        stringWithFormat("Tasks/Task[UID=%s]", predecessorUID.c_str()));
        if (!found || found->empty()) {
            continue;
        }
        const ElementPtr dependency = task.addChildElementWithName(element::kPrerequisiteTask);
        dependency->setAttributeWithName(attribute::kIdref,
                                         _mapper.idMapper().taskIdFromMspdiUID(predecessorUID));
        if (const auto type = queryInt(*link, "Type")) {
            if (const char* kind = dependencyKind(*type)) {
                dependency->setAttributeWithName(attribute::kKind, kind);
            }
        }
        const auto lag = queryInt(*link, "LinkLag");
        if (lag && *lag != 0) {
            const auto [text, isPercentage] = leadTime(*lag, queryInt(*link, "LagFormat"));
            dependency->addChildElementWithName(element::kLeadTime, text)
                ->setAttributeWithName(attribute::kIsPercentage, isPercentage ? value::kTrue : value::kFalse);
        }
    }
}

void KVMSPITaskMapper::addConstraintDate(KVMSPCXMLElement& task, int64_t constraintType,
                                         const std::optional<std::string>& constraintDate) const {
    using namespace tvnx::element;
    const std::optional<std::string> date = tvnxDateTimeOfMspdi(constraintDate);
    const char* name = constraintDateElement(constraintType, !task.elementsForName(kLockedStartDate).empty(),
                                             !task.elementsForName(kLockedEndDate).empty());
    if (date && name) {
        task.addChildElementWithName(name, *date);
    }
}

void KVMSPITaskMapper::addHammockLinks(KVMSPIXQuery& mspTask, const ElementPtr& task) const {
    KVMSPIHammockTaskMapper& hammocks = *_mapper.hammockMapper();
    const std::string id =
        _mapper.idMapper().taskIdFromMspdiUID(stringWithFormat("%lld", static_cast<long long>(_mspTaskUID)));
    if (queryBool(mspTask, "PreHammock").value_or(false)) {
        hammocks.addPreHammockTaskWithName(id);
    }
    if (queryBool(mspTask, "PostHammock").value_or(false)) {
        hammocks.addPostHammockTaskWithName(id);
    }
    if (queryBool(mspTask, "Hammock").value_or(false)) {
        hammocks.addHammockTask(task);
    }
}

const char* KVMSPITaskMapper::taskType(bool summary, int64_t durationSeconds, bool milestone, bool hammock) {
    using namespace tvnx::value;
    if (summary) {
        return kTaskTypeGroup;
    }
    if (durationSeconds == 0 || milestone) {
        return kTaskTypeMilestone;
    }
    return hammock ? kTaskTypeHammock : kTaskTypeTask;
}

KVMSPITaskMapper::Locks KVMSPITaskMapper::automaticTaskLocks(const AutomaticDates& dates) {
    const std::optional<TVDate>& k = dates.constraintDate;
    bool startsTooEarly = false;
    std::optional<TVDate> projectBoundEnd;
    if (!dates.summary) {
        if (dates.scheduleFromStart && dates.start && dates.projectStart) {
            startsTooEarly = *dates.start < *dates.projectStart;
        }
        if (!dates.scheduleFromStart && dates.finish && dates.projectFinish &&
            *dates.finish > *dates.projectFinish) {
            projectBoundEnd = dates.finish;
        }
    }
    Locks locks;
    const bool mustStartOn = dates.constraintType == kMustStartOn && k;
    if (mustStartOn && startsTooEarly) {
        locks.start = std::min(*dates.start, *k);
    } else if (mustStartOn) {
        locks.start = k;
    } else if (startsTooEarly) {
        locks.start = dates.start;
    }
    const bool mustFinishOn = dates.constraintType == kMustFinishOn && k;
    if (mustFinishOn && projectBoundEnd) {
        locks.end = std::max(*projectBoundEnd, *k);
    } else if (mustFinishOn) {
        locks.end = k;
    } else {
        locks.end = projectBoundEnd;
    }
    return locks;
}

const char* KVMSPITaskMapper::constraintDateElement(int64_t constraintType, bool lockedStartWritten,
                                                    bool lockedEndWritten) {
    using namespace tvnx::element;
    switch (constraintType) {
    case kMustStartOn:
        return lockedStartWritten ? nullptr : kLockedStartDate;
    case kMustFinishOn:
        return lockedEndWritten ? nullptr : kLockedEndDate;
    case 4:
        return kStartNoEarlierThan;
    case 5:
        return kStartNoLaterThan;
    case 6:
        return kEndNoEarlierThan;
    case 7:
        return kEndNoLaterThan;
    default:
        return nullptr;
    }
}

std::pair<std::string, bool> KVMSPITaskMapper::leadTime(int64_t linkLag, std::optional<int64_t> lagFormat) {
    const bool isPercentage = lagFormat == kPercentLagFormat || lagFormat == kElapsedPercentLagFormat;
    if (isPercentage) {
        return {stringWithFormat("%f", static_cast<double>(linkLag) / 100.0), true};
    }
    return {stringWithFormat("%lld", static_cast<long long>(linkLag * 6)), false};
}

const char* KVMSPITaskMapper::dependencyKind(int64_t linkType) {
    using namespace tvnx::value;
    static constexpr const char* kKinds[] = {kDependencyFinishToFinish, kDependencyFinishToStart,
                                             kDependencyStartToFinish, kDependencyStartToStart};
    return linkType >= 0 && linkType < 4 ? kKinds[linkType] : nullptr;
}
