#include "MPPCommon/support/Log.h"
#include "support/CorpusComparison.h"
#include "support/TestSupport.h"
#include "tool/inspect/DumpCommand.h"
#include "tool/inspect/PropsCommand.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <gtest/gtest.h>
#include <iostream>
#include <regex>
#include <set>

namespace {

using json = nlohmann::ordered_json;
using testsupport::CorpusComparison;
using Objects = std::map<int64_t, const json*>;

constexpr const char* kDayNames[] = {"SUN", "MON", "TUE", "WED", "THU", "FRI", "SAT"};
constexpr const char* kLinkTypes[] = {"FF", "FS", "SF", "SS"};
constexpr const char* kConstraintTypes[] = {
    "AS_SOON_AS_POSSIBLE",   "AS_LATE_AS_POSSIBLE", "MUST_START_ON",          "MUST_FINISH_ON",
    "START_NO_EARLIER_THAN", "START_NO_LATER_THAN", "FINISH_NO_EARLIER_THAN", "FINISH_NO_LATER_THAN"};
constexpr double kMicrosecondsPerMinute = 60e6;
// Derived calendars follow their bases this deep at most.
constexpr int kBaseDepth = 4;

// Every field fails on each difference that the manifest doesn't list, but these: values that the
// import takes from every plan where the readers don't reach the file's values yet. Each of them
// agrees with the reference on 99% of its values at least, and prints its differences; a field that
// holds its floor with its remaining true differences listed moves to the others.
constexpr const char* kFieldsHeldToTheFloor[] = {"task.duration"};
constexpr double kFloor = 0.99;

std::string text(const json& value) {
    if (value.is_null()) {
        return "(none)";
    }
    return value.is_string() ? value.get<std::string>() : value.dump();
}

std::string textOrEmpty(const json& value) {
    return value.is_null() ? "" : text(value);
}

std::string number(const json& value) {
    return value.is_number() ? stringWithFormat("%.2f", value.get<double>()) : text(value);
}

// A duration or work of the dump (microseconds) and of the reference (minutes), in whole minutes.
std::string ourMinutes(const json& microseconds) {
    return microseconds.is_number()
               ? std::to_string(std::llround(microseconds.get<double>() / kMicrosecondsPerMinute))
               : text(microseconds);
}
std::string refMinutes(const json& minutes) {
    return minutes.is_number() ? std::to_string(std::llround(minutes.get<double>())) : text(minutes);
}

// Notes compare without their white space: the reference's plain text keeps other line breaks.
std::string plainNotes(const json& notes) {
    const std::string collapsed =
        std::regex_replace(notes.is_string() ? notes.get<std::string>() : "", std::regex(R"(\s+)"), " ");
    const size_t first = collapsed.find_first_not_of(' ');
    return first == std::string::npos ? ""
                                      : collapsed.substr(first, collapsed.find_last_not_of(' ') - first + 1);
}

bool truthy(const json& value) {
    return value.is_boolean() ? value.get<bool>() : value.is_number() && value.get<double>() != 0;
}

std::string joined(std::vector<std::string> parts) {
    std::sort(parts.begin(), parts.end());
    std::string result;
    for (const std::string& part : parts) {
        result += (result.empty() ? "" : "; ") + part;
    }
    return result;
}

// The value of `key`, null when the object lacks it.
const json& get(const json& object, const char* key) {
    static const json kNone;
    const auto found = object.find(key);
    return found == object.end() ? kNone : *found;
}

Objects byUID(const json& list) {
    Objects objects;
    for (const json& object : list) {
        objects[object.value("uid", int64_t{-1})] = &object;
    }
    return objects;
}

const json* find(const Objects& objects, const json& uid) {
    const auto found = uid.is_number_integer() ? objects.find(uid.get<int64_t>()) : objects.end();
    return found == objects.end() ? nullptr : found->second;
}

// "hh:mm-hh:mm,..." of working ranges in microseconds of the day.
std::string ranges(const json& list) {
    std::string result;
    for (const json& range : list) {
        for (const char* end : {"from", "to"}) {
            const long long minutes = std::llround(range[end].get<double>() / kMicrosecondsPerMinute);
            // The reference ends a day at 00:00, the readers at 24:00.
            const char* separator = end[0] == 't' ? "-" : result.empty() ? "" : ",";
            result += stringWithFormat("%s%02lld:%02lld", separator, minutes / 60 % 24, minutes % 60);
        }
    }
    return result;
}

// How a value is compared: as text, as a whole number of minutes (microseconds in the dump, minutes in
// the reference), or as a number with two decimals.
enum class Form { Text, Minutes, Number };

// A field compared as it stands: its name, its key in the dump and in the reference, and its form.
struct Field {
    const char* name;
    const char* ours;
    const char* theirs;
    Form form;
};

// A plan's dump and its reference reading, compared field by field.
class PlanComparison {
public:
    PlanComparison(CorpusComparison& comparison, std::string file, const json& dump, const json& ref)
        : m_comparison(comparison), m_file(std::move(file)), m_dump(dump), m_ref(ref) {}

