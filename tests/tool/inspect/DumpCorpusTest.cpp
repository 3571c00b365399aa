#include "CorpusDifferences.h"
#include "support/TestSupport.h"
#include "tool/inspect/DumpCommand.h"

#include <cmath>
#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <map>
#include <regex>
#include <set>
#include <sstream>

namespace {

using json = nlohmann::ordered_json;
// One object's values, in the dump's text forms, by the name of the compared field.
using Fields = std::map<std::string, std::string>;
// Objects of one kind by UID.
using Objects = std::map<std::string, Fields>;

std::string number(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%.2f", value);
    return text;
}

// "PT8H30M0S" (with an optional sign) as whole microseconds.
std::string microsecondsOfDuration(const std::string& text) {
    const bool negative = !text.empty() && text[0] == '-';
    double hours = 0;
    double minutes = 0;
    double seconds = 0;
    if (std::sscanf(text.c_str() + (negative ? 1 : 0), "PT%lfH%lfM%lfS", &hours, &minutes, &seconds) != 3) {
        return "unreadable " + text;
    }
    const double total = std::llround((hours * 3600 + minutes * 60 + seconds) * 1e6);
    return std::to_string(static_cast<long long>(negative ? -total : total));
}

std::string textOf(const json& value) {
    if (value.is_string()) {
        return value.get<std::string>();
    }
    if (value.is_number_float()) {
        return number(value.get<double>());
    }
    return value.dump();
}

// The interchange XML of a plan, read into the fields that the dump is compared on.
class InterchangePlan {
public:
    explicit InterchangePlan(const std::filesystem::path& path) {
        xmlDocPtr document = xmlReadFile(path.c_str(), nullptr, XML_PARSE_NONET | XML_PARSE_NOBLANKS);
        if (!document) {
            return;
        }
        for (xmlNodePtr list = child(xmlDocGetRootElement(document)); list; list = list->next) {
            for (xmlNodePtr object = child(list); object; object = object->next) {
                readObject(name(list), object);
            }
        }
        xmlFreeDoc(document);
    }

    std::map<std::string, Objects> kinds;

private:
    static xmlNodePtr child(xmlNodePtr node) {
        xmlNodePtr first = node ? node->children : nullptr;
        while (first && first->type != XML_ELEMENT_NODE) {
            first = first->next;
        }
        return first;
    }
    static std::string name(xmlNodePtr node) { return reinterpret_cast<const char*>(node->name); }
    static std::string text(xmlNodePtr node) {
        xmlChar* content = xmlNodeGetContent(node);
        std::string result = content ? reinterpret_cast<const char*>(content) : "";
        xmlFree(content);
        return result;
    }
    static std::map<std::string, xmlNodePtr> children(xmlNodePtr node) {
        std::map<std::string, xmlNodePtr> found;
        for (xmlNodePtr item = child(node); item; item = item->next) {
            found.emplace(name(item), item);
        }
        return found;
    }

    void readObject(const std::string& list, xmlNodePtr object) {
        auto items = children(object);
        if (!items.count("UID")) {
            return;
        }
        Fields fields;
        const auto copy = [&](const char* from, const char* to, auto form) {
            if (items.count(from)) {
                fields[to] = form(text(items[from]));
            }
        };
        const auto same = [](const std::string& value) { return value; };
        const auto duration = [](const std::string& value) { return microsecondsOfDuration(value); };
        const auto percent = [](const std::string& value) { return number(std::stod(value) * 100); };
        const auto money = [](const std::string& value) { return number(std::stod(value)); };
        if (list == "Tasks") {
            for (const char* key : {"ID", "Name", "OutlineLevel", "Start", "Finish", "PercentComplete",
                                    "ConstraintType", "ConstraintDate"}) {
                copy(key, key, same);
            }
            copy("Duration", "Duration", duration);
            copy("Work", "Work", duration);
            fields["Predecessors"] = predecessors(object);
        } else if (list == "Resources") {
            for (const char* key : {"ID", "Name", "Type", "EmailAddress"}) {
                copy(key, key, same);
            }
            copy("MaxUnits", "MaxUnits", percent);
            copy("StandardRate", "StandardRate", money);
        } else if (list == "Assignments") {
            for (const char* key : {"TaskUID", "ResourceUID", "Start", "Finish"}) {
                copy(key, key, same);
            }
            copy("Units", "Units", percent);
            copy("Work", "Work", duration);
        } else if (list == "Calendars") {
            copy("Name", "Name", same);
            copy("BaseCalendarUID", "BaseCalendarUID", same);
            readCalendarDays(items, fields);
        } else {
            return;
        }
        kinds[list][text(items["UID"])] = fields;
    }

