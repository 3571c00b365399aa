#include "MPPExporter/Mappers/KVMSPEProjectMapper.h"

#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPCommon/shared/MSPCBoolValue.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPExporter/MPPObjects/KVMSPEScheduleCalendar.h"
#include "MPPExporter/Mappers/KVMSPEAssignmentMapper.h"
#include "MPPExporter/Mappers/KVMSPECalendarMapper.h"
#include "MPPExporter/Mappers/KVMSPEIdMapper.h"
#include "MPPExporter/Mappers/KVMSPEMapper.h"
#include "MPPExporter/Mappers/KVMSPEResourceMapper.h"
#include "MPPExporter/Mappers/KVMSPETaskMapper.h"
#include "MPPExporter/Mappers/KVMSPETimephasedDataMapper.h"
#include "MPPExporter/Mappers/MSPEProjectPostProcessor.h"
#include "MPPExporter/Mappers/MSPETvnxReading.h"
#include "MPPImporter/Mapper/utilities/KVMSPIUtilities.h"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <functional>
#include <set>

namespace {

// Names of custom fields beyond this many are dropped.
constexpr size_t kMaxCustomFieldNames = 30;

std::string idref(KVMSPCXMLElement& scenario, const char* name) {
    const auto element = tvnxread::singleElement(scenario, name);
    return element ? tvnxread::attribute(*element, tvnx::attribute::kIdref).value_or("") : "";
}

// The elements that the `idref` of each child of that name points to, in document order; dangling
// references are skipped.
std::vector<KVMSPCXMLElement::ElementPtr>
referencedElements(KVMSPCXMLElement& element, const char* childName,
                   const std::map<std::string, KVMSPCXMLElement::ElementPtr>& elementsById) {
    std::vector<KVMSPCXMLElement::ElementPtr> found;
    for (const auto& child : element.elementsForName(childName)) {
        const auto target =
            elementsById.find(tvnxread::attribute(*child, tvnx::attribute::kIdref).value_or(""));
        if (target != elementsById.end()) {
            found.push_back(target->second);
        }
    }
    return found;
}

} // namespace

// One step of the resource walk: the element, its parent, and the group path it lies in.
struct KVMSPEProjectMapper::ResourceVisit {
    ElementPtr element;
    ElementPtr parent;
    std::optional<std::string> groupName;
};

// One step of the outline walk: the element, its parent, and its outline level.
struct KVMSPEProjectMapper::TaskVisit {
    ElementPtr element;
    ElementPtr parent;
    uint64_t level = 0;
};

KVMSPEProjectMapper::KVMSPEProjectMapper(KVMSPEMapper& mapper) : KVMSPEObjectMapperBase(mapper) {}

KVMSPEProjectMapper::~KVMSPEProjectMapper() = default;

void KVMSPEProjectMapper::rollUpGroupDates(const KVMPPProject& project) {
    // A bundle states no dates for a group; the planning application shows the span of its members,
    // and so does the plan file. Groups that state dates of their own keep them. Deeper members come
    // later in the outline, so a walk from the end widens each group before it widens its own group.
    std::set<const KVMPPTask*> openStarts;
    std::set<const KVMPPTask*> openEnds;
    for (const auto& task : project.tasks) {
        if (task->parent && !task->parent->startDate) {
            openStarts.insert(task->parent);
        }
        if (task->parent && !task->parent->endDate) {
            openEnds.insert(task->parent);
        }
    }
    for (auto task = project.tasks.rbegin(); task != project.tasks.rend(); ++task) {
        KVMPPTask* group = (*task)->parent;
        if (!group) {
            continue;
        }
        if (openStarts.count(group) && (*task)->startDate) {
            group->startDate =
                group->startDate ? std::min(*group->startDate, *(*task)->startDate) : (*task)->startDate;
        }
        if (openEnds.count(group) && (*task)->endDate) {
            group->endDate = group->endDate ? std::max(*group->endDate, *(*task)->endDate) : (*task)->endDate;
        }
    }
}