    void compareAll(const json& properties) {
        compareProject(properties);
        compareTasks();
        compareResources();
        compareCalendars();
        compareAssignments();
        compareBaselines();
        compareErrors();
    }

private:
    void compare(const std::string& field, const std::string& object, const std::string& ours,
                 const std::string& theirs) {
        m_comparison.compare(m_file, field, object, ours, theirs);
    }

    void compareFields(const std::string& object, const json& ours, const json& theirs,
                       std::initializer_list<Field> fields) {
        for (const Field& field : fields) {
            const json& our = get(ours, field.ours);
            const json& their = get(theirs, field.theirs);
            switch (field.form) {
            case Form::Text:
                compare(field.name, object, text(our), text(their));
                break;
            case Form::Minutes:
                compare(field.name, object, ourMinutes(our), refMinutes(their));
                break;
            case Form::Number:
                compare(field.name, object, number(our), number(their));
                break;
            }
        }
    }

    // Each object of `kind` that the reference lists: present on our side, then compared by
    // `compareObject` with ours of its UID. The plan's summary task and its own resource, UID 0, are
    // compared with `withUIDZero` only.
    template <typename Compare>
    void forEachObject(const char* kind, const std::string& name, bool withUIDZero, Compare compareObject) {
        const Objects ours = byUID(get(m_dump, kind));
        for (const json& ref : get(m_ref, kind)) {
            if (get(ref, "uid") == 0 && !withUIDZero) {
                continue;
            }
            const std::string object = name + " " + text(get(ref, "uid"));
            const json* found = find(ours, get(ref, "uid"));
            compare(name + ".presence", object, found ? "present" : "absent", "present");
            if (found != nullptr) {
                compareObject(object, *found, ref);
            }
        }
    }

    void compareProject(const json& properties) {
        const json& ours = get(m_dump, "project");
        const json& ref = get(m_ref, "project");
        for (const auto& [field, ourKey, refKey] : std::vector<std::array<const char*, 3>>{
                 {"project.start", "propStartDate", "start"},
                 {"project.finish", "propFinishDate", "finish"},
                 {"project.currency_code", "propCurrencyCode", "currency_code"},
                 {"project.currency_symbol", "propCurrencySymbol", "currency_symbol"},
                 {"project.currency_digits", "propCurrencyDigits", "currency_digits"},
                 {"project.days_per_month", "propDaysPerMonth", "days_per_month"},
                 {"project.minutes_per_day", "propMinutesPerDay", "minutes_per_day"},
                 {"project.minutes_per_week", "propMinutesPerWeek", "minutes_per_week"}}) {
            if (!ref.value(refKey, json()).is_null()) {
                compare(field, "project", text(ours.value(ourKey, json())), text(ref[refKey]));
            }
        }
        if (ours.contains("propScheduleFromStart")) {
            compare("project.schedule_from", "project",
                    get(ours, "propScheduleFromStart").get<bool>() ? "START" : "FINISH",
                    text(get(ref, "schedule_from")));
        }
        // The texts of the summary information property sets; the manager and the company are in the
        // document summary information.
        for (const auto& [set, number, refKey] :
             std::vector<std::tuple<const char*, const char*, const char*>>{
                 {"summaryInformation", "2", "title"},
                 {"summaryInformation", "3", "subject"},
                 {"summaryInformation", "4", "author"},
                 {"summaryInformation", "5", "keywords"},
                 {"summaryInformation", "6", "comments"},
                 {"documentSummaryInformation", "14", "manager"},
                 {"documentSummaryInformation", "15", "company"}}) {
            const json ourText = properties.value(set, json::object()).value(number, json(""));
            const json refText = ref.value(refKey, json(""));
            compare(std::string("project.") + refKey, "project", ourText.is_string() ? text(ourText) : "",
                    refText.is_string() ? text(refText) : "");
        }
    }

