#include "BundleReferenceAgreement.h"

#include "MPPCommon/xml/KVMSPCXMLDocument.h"
#include "support/TestSupport.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <set>

namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using ElementPtr = KVMSPCXMLElement::ElementPtr;

std::string attribute(const ElementPtr& element, const char* name) {
    const auto node = element ? element->attributeForName(name) : nullptr;
    return node ? node->stringValue().value_or("") : "";
}

ElementPtr child(const ElementPtr& element, const char* name) {
    const auto children = element ? element->elementsForName(name) : KVMSPCXMLElement::Elements{};
    return children.empty() ? nullptr : children.front();
}

std::string childText(const ElementPtr& element, const char* name) {
    const ElementPtr found = child(element, name);
    return found ? found->stringValue().value_or("") : "";
}

// A member of a reference object, null when it is missing.
const json& member(const json& object, const char* key) {
    static const json none;
    const auto found = object.is_object() ? object.find(key) : object.end();
    return object.is_object() && found != object.end() ? *found : none;
}

// The elements of a reference array member, none when it is missing.
const json& items(const json& object, const char* key) {
    static const json none = json::array();
    const json& found = member(object, key);
    return found.is_array() ? found : none;
}

// A number of a reference object, `fallback` when it is missing or null.
long number(const json& object, const char* key, long fallback = 0) {
    const json& found = member(object, key);
    return found.is_number() ? found.get<long>() : fallback;
}

bool flag(const json& object, const char* key) {
    const json& found = member(object, key);
    return found.is_boolean() && found.get<bool>();
}

// A reference text, empty for null.
std::string text(const json& value) {
    return value.is_string() ? value.get<std::string>() : "";
}

// The reference and this system lay out the white space of notes differently: compare without it.
std::string withoutBlanks(std::string value) {
    value.erase(std::remove_if(value.begin(), value.end(), [](unsigned char c) { return std::isspace(c); }),
                value.end());
    return value;
}

// "hh:mm" of seconds into a day; the end of the day reads "00:00", as the reference writes it.
std::string clock(long seconds) {
    char buffer[8];
    std::snprintf(buffer, sizeof buffer, "%02ld:%02ld", seconds / 3600 % 24, seconds % 3600 / 60);
    return buffer;
}

// The bundle's id of a task ('t') or resource ('r') of a UID.
std::string objectId(char kind, long uid) {
    std::string id(1, kind);
    id += std::to_string(uid);
    return id;
}

// The ids of the imported objects of one kind, with their elements.
std::map<std::string, ElementPtr> byId(const ElementPtr& root, const char* kind) {
    std::map<std::string, ElementPtr> objects;
    for (const ElementPtr& object : root->elementsForName(kind)) {
        objects[attribute(object, "id")] = object;
    }
    return objects;
}

// The kind of task that the reference's flags call for: summaries are groups, and a task without
// duration is a milestone whatever its flag says.
std::string expectedKind(const json& task) {
    if (flag(task, "summary")) {
        return "group";
    }
    const json& duration = member(task, "duration_min");
    const bool noDuration = duration.is_number() && duration.get<double>() == 0.0;
    return flag(task, "milestone") || noDuration ? "milestone" : "task";
}

// The kind of an imported task: split tasks and hammocks count as tasks.
std::string importedKind(const ElementPtr& task) {
    const std::string type = childText(task, "type");
    return type.empty() || type == "hammock" ? "task" : type;
}

// The bundle's kind of a reference link type, which is written short ("FS") or long ("FINISH_START").
std::string linkKind(const std::string& type) {
    static const std::map<std::string, std::string> kinds = {
        {"FINISH_START", "FS"}, {"START_START", "SS"}, {"FINISH_FINISH", "FF"}, {"START_FINISH", "SF"}};
    const auto found = kinds.find(type);
    return found == kinds.end() ? type : found->second;
}