KVMSPEProjectMapper::ElementPtr KVMSPEProjectMapper::resourceElement(const std::string& id) const {
    const auto found = _resourcesById.find(id);
    return found == _resourcesById.end() ? nullptr : found->second;
}

KVMSPEProjectMapper::ElementPtr KVMSPEProjectMapper::taskElement(const std::string& id) const {
    const auto found = _tasksById.find(id);
    return found == _tasksById.end() ? nullptr : found->second;
}

std::shared_ptr<KVMPPProject> KVMSPEProjectMapper::newProjectFromTVNXScenario(const ElementPtr& scenario) {
    auto project = std::make_shared<KVMPPProject>();
    mapper().setMppProject(project);
    _tvnxScenario = scenario;

    readProjectSettings(*scenario, *project);
    readScheduledTasks(*scenario, *project);
    project->calendar.setKey("1");
    project->weekStartDay = 0;

    walkResources(*scenario, *project);
    tvLog("Building calendar hierarchy...");
    KVMSPECalendarMapper& calendars = *mapper().calendarMapper();
    calendars.buildCalendarHierarchy();
    project->baseCalendars = calendars.calendars();

    walkTasks(*project);
    project->constraints = mapper().constraints();
    MSPEProjectPostProcessor(_taskUidToIdMap, _resourceUidToIdMap)
        .mppPostProcessProject(*project, mapper().constraints());
    rollUpGroupDates(*project);
    return project;
}

void KVMSPEProjectMapper::readProjectSettings(KVMSPCXMLElement& scenario, KVMPPProject& project) {
    const TVDate now{static_cast<double>(std::time(nullptr))};
    const auto tocRoot = mapper().tvnxTOCXmlDoc() ? mapper().tvnxTOCXmlDoc()->rootElement() : nullptr;
    if (tocRoot) {
        if (auto title = tocRoot->stringValueForXQuery("project/title", nullptr)) {
            project.title = *title;
            project.summaryInfo.title = std::move(title);
        }
        readCustomDataKeys(*tocRoot, project);
    }

    const auto fixedEnd = tvnxread::attribute(scenario, tvnx::attribute::kFixedEnd);
    _scheduleFromStart = !(fixedEnd && boolValueFromString(*fixedEnd));
    project.scheduleFromStart = _scheduleFromStart;

    mapper().setIdMapper(std::make_unique<KVMSPEIdMapper>(idref(scenario, tvnx::element::kTopResource),
                                                          idref(scenario, tvnx::element::kTopTask)));

    const std::string nowText = KVMSPIUtilities::mppToTvnxDateTime(now).value_or("");
    _tvnxProjectStartDate = scenario.stringValueForXQuery(tvnx::element::kStartDate, nullptr);
    if (_tvnxProjectStartDate) {
        project.startDate = tvnxread::date(_tvnxProjectStartDate);
    } else {
        _tvnxProjectStartDate = nowText;
        project.startDate = _scheduleFromStart ? std::optional(now) : std::nullopt;
    }
    _tvnxProjectFinishDate = scenario.stringValueForXQuery(tvnx::element::kEndDate, nullptr);
    if (_tvnxProjectFinishDate) {
        project.endDate = tvnxread::date(_tvnxProjectFinishDate);
    } else {
        _tvnxProjectFinishDate = nowText;
        project.endDate = _scheduleFromStart ? std::nullopt : std::optional(now);
    }
    if (!_scheduleFromStart && project.endDate) {
        project.constraintType = 1;
    }
}

void KVMSPEProjectMapper::readCustomDataKeys(KVMSPCXMLElement& tocRoot, KVMPPProject& project) const {
    const auto names = [&tocRoot](const char* query) {
        std::vector<std::string> list;
        for (const auto& key : tocRoot.objectsForXQuery(query, nullptr)) {
            if (list.size() == kMaxCustomFieldNames) {
                break;
            }
            const auto node = std::dynamic_pointer_cast<KVMSPCXMLNode>(key);
            list.push_back(node ? node->stringValue().value_or("") : "");
        }
        return list;
    };
    project.customTaskFieldNames = names("project/task-user-data-keys/user-data/key");
    project.customResourceFieldNames = names("project/resource-user-data-keys/user-data/key");
}

