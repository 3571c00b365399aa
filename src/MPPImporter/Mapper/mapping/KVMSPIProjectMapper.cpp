#include "MPPImporter/Mapper/mapping/KVMSPIProjectMapper.h"

#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPCommon/date/TVCalendar.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPCommon/support/TVPath.h"
#include "MPPExporter/MPPObjects/KVMSPEScheduleCalendar.h"
#include "MPPImporter/Mapper/mapping/KVMSPIAssignmentMapper.h"
#include "MPPImporter/Mapper/mapping/KVMSPICalendarMapper.h"
#include "MPPImporter/Mapper/mapping/KVMSPIHammockTaskMapper.h"
#include "MPPImporter/Mapper/mapping/KVMSPIIdMapper.h"
#include "MPPImporter/Mapper/mapping/KVMSPIMapper.h"
#include "MPPImporter/Mapper/mapping/KVMSPIResourceMapper.h"
#include "MPPImporter/Mapper/mapping/KVMSPITaskMapper.h"
#include "MPPImporter/Mapper/mapping/KVMSPITimephasedDataMapper.h"
#include "MPPImporter/Mapper/mapping/MSPIQueryAnswers.h"
#include "MPPImporter/Mapper/utilities/KVMSPIUtilities.h"
#include "MPPImporter/readers/KVMSPIMPPProjectReader.h"
#include "MPPImporter/readers/KVMSPISingleAssignmentReader.h"
#include "MPPImporter/readers/KVMSPISingleResourceReader.h"
#include "MPPImporter/readers/KVMSPISingleTaskReader.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>

namespace {

using ElementPtr = KVMSPCXMLElement::ElementPtr;

// Today at the given time of day in the system zone, as MSPDI text.
std::optional<std::string> todayAt(int64_t hour, int64_t minute, int64_t second) {
    const TVCalendar calendar;
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    auto fields = calendar.components(kTVCalendarUnitEra | kTVCalendarUnitYear | kTVCalendarUnitMonth |
                                          kTVCalendarUnitDay,
                                      TVDate{std::chrono::duration<double>(now).count()});
    if (!fields) {
        return std::nullopt;
    }
    fields->hour = hour;
    fields->minute = minute;
    fields->second = second;
    const auto date = calendar.dateFromComponents(*fields);
    return date ? KVMSPIUtilities::mppToMspdiDateTime(*date) : std::nullopt;
}

ElementPtr firstChild(const KVMSPCXMLElement& element, const char* name) {
    const KVMSPCXMLElement::Elements children = element.elementsForName(name);
    return children.empty() ? nullptr : children.front();
}

// The date of the project, or today at the given time when the plan has none.
std::string requiredProjectDate(KVMSPIXQuery& project, const char* name, int64_t hour, int64_t minute,
                                int64_t second, const char* failure) {
    std::optional<std::string> date = queryString(project, name);
    if (!date || date->empty()) {
        date = todayAt(hour, minute, second);
    }
    tvAssert(date && !date->empty(), failure);
    return *date;
}

// The first base calendar of the name.
std::shared_ptr<KVMSPIXQuery> baseCalendarNamed(KVMSPIMPPProjectReader& project, const std::string& name) {
    for (const auto& calendar :
         queryObjectsOrEmpty(project, stringWithFormat("Calendars/Calendar[Name=\"%s\"]", name.c_str()))) {
        if (queryBool(*calendar, "IsBaseCalendar").value_or(false)) {
            return calendar;
        }
    }
    return nullptr;
}

} // namespace

KVMSPIProjectMapper::KVMSPIProjectMapper(KVMSPIMapper& mapper, int64_t* mspTaskMaxId,
                                         int64_t* mspResourceMaxId,
                                         MSPIUserDataTOCElements& userDataTOCElements)
    : KVMSPIObjectMapperBase(mapper), _mspTaskMaxId(mspTaskMaxId), _mspResourceMaxId(mspResourceMaxId),
      _userDataTOCElements(userDataTOCElements) {}

