#include "MPPExporter/Mappers/MSPEProjectPostProcessor.h"

#include "MPPCommon/date/StringExtensions.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/format/MPPFormatConstants.h"

#include <vector>

namespace {

// What a failure names as the class of a field's content: a key that survived, or the object.
template <class T>
std::string contentDescription(const MPPDeferred<T>& field, const char* objectClass) {
    return field.isKey() ? "string key '" + *field.key() + "'" : objectClass;
}

template <class T>
std::map<uint64_t, std::shared_ptr<T>> tableByID(const KVMPPProject::List<T>& objects) {
    std::map<uint64_t, std::shared_ptr<T>> table;
    for (const auto& object : objects) {
        table.emplace(object->ID, object);
    }
    return table;
}

template <class T>
long long asLong(T value) {
    return static_cast<long long>(value);
}

} // namespace

MSPEProjectPostProcessor::MSPEProjectPostProcessor(const UidToIdMap& taskUidToIdMap,
                                                   const UidToIdMap& resourceUidToIdMap)
    : _taskUidToIdMap(taskUidToIdMap), _resourceUidToIdMap(resourceUidToIdMap) {}

void MSPEProjectPostProcessor::mppPostProcessProject(KVMPPProject& project,
                                                     const KVMPPProject::List<KVMPPConstraint>& constraints) {
    _tasks = tableByID(project.tasks);
    _resources = tableByID(project.resources);
    _calendars = tableByID(project.baseCalendars);

    resolveProjectCalendar(project);
    for (const auto& constraint : constraints) {
        if (constraint->task1.isSet()) {
            constraint->task1.setObject(resolveTask(constraint->task1));
        }
        if (constraint->task2.isSet()) {
            constraint->task2.setObject(resolveTask(constraint->task2));
        }
    }
    resolveCalendars(project);
    for (const auto& task : project.tasks) {
        if (task->calendar.isSet()) {
            task->calendar.setObject(
                resolveCalendar(task->calendar, "Can not find mapped Calendar with ID=%lld"));
        }
    }
    for (const auto& resource : project.resources) {
        if (resource->calendar.isSet()) {
            resource->calendar.setObject(
                resolveCalendar(resource->calendar, "Can not find mapped Calendar with ID=%lld"));
        }
    }
    for (const auto& assignment : project.assignments) {
        if (assignment->task.isSet()) {
            assignment->task.setObject(resolveTask(assignment->task));
        }
        if (assignment->resource.isSet()) {
            assignment->resource.setObject(resolveResource(assignment->resource));
        }
    }
    resolveCustomFields(project);
    makeTaskTreeFromTasks(project.tasks);
    verifyFixedProject(project, constraints);
    _tasks.clear();
    _resources.clear();
    _calendars.clear();
}

std::shared_ptr<KVMPPTask> MSPEProjectPostProcessor::resolveTask(const MPPDeferred<KVMPPTask>& key) const {
    tvAssert(key.isKey(), "Unexpected task proxy class: " + contentDescription(key, "KVMPPTask"));
    const auto found = _taskUidToIdMap.find(*key.key());
    tvAssert(found != _taskUidToIdMap.end(),
             "Can not find Task ID for Task with UID='" + *key.key() + "' in the map.");
    const int64_t id = intValue(found->second);
    const auto task = _tasks.find(static_cast<uint64_t>(id));
    tvAssert(task != _tasks.end(), stringWithFormat("Can not find mapped Task with ID='%lld'", asLong(id)));
    tvAssert(task->second->ID == static_cast<uint64_t>(id),
             stringWithFormat("Unexpected Task ID=%lld got from the map. Should be %lld.",
                              asLong(task->second->ID), asLong(id)));
    return task->second;
}

std::shared_ptr<KVMPPCalendar>
MSPEProjectPostProcessor::resolveCalendar(const MPPDeferred<KVMPPCalendar>& key,
                                          const char* notFoundFormat) const {
    tvAssert(key.isKey(), "Unexpected calendar proxy class: " + contentDescription(key, "KVMPPCalendar"));
    const int64_t id = intValue(*key.key());
    if (id < 0) {
        return nullptr;
    }
    const auto calendar = _calendars.find(static_cast<uint64_t>(id));
    tvAssert(calendar != _calendars.end(), stringWithFormat(notFoundFormat, asLong(id)));
    return calendar->second;
}

std::shared_ptr<KVMPPResource>
MSPEProjectPostProcessor::resolveResource(const MPPDeferred<KVMPPResource>& key) const {
    tvAssert(key.isKey(), "Unexpected resource proxy class: " + contentDescription(key, "KVMPPResource"));
    if (intValue(*key.key()) == kMPPUnassignedResourceUID) {
        return nullptr;
    }
    // A resource that resource mapping didn't make (a group, or one outside the resource tree)
    // leaves the assignment on the unassigned resource.
    const auto found = _resourceUidToIdMap.find(*key.key());
    if (found == _resourceUidToIdMap.end()) {
        return nullptr;
    }
    const int64_t id = intValue(found->second);
    const auto resource = _resources.find(static_cast<uint64_t>(id));
    tvAssert(resource != _resources.end(),
             stringWithFormat("Can not find mapped Resource with ID='%lld'", asLong(id)));
    tvAssert(resource->second->ID == static_cast<uint64_t>(id),
             stringWithFormat("Unexpected Resource ID=%lld got from the map. Should be %lld.",
                              asLong(resource->second->ID), asLong(id)));
    return resource->second;
}