    static std::string predecessors(xmlNodePtr task) {
        std::set<std::string> links;
        for (xmlNodePtr item = child(task); item; item = item->next) {
            if (name(item) == "PredecessorLink") {
                auto parts = children(item);
                links.insert(text(parts["PredecessorUID"]) + "/" + text(parts["Type"]) + "/" +
                             text(parts["LinkLag"]));
            }
        }
        return join(links);
    }

    static std::string join(const std::set<std::string>& items) {
        std::string joined;
        for (const auto& item : items) {
            joined += (joined.empty() ? "" : ";") + item;
        }
        return joined;
    }

    static std::string workingTimes(xmlNodePtr owner) {
        std::string ranges;
        for (xmlNodePtr list = child(owner); list; list = list->next) {
            if (name(list) != "WorkingTimes") {
                continue;
            }
            for (xmlNodePtr range = child(list); range; range = range->next) {
                auto parts = children(range);
                ranges += text(parts["FromTime"]) + "-" + text(parts["ToTime"]) + ",";
            }
        }
        return ranges;
    }

    // Week days as "working ranges" per day type; exceptions as the set of their date periods.
    static void readCalendarDays(std::map<std::string, xmlNodePtr>& items, Fields& fields) {
        std::set<std::string> exceptions;
        if (items.count("WeekDays")) {
            for (xmlNodePtr day = child(items["WeekDays"]); day; day = day->next) {
                auto parts = children(day);
                const std::string dayType = text(parts["DayType"]);
                if (dayType == "0") {
                    auto period = children(parts["TimePeriod"]);
                    exceptions.insert(text(period["FromDate"]).substr(0, 10) + ".." +
                                      text(period["ToDate"]).substr(0, 10));
                } else {
                    fields["WeekDay" + dayType] = text(parts["DayWorking"]) + " " + workingTimes(day);
                }
            }
        }
        if (items.count("Exceptions")) {
            for (xmlNodePtr exception = child(items["Exceptions"]); exception; exception = exception->next) {
                auto period = children(children(exception)["TimePeriod"]);
                exceptions.insert(text(period["FromDate"]).substr(0, 10) + ".." +
                                  text(period["ToDate"]).substr(0, 10));
            }
        }
        fields["Exceptions"] = join(exceptions);
    }
};

std::string timeOfDay(const json& microseconds) {
    const long long seconds = microseconds.get<long long>() / 1000000 % 86400;
    char text[16];
    std::snprintf(text, sizeof text, "%02lld:%02lld:%02lld", seconds / 3600, seconds / 60 % 60, seconds % 60);
    return text;
}

// The dump's objects in the interchange plan's field names and forms.
class DumpedPlan {
public:
    explicit DumpedPlan(const json& dump) {
        for (const auto& task : dump["tasks"]) {
            if (!task.value("taskIsNull", false)) {
                kinds["Tasks"][std::to_string(task["uid"].get<int>())] = taskFields(task);
            }
        }
        read(dump, "resources", "Resources",
             {{"ID", "resourceID"},
              {"Name", "resourceName"},
              {"EmailAddress", "resourceEmailAddress"},
              {"MaxUnits", "resourceMaxUnits"},
              {"StandardRate", "resourceStandardRate"}});
        for (const auto& resource : dump["resources"]) {
            // The file's type 0 is a work resource, which the interchange XML gives as 1.
            if (resource.contains("resourceType")) {
                kinds["Resources"][std::to_string(resource["uid"].get<int>())]["Type"] =
                    resource["resourceType"] == 0 ? "1" : "0";
            }
        }
        read(dump, "assignments", "Assignments",
             {{"TaskUID", "assignmentTaskUID"},
              {"ResourceUID", "assignmentResourceUID"},
              {"Start", "assignmentStart"},
              {"Finish", "assignmentFinish"},
              {"Units", "assignmentUnits"},
              {"Work", "assignmentWork"}});
        for (const auto& calendar : dump["calendars"]) {
            kinds["Calendars"][std::to_string(calendar["uid"].get<int>())] = calendarFields(calendar);
        }
    }