    // Every object reads without an error, and every task that we read is one that the reference has.
    void compareErrors() {
        for (const char* kind : {"tasks", "resources", "calendars", "assignments"}) {
            for (const json& object : get(m_dump, kind)) {
                const std::string where = std::string(kind) + " " + text(get(object, "uid"));
                m_comparison.check(m_file, std::string(kind) + ".error", where, !object.contains("error"),
                                   text(get(get(object, "error"), "text")));
            }
        }
        const Objects refTasks = byUID(get(m_ref, "tasks"));
        for (const json& task : get(m_dump, "tasks")) {
            if (get(task, "uid") != 0 && !truthy(get(task, "taskIsNull"))) {
                m_comparison.check(m_file, "task.extra", "task " + text(get(task, "uid")),
                                   find(refTasks, get(task, "uid")) != nullptr, "only ours");
            }
        }
    }

    void compareTasks() {
        forEachObject(
            "tasks", "task", false, [&](const std::string& object, const json& task, const json& ref) {
                if (ref.value("null", false)) {
                    return;
                }
                compare("task.name", object, textOrEmpty(get(task, "taskName")),
                        textOrEmpty(get(ref, "name")));
                compareFields(
                    object, task, ref,
                    {{"task.id", "taskID", "id", Form::Text},
                     {"task.outline_level", "taskOutlineLevel", "outline_level", Form::Text},
                     {"task.start", "taskStart", "start", Form::Text},
                     {"task.finish", "taskFinish", "finish", Form::Text},
                     {"task.duration", "taskDuration", "duration_min", Form::Minutes},
                     {"task.work", "taskWork", "work_min", Form::Minutes},
                     {"task.actual_work", "taskActualWork", "actual_work_min", Form::Minutes},
                     {"task.percent_complete", "taskPercentComplete", "percent_complete", Form::Text},
                     {"task.milestone", "taskMilestone", "milestone", Form::Text},
                     {"task.effort_driven", "taskEffortDriven", "effort_driven", Form::Text},
                     {"task.estimated", "taskEstimated", "estimated", Form::Text},
                     {"task.constraint_date", "taskConstraintDate", "constraint_date", Form::Text},
                     {"task.priority", "taskPriority", "priority", Form::Text}});
                compare("task.parent", object, text(get(task, "taskParentUID")),
                        get(ref, "parent_uid").is_null() ? "0" : text(get(ref, "parent_uid")));
                compare("task.manual", object, truthy(get(task, "taskManual")) ? "true" : "false",
                        ref.value("task_mode", "") == "MANUALLY_SCHEDULED" ? "true" : "false");
                const json type = get(task, "taskConstraintType");
                compare("task.constraint_type", object,
                        type.is_number_integer() && type >= 0 && type < 8 ? kConstraintTypes[type.get<int>()]
                                                                          : text(type),
                        get(ref, "constraint_type").is_null() ? kConstraintTypes[0]
                                                              : text(get(ref, "constraint_type")));
                compare("task.notes", object, plainNotes(get(task, "taskNotes")),
                        plainNotes(get(ref, "notes")));
                compareLinks(object, task.value("predecessors", json::array()), get(ref, "predecessors"));
                compareTaskBaselines(object, task, ref);
            });
    }