void MSPEProjectPostProcessor::resolveProjectCalendar(KVMPPProject& project) const {
    if (!project.calendar.isSet()) {
        return;
    }
    tvAssert(project.calendar.isKey(),
             "Unexpected calendar proxy class: " + contentDescription(project.calendar, "KVMPPCalendar"));
    const int64_t id = intValue(*project.calendar.key());
    tvAssert(id == 1, stringWithFormat("Unexcpectad Project Calendar UID (%lld). Must be 1.",
                                       static_cast<long long>(id)));
    std::shared_ptr<KVMPPCalendar> calendar =
        resolveCalendar(project.calendar, "Can not find mapped Calendar with ID=%lld");
    const std::string name = calendar->name.value_or("");
    tvAssert(name == KVMPPProject::kStandardCalendarName,
             "Incorrect name of the project calendar ('" + name + "'). Must be 'Standard'.");
    project.calendar.setObject(calendar);
    project.standardCalendar = std::move(calendar);
}

void MSPEProjectPostProcessor::resolveCalendars(const KVMPPProject& project) const {
    for (const auto& calendar : project.baseCalendars) {
        if (calendar->baseCalendar.isSet()) {
            calendar->baseCalendar.setObject(
                resolveCalendar(calendar->baseCalendar, "Can not find mapped Base Calendar with ID=%lld"));
        }
        const bool isStandard = calendar == project.standardCalendar;
        const bool isNamedStandard = calendar->name == KVMPPProject::kStandardCalendarName;
        tvAssert(isStandard == isNamedStandard,
                 "Only standard project calendar may have and must have name \"Standard\".");
    }
}

void MSPEProjectPostProcessor::resolveCustomFields(KVMPPProject& project) {
    if (!project.customTaskFieldNames && !project.customResourceFieldNames) {
        return;
    }
    const std::vector<std::string> none;
    for (const auto& task : project.tasks) {
        task->customFieldValues.resolve(project.customTaskFieldNames.value_or(none));
    }
    for (const auto& resource : project.resources) {
        resource->customFieldsText.resolve(project.customResourceFieldNames.value_or(none));
    }
}

void MSPEProjectPostProcessor::makeTaskTreeFromTasks(const KVMPPProject::List<KVMPPTask>& tasks) {
    std::vector<KVMPPTask*> stack;
    for (const auto& task : tasks) {
        const uint64_t level = task->outlineLevel;
        // On an empty stack the top index wraps around, so that the first task is always pushed.
        const uint64_t top = static_cast<uint64_t>(stack.size()) - 1;
        if (level == top) {
            stack.back() = task.get();
        } else {
            if (level < top) {
                while (stack.size() > level) {
                    stack.pop_back();
                }
            } else {
                tvAssert(level == stack.size(),
                         stringWithFormat("Broken list levels: taskLevel=%lld maxLevel=%lld", asLong(level),
                                          asLong(top)));
            }
            stack.push_back(task.get());
        }
        task->parent = stack.size() >= 2 ? stack[stack.size() - 2] : nullptr;
    }
}

void MSPEProjectPostProcessor::verifyFixedProject(const KVMPPProject& project,
                                                  const KVMPPProject::List<KVMPPConstraint>& constraints) {
    // The model's types hold every list entry, range and week to its class; what can still be wrong
    // after resolution is a key that survived, and the shape of the calendar hierarchy.
    for (const auto& constraint : constraints) {
        tvAssert(!constraint->task1.isKey(),
                 stringWithFormat("MPPConstraint ID=%lld. Unexpected MPPConstraint.task1 class: %s",
                                  asLong(constraint->ID), contentDescription(constraint->task1, "").c_str()));
        tvAssert(!constraint->task2.isKey(),
                 stringWithFormat("MPPConstraint ID=%lld. Unexpected MPPConstraint.task2 class: %s",
                                  asLong(constraint->ID), contentDescription(constraint->task2, "").c_str()));
    }
    for (const auto& resource : project.resources) {
        tvAssert(!resource->calendar.isKey(),
                 stringWithFormat("Resource ID=%lld. Unexpected Resource.calendar class: %s",
                                  asLong(resource->ID), contentDescription(resource->calendar, "").c_str()));
    }
    for (const auto& assignment : project.assignments) {
        tvAssert(!assignment->task.isKey(),
                 stringWithFormat("Assignment ID=%lld. Unexpected Assignment.task class: %s",
                                  asLong(assignment->ID), contentDescription(assignment->task, "").c_str()));
        tvAssert(!assignment->resource.isKey(),
                 stringWithFormat("Assignment ID=%lld. Unexpected Assignment.resource class: %s",
                                  asLong(assignment->ID),
                                  contentDescription(assignment->resource, "").c_str()));
    }
    for (const auto& calendar : project.baseCalendars) {
        tvAssert(!calendar->baseCalendar.isKey(),
                 stringWithFormat("Calendar ID=%lld. Unexpected Calendar.baseCalendar class: %s",
                                  asLong(calendar->ID),
                                  contentDescription(calendar->baseCalendar, "").c_str()));
        const bool hasBase = calendar->baseCalendar.isSet();
        tvAssert(calendar->isBaseCalendar || hasBase,
                 "Calendar must be either base calendar itself, or have base calendar.");
        tvAssert(!(calendar->isBaseCalendar && hasBase),
                 "Calendar can not be base calendar itself and have base calendar.");
    }
}