    std::map<std::string, Objects> kinds;

private:
    static Fields fieldsOf(const json& object, const std::map<std::string, std::string>& keys) {
        Fields fields;
        for (const auto& [name, key] : keys) {
            if (object.contains(key)) {
                fields[name] = textOf(object[key]);
            }
        }
        return fields;
    }

    void read(const json& dump, const char* list, const char* kind,
              const std::map<std::string, std::string>& keys) {
        for (const auto& object : dump[list]) {
            kinds[kind][std::to_string(object["uid"].get<int>())] = fieldsOf(object, keys);
        }
    }

    static Fields taskFields(const json& task) {
        Fields fields = fieldsOf(task, {{"ID", "taskID"},
                                        {"Name", "taskName"},
                                        {"OutlineLevel", "taskOutlineLevel"},
                                        {"Start", "taskStart"},
                                        {"Finish", "taskFinish"},
                                        {"PercentComplete", "taskPercentComplete"},
                                        {"ConstraintType", "taskConstraintType"},
                                        {"ConstraintDate", "taskConstraintDate"},
                                        {"Duration", "taskDuration"},
                                        {"Work", "taskWork"}});
        std::set<std::string> links;
        for (const auto& link : task.value("predecessors", json::array())) {
            links.insert(textOf(link["preTaskUID"]) + "/" + textOf(link["relType"]) + "/" +
                         textOf(link["lag"]));
        }
        std::string joined;
        for (const auto& link : links) {
            joined += (joined.empty() ? "" : ";") + link;
        }
        fields["Predecessors"] = joined;
        return fields;
    }

    static std::string ranges(const json& list) {
        std::string text;
        for (const auto& range : list) {
            text += timeOfDay(range["from"]) + "-" + timeOfDay(range["to"]) + ",";
        }
        return text;
    }

    static std::string periodDay(const json& exception, const char* periodKey, const char* recurrenceKey) {
        const json& date = exception.contains(periodKey)
                               ? exception[periodKey]
                               : exception["calendarExceptionRecurrenceType"][recurrenceKey];
        return date.is_string() ? date.get<std::string>().substr(0, 10) : "none";
    }