    // Each baseline that holds the task, against the reference's values of the same number: dates,
    // duration and work in minutes, cost. A work or cost that the file leaves out (application 12 leaves
    // out those of baselines 1 to 10 that were never set) is 0 on both sides, which give it as 0 or none.
    void compareTaskBaselines(const std::string& object, const json& task, const json& ref) {
        const json baselines = task.value("taskBaselines", json::object());
        const json refBaselines = ref.value("baselines", json::object());
        const auto orZero = [](const json& value) { return value.is_null() ? json(0) : value; };
        for (const auto& [saved, values] : baselines.items()) {
            const json cost = orZero(get(values, "cost"));
            const std::string ours = text(get(values, "start")) + " " + text(get(values, "finish")) + " " +
                                     ourMinutes(get(values, "duration")) + " " +
                                     ourMinutes(orZero(get(values, "work"))) + " " +
                                     number(cost.is_number() ? json(cost.get<double>() / 100.0) : cost);
            const json theirs = refBaselines.value(saved, json::object());
            compare("task.baseline", object + " baseline " + saved, ours,
                    text(get(theirs, "start")) + " " + text(get(theirs, "finish")) + " " +
                        refMinutes(get(theirs, "duration_min")) + " " +
                        refMinutes(orZero(get(theirs, "work_min"))) + " " +
                        number(orZero(get(theirs, "cost"))));
        }
    }

    // Links by predecessor and type; their lags (stored in tenths of a minute) apart.
    void compareLinks(const std::string& object, const json& ours, const json& ref) {
        std::vector<std::string> ourLinks;
        std::vector<std::string> ourLags;
        for (const json& link : ours) {
            const int type = link.value("relType", -1);
            ourLinks.push_back(text(get(link, "preTaskUID")) + " " +
                               (type >= 0 && type < 4 ? kLinkTypes[type] : "?"));
            ourLags.push_back(text(get(link, "preTaskUID")) + " " +
                              number(json(link.value("lag", 0.0) / 10)));
        }
        std::vector<std::string> refLinks;
        std::vector<std::string> refLags;
        for (const json& link : ref) {
            const std::string type = link.value("type", "");
            static const std::map<std::string, std::string> kLongNames = {{"FINISH_FINISH", "FF"},
                                                                          {"FINISH_START", "FS"},
                                                                          {"START_FINISH", "SF"},
                                                                          {"START_START", "SS"}};
            const auto shortName = kLongNames.find(type);
            refLinks.push_back(text(get(link, "uid")) + " " +
                               (shortName == kLongNames.end() ? type : shortName->second));
            refLags.push_back(text(get(link, "uid")) + " " + number(link.value("lag_min", json(0.0))));
        }
        compare("task.links", object, joined(ourLinks), joined(refLinks));
        compare("task.link_lags", object, joined(ourLags), joined(refLags));
    }

    void compareResources() {
        const std::map<int64_t, int64_t> calendarOfResource = resourceCalendars();
        forEachObject(
            "resources", "resource", false,
            [&](const std::string& object, const json& resource, const json& ref) {
                compare("resource.name", object, textOrEmpty(get(resource, "resourceName")),
                        textOrEmpty(get(ref, "name")));
                compare("resource.id", object, text(get(resource, "resourceID")), text(get(ref, "id")));
                const std::string kind = truthy(get(resource, "resourceIsCostResource")) ? "COST"
                                         : get(resource, "resourceType") == 1            ? "MATERIAL"
                                                                                         : "WORK";
                compare("resource.type", object, kind, text(get(ref, "type")));
                if (kind != "COST") {
                    compare("resource.max_units", object, number(get(resource, "resourceMaxUnits")),
                            number(get(ref, "max_units")));
                }
                if (!get(ref, "email").is_null()) {
                    compare("resource.email", object, text(get(resource, "resourceEmailAddress")),
                            text(get(ref, "email")));
                }
                compare("resource.standard_rate", object, number(get(resource, "resourceStandardRate")),
                        hourlyRate(get(ref, "standard_rate")));
                // Costs per use are stored in hundredths.
                const json costPerUse = get(resource, "resourceCostPerUse");
                compare("resource.cost_per_use", object,
                        number(costPerUse.is_number() ? json(costPerUse.get<double>() / 100) : costPerUse),
                        number(get(ref, "cost_per_use")));
                const auto calendar = calendarOfResource.find(get(ref, "uid").get<int64_t>());
                compare("resource.calendar", object,
                        calendar == calendarOfResource.end() ? "(none)" : std::to_string(calendar->second),
                        text(get(ref, "calendar_uid")));
                compare("resource.notes", object, plainNotes(get(resource, "resourceNotes")),
                        plainNotes(get(ref, "notes")));
            });
    }

