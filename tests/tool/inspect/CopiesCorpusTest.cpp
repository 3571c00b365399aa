#include "MPPCommon/support/Log.h"
#include "support/CorpusComparison.h"
#include "support/TestSupport.h"
#include "tool/inspect/DumpCommand.h"

#include <gtest/gtest.h>
#include <map>
#include <regex>
#include <set>

namespace {

using json = nlohmann::ordered_json;
// Every object's values as text, by "<kind> <uid>" and key.
using Objects = std::map<std::string, std::map<std::string, std::string>>;

// The task values that every application and format keeps alike. Milestones and costs exist in some
// formats only, the dates of manually scheduled tasks differ by format, and whether a new task is
// effort driven is the saving application's default.
const std::set<std::string> kPortableTaskKeys = {
    "taskID",       "taskName",   "taskOutlineLevel", "taskParentUID",  "taskPercentComplete",
    "taskPriority", "taskType",   "taskDuration",     "taskActualWork", "taskWork",
    "taskSummary",  "taskIsNull", "predecessors"};

// The objects of a dump; with `portable`, the portable task values and the calendars only. Later
// applications may renumber calendars, so those are one text without UIDs, sorted.
Objects objectsOf(const json& dump, bool portable) {
    Objects objects;
    for (const char* kind : {"tasks", "resources", "calendars", "assignments"}) {
        if (portable && kind != std::string("tasks")) {
            continue;
        }
        for (const json& object : dump[kind]) {
            auto& values = objects[std::string(kind) + " " + object["uid"].dump()];
            for (const auto& [key, value] : object.items()) {
                if (!portable || kPortableTaskKeys.contains(key)) {
                    values[key] = value.dump();
                }
            }
        }
    }
    if (portable) {
        std::multiset<std::string> calendars;
        for (json calendar : dump["calendars"]) {
            for (const char* key : {"uid", "calendarUID", "calendarBaseCalendarUID", "calendarResourceUID"}) {
                calendar.erase(key);
            }
            calendars.insert(calendar.dump());
        }
        std::string text;
        for (const std::string& calendar : calendars) {
            text += calendar + "\n";
        }
        objects["calendars"]["all"] = text;
    } else {
        for (const auto& [key, value] : dump["project"].items()) {
            objects["project"][key] = value.dump();
        }
    }
    return objects;
}

constexpr const char* kAbsent = "(absent)";

// The copies of one plan, each with its objects.
using Copies = std::vector<std::pair<std::string, Objects>>;

// The value that most copies hold; the first copy's on a tie.
std::string majorityOf(const std::vector<std::string>& held) {
    std::map<std::string, int> counts;
    for (const std::string& value : held) {
        ++counts[value];
    }
    const std::string* majority = &held.front();
    for (const std::string& value : held) {
        majority = counts[value] > counts[*majority] ? &value : majority;
    }
    return *majority;
}

// Each copy's objects and values against those that most copies hold, so that a reading fault shows
// in the copies that it touches. An object or value that most copies lack, or a value that one copy
// lacks, is one that some formats or applications don't store. The summary task carries the plan's title,
// which follows the name each copy was saved under.
void compareCopies(testsupport::CorpusComparison& comparison, const std::string& scope,
                   const Copies& copies) {
    std::map<std::string, std::set<std::string>> keysOf;
    for (const auto& [file, objects] : copies) {
        for (const auto& [object, values] : objects) {
            for (const auto& [key, value] : values) {
                keysOf[object].insert(key);
            }
        }
    }
    for (const auto& [object, keys] : keysOf) {
        const std::string kind = object == "tasks 0" ? "summaryTask" : object.substr(0, object.find(' '));
        std::vector<const std::map<std::string, std::string>*> found;
        std::vector<std::string> present;
        for (const auto& [file, objects] : copies) {
            const auto entry = objects.find(object);
            found.push_back(entry == objects.end() ? nullptr : &entry->second);
            present.push_back(entry == objects.end() ? "absent" : "present");
        }
        if (majorityOf(present) != "present") {
            continue;
        }
        for (size_t i = 0; i < copies.size(); ++i) {
            comparison.compare(copies[i].first, scope + kind, object, present[i], "present");
        }
        for (const std::string& key : keys) {
            std::vector<std::string> held;
            for (const auto* values : found) {
                held.push_back(values != nullptr && values->contains(key) ? values->at(key) : kAbsent);
            }
            const std::string majority = majorityOf(held);
            for (size_t i = 0; i < copies.size(); ++i) {
                if (found[i] != nullptr && majority != kAbsent && held[i] != kAbsent &&
                    !(object == "tasks 0" && key == "taskName")) {
                    comparison.compare(copies[i].first, scope + kind + "." + key, object, held[i], majority);
                }
            }
        }
    }
}

} // namespace

// The copies of one plan ("generated__<feature>__<plan>-project<year>-mpp<format>.mpp") read alike: those
// that one application saved in several formats in every value, and those of every application in the
// values that every format keeps. A value that differs between copies points at a version's reading.
TEST(CopiesCorpus, CopiesOfOnePlanReadAlike) {
    TVMSP_REQUIRE_CORPUS();
    tvSetLogSink([](const std::string&) {});
    static const std::regex kCopyName(R"(^(generated__.+__.+)-project(\w+)-mpp(9|12|14)\.mpp$)");
    testsupport::CorpusComparison comparison("tool/inspect/CopiesCorpusTest.manifest", 120000);
    // The copies of a plan, and of a plan and year, follow each other in the sorted files.
    std::pair<std::string, Copies> ofYear;
    std::pair<std::string, Copies> ofPlan;
    const auto add = [&](std::pair<std::string, Copies>& group, const std::string& key, const char* scope,
                         const std::string& file, const json* dump, bool portable) {
        if (group.first != key) {
            compareCopies(comparison, scope, group.second);
            group = {key, {}};
        }
        if (dump != nullptr) {
            group.second.emplace_back(file, objectsOf(*dump, portable));
        }
    };
    // A sampled run reads every copy of every Nth plan, so that the copies compared stay the same.
    std::string plan;
    long plans = 0;
    for (const auto& path : testsupport::allCorpusMppFiles()) {
        const std::string file = path.filename().string();
        std::smatch match;
        if (!std::regex_match(file, match, kCopyName)) {
            continue;
        }
        if (match[1] != plan) {
            plan = match[1];
            ++plans;
        }
        if ((plans - 1) % testsupport::corpusSampleStride() != 0) {
            continue;
        }
        const json dump = DumpCommand::dumpOfFile(path.string(), true);
        if (dump.contains("error")) {
            comparison.differ(file, "error", "", dump["error"].dump());
            continue;
        }
        add(ofYear, match[1].str() + " " + match[2].str(), "formats.", file, &dump, false);
        add(ofPlan, match[1].str(), "years.", file, &dump, true);
    }
    add(ofYear, "", "formats.", "", nullptr, false);
    add(ofPlan, "", "years.", "", nullptr, true);
    tvSetLogSink({});
    const std::string failures = comparison.failures();
    EXPECT_TRUE(failures.empty()) << failures;
}