std::string KVMSPIProjectMapper::getTempSplitTaskID() {
    return stringWithFormat("split-%lld", static_cast<long long>(++_splitTaskID));
}

KVMSPIProjectMapper::ElementPtr
KVMSPIProjectMapper::newScenarioFromMSPProject(KVMSPIMPPProjectReader& project) {
    using namespace tvnx;
    const ElementPtr templateRoot = _mapper.tvnxTemplateXmlDoc()->rootElement();
    const std::string templateRootName =
        templateRoot ? templateRoot->name().value_or(std::string()) : std::string();
    tvAssert(templateRootName == element::kScenario,
             stringWithFormat("*** ERROR: Invalid root element of template: '%s'. Must be 'scenario'.",
                              templateRootName.c_str()));
    const ElementPtr scenario = KVMSPCXMLElement::initWithName(element::kScenario);
    scenario->addNamespace(KVMSPCXMLNode::namespaceWithName("", kTarvane2Namespace));
    _mspProjectName = projectName(project);
    _mapper.setIdMapper(std::make_unique<KVMSPIIdMapper>());
    _mapper.setHammockMapper(std::make_unique<KVMSPIHammockTaskMapper>());
    addProjectDates(project, *scenario);

    scenario->addComment(value::kResourcesComment);
    tvLog("    Adding top resource ......");
    const ElementPtr topResource = addTopResourceToScenario(project, *scenario);
    const Objects resources = queryObjectsOrEmpty(project, "Resources/Resource");
    tvLog(stringWithFormat("    Mapping %lu Resources ...", static_cast<unsigned long>(resources.size())));
    addMspResources(resources, *scenario, *topResource);

    scenario->addComment(value::kTasksComment);
    scenario->addChildElementWithName(element::kTopTask)
        ->setAttributeWithName(attribute::kIdref, value::kTopTaskId);
    const ElementPtr topTask = scenario->addChildElementWithName(element::kTask);
    topTask->setAttributeWithName(attribute::kId, value::kTopTaskId);
    topTask->addChildElementWithName(element::kType, value::kTaskTypeGroup);
    const Objects assignments = queryObjectsOrEmpty(project, "Assignments/Assignment");
    tvLog(stringWithFormat("    Mapping %d Assignments ...", static_cast<int>(assignments.size())));
    const AssignmentMap assignmentMap = newAssignmentMapWithMspAssignments(assignments);
    buildMspTasks(queryObjectsOrEmpty(project, "Tasks/Task"), assignmentMap, resources, *scenario, *topTask);
    buildTaskGroupsWithTopGroupTask(topTask);

    scenario->addComment(value::kCriticalPathComment);
    for (const ElementPtr& criticalPath : templateRoot->elementsForName(element::kCriticalPath)) {
        const auto copy = std::dynamic_pointer_cast<KVMSPCXMLElement>(criticalPath->copyWithZone());
        copy->detach();
        scenario->addChild(copy);
    }
    return scenario;
}

std::string KVMSPIProjectMapper::projectName(KVMSPIMPPProjectReader& project) const {
    if (const auto title = queryString(project, "Title"); title && !title->empty()) {
        return *title;
    }
    if (const auto name = queryString(project, "Name"); name && !name->empty()) {
        return deletingPathExtension(*name);
    }
    return _mapper.importedProjectName();
}