    // The reference's rate text ("20/h", "175/d") as a rate per hour, as the file keeps it.
    static std::string hourlyRate(const json& rate) {
        static const std::map<std::string, double> kPerHour = {
            {"/m", 60.0}, {"/h", 1.0}, {"/d", 1.0 / 8}, {"/w", 1.0 / 40}};
        if (!rate.is_string()) {
            return text(rate);
        }
        const std::string value = rate.get<std::string>();
        const auto unit = kPerHour.find(value.substr(value.find('/')));
        return unit == kPerHour.end() ? value : number(json(std::stod(value) * unit->second));
    }

    // A resource's calendar is the one that names the resource.
    std::map<int64_t, int64_t> resourceCalendars() const {
        std::map<int64_t, int64_t> calendars;
        for (const json& calendar : get(m_dump, "calendars")) {
            const int64_t resource = calendar.value("calendarResourceUID", int64_t{-1});
            if (resource > 0) {
                calendars[resource] = calendar.value("uid", int64_t{-1});
            }
        }
        return calendars;
    }

    void compareCalendars() {
        const Objects calendars = byUID(get(m_dump, "calendars"));
        const Objects refCalendars = byUID(get(m_ref, "calendars"));
        forEachObject("calendars", "calendar", true,
                      [&](const std::string& object, const json& calendar, const json& ref) {
                          const json base = calendar.value("calendarBaseCalendarUID", json(-1));
                          if (!get(ref, "base_calendar_uid").is_null() || base != -1) {
                              const json* ourBase = find(calendars, base);
                              const json* refBase = find(refCalendars, get(ref, "base_calendar_uid"));
                              compare("calendar.base_name", object,
                                      ourBase ? text(ourBase->value("calendarName", json())) : "(none)",
                                      refBase ? text(refBase->value("name", json())) : "(none)");
                          }
                          // The reference names a resource's calendar after its resource; the file leaves it
                          // unnamed.
                          if (ref.value("type", "") != "RESOURCE") {
                              compare("calendar.name", object, text(get(calendar, "calendarName")),
                                      text(get(ref, "name")));
                          }
                          for (int day = 0; day < 7; ++day) {
                              if (get(ref, "days").contains(kDayNames[day])) {
                                  compare("calendar.week_day", object + " " + kDayNames[day],
                                          ourDay(calendars, calendar, day + 1, kBaseDepth),
                                          refDay(refCalendars, ref, kDayNames[day], kBaseDepth));
                              }
                          }
                          compare("calendar.exceptions", object, ourExceptions(calendar), refExceptions(ref));
                      });
    }

    // A day's working times; a day of a derived calendar that it doesn't hold, or that works without
    // times of its own, follows the base calendar, as the reference's "DEFAULT" does.
    static std::string ourDay(const Objects& calendars, const json& calendar, int dayType, int depth) {
        const json* base = find(calendars, calendar.value("calendarBaseCalendarUID", json(-1)));
        const bool derived = base != nullptr && !calendar.value("calendarIsBaseCalendar", true) && depth > 0;
        for (const json& day : get(calendar, "weekDays")) {
            if (get(day, "dayType") != dayType) {
                continue;
            }
            if (!day.value("calendarWeekDayDayWorking", false)) {
                return "NON_WORKING";
            }
            const json times = day.value("calendarWeekDayWorkingTimes", json::array());
            if (times.empty() && derived) {
                return ourDay(calendars, *base, dayType, depth - 1);
            }
            return "WORKING " + ranges(times);
        }
        return derived ? ourDay(calendars, *base, dayType, depth - 1) : "(none)";
    }