void KVMSPEProjectMapper::readScheduledTasks(KVMSPCXMLElement& scenario, KVMPPProject& project) {
    ScheduledTasks scheduledTasks;
    for (const ElementPtr& task : scenario.elementsForName(tvnx::element::kTask)) {
        auto info = std::make_unique<KVMSPEScheduledTaskInfo>(*task);
        _minTaskPriortiy = std::min(_minTaskPriortiy, info->priority());
        _maxTaskPriortiy = std::max(_maxTaskPriortiy, info->priority());
        const std::string uid = info->uid();
        scheduledTasks[uid] = std::move(info);
    }
    _scheduledTasks = std::move(scheduledTasks);
    if (!scenario.objectsForXQuery("task/prerequisite-task", nullptr).empty()) {
        project.honorConstraints = true;
    }
    // Two task elements of one id would map to one UID; the second would pass unseen.
    const KVMSPEIdMapper& ids = *mapper().idMapper();
    _tasksById = tvnxread::elementsById(scenario, tvnx::element::kTask, [&ids](const std::string& id) {
        tvAssert(false, "Duplicated Task UID='" + ids.taskUIDFromTvnxId(id) + "' found (tvnx Task id='" + id +
                            "').");
    });
}

void KVMSPEProjectMapper::walkResources(KVMSPCXMLElement& scenario, KVMPPProject& project) {
    project.resources.push_back(KVMSPEResourceMapper::newDummyResourceWithMapper(mapper()));
    const KVMSPEIdMapper& ids = *mapper().idMapper();
    _resourcesById =
        tvnxread::elementsById(scenario, tvnx::element::kResource, [&ids](const std::string& id) {
            tvAssert(false, "Duplicated Resource UID='" + ids.resourceUIDFromTvnxResourceId(id) +
                                "' found (tvnx Resource id='" + id + "').");
        });
    tvLog(stringWithFormat("Mapping %zu Resources and Schedules ...",
                           scenario.elementsForName(tvnx::element::kResource).size()));

    const std::string& topId = ids.topResourceId();
    mapper().calendarMapper()->setTopScheduleKey(topId);
    const auto top = _resourcesById.find(topId);
    if (top == _resourcesById.end()) {
        return;
    }
    // Depth first, parents before their members, without recursion: a deep tree must not exhaust
    // the stack. A resource reached twice (a cycle of groups) would never end the walk.
    std::vector<ResourceVisit> pending{{top->second, nullptr, std::nullopt}};
    std::set<const KVMSPCXMLElement*> visited;
    while (!pending.empty()) {
        ResourceVisit visit = std::move(pending.back());
        pending.pop_back();
        tvAssert(visited.insert(visit.element.get()).second,
                 "Resource id='" + tvnxread::attribute(*visit.element, tvnx::attribute::kId).value_or("") +
                     "' is reached twice in the resource tree.");
        std::vector<ResourceVisit> members = addTvnxResource(visit, project);
        pending.insert(pending.end(), std::make_move_iterator(members.rbegin()),
                       std::make_move_iterator(members.rend()));
    }
}