void KVMSPIProjectMapper::addProjectDates(KVMSPIMPPProjectReader& project, KVMSPCXMLElement& scenario) {
    using namespace tvnx;
    TVError error;
    const bool scheduleFromStart = project.boolValueForXQuery("ScheduleFromStart", &error);
    if (error.domain.empty()) {
        _mspScheduleFromStart = scheduleFromStart;
    }
    _mapper.setMspScheduleFromStart(scheduleFromStart);
    std::optional<std::string> date;
    if (!_mspScheduleFromStart) {
        scenario.setAttributeWithName(attribute::kFixedEnd, value::kTrue);
        _mspFinishDate =
            requiredProjectDate(project, "FinishDate", 23, 59, 59,
                                "Failed to find finish date for the project scheduled from end.");
        date = KVMSPIUtilities::mspdiToTvnxDateTime(*_mspFinishDate);
    } else {
        _mspStartDate = requiredProjectDate(
            project, "StartDate", 0, 0, 0, "Failed to find start date for the project scheduled from start.");
        date = KVMSPIUtilities::mspdiToTvnxDateTime(*_mspStartDate);
    }
    if (date) {
        scenario.addChildElementWithName(_mspScheduleFromStart ? element::kStartDate : element::kEndDate,
                                         *date);
    }
    if (const auto workFormat = queryInt(project, "WorkFormat")) {
        if (*workFormat >= 3 && *workFormat <= 5) {
            scenario.addChildElementWithName(element::kGranularity, value::kGranularityDays);
        } else if (*workFormat == 2) {
            scenario.addChildElementWithName(element::kGranularity, value::kGranularityHours);
        }
    }
}

KVMSPIProjectMapper::ElementPtr KVMSPIProjectMapper::addTopResourceToScenario(KVMSPIMPPProjectReader& project,
                                                                              KVMSPCXMLElement& scenario) {
    using namespace tvnx;
    scenario.addChildElementWithName(element::kTopResource)
        ->setAttributeWithName(attribute::kIdref, value::kTopResourceId);
    const ElementPtr topResource = KVMSPCXMLElement::initWithName(element::kResource);
    topResource->setAttributeWithName(attribute::kId, value::kTopResourceId);
    topResource->addChildElementWithName(element::kType, value::kResourceTypeGroup);
    const std::shared_ptr<KVMSPIXQuery> calendar = projectCalendar(project);
    tvAssert(calendar != nullptr && queryBool(*calendar, "IsBaseCalendar").value_or(false),
             "MSPDI 'Standard' Calendar is not a base calendar.");
    _mapper.setMspStandardCalendarUID(queryInt(*calendar, "UID").value_or(-1));
    const ElementPtr schedule = KVMSPICalendarMapper(_mapper).newScheduleFromMSPCalendar(*calendar, nullptr);
    topResource->addComment(value::kProjectScheduleComment);
    topResource->addChild(schedule);
    scenario.addChild(topResource);
    // Splits measure working time on the project calendar.
    _mapper.setScheduleCalendar(std::make_unique<KVMSPEScheduleCalendar>(*schedule));
    return topResource;
}

// The calendar named "Standard" wins whenever there is one; the default is taken only without it.
std::shared_ptr<KVMSPIXQuery> KVMSPIProjectMapper::projectCalendar(KVMSPIMPPProjectReader& project) const {
    std::shared_ptr<KVMSPIXQuery> projectDefault;
    if (const auto name = queryString(project, "DefaultCalendarName")) {
        projectDefault = baseCalendarNamed(project, *name);
        if (projectDefault) {
            tvLog(stringWithFormat("      The main base (Project) calendar was found at UID=%d. Name=%s",
                                   static_cast<int>(queryInt(*projectDefault, "UID").value_or(-1)),
                                   name->c_str()));
        }
    }
    const auto standard = baseCalendarNamed(project, "Standard");
    if (standard) {
        tvLog(stringWithFormat("      The main base Standard calendar was found at UID=%d.",
                               static_cast<int>(queryInt(*standard, "UID").value_or(-1))));
    }
    return standard ? standard : projectDefault;
}