// The working times of one reference week day ("WORKING 08:00-12:00,13:00-17:00"), empty when none.
std::string referenceDay(const json& days, const char* day) {
    const std::string value = text(member(days, day));
    return value.rfind("WORKING ", 0) == 0 ? value.substr(8) : "";
}

// The calendar that the import takes for the project: a base calendar named "Standard", else the
// project's default calendar.
const json* standardCalendar(const json& reference) {
    const json* fallback = nullptr;
    for (const json& calendar : items(reference, "calendars")) {
        if (text(member(calendar, "name")) == "Standard" && member(calendar, "base_calendar_uid").is_null()) {
            return &calendar;
        }
        if (number(calendar, "uid", -1) == number(member(reference, "project"), "default_calendar_uid", -2)) {
            fallback = &calendar;
        }
    }
    return fallback;
}

} // namespace

BundleReferenceAgreement::BundleReferenceAgreement(testsupport::CorpusComparison& comparison)
    : m_comparison(comparison) {
    for (const char* field :
         {"task", "title", "kind", "parent", "priority", "leveled-start", "manual", "note", "link",
          "resource", "name", "type", "e-mail", "assignment", "week", "baselines"}) {
        m_comparison.requireShare(field, 0.99);
    }
}

void BundleReferenceAgreement::compare(const std::string& planFile, const fs::path& bundle) {
    std::ifstream in(testsupport::corpusDir() / "ref" / (planFile + ".json"));
    const json reference = json::parse(in, nullptr, false);
    TVError error;
    const auto document = KVMSPCXMLDocument::initWithContentsOfURL(bundle / "Actual.xml", 0, nullptr, &error);
    if (reference.is_discarded() || !flag(member(reference, "mpxj"), "read_ok") || !document) {
        return;
    }
    const ElementPtr root = document->rootElement();
    const auto tasks = byId(root, "task");
    const auto resources = byId(root, "resource");
    std::map<std::string, std::string> parents;
    for (const auto& [id, task] : tasks) {
        for (const ElementPtr& childTask : task->elementsForName("child-task")) {
            parents[attribute(childTask, "idref")] = id;
        }
    }
    std::set<long> summaries;
    for (const json& task : items(reference, "tasks")) {
        const long uid = number(task, "uid");
        if (flag(task, "summary")) {
            summaries.insert(uid);
        }
        // The root task is the bundle's group "t-1"; blank rows are no tasks.
        if (uid <= 0 || flag(task, "null")) {
            continue;
        }
        const std::string id = objectId('t', uid);
        const auto found = tasks.find(id);
        m_comparison.check(planFile, "task", id, found != tasks.end(), "missing");
        if (found == tasks.end()) {
            continue;
        }
        const ElementPtr& ours = found->second;
        const auto check = [&](const char* field, const std::string& mine, const std::string& theirs) {
            m_comparison.compare(planFile, field, id, mine, theirs);
        };
        check("title", childText(ours, "title"), text(member(task, "name")));
        check("kind", importedKind(ours), expectedKind(task));
        const long parent = number(task, "parent_uid");
        check("parent", parents[id], parent <= 0 ? "t-1" : objectId('t', parent));
        check("priority", childText(ours, "priority"), std::to_string(number(task, "priority")));
        const bool manual = text(member(task, "task_mode")) == "MANUALLY_SCHEDULED";
        if (!manual) {
            check("leveled-start", childText(ours, "leveled-start").substr(0, 19),
                  text(member(task, "start")));
        }
        // A manually scheduled task is locked at both ends; an automatic one of this corpus never is.
        if (!flag(task, "summary")) {
            const bool locked = child(ours, "locked-start-date") && child(ours, "locked-end-date");
            check("manual", locked ? "manual" : "automatic", manual ? "manual" : "automatic");
        }
        check("note", withoutBlanks(childText(ours, "note")), withoutBlanks(text(member(task, "notes"))));
        std::set<std::string> links;
        for (const ElementPtr& link : ours->elementsForName("prerequisite-task")) {
            links.insert(attribute(link, "idref") + " " + attribute(link, "kind"));
        }
        for (const json& link : items(task, "predecessors")) {
            const std::string wanted =
                objectId('t', number(link, "uid")) + " " + linkKind(text(member(link, "type")));
            m_comparison.check(planFile, "link", id, links.count(wanted) != 0, "lacks the link " + wanted);
        }
    }
    for (const json& resource : items(reference, "resources")) {
        const long uid = number(resource, "uid");
        if (uid <= 0) {
            continue;
        }
        const std::string id = objectId('r', uid);
        const auto found = resources.find(id);
        m_comparison.check(planFile, "resource", id, found != resources.end(), "missing");
        if (found == resources.end()) {
            continue;
        }
        const auto check = [&](const char* field, const std::string& mine, const std::string& theirs) {
            m_comparison.compare(planFile, field, id, mine, theirs);
        };
        check("name", childText(found->second, "name"), text(member(resource, "name")));
        check("type", childText(found->second, "type"),
              text(member(resource, "type")) == "WORK" ? "Staff" : "Material");
        check("e-mail", childText(found->second, "email-address"), text(member(resource, "email")));
    }
    for (const json& assignment : items(reference, "assignments")) {
        const long taskUID = number(assignment, "task_uid");
        const long resourceUID = number(assignment, "resource_uid");
        if (resourceUID <= 0 || summaries.count(taskUID) != 0) {
            continue;
        }
        const std::string taskId = objectId('t', taskUID);
        const std::string resourceId = objectId('r', resourceUID);
        const auto task = tasks.find(taskId);
        bool assigned = false;
        for (const ElementPtr& ours : task == tasks.end() ? KVMSPCXMLElement::Elements{}
                                                          : task->second->elementsForName("assignment")) {
            assigned = assigned || attribute(ours, "idref") == resourceId;
        }
        m_comparison.check(planFile, "assignment", taskId, assigned, "lacks " + resourceId);
    }
    if (const json* calendar = standardCalendar(reference)) {
        static const std::pair<const char*, const char*> kDays[] = {
            {"sunday", "SUN"},   {"monday", "MON"}, {"tuesday", "TUE"}, {"wednesday", "WED"},
            {"thursday", "THU"}, {"friday", "FRI"}, {"saturday", "SAT"}};
        std::map<std::string, std::string> week;
        const ElementPtr schedule = child(resources.count("r-1") ? resources.at("r-1") : nullptr, "schedule");
        for (const ElementPtr& day :
             schedule ? schedule->elementsForName("schedule-day") : KVMSPCXMLElement::Elements{}) {
            std::string spans;
            for (const ElementPtr& span : day->elementsForName("time-span")) {
                spans += spans.empty() ? "" : ",";
                spans += clock(std::atol(attribute(span, "start-time").c_str()));
                spans += "-";
                spans += clock(std::atol(attribute(span, "end-time").c_str()));
            }
            week[attribute(day, "day-of-week")] = spans;
        }
        std::string mine;
        std::string theirs;
        for (const auto& [day, key] : kDays) {
            mine += std::string(day) + " " + week[day] + "; ";
            theirs += std::string(day) + " " + referenceDay(member((*calendar), "days"), key) + "; ";
        }
        m_comparison.compare(planFile, "week", "project", mine, theirs);
    }
    std::string present;
    std::string wanted;
    for (int baseline = 0; baseline <= 10; ++baseline) {
        const std::string name = baseline == 0 ? "Baseline" : "Baseline" + std::to_string(baseline);
        present += fs::exists(bundle / (name + ".xml")) ? name + " " : "";
        const json& numbers = items(reference, "baselines_present");
        wanted += std::find(numbers.begin(), numbers.end(), baseline) != numbers.end() ? name + " " : "";
    }
    m_comparison.compare(planFile, "baselines", "project", present, wanted);
}