    static std::string refDay(const Objects& calendars, const json& calendar, const char* day, int depth) {
        const std::string value = get(calendar, "days").value(day, "(none)");
        const json* base = find(calendars, get(calendar, "base_calendar_uid"));
        return value == "DEFAULT" && base != nullptr && depth > 0 ? refDay(calendars, *base, day, depth - 1)
                                                                  : value;
    }

    // Exceptions as sorted lines "from to working hours recurrence": the reference orders them by their
    // first occurrence, the file by their place. A recurring exception starts at its recurrence's start.
    static std::string ourExceptions(const json& calendar) {
        std::vector<std::string> lines;
        for (const json& exception : get(calendar, "exceptions")) {
            const json recurrence = get(exception, "calendarExceptionRecurrenceType");
            const int type = recurrence.value("type", 0);
            const json parameters = exception.value("calendarExceptionRecurrenceParameter", json::array());
            const std::string interval = parameters.empty() ? "-1" : text(parameters[0]);
            std::string recurring = type == 2 || type == 3   ? "YEARLY"
                                    : type == 4 || type == 5 ? "MONTHLY freq=" + interval
                                    : type == 6              ? "WEEKLY freq=" + interval
                                    : type == 7              ? "DAILY freq=" + interval
                                                             : "";
            if (!recurring.empty()) {
                recurring += " occurrences=" + text(get(recurrence, "occurrenceCount"));
            }
            const json times = exception.value("calendarExceptionWorkingTimes", json::array());
            lines.push_back(day(get(exception, "calendarExceptionTimePeriodFromDate")) + " " +
                            day(get(exception, "calendarExceptionTimePeriodToDate")) + " " +
                            (times.empty() ? "off" : "working " + ranges(times)) + " " + recurring);
        }
        return joined(lines);
    }

    static std::string refExceptions(const json& calendar) {
        static const std::regex kRecurrence(R"(^(\w+)(?: freq=(\S+))?.*? start=(\S+).* occurrences=(\S+))");
        std::vector<std::string> lines;
        for (const json& exception : get(calendar, "exceptions")) {
            std::string from = text(get(exception, "from"));
            std::string recurring;
            std::smatch parts;
            const std::string rule =
                get(exception, "recurring").is_string() ? text(get(exception, "recurring")) : "";
            if (std::regex_search(rule, parts, kRecurrence)) {
                from = parts[3];
                recurring = parts[1].str() + (parts[1] == "YEARLY" ? "" : " freq=" + parts[2].str()) +
                            " occurrences=" + parts[4].str();
            }
            const std::string hours = text(exception.value("hours", json("")));
            lines.push_back(from + " " + text(get(exception, "to")) + " " +
                            (exception.value("working", false) ? "working " + hours : "off") + " " +
                            recurring);
        }
        return joined(lines);
    }

    static std::string day(const json& date) { return text(date).substr(0, 10); }

    void compareAssignments() {
        forEachObject("assignments", "assignment", true,
                      [&](const std::string& object, const json& assignment, const json& ref) {
                          compareFields(object, assignment, ref,
                                        {{"assignment.task", "assignmentTaskUID", "task_uid", Form::Text},
                                         {"assignment.units", "assignmentUnits", "units", Form::Number},
                                         {"assignment.work", "assignmentWork", "work_min", Form::Minutes},
                                         {"assignment.start", "assignmentStart", "start", Form::Text},
                                         {"assignment.finish", "assignmentFinish", "finish", Form::Text}});
                          compare("assignment.baselines", object, ourAssignmentBaselines(assignment),
                                  refAssignmentBaselines(ref));
                          // An assignment without a resource names a negative resource UID.
                          const json& resource = get(assignment, "assignmentResourceUID");
                          compare("assignment.resource", object,
                                  resource.is_number() && resource < 0 ? "(none)" : text(resource),
                                  text(get(ref, "resource_uid")));
                      });
    }