    static Fields calendarFields(const json& calendar) {
        Fields fields =
            fieldsOf(calendar, {{"Name", "calendarName"}, {"BaseCalendarUID", "calendarBaseCalendarUID"}});
        for (const auto& day : calendar["weekDays"]) {
            if (day.contains("calendarWeekDayDayWorking")) {
                fields["WeekDay" + textOf(day["dayType"])] =
                    std::string(day["calendarWeekDayDayWorking"].get<bool>() ? "1" : "0") + " " +
                    ranges(day.value("calendarWeekDayWorkingTimes", json::array()));
            }
        }
        std::set<std::string> exceptions;
        for (const auto& exception : calendar["exceptions"]) {
            exceptions.insert(periodDay(exception, "calendarExceptionTimePeriodFromDate", "fromDate") + ".." +
                              periodDay(exception, "calendarExceptionTimePeriodToDate", "toDate"));
        }
        std::string joined;
        for (const auto& exception : exceptions) {
            joined += (joined.empty() ? "" : ";") + exception;
        }
        fields["Exceptions"] = joined;
        return fields;
    }
};

// The interchange XML's midnight that ends a day is "00:00:00"; the dump's is 24 hours.
std::string normalised(const std::string& value) {
    return std::regex_replace(value, std::regex("24:00:00"), "00:00:00");
}

// The summary task, and assignments without a resource, are counted apart from the other objects of
// their kind.
std::string groupOf(const std::string& kind, const std::string& uid, const Fields& interchangeFields) {
    const auto resource = interchangeFields.find("ResourceUID");
    if (kind == "Tasks" && uid == "0") {
        return "SummaryTask";
    }
    if (kind == "Assignments" && resource != interchangeFields.end() && resource->second == "-65535") {
        return "UnassignedAssignments";
    }
    return kind;
}

void compareKinds(const std::string& file, const std::map<std::string, Objects>& ours,
                  const std::map<std::string, Objects>& theirs, CorpusDifferences& differences) {
    for (const auto& [kind, objects] : theirs) {
        const auto ourKind = ours.find(kind);
        for (const auto& [uid, fields] : objects) {
            if (ourKind == ours.end() || !ourKind->second.count(uid)) {
                differences.add(file, kind + ".missing", "uid " + uid);
                continue;
            }
            const Fields& ourFields = ourKind->second.at(uid);
            const std::string where = groupOf(kind, uid, fields);
            for (const auto& [field, value] : fields) {
                const auto found = ourFields.find(field);
                const std::string ourValue =
                    found == ourFields.end() ? "(absent)" : normalised(found->second);
                if (ourValue != normalised(value)) {
                    differences.add(file, where + "." + field,
                                    "uid " + uid + ": " + ourValue + ", expected " + value);
                }
            }
        }
    }
}

// "generated__<feature>__<name>-project<year>-mpp<gen>.mpp": the copies of one plan share feature and
// year, and pair with one interchange file. The summary task is compared apart: it carries the plan's
// title, which follows the name each copy was saved under.
const std::regex kGeneratedName(R"(^generated__(.+)__(.+)-project(\w+)-mpp\d+\.mpp$)");

// Every object's fields as text, by kind and UID, for comparing copies of one plan.
std::map<std::string, Fields> flattened(const json& dump) {
    std::map<std::string, Fields> objects;
    for (const char* kind : {"tasks", "resources", "calendars", "assignments"}) {
        for (const auto& object : dump[kind]) {
            Fields& fields = objects[std::string(kind) + " " + object["uid"].dump()];
            for (const auto& [key, value] : object.items()) {
                fields[key] = value.dump();
            }
        }
    }
    Fields& project = objects["project"];
    for (const auto& [key, value] : dump["project"].items()) {
        project[key] = value.dump();
    }
    return objects;
}

void compareCopies(const std::string& file, const std::map<std::string, Fields>& copy,
                   const std::map<std::string, Fields>& first, CorpusDifferences& differences) {
    for (const auto& [object, fields] : first) {
        const auto found = copy.find(object);
        if (found == copy.end()) {
            differences.add(file, "copies.missing", object);
            continue;
        }
        const std::string kind = object == "tasks 0" ? "summaryTask" : object.substr(0, object.find(' '));
        for (const auto& [key, value] : fields) {
            const auto ours = found->second.find(key);
            const std::string ourValue = ours == found->second.end() ? "(absent)" : ours->second;
            if (ourValue != value) {
                differences.add(file, "copies." + kind + "." + key,
                                object + ": " + ourValue.substr(0, 120) + ", first copy " +
                                    value.substr(0, 120));
            }
        }
    }
}

void countObjectErrors(const std::string& file, const json& dump, CorpusDifferences& differences) {
    for (const char* kind : {"tasks", "resources", "calendars", "assignments"}) {
        for (const auto& object : dump[kind]) {
            if (object.contains("error")) {
                differences.add(file, std::string(kind) + ".error",
                                "uid " + object["uid"].dump() + ": " +
                                    object["error"]["text"].get<std::string>());
            }
        }
    }
}

} // namespace

// Every readable corpus plan dumps without a failed read, matches the interchange XML that the desktop
// application saved from it, and dumps the same as the other copies of its plan.
TEST(DumpCorpus, MatchesInterchangeXmlAndOtherCopies) {
    TVMSP_REQUIRE_CORPUS();
    CorpusDifferences differences("DumpCorpusTest.manifest");
    std::map<std::string, std::map<std::string, Fields>> firstCopies;
    int compared = 0;
    for (const auto& path : testsupport::corpusMppFiles()) {
        const std::string file = path.filename().string();
        const json dump = DumpCommand::dumpOfFile(path.string(), true);
        if (dump.contains("error")) {
            continue;
        }
        countObjectErrors(file, dump, differences);
        std::smatch match;
        if (!std::regex_match(file, match, kGeneratedName)) {
            continue;
        }
        const auto interchange = testsupport::corpusDir() / "mspdi" /
                                 ("generated__" + match[1].str() + "__" + match[2].str() + "-project" +
                                  match[3].str() + "-mspdi.xml");
        if (std::filesystem::exists(interchange)) {
            compareKinds(file, DumpedPlan(dump).kinds, InterchangePlan(interchange).kinds, differences);
            ++compared;
        }
        const auto [first, inserted] =
            firstCopies.emplace(match[1].str() + " " + match[3].str(), flattened(dump));
        if (!inserted) {
            compareCopies(file, flattened(dump), first->second, differences);
        }
    }
    EXPECT_GT(compared, 0);
    EXPECT_EQ(differences.report(), "");
}