std::vector<KVMSPEProjectMapper::ResourceVisit>
KVMSPEProjectMapper::addTvnxResource(const ResourceVisit& visit, KVMPPProject& project) {
    KVMSPCXMLElement& element = *visit.element;
    // The resource's calendar comes from its schedule, which the calendar mapper reads here; its
    // members' calendars derive from theirs through the schedules, not through anything passed on.
    if (std::shared_ptr<KVMPPResource> resource =
            KVMSPEResourceMapper(mapper()).newResourceFromTVNXResource(visit.element, visit.parent)) {
        if (visit.groupName) {
            resource->group = visit.groupName;
        }
        project.resources.push_back(std::move(resource));
    }
    if (element.stringValueForXQuery(tvnx::element::kType, nullptr) != tvnx::value::kResourceTypeGroup) {
        return {};
    }
    std::optional<std::string> name = element.stringValueForXQuery(tvnx::element::kName, nullptr);
    if (!name) {
        if (visit.parent) {
            name = stringWithFormat("Anonymous_Group_%lld", static_cast<long long>(++_unnamedGroupsCount));
        }
    } else if (visit.groupName) {
        name = *visit.groupName + "/" + *name;
    }
    std::vector<ResourceVisit> members;
    for (const ElementPtr& member :
         referencedElements(element, tvnx::element::kChildResource, _resourcesById)) {
        members.push_back({member, visit.element, name});
    }
    return members;
}

void KVMSPEProjectMapper::walkTasks(KVMPPProject& project) {
    const auto top = _tasksById.find(mapper().idMapper()->topTaskId());
    if (top == _tasksById.end()) {
        return;
    }
    // Depth first in outline order, without recursion; a task reached twice ends the walk with the
    // message on duplicated UIDs.
    std::vector<TaskVisit> pending{{top->second, nullptr, 0}};
    while (!pending.empty()) {
        TaskVisit visit = std::move(pending.back());
        pending.pop_back();
        std::vector<TaskVisit> members = addTvnxTask(visit, project);
        pending.insert(pending.end(), std::make_move_iterator(members.rbegin()),
                       std::make_move_iterator(members.rend()));
    }
}

std::vector<KVMSPEProjectMapper::TaskVisit> KVMSPEProjectMapper::addTvnxTask(const TaskVisit& visit,
                                                                             KVMPPProject& project) {
    KVMSPCXMLElement& element = *visit.element;
    const std::optional<std::string> type = element.stringValueForXQuery(tvnx::element::kType, nullptr);
    const bool isGroup = type == tvnx::value::kTaskTypeGroup;
    const bool isSplit = tvnxread::singleElement(element, tvnx::element::kSplit) != nullptr;
    tvAssert(!(isSplit && isGroup), "Task group and split task are mutualy exclusive.");

    std::shared_ptr<KVMPPTask> task =
        KVMSPETaskMapper(mapper()).newTaskFromTVNXTask(visit.element, visit.parent);
    task->outlineLevel = visit.level;
    project.tasks.push_back(task);

    if (isGroup) {
        std::vector<TaskVisit> members;
        for (const ElementPtr& member : referencedElements(element, tvnx::element::kChildTask, _tasksById)) {
            members.push_back({member, visit.element, visit.level + 1});
        }
        return members;
    }

    std::optional<std::vector<KVMSPETimephasedDataInfo>> timePhases;
    std::vector<ElementPtr> assignments;
    if (isSplit) {
        task->hasSplits = true;
        const KVMSPETimephasedDataMapper timephased(mapper());
        const std::vector<ElementPtr> pieces = timephased.childTvnxTasksFromTvnxSplitTask(element);
        timePhases = timephased.newTimephasedDataFromSplitedTasks(pieces);
        task->duration = 0;
        task->actualDuration = 0;
        for (const KVMSPETimephasedDataInfo& piece : *timePhases) {
            task->duration += piece.duration;
            task->actualDuration += piece.actualDuration;
        }
        task->remainingDuration = task->duration - task->actualDuration;
        // A split task states only its end and its leveled start; without a date of its own it starts
        // there, or else with its first piece, and ends with its last. The leveled start may lie before
        // the first piece's start out of working time, where a night shift begins.
        if (!timePhases->empty()) {
            if (!task->startDate) {
                task->startDate = task->leveledStart ? task->leveledStart : timePhases->front().startDate;
            }
            task->endDate = task->endDate ? task->endDate : timePhases->back().endDate;
        }
        // The import keeps a split task's assignments on the task; other bundles keep them on its
        // first piece.
        assignments = element.elementsForName(tvnx::element::kAssignment);
        if (assignments.empty() && !pieces.empty()) {
            assignments = pieces.front()->elementsForName(tvnx::element::kAssignment);
        }
    } else {
        assignments = element.elementsForName(tvnx::element::kAssignment);
    }

    if (!assignments.empty()) {
        addTvnxAssignments(assignments, element, timePhases, task->startDate, project);
    } else if (const auto id = tvnxread::attribute(element, tvnx::attribute::kId)) {
        tvAssert(_scheduledTasks->count(*id) != 0,
                 "Can not find task with UID=" + *id + " in the list of scheduled tasks.");
        int64_t uid = -1;
        std::shared_ptr<KVMPPAssignment> assignment =
            KVMSPEAssignmentMapper::newDummyAssignmentForTaskId(*id, &uid, mapper());
        tvAssert(uid >= 1,
                 stringWithFormat("Incorrect UID for dummy assignment (%lld).", static_cast<long long>(uid)));
        if (timePhases) {
            mapSplitTaskTimePhases(*assignment, *timePhases, task->startDate);
        }
        project.assignments.push_back(std::move(assignment));
    }
    return {};
}

