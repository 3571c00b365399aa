#include "BundleElementReads.h"
#include "MPPCommon/date/DateExtensions.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPCommon/xml/KVMSPCXMLDocument.h"
#include "MPPExporter/Mappers/KVMSPECalendarExceptions.h"
#include "MPPExporter/Mappers/MSPETvnxReading.h"
#include "MPPExporter/writers/KVMPPData.h"
#include "support/CorpusComparison.h"
#include "support/TestSupport.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>

// Exports real plans as the program does: each plan of the corpus is imported, its bundle exported
// through a template, and the exported file imported again; the two bundles must hold the same task
// outline, dates and links, resources and assignments, the same project week and calendar exceptions,
// and every stream of the exported file must read in olefile. The assignments that the export computes
// must read back from the exported file with their work.

namespace {

namespace fs = std::filesystem;
using ElementPtr = KVMSPCXMLElement::ElementPtr;

using bundleread::attribute;
using bundleread::bundlesIn;
using bundleread::child;
using nlohmann::json;
using testsupport::shellQuoted;

// Runs a command with an empty preference folder; its exit status.
int run(const std::string& command, const fs::path& config) {
    return std::system(
        ("XDG_CONFIG_HOME=" + shellQuoted(config.string()) + " " + command + " >/dev/null 2>&1").c_str());
}

std::string text(const ElementPtr& element) {
    return element ? element->stringValue().value_or("") : "";
}

// The wall clock of a bundle date: its zone label dropped.
std::string wallClock(const std::string& date) {
    static const std::regex zone(R"((\d\d:\d\d:\d\d)(?:\.\d+)?(?:Z|[+-]\d\d:\d\d)$)");
    return std::regex_replace(date, zone, "$1");
}

// The task outline of a bundle's actual plan, one line per task in outline order. The structure
// holds depth, title and the links by the outline position of their prerequisite, sorted, since
// their order means nothing; the schedule holds each task's kind and dates; the assignments each
// task's resources by name with their units, sorted. The resources are one line each in plan order:
// name, type, e-mail address, cost per use and units available. The week holds the working times of
// each week day of the project's schedule, the exceptions its exception calendars as stretches of days
// that don't overlap, each with its working times, in the form the export takes them: a repeated
// event counts on its occurrences, which come back as single exceptions without their rule.
// The baselines hold the name of each baseline file of the bundle and, per file, each task's title
// with the dates it states. The values hold each task's scheduling type, priority, work, work done,
// completion and note text.
struct Outline {
    std::vector<std::string> structure{};
    std::vector<std::string> schedule{};
    std::vector<std::string> assignments{};
    std::vector<std::string> resources{};
    std::vector<std::string> week{};
    std::vector<std::string> exceptions{};
    std::vector<std::string> baselines{};
    std::vector<std::string> values{};
    std::vector<std::string> customFields{};
};

// The resources of a plan by ID, and their lines.
std::map<std::string, std::string> resourceLines(const KVMSPCXMLElement& plan,
                                                 std::vector<std::string>& lines) {
    std::map<std::string, std::string> names;
    for (const ElementPtr& resource : plan.elementsForName("resource")) {
        const std::string name = text(child(*resource, "name"));
        names[attribute(*resource, "id")] = name;
        std::ostringstream line;
        line << name << " [" << text(child(*resource, "type")) << "] "
             << text(child(*resource, "email-address")) << ' ' << text(child(*resource, "cost-per-use"))
             << ' ' << text(child(*resource, "units-available"));
        lines.push_back(line.str());
    }
    return names;
}

// The project's schedule: that of the top resource.
ElementPtr projectSchedule(const KVMSPCXMLElement& root) {
    const ElementPtr top = child(root, "top-resource");
    for (const ElementPtr& resource : root.elementsForName("resource")) {
        if (top && attribute(*resource, "id") == attribute(*top, "idref")) {
            return child(*resource, "schedule");
        }
    }
    return nullptr;
}

void readCalendar(const KVMSPCXMLElement& schedule, Outline& result) {
    for (const ElementPtr& day : schedule.elementsForName("schedule-day")) {
        std::string line = attribute(*day, "day-of-week");
        for (const ElementPtr& span : day->elementsForName("time-span")) {
            line += " " + attribute(*span, "start-time") + "-" + attribute(*span, "end-time");
        }
        result.week.push_back(line);
    }
    for (const ElementPtr& calendar : schedule.elementsForName("calendar")) {
        KVMSPECalendarExceptions exceptions(*calendar);
        try {
            exceptions.mapEvents();
        } catch (const TVException& exception) {
            result.exceptions.push_back("unmapped: " + exception.reason());
            continue;
        }
        for (int64_t index = 0; index < exceptions.exceptionsCount(); ++index) {
            TVDate from;
            TVDate to;
            int64_t times = 0;
            exceptions.exception(index, &from, &to, nullptr);
            exceptions.exception(index, &times);
            std::string line =
                attribute(*calendar, "name") + " " + initWithDateTime(from) + " " + initWithDateTime(to);
            for (int64_t time = 0; time < times; ++time) {
                double start = 0;
                double end = 0;
                exceptions.exception(index, time, &start, &end);
                line += stringWithFormat(" %.0f-%.0f", start, end);
            }
            result.exceptions.push_back(line);
        }
    }
}

void readBaselines(const fs::path& bundle, Outline& result) {
    std::vector<std::string> files;
    for (const auto& entry : fs::directory_iterator(bundle)) {
        if (const std::string name = entry.path().filename().string(); name.rfind("Baseline", 0) == 0) {
            files.push_back(name);
        }
    }
    std::sort(files.begin(), files.end());
    for (const std::string& name : files) {
        result.baselines.push_back(name);
        TVError error;
        const auto document = KVMSPCXMLDocument::initWithContentsOfURL(bundle / name, 0, nullptr, &error);
        if (!document || !document->rootElement()) {
            result.baselines.push_back("unreadable");
            continue;
        }
        for (const ElementPtr& task : document->rootElement()->elementsForName("task")) {
            std::string line = "  " + text(child(*task, "title"));
            for (const char* date :
                 {"start-date", "end-date", "locked-start-date", "locked-end-date", "leveled-start"}) {
                line += ' ' + wallClock(text(child(*task, date)));
            }
            result.baselines.push_back(line);
        }
    }
}

Outline outline(const fs::path& bundle) {
    TVError error;
    const auto document = KVMSPCXMLDocument::initWithContentsOfURL(bundle / "Actual.xml", 0, nullptr, &error);
    if (!document || !document->rootElement()) {
        return {{"no actual plan"}, {}, {}, {}};
    }
    std::map<std::string, ElementPtr> tasks;
    for (const ElementPtr& task : document->rootElement()->elementsForName("task")) {
        tasks[attribute(*task, "id")] = task;
    }
    std::vector<std::pair<int, ElementPtr>> order;
    std::map<std::string, size_t> position;
    const auto walk = [&](const auto& self, const std::string& id, int depth) -> void {
        const auto found = tasks.find(id);
        if (found == tasks.end() || position.count(id) != 0) {
            return;
        }
        position[id] = order.size();
        order.emplace_back(depth, found->second);
        for (const ElementPtr& next : found->second->elementsForName("child-task")) {
            self(self, attribute(*next, "idref"), depth + 1);
        }
    };
    walk(walk, attribute(*child(*document->rootElement(), "top-task"), "idref"), 0);

    Outline result;
    const std::map<std::string, std::string> resources =
        resourceLines(*document->rootElement(), result.resources);
    if (const ElementPtr schedule = projectSchedule(*document->rootElement())) {
        readCalendar(*schedule, result);
    }
    readBaselines(bundle, result);
    result.customFields = bundleread::customFieldLines(bundle, *document->rootElement());
    for (const auto& [depth, task] : order) {
        std::vector<std::string> assigned;
        for (const ElementPtr& assignment : task->elementsForName("assignment")) {
            const auto resource = resources.find(attribute(*assignment, "idref"));
            assigned.push_back((resource == resources.end() ? "?" : resource->second) + " " +
                               attribute(*assignment, "units"));
        }
        std::sort(assigned.begin(), assigned.end());
        std::ostringstream assignments;
        assignments << text(child(*task, "title")) << ':';
        for (const std::string& line : assigned) {
            assignments << " " << line;
        }
        result.assignments.push_back(assignments.str());

        std::vector<std::string> links;
        for (const ElementPtr& link : task->elementsForName("prerequisite-task")) {
            const auto target = position.find(attribute(*link, "idref"));
            const ElementPtr lead = child(*link, "lead-time");
            std::ostringstream described;
            described << " <-" << (target == position.end() ? "?" : std::to_string(target->second)) << ' '
                      << attribute(*link, "kind") << ' ' << text(lead)
                      << (lead ? attribute(*lead, "is-percentage") : "");
            links.push_back(described.str());
        }
        std::sort(links.begin(), links.end());
        std::ostringstream structure;
        structure << depth << ' ' << text(child(*task, "title"));
        for (const std::string& link : links) {
            structure << link;
        }
        result.structure.push_back(structure.str());

        std::ostringstream schedule;
        schedule << text(child(*task, "title")) << " ["
                 << (child(*task, "split") ? "split" : text(child(*task, "type"))) << ']';
        for (const char* date : {"locked-start-date", "locked-end-date", "leveled-start"}) {
            schedule << ' ' << wallClock(text(child(*task, date)));
        }
        result.schedule.push_back(schedule.str());
        std::ostringstream values;
        values << text(child(*task, "title"));
        for (const char* value :
             {"schedule-type", "priority", "effort", "effort-done", "completion-percentage", "note"}) {
            values << " | " << text(child(*task, value));
        }
        result.values.push_back(values.str());
    }
    return result;
}

// The first line where two outlines differ (a task, a week day or an exception).
std::string difference(const std::vector<std::string>& first, const std::vector<std::string>& second) {
    for (size_t i = 0; i < std::max(first.size(), second.size()); ++i) {
        const std::string a = i < first.size() ? first[i] : "(none)";
        const std::string b = i < second.size() ? second[i] : "(none)";
        if (a != b) {
            return "line " + std::to_string(i) + ": " + a + "\n    <> " + b;
        }
    }
    return "";
}

const std::string kProgram = TVMSPFILTER_PATH;

// The bundle of a plan imported into `folder`, or none.
std::optional<fs::path> importPlan(const fs::path& plan, const fs::path& folder, const fs::path& config) {
    fs::create_directories(folder);
    run(shellQuoted(kProgram) + " --template-path " +
            shellQuoted(TVMSP_SOURCE_DIR "/templates/Template.tvnx") + " " + shellQuoted(plan.string()) +
            " " + shellQuoted(folder.string()) + " -accept-downgraded",
        config);
    const std::vector<fs::path> bundles = bundlesIn(folder);
    return bundles.size() == 1 ? std::optional(bundles.front()) : std::nullopt;
}

int exportBundle(const fs::path& bundle, const fs::path& mpp, const fs::path& mppTemplate,
                 const fs::path& config) {
    return run(shellQuoted(kProgram) + " -export --template-path " + shellQuoted(mppTemplate.string()) + " " +
                   shellQuoted(bundle.string()) + " " + shellQuoted(mpp.string()),
               config);
}

// Stream lines of olefile that do not read to the size the directory gives, or its refusal.
std::string unreadableStreams(const fs::path& file) {
    const std::string listing = testsupport::commandOutput(
        "/usr/bin/python3 " + shellQuoted(TVMSP_SOURCE_DIR "/tests/tool/inspect/olefile_listing.py") + " " +
        shellQuoted(file.string()));
    return listing.find("\n!! ") != std::string::npos || listing.rfind("!! ", 0) == 0 ? listing : "";
}

// The assignments of a plan, one line each, sorted: task title, resource name, units in percent and
// work in seconds. `tasks`, `resources` and `assignments` name the members of the JSON form; the
// summary task, whose title is the plan's, is named alike in both forms.
struct AssignmentForm {
    const char* tasks;
    const char* taskID;
    const char* taskTitle;
    const char* resources;
    const char* resourceID;
    const char* resourceName;
    const char* assignments;
    const char* assignmentTask;
    const char* assignmentResource;
    const char* units;
    double unitsPerPercent;
    const char* work;
    double workPerSecond;
};
constexpr AssignmentForm kModelForm = {"tasks", "ID",          "title",  "resources",  "ID",
                                       "name",  "assignments", "taskID", "resourceID", "units",
                                       100.0,   "work",        1.0};
constexpr AssignmentForm kFileForm = {"tasks",
                                      "uid",
                                      "taskName",
                                      "resources",
                                      "uid",
                                      "resourceName",
                                      "assignments",
                                      "assignmentTaskUID",
                                      "assignmentResourceUID",
                                      "assignmentUnits",
                                      1.0,
                                      "assignmentWork",
                                      1.0e6};

std::vector<std::string> assignmentLines(const std::string& output, const AssignmentForm& form) {
    const json plan = json::parse(output, nullptr, false);
    if (!plan.is_object()) {
        return {"unreadable: " + output.substr(0, 200)};
    }
    const auto names = [&plan](const char* list, const char* id, const char* name) {
        std::map<int64_t, std::string> byID;
        for (const json& object : plan.value(list, json::array())) {
            const int64_t key = object.value(id, int64_t{-1});
            byID[key] = key == 0                                 ? "(summary)"
                        : object.value(name, json()).is_string() ? object[name].get<std::string>()
                                                                 : "";
        }
        return byID;
    };
    const std::map<int64_t, std::string> tasks = names(form.tasks, form.taskID, form.taskTitle);
    const std::map<int64_t, std::string> resources =
        names(form.resources, form.resourceID, form.resourceName);
    std::vector<std::string> lines;
    for (const json& assignment : plan.value(form.assignments, json::array())) {
        const json& resource = assignment.value(form.assignmentResource, json());
        const auto named = resource.is_number() ? resources.find(resource.get<int64_t>()) : resources.end();
        const auto task = tasks.find(assignment.value(form.assignmentTask, int64_t{-1}));
        lines.push_back(stringWithFormat("%s <- %s: %.2f %% %.0f s",
                                         task == tasks.end() ? "?" : task->second.c_str(),
                                         named == resources.end() ? "-" : named->second.c_str(),
                                         assignment.value(form.units, 0.0) / form.unitsPerPercent,
                                         assignment.value(form.work, 0.0) / form.workPerSecond));
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

// The saved values of resources and assignments, one line each, sorted: every baseline of each
// resource with its work and cost, and every baseline of each assignment with its dates, work and
// cost, in seconds and currency units. The model states dates as instants, the file holds their wall
// clock.
std::string modelWallClock(const json& date) {
    const auto instant = date.is_string() ? tvnxread::date(date.get<std::string>()) : std::nullopt;
    return instant ? initWithDateTime(KVMPPData::wallClock(*instant)) : "-";
}

// A text member, or the empty text where it is absent or no text.
std::string textMember(const json& object, const char* key) {
    const json value = object.value(key, json());
    return value.is_string() ? value.get<std::string>() : "";
}

std::string fileWallClock(const json& date) {
    return date.is_string() ? date.get<std::string>() : "-";
}

std::vector<std::string> modelBaselineLines(const std::string& output) {
    const json plan = json::parse(output, nullptr, false);
    if (!plan.is_object()) {
        return {"unreadable: " + output.substr(0, 200)};
    }
    std::map<int64_t, std::string> tasks;
    for (const json& task : plan.value("tasks", json::array())) {
        tasks[task.value("ID", int64_t{-1})] = textMember(task, "title");
    }
    std::map<int64_t, std::string> resources;
    std::vector<std::string> lines;
    for (const json& resource : plan.value("resources", json::array())) {
        const std::string name = textMember(resource, "name");
        resources[resource.value("ID", int64_t{-1})] = name;
        for (const json& saved : resource.value("baselines", json::array())) {
            lines.push_back(stringWithFormat("%s baseline %d: %.0f s %.2f", name.c_str(),
                                             saved.value("number", 0), saved.value("work", 0.0),
                                             saved.value("cost", 0.0)));
        }
    }
    for (const json& assignment : plan.value("assignments", json::array())) {
        const json& resource = assignment.value("resourceID", json());
        const auto named = resource.is_number() ? resources.find(resource.get<int64_t>()) : resources.end();
        const auto task = tasks.find(assignment.value("taskID", int64_t{-1}));
        for (const json& saved : assignment.value("baselines", json::array())) {
            lines.push_back(stringWithFormat(
                "%s <- %s baseline %d: %s %s %.0f s %.2f", task == tasks.end() ? "?" : task->second.c_str(),
                named == resources.end() ? "-" : named->second.c_str(), saved.value("number", 0),
                modelWallClock(saved.value("start", json())).c_str(),
                modelWallClock(saved.value("finish", json())).c_str(), saved.value("work", 0.0),
                saved.value("cost", 0.0)));
        }
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

std::vector<std::string> fileBaselineLines(const std::string& output) {
    const json plan = json::parse(output, nullptr, false);
    if (!plan.is_object()) {
        return {"unreadable: " + output.substr(0, 200)};
    }
    std::map<int64_t, std::string> tasks;
    for (const json& task : plan.value("tasks", json::array())) {
        const int64_t uid = task.value("uid", int64_t{-1});
        tasks[uid] = uid == 0 ? "(summary)" : textMember(task, "taskName");
    }
    std::map<int64_t, std::string> resources;
    std::vector<std::string> lines;
    for (const json& resource : plan.value("resources", json::array())) {
        const int64_t uid = resource.value("uid", int64_t{-1});
        const std::string name = textMember(resource, "resourceName");
        resources[uid] = name;
        // The default resource's zeros mark the baselines for the plan.
        const json baselines = resource.value("resourceBaselines", json::object());
        for (const auto& [number, saved] : baselines.items()) {
            if (uid != 0) {
                lines.push_back(stringWithFormat("%s baseline %s: %.0f s %.2f", name.c_str(), number.c_str(),
                                                 saved.value("work", 0.0) / 1.0e6,
                                                 saved.value("cost", 0.0) / 100.0));
            }
        }
    }
    for (const json& assignment : plan.value("assignments", json::array())) {
        const json& resource = assignment.value("assignmentResourceUID", json());
        const auto named = resource.is_number() ? resources.find(resource.get<int64_t>()) : resources.end();
        const auto task = tasks.find(assignment.value("assignmentTaskUID", int64_t{-1}));
        const json baselines = assignment.value("assignmentBaselines", json::object());
        for (const auto& [number, saved] : baselines.items()) {
            lines.push_back(stringWithFormat(
                "%s <- %s baseline %s: %s %s %.0f s %.2f", task == tasks.end() ? "?" : task->second.c_str(),
                named == resources.end() ? "-" : named->second.c_str(), number.c_str(),
                fileWallClock(saved.value("start", json())).c_str(),
                fileWallClock(saved.value("finish", json())).c_str(), saved.value("work", 0.0) / 1.0e6,
                saved.value("cost", 0.0) / 100.0));
        }
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

// One export and import again. Either why that failed, or the outlines of the bundle and of the
// bundle of the exported file, which is left in `work`/second, and the assignments that the export
// computes and those the exported file holds, and the same of the saved values of resources and
// assignments.
struct RoundTrip {
    std::string failure;
    Outline before{};
    Outline after{};
    std::vector<std::string> mapped{};
    std::vector<std::string> written{};
    std::vector<std::string> mappedBaselines{};
    std::vector<std::string> writtenBaselines{};
};

RoundTrip roundTrip(const fs::path& bundle, const fs::path& mppTemplate, const fs::path& work,
                    const fs::path& config) {
    fs::remove_all(work);
    fs::create_directories(work);
    const fs::path mpp = work / "plan.mpp";
    const int status = exportBundle(bundle, mpp, mppTemplate, config);
    if (status != 0 || !fs::exists(mpp)) {
        return {"export status " + std::to_string(status)};
    }
    if (const std::string unreadable = unreadableStreams(mpp); !unreadable.empty()) {
        return {"olefile: " + unreadable};
    }
    const std::optional<fs::path> again = importPlan(mpp, work / "second", config);
    if (!again) {
        return {"the exported file does not import"};
    }
    const std::string inspect = shellQuoted(MPPINSPECT_PATH);
    const std::string model =
        testsupport::commandOutput(inspect + " model " + shellQuoted(bundle.string()) + " 2>/dev/null");
    const std::string dump =
        testsupport::commandOutput(inspect + " dump " + shellQuoted(mpp.string()) + " 2>/dev/null");
    return {"",
            outline(bundle),
            outline(*again),
            assignmentLines(model, kModelForm),
            assignmentLines(dump, kFileForm),
            modelBaselineLines(model),
            fileBaselineLines(dump)};
}

// The shipped template, saved by application 16, and a plan of the corpus saved by application 15
// that holds no tasks.
const fs::path kShippedTemplate = fs::path(TVMSP_SOURCE_DIR) / "templates" / "Template.mpp";
fs::path templateOfApplication15() {
    return testsupport::corpusDir() / "mpp" /
           "generated__project-properties__project-properties-project2013-mpp14.mpp";
}

// Every plan that imports is exported through the shipped template and imported again, once for the
// whole suite; the second bundle of every fifth plan then goes once more through the template of
// application 15.
class ExportCorpusTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        if (testsupport::corpusDir().empty()) {
            return;
        }
        s_dir = std::make_unique<testsupport::TempDir>();
        const fs::path& dir = s_dir->path();
        for (const fs::path& plan : testsupport::corpusMppFiles()) {
            const std::string name = plan.filename().string();
            const std::optional<fs::path> bundle = importPlan(plan, dir / "first" / name, dir);
            if (!bundle) {
                continue; // plans that don't import are the import's concern
            }
            s_first[name] = roundTrip(*bundle, kShippedTemplate, dir / "round", dir);
            fs::remove_all(dir / "first" / name);
            const std::vector<fs::path> second = bundlesIn(dir / "round" / "second");
            if (s_first.size() % 5 == 0 && second.size() == 1) {
                fs::remove_all(dir / "kept.tvnx");
                fs::rename(second.front(), dir / "kept.tvnx");
                s_second[name] = roundTrip(dir / "kept.tvnx", templateOfApplication15(), dir / "again", dir);
            }
        }
    }
    static void TearDownTestSuite() { s_dir.reset(); }

    static inline std::unique_ptr<testsupport::TempDir> s_dir;
    static inline std::map<std::string, RoundTrip> s_first;
    static inline std::map<std::string, RoundTrip> s_second;
};

// The first difference of one part of the outlines.
std::string partDifference(const RoundTrip& trip, std::vector<std::string> Outline::*part) {
    return trip.failure.empty() ? difference(trip.before.*part, trip.after.*part) : trip.failure;
}

// Each plan's round trip as the fields "structure" (outline and links), "schedule" (kinds and dates),
// "resources", "assignments" (resources and units per task), "week" and "exceptions" (the project's
// calendar), "baselines" (the baseline files and each task's dates in them), "assignment work" (the
// assignments that the export computes against those that the exported file holds), "saved values" (the
// same of the baselines of resources and assignments), "custom fields" (their names and values), and
// the second round's, custom fields included, as "second round".
TEST_F(ExportCorpusTest, EveryImportedPlanComesBackTheSame) {
    TVMSP_REQUIRE_CORPUS();
    testsupport::CorpusComparison comparison("tool/frontend/ExportCorpusTest.manifest", 1100);
    const std::pair<const char*, std::vector<std::string> Outline::*> parts[] = {
        {"structure", &Outline::structure}, {"schedule", &Outline::schedule},
        {"resources", &Outline::resources}, {"assignments", &Outline::assignments},
        {"week", &Outline::week},           {"exceptions", &Outline::exceptions},
        {"baselines", &Outline::baselines}, {"task values", &Outline::values},
    };
    for (const auto& [name, trip] : s_first) {
        for (const auto& [field, part] : parts) {
            const std::string changed = partDifference(trip, part);
            comparison.check(name, field, "", changed.empty(), changed);
        }
        const std::string work = trip.failure.empty() ? difference(trip.mapped, trip.written) : trip.failure;
        comparison.check(name, "assignment work", "", work.empty(), work);
        const std::string saved =
            trip.failure.empty() ? difference(trip.mappedBaselines, trip.writtenBaselines) : trip.failure;
        comparison.check(name, "saved values", "", saved.empty(), saved);
    }
    for (const auto& [name, trip] : s_second) {
        std::string changed = partDifference(trip, &Outline::customFields);
        for (const auto& [field, part] : parts) {
            changed += partDifference(trip, part);
        }
        comparison.check(name, "second round", "", changed.empty(), changed);
    }
    // The names and values of custom fields.
    for (const auto& [name, trip] : s_first) {
        const std::string changed = partDifference(trip, &Outline::customFields);
        comparison.check(name, "custom fields", "", changed.empty(), changed);
    }
    std::cout << comparison.summary();
    const std::string failures = comparison.failures();
    EXPECT_TRUE(failures.empty()) << failures;
}

} // namespace