// MS Project's reserved resource (UID 0) doesn't become a resource.
void KVMSPIProjectMapper::addMspResources(const Objects& mspResources, KVMSPCXMLElement& scenario,
                                          KVMSPCXMLElement& topGroupResource) {
    using namespace tvnx;
    std::vector<ElementPtr> resources;
    for (const auto& mspResource : mspResources) {
        tvAssert(dynamic_cast<KVMSPISingleResourceReader*>(mspResource.get()) != nullptr,
                 "Expected MSPISingleResourceReader as a Resource object.");
        if (queryInt(*mspResource, "UID").value_or(0) == 0) {
            continue;
        }
        KVMSPIResourceMapper resourceMapper(_mapper, _userDataTOCElements, _mspResourceMaxId);
        const ElementPtr resource = resourceMapper.newResourceFromMSPResource(*mspResource);
        _userDataChanged = _userDataChanged || resourceMapper.userDataChanged();
        if (resource != nullptr) {
            resources.push_back(resource);
            topGroupResource.addChildElementWithName(element::kChildResource)
                ->setAttributeWithName(
                    attribute::kIdref,
                    resource->attributeForName(attribute::kId)->stringValue().value_or(""));
        }
    }
    for (const ElementPtr& resource : resources) {
        scenario.addChild(resource);
    }
}

// Assignments without a resource stay out.
KVMSPIProjectMapper::AssignmentMap
KVMSPIProjectMapper::newAssignmentMapWithMspAssignments(const Objects& assignments) const {
    AssignmentMap assignmentMap;
    for (const auto& assignment : assignments) {
        tvAssert(dynamic_cast<KVMSPISingleAssignmentReader*>(assignment.get()) != nullptr,
                 "Expected MSPISingleAssignmentReader as a Assignment object.");
        const auto taskUID = queryInt(*assignment, "TaskUID");
        const auto resourceUID = queryInt(*assignment, "ResourceUID");
        if (taskUID && resourceUID && *resourceUID >= 0) {
            assignmentMap[*taskUID].push_back(assignment);
        }
    }
    return assignmentMap;
}

void KVMSPIProjectMapper::buildMspTasks(const Objects& mspTasks, const AssignmentMap& assignmentMap,
                                        const Objects& resources, KVMSPCXMLElement& scenario,
                                        KVMSPCXMLElement& topGroupTask) {
    using namespace tvnx;
    tvLog(stringWithFormat("    Mapping %d MSP Tasks ......", static_cast<int>(mspTasks.size())));
    std::vector<ElementPtr> tasks;
    std::vector<Piece> pieces;
    bool rootTaskFound = false;
    for (const auto& mspTask : mspTasks) {
        tvAssert(dynamic_cast<KVMSPISingleTaskReader*>(mspTask.get()) != nullptr,
                 "Expected MSPISingleTaskReader as a Task object.");
        const int64_t outlineLevel = queryInt(*mspTask, "OutlineLevel").value_or(0);
        tvAssert(outlineLevel >= 0, stringWithFormat("Unexpected outline level %lld found in task (UID=%s)",
                                                     static_cast<long long>(outlineLevel),
                                                     queryString(*mspTask, "UID").value_or("").c_str()));
        if (queryBool(*mspTask, "IsNull").value_or(false)) {
            continue;
        }
        KVMSPITaskMapper taskMapper(_mapper, _mspScheduleFromStart, _userDataTOCElements, _mspTaskMaxId);
        const ElementPtr task = taskMapper.newTaskFromMSPTask(*mspTask);
        if (task == nullptr) {
            continue;
        }
        const int64_t uid = taskMapper.mspTaskUID();
        _mspTaskUIDs.push_back(uid);
        _mspTaskUIDToTvnxTaskMap[uid] = task;
        _userDataChanged = _userDataChanged || taskMapper.userDataChanged();
        const bool summary = queryBool(*mspTask, "Summary").value_or(false);
        const ElementPtr type = firstChild(*task, element::kType);
        tvAssert(summary == (type && type->stringValue() == value::kTaskTypeGroup),
                 "MSPDI Summary Task must be mapped to TVNX Group Task.");
        if (uid == 0) {
            tvAssert(!rootTaskFound, "Duplicate tasks with UID=0 found in the source document.");
            rootTaskFound = true;
            tvAssert(outlineLevel == 0 && summary, "This does not seem like a MS Project root task.");
            addRootTask(*task, topGroupTask);
            continue;
        }
        const bool split = !summary && splitTask(*mspTask, *task, pieces);
        if (type && type->stringValue() == value::kTaskTypeGroup) {
            _mapper.expandGroupTask(*task);
        }
        tasks.push_back(task);
        if (!summary || split) {
            addMspAssignmentsFromMap(assignmentMap, *mspTask, *task, resources);
        }
    }
    for (const ElementPtr& task : tasks) {
        scenario.addChild(task);
    }
    // Pieces become tasks with fresh UIDs above all others.
    for (const Piece& piece : pieces) {
        scenario.addChild(piece.task);
        ++*_mspTaskMaxId;
        const std::string id = _mapper.idMapper().taskIdFromMspdiUID(
            stringWithFormat("%lld", static_cast<long long>(*_mspTaskMaxId)));
        piece.task->setAttributeWithName(attribute::kId, id);
        piece.reference->setAttributeWithName(attribute::kIdref, id);
    }
}

