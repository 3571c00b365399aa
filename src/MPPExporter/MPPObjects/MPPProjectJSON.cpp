#include "MPPExporter/MPPObjects/MPPProjectJSON.h"

#include "MPPCommon/date/KVMSPCDateTimeConverter.h"
#include "MPPExporter/MPPObjects/KVMPPProject.h"

namespace {

using json = nlohmann::ordered_json;

json optional(const std::optional<std::string>& text) {
    return text ? json(*text) : json();
}

json date(const std::optional<TVDate>& value) {
    return value ? json(KVMSPCDateTimeConverter::tvnxFromMppDateTime(*value, true)) : json();
}

// The ID of a resolved reference; a key that survived post-processing shows as its text.
template <class T>
json reference(const MPPDeferred<T>& field) {
    if (const T* object = field.object()) {
        return object->ID;
    }
    return field.isKey() ? json("key " + *field.key()) : json();
}

json customFields(const MPPCustomFields& fields) {
    if (fields.isResolved()) {
        return fields.values();
    }
    json attributes = json::array();
    for (const KVMPPExtendedAttribute& attribute : fields.attributes()) {
        attributes.push_back({{"alias", optional(attribute.alias)}, {"value", optional(attribute.value)}});
    }
    return attributes;
}

json ranges(const std::vector<KVMPPCalendarTimeRange>& list) {
    json result = json::array();
    for (const KVMPPCalendarTimeRange& range : list) {
        result.push_back({range.start().totalMinutes(), range.end().totalMinutes()});
    }
    return result;
}

json week(const KVMPPCalendarWorkWeek& workWeek) {
    json days = json::object();
    for (int64_t day = 1; day <= 7; ++day) {
        if (const auto& list = workWeek.workRangesForDay(day)) {
            days[KVMPPCalendarWorkWeek::dayName(day)] = ranges(*list);
        }
    }
    return {{"name", optional(workWeek.name)},
            {"start", date(workWeek.startDate)},
            {"end", date(workWeek.endDate)},
            {"days", days}};
}

json task(const KVMPPTask& task) {
    return {{"ID", task.ID},
            {"outlineLevel", task.outlineLevel},
            {"parentID", task.parent ? json(task.parent->ID) : json()},
            {"title", optional(task.title)},
            {"taskType", task.taskType},
            {"milestone", task.milestone},
            {"estimated", task.estimated},
            {"hasSplits", task.hasSplits},
            {"manual", task.manual},
            {"constraintType", task.constraintType},
            {"constraintDate", date(task.constraintDate)},
            {"start", date(task.startDate)},
            {"finish", date(task.endDate)},
            {"priority", task.priority},
            {"duration", task.duration},
            {"actualDuration", task.actualDuration},
            {"remainingDuration", task.remainingDuration},
            {"work", task.work},
            {"actualWork", task.actualWork},
            {"remainingWork", task.remainingWork},
            {"percentComplete", task.percentComplete},
            {"workPercentComplete", task.workPercentComplete},
            {"cost", task.cost},
            {"fixedCost", task.fixedCost},
            {"actualCost", task.actualCost},
            {"remainingCost", task.remainingCost},
            {"levelingCanSplit", task.levelingCanSplit},
            {"ignoreResourceCalendar", task.ignoreResourceCalendar},
            {"levelingDelay", task.levelingDelay},
            {"leveledStart", date(task.leveledStart)},
            {"preleveledStart", date(task.preleveledStart)},
            {"preleveledFinish", date(task.preleveledFinish)},
            {"calendarID", reference(task.calendar)},
            {"notes", optional(task.notes)},
            {"customFields", customFields(task.customFieldValues)},
            {"baselineSetted", task.baselineSetted},
            {"baselines", task.baselines.size()}};
}

json resourceBaselines(const KVMPPResource& resource) {
    json result = json::array();
    for (const KVMPPResourceBaseline& baseline : resource.baselines) {
        result.push_back({{"number", baseline.number}, {"work", baseline.work}, {"cost", baseline.cost}});
    }
    return result;
}

json assignmentBaselines(const KVMPPAssignment& assignment) {
    json result = json::array();
    for (const KVMPPAssignmentBaseline& baseline : assignment.baselines) {
        result.push_back({{"number", baseline.number},
                          {"start", date(baseline.start)},
                          {"finish", date(baseline.finish)},
                          {"work", baseline.work},
                          {"cost", baseline.cost}});
    }
    return result;
}

json resource(const KVMPPResource& resource) {
    return {{"ID", resource.ID},
            {"name", optional(resource.name)},
            {"type", resource.getResourceType()},
            {"isCost", resource.isCostResource()},
            {"maxUnits", resource.maxUnits},
            {"group", optional(resource.group)},
            {"calendarID", reference(resource.calendar)},
            {"work", resource.work},
            {"actualWork", resource.actualWork},
            {"cost", resource.cost},
            {"costPerUse", resource.costPerUse},
            {"standardRate", resource.standartRate},
            {"notes", optional(resource.notes)},
            {"customFields", customFields(resource.customFieldsText)},
            {"baselines", resourceBaselines(resource)}};
}

json assignment(const KVMPPAssignment& assignment) {
    json phases = json::array();
    for (const KVMPPAssignmentPhase& phase : assignment.assignmentPhases) {
        phases.push_back({{"startShift", phase.startShift},
                          {"finishShift", phase.finishShift},
                          {"work", phase.work},
                          {"workPerDay", phase.workPerDay}});
    }
    return {{"ID", assignment.ID},
            {"taskID", reference(assignment.task)},
            {"resourceID", reference(assignment.resource)},
            {"units", assignment.assignmentUnits},
            {"work", assignment.work},
            {"actualWork", assignment.actualWork},
            {"remainingWork", assignment.remainingWork},
            {"start", date(assignment.startDate)},
            {"finish", date(assignment.finishDate)},
            {"phases", phases},
            {"baselines", assignmentBaselines(assignment)}};
}

json calendar(const KVMPPCalendar& calendar) {
    json workWeeks = json::array();
    for (const KVMPPCalendarWorkWeek& workWeek : calendar.workWeeks) {
        workWeeks.push_back(week(workWeek));
    }
    json exceptions = json::array();
    for (const KVMPPCalendarException& exception : calendar.exceptions) {
        exceptions.push_back({{"name", optional(exception.name)},
                              {"start", date(exception.startDate)},
                              {"end", date(exception.endDate)},
                              {"ranges", ranges(exception.workRanges)}});
    }
    return {{"ID", calendar.ID},
            {"name", optional(calendar.name)},
            {"isBaseCalendar", calendar.isBaseCalendar},
            {"baseCalendarID", reference(calendar.baseCalendar)},
            {"defaultWorkWeek", week(calendar.defaultWorkWeek)},
            {"workWeeks", workWeeks},
            {"exceptions", exceptions}};
}

json link(const KVMPPConstraint& constraint) {
    return {{"type", constraint.constraintType},
            {"taskID", reference(constraint.task1)},
            {"predecessorID", reference(constraint.task2)},
            {"lag", constraint.lag},
            {"isPercentage", constraint.isPercentage}};
}

template <class T>
json list(const KVMPPProject::List<T>& objects, json (*convert)(const T&)) {
    json result = json::array();
    for (const auto& object : objects) {
        result.push_back(convert(*object));
    }
    return result;
}

} // namespace

json MPPProjectJSON::projectToJSON(const KVMPPProject& project) {
    const auto names = [](const std::optional<std::vector<std::string>>& list) {
        return list ? json(*list) : json();
    };
    return {{"title", optional(project.title)},
            {"start", date(project.startDate)},
            {"finish", date(project.endDate)},
            {"scheduleFromStart", project.scheduleFromStart},
            {"honorConstraints", project.honorConstraints},
            {"constraintType", project.constraintType},
            {"calendarID", reference(project.calendar)},
            {"weekStartDay", project.weekStartDay},
            {"currencySymbol", project.currencySymbol},
            {"currencyCode", project.currencyCode},
            {"currencyDigits", project.currencyDigits},
            {"currencySymbolPosition", project.currencySymbolPosition},
            {"customTaskFieldNames", names(project.customTaskFieldNames)},
            {"customResourceFieldNames", names(project.customResourceFieldNames)},
            {"baselineSaveDates", project.baselineSaveDates.size()},
            {"tasks", list(project.tasks, &task)},
            {"resources", list(project.resources, &resource)},
            {"assignments", list(project.assignments, &assignment)},
            {"calendars", list(project.baseCalendars, &calendar)},
            {"links", list(project.constraints, &link)}};
}