    // An assignment's baselines, one entry each: its number, dates, work in minutes and cost.
    static std::string ourAssignmentBaselines(const json& assignment) {
        std::vector<std::string> entries;
        const json baselines = assignment.value("assignmentBaselines", json::object());
        for (const auto& [saved, values] : baselines.items()) {
            const json& cost = get(values, "cost");
            entries.push_back(saved + " " + text(get(values, "start")) + " " + text(get(values, "finish")) +
                              " " + ourMinutes(get(values, "work")) + " " +
                              number(cost.is_number() ? json(cost.get<double>() / 100.0) : cost));
        }
        return joined(entries);
    }

    static std::string refAssignmentBaselines(const json& assignment) {
        std::vector<std::string> entries;
        const json& baselines = get(assignment, "baselines");
        for (const auto& [saved, values] : baselines.items()) {
            entries.push_back(saved + " " + text(get(values, "start")) + " " + text(get(values, "finish")) +
                              " " + refMinutes(get(values, "work_min")) + " " + number(get(values, "cost")));
        }
        return joined(entries);
    }

    // The baselines of a plan: those that some task or resource marks as set.
    void compareBaselines() {
        std::set<int> ours;
        for (const char* kind : {"tasks", "resources"}) {
            for (const json& object : m_dump[kind]) {
                const json marks = object.value("hasBaseline", json::object());
                for (const auto& [number, set] : marks.items()) {
                    if (set == true) {
                        ours.insert(std::stoi(number));
                    }
                }
            }
        }
        std::vector<std::string> ourNumbers;
        for (int number : ours) {
            ourNumbers.push_back(std::to_string(number));
        }
        std::vector<std::string> refNumbers;
        for (const json& number : m_ref.value("baselines_present", json::array())) {
            refNumbers.push_back(text(number));
        }
        compare("plan.baselines_present", "plan", joined(ourNumbers), joined(refNumbers));
    }

    CorpusComparison& m_comparison;
    std::string m_file;
    const json& m_dump;
    const json& m_ref;
};

// The reference reading of a plan that the import reads: none for format 8, which the import refuses,
// and for password-protected plans, whose streams are obfuscated; both by design.
json referenceOf(const std::filesystem::path& path,
                 const std::map<std::string, testsupport::CorpusIndexRow>& index) {
    const auto row = index.find(path.filename().string());
    if (row == index.end() || row->second.at("format_guess") == "8" ||
        !(row->second.at("password_flag").empty() || row->second.at("password_flag") == "0")) {
        return json();
    }
    std::ifstream in(testsupport::corpusDir() / "ref" / (path.filename().string() + ".json"));
    json ref = in ? json::parse(in, nullptr, false) : json();
    return ref.is_object() && !truthy(get(ref, "error")) ? ref : json();
}

} // namespace

// The dump of every plan against the independent reader's reading of it, value by value. The plans
// are read one after the other in one process, as a batch is.
TEST(ReferenceCorpus, DumpAgreesWithTheIndependentReader) {
    TVMSP_REQUIRE_CORPUS();
    tvSetLogSink([](const std::string&) {});
    CorpusComparison comparison("tool/inspect/ReferenceCorpusTest.manifest", 150000);
    for (const char* field : kFieldsHeldToTheFloor) {
        comparison.requireShare(field, kFloor);
    }
    const auto index = testsupport::corpusIndex();
    const json empty = {{"project", json::object()},
                        {"tasks", json::array()},
                        {"resources", json::array()},
                        {"calendars", json::array()},
                        {"assignments", json::array()}};
    for (const auto& path : testsupport::corpusMppFiles()) {
        const json ref = referenceOf(path, index);
        if (ref.is_null()) {
            continue;
        }
        const json dump = DumpCommand::dumpOfFile(path.string(), true);
        PlanComparison(comparison, path.filename().string(), dump.contains("error") ? empty : dump, ref)
            .compareAll(PropsCommand::propertiesOfFile(path.string()));
    }
    tvSetLogSink({});
    std::cout << comparison.summary();
    const std::string failures = comparison.failures();
    EXPECT_TRUE(failures.empty()) << failures;
}