bool KVMSPIProjectMapper::splitTask(KVMSPIXQuery& mspTask, KVMSPCXMLElement& task,
                                    std::vector<Piece>& pieces) {
    using namespace tvnx;
    KVMSPITimephasedDataMapper timephasedMapper(_mapper);
    const std::vector<ElementPtr> splits = timephasedMapper.newSplitTasksFromMspdiTask(mspTask);
    if (splits.empty()) {
        return false;
    }
    tvAssert(splits.size() >= 2, "Minimum number of task splits must be 2.");
    const ElementPtr split = KVMSPCXMLElement::initWithName(element::kSplit);
    if (const ElementPtr type = firstChild(task, element::kType)) {
        task.replaceChildAtIndex(type->index(), split);
    } else if (const ElementPtr title = firstChild(task, element::kTitle)) {
        task.insertChild(split, title->index() + 1);
    } else {
        task.insertChild(split, 0);
    }
    if (timephasedMapper.taskEndDate()) {
        if (const auto end = KVMSPIUtilities::mppToTvnxDateTime(*timephasedMapper.taskEndDate())) {
            if (const ElementPtr endDate = firstChild(task, element::kEndDate)) {
                endDate->setStringValue(*end);
            } else {
                task.addChildElementWithName(element::kEndDate, *end);
            }
            for (const char* name : {element::kLockedEndDate, element::kEndConstraintDate}) {
                if (const ElementPtr date = firstChild(task, name)) {
                    date->setStringValue(*end);
                }
            }
        }
    }
    double effort = 0.0;
    for (const ElementPtr& piece : splits) {
        const ElementPtr reference = task.addChildElementWithName(element::kChildTask);
        reference->setAttributeWithName(attribute::kIdref,
                                        piece->attributeForName(attribute::kId)->stringValue());
        effort +=
            std::strtod(firstChild(*piece, element::kEffort)->stringValue().value_or("0").c_str(), nullptr);
        pieces.push_back({piece, reference});
    }
    if (effort > 0.0) {
        const std::string text = stringWithFormat("%.02f", effort);
        if (const ElementPtr taskEffort = firstChild(task, element::kEffort)) {
            taskEffort->setStringValue(text);
        } else {
            task.insertChild(KVMSPCXMLElement::initWithName(element::kEffort, text), split->index() + 1);
        }
    }
    return true;
}

void KVMSPIProjectMapper::addMspAssignmentsFromMap(const AssignmentMap& assignmentMap, KVMSPIXQuery& mspTask,
                                                   KVMSPCXMLElement& task, const Objects& resources) {
    const auto uid = queryInt(mspTask, "UID");
    const auto found = uid ? assignmentMap.find(*uid) : assignmentMap.end();
    if (found == assignmentMap.end()) {
        return;
    }
    for (const auto& assignment : found->second) {
        task.addChild(KVMSPIAssignmentMapper(_mapper).newAssignmentFromMSPAssignment(*assignment, resources));
    }
}