void KVMSPEProjectMapper::addTvnxAssignments(
    const std::vector<ElementPtr>& assignments, KVMSPCXMLElement& task,
    const std::optional<std::vector<KVMSPETimephasedDataInfo>>& timePhases, std::optional<TVDate> taskStart,
    KVMPPProject& project) {
    KVMSPEAssignmentMapper assignmentMapper(mapper(), task, assignments);
    // Nested assignment elements are flattened, each in its place; the parser bounds their depth.
    const std::function<void(const std::vector<ElementPtr>&)> addAll =
        [&](const std::vector<ElementPtr>& list) {
            for (const ElementPtr& element : list) {
                const std::vector<ElementPtr> nested = element->elementsForName(tvnx::element::kAssignment);
                if (!nested.empty()) {
                    addAll(nested);
                    continue;
                }
                if (std::shared_ptr<KVMPPAssignment> assignment =
                        assignmentMapper.newAssignmentFromTVNXAssignment(*element)) {
                    if (timePhases) {
                        mapSplitTaskTimePhases(*assignment, *timePhases, taskStart);
                    }
                    project.assignments.push_back(std::move(assignment));
                }
            }
        };
    addAll(assignments);
}

void KVMSPEProjectMapper::mapSplitTaskTimePhases(KVMPPAssignment& assignment,
                                                 const std::vector<KVMSPETimephasedDataInfo>& timePhases,
                                                 std::optional<TVDate> taskStart) const {
    if (timePhases.empty()) {
        return;
    }
    // Shifts are working seconds from the assignment's start, where the reader lays the stretches out
    // from on the standard calendar: its own start, or else its task's, which the writer gives it; a
    // task that starts before its first piece, with work done before it, has its first stretch shifted
    // too. A stretch without a date has none.
    const std::optional<TVDate> reference = assignment.startDate ? assignment.startDate
                                            : taskStart          ? taskStart
                                                                 : timePhases.front().startDate;
    const KVMSPEScheduleCalendar& standard = KVMSPEScheduleCalendar::standardCalendar();
    const auto shift = [&](const std::optional<TVDate>& date) {
        return reference && date
                   ? static_cast<uint32_t>(std::round(standard.workingTimeFromDate(*reference, *date)))
                   : 0;
    };
    for (const KVMSPETimephasedDataInfo& piece : timePhases) {
        KVMPPAssignmentPhase phase;
        // The reader lays a stretch out for as long as its work: the piece's working time places it
        // where the bundle has it, and the assignment's work shares the total out among the pieces.
        phase.work = piece.duration > 0 ? piece.duration : piece.effort;
        phase.workPerDay = 160000.0;
        phase.startShift = shift(piece.startDate);
        phase.finishShift = shift(piece.endDate);
        assignment.assignmentPhases.push_back(phase);
    }
}