// The root task has no element of its own: the top task stands in for it and takes its dates.
void KVMSPIProjectMapper::addRootTask(KVMSPCXMLElement& rootTask, KVMSPCXMLElement& topGroupTask) const {
    using namespace tvnx::element;
    for (const char* name : {kStartDate, kEndDate}) {
        for (const ElementPtr& date : rootTask.elementsForName(name)) {
            date->detach();
            topGroupTask.addChild(date);
        }
    }
    if (!_mspProjectName.empty()) {
        ElementPtr title = firstChild(rootTask, kTitle);
        if (title == nullptr) {
            title = rootTask.insertChildElementWithName(kTitle, 0);
        }
        title->setStringValue(_mspProjectName);
    }
}

// The outline in task ID order, whatever the order of the file: each task goes into its parent's
// group, the first level into the top task.
void KVMSPIProjectMapper::buildTaskGroupsWithTopGroupTask(const ElementPtr& topGroupTask) {
    auto* taskReader = dynamic_cast<KVMSPIMPPTaskReader*>(_mapper.mspProject()->taskReader());
    tvAssert(taskReader != nullptr, "Failed to get Task Reader from the mapper.");
    const auto& parentTaskMap = taskReader->parentTaskMap();
    const auto taskID = [taskReader](int64_t uid) {
        int32_t id = 0;
        return taskReader->taskID(static_cast<int32_t>(uid), id) ? std::optional<int32_t>(id) : std::nullopt;
    };
    std::vector<std::pair<std::optional<int32_t>, int64_t>> order;
    for (const int64_t uid : _mspTaskUIDs) {
        order.emplace_back(taskID(uid), uid);
    }
    // A failed lookup compares equal to every other: such a task keeps its place among its neighbours.
    std::stable_sort(order.begin(), order.end(), [](const auto& first, const auto& second) {
        return first.first && second.first && *first.first < *second.first;
    });
    for (const auto& [id, uid] : order) {
        const auto parent = parentTaskMap.find(static_cast<int32_t>(uid));
        if (parent == parentTaskMap.end() || parent->second < 0) {
            continue;
        }
        const ElementPtr task = _mspTaskUIDToTvnxTaskMap.at(uid);
        ElementPtr group = topGroupTask;
        if (parent->second != 0) {
            const auto found = _mspTaskUIDToTvnxTaskMap.find(parent->second);
            group = found == _mspTaskUIDToTvnxTaskMap.end() ? nullptr : found->second;
        }
        const ElementPtr reference = KVMSPCXMLElement::initWithName(tvnx::element::kChildTask);
        reference->setAttributeWithName(
            tvnx::attribute::kIdref,
            task->attributeForName(tvnx::attribute::kId)->stringValue().value_or(""));
        addChildTaskRef(reference, group);
    }
}

void KVMSPIProjectMapper::addChildTaskRef(const ElementPtr& childTask, const ElementPtr& group) {
    using namespace tvnx::element;
    if (childTask == nullptr || group == nullptr) {
        return;
    }
    unsigned position = 0;
    const KVMSPCXMLNode::Nodes children = group->children();
    for (size_t index = children.size(); index-- > 0;) {
        const std::string name = children[index]->name().value_or("");
        if (name == kNote) {
            position = static_cast<unsigned>(index);
            break;
        }
        if (name == kChildTask || name == kStaticCost || name == kRecalculate) {
            position = static_cast<unsigned>(index + 1);
            break;
        }
        if (name == kType) {
            position = static_cast<unsigned>(index + 1);
            const KVMSPCXMLNode::Ptr parent = group->parent();
            tvAssert(parent && parent->name() == kScenario,
                     "it's probably only ok to get this far on the root task");
            break;
        }
    }
    if (position == 0) {
        // Reported, and the reference goes to the end, so that the outline keeps the task.
        tvLog("we should have found at least one required group task child element to insert a child task "
              "after.");
        group->addChild(childTask);
        return;
    }
    group->insertChild(childTask, position);
}
