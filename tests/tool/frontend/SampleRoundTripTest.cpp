#include "BundleElementReads.h"
#include "MPPCommon/xml/KVMSPCXMLDocument.h"
#include "support/TestSupport.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <iomanip>
#include <iostream>
#include <map>
#include <sstream>

// The sample plan of the repository goes through the programs as the README's first command sends
// it: exported through the shipped template, and the plan file imported again. Each part of a plan
// is read from both bundles into lines; what the export writes must come back as the sample states it.

namespace {

namespace fs = std::filesystem;
using ElementPtr = KVMSPCXMLElement::ElementPtr;
using testsupport::shellQuoted;

const fs::path kSource = TVMSP_SOURCE_DIR;

// The actual plan of a bundle, with each task's title by its id for naming link ends.
struct Plan {
    fs::path bundle;
    KVMSPCXMLDocument::DocumentPtr document;
    std::map<std::string, std::string> titles;

    explicit Plan(const fs::path& folder, const char* file = "Actual.xml") : bundle(folder) {
        TVError error;
        document = KVMSPCXMLDocument::initWithContentsOfURL(bundle / file, 0, nullptr, &error);
        if (document && document->rootElement()) {
            for (const ElementPtr& task : elements("task")) {
                titles[value(task, "@id")] = value(task, "title");
            }
        }
    }
    KVMSPCXMLElement::Elements elements(const char* name) const {
        return document && document->rootElement() ? document->rootElement()->elementsForName(name)
                                                   : KVMSPCXMLElement::Elements{};
    }
    static std::string value(const ElementPtr& node, const std::string& path) {
        return node->stringValueForXQuery(path, nullptr).value_or("");
    }
    // A number as text in one form, whichever form the bundle wrote ("0.50", "0.500000").
    static std::string number(const ElementPtr& node, const std::string& path) {
        const std::string text = value(node, path);
        if (text.empty()) {
            return "-";
        }
        std::ostringstream out;
        out << std::setprecision(12) << std::strtod(text.c_str(), nullptr);
        return out.str();
    }
    std::string title(const std::string& id) const {
        const auto found = titles.find(id);
        return found == titles.end() ? "? " + id : found->second;
    }
};

using Lines = std::vector<std::string>;

// The tasks under the top one, which stands for the whole project, in outline order: depth, title,
// kind, effort, the start (the computed one, else the leveled one, which is what an import states),
// the completion, and for all but groups, whose values the planning application sums up, the effort done, the
// priority and the fixed cost.
Lines tasks(const Plan& plan) {
    std::map<std::string, ElementPtr> byId;
    for (const ElementPtr& task : plan.elements("task")) {
        byId[Plan::value(task, "@id")] = task;
    }
    Lines lines;
    const auto walk = [&](const auto& self, const std::string& id, int depth) -> void {
        const auto found = byId.find(id);
        if (found == byId.end() || lines.size() > byId.size()) { // no task, or a loop of members
            return;
        }
        const ElementPtr& task = found->second;
        const std::string kind = Plan::value(task, "type");
        std::string start = Plan::value(task, "start-date");
        std::ostringstream line;
        line << depth << ' ' << Plan::value(task, "title") << " [" << kind << "] effort "
             << Plan::number(task, "effort") << " from "
             << (start.empty() ? Plan::value(task, "leveled-start") : start) << " complete "
             << Plan::number(task, "completion-percentage");
        if (kind != "group") {
            line << " done " << Plan::number(task, "effort-done") << " priority "
                 << Plan::number(task, "priority") << " fixed cost " << Plan::number(task, "static-cost");
        }
        if (depth > 0) {
            lines.push_back(line.str());
        }
        for (const ElementPtr& member : task->elementsForName("child-task")) {
            self(self, Plan::value(member, "@idref"), depth + 1);
        }
    };
    walk(walk, "t-1", 0);
    return lines;
}

// Links by the titles of both ends, with kind and lag; limits and locks by task title.
Lines links(const Plan& plan) {
    Lines lines;
    for (const ElementPtr& task : plan.elements("task")) {
        const std::string title = Plan::value(task, "title");
        for (const ElementPtr& link : task->elementsForName("prerequisite-task")) {
            const std::string percent = Plan::value(link, "lead-time/@is-percentage") == "true" ? "%" : "";
            lines.push_back(title + " after " + plan.title(Plan::value(link, "@idref")) + ' ' +
                            Plan::value(link, "@kind") + " lag " + Plan::number(link, "lead-time") + percent);
        }
        for (const char* limit : {"start-no-earlier-than", "start-no-later-than", "end-no-earlier-than",
                                  "end-no-later-than", "locked-start-date", "locked-end-date"}) {
            if (const std::string date = Plan::value(task, limit); !date.empty()) {
                lines.push_back(title + ' ' + limit + ' ' + date);
            }
        }
    }
    std::sort(lines.begin(), lines.end()); // the order of links means nothing
    return lines;
}

// The resources but the top one, which stands for the whole project. Only a staff resource's hourly
// rate is compared: the export gives a material no rate, so its price per unit stays behind.
Lines resources(const Plan& plan) {
    Lines lines;
    for (const ElementPtr& resource : plan.elements("resource")) {
        const std::string type = Plan::value(resource, "type");
        if (Plan::value(resource, "@id") != "r-1") {
            lines.push_back(Plan::value(resource, "name") + " [" + type + "] per use " +
                            Plan::number(resource, "cost-per-use") + " available " +
                            Plan::number(resource, "units-available") +
                            (type == "Staff" ? " per hour " + Plan::number(resource, "cost-per-hour") : ""));
        }
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

Lines assignments(const Plan& plan) {
    std::map<std::string, std::string> names;
    for (const ElementPtr& resource : plan.elements("resource")) {
        names[Plan::value(resource, "@id")] = Plan::value(resource, "name");
    }
    Lines lines;
    for (const ElementPtr& task : plan.elements("task")) {
        for (const ElementPtr& assignment : task->elementsForName("assignment")) {
            lines.push_back(Plan::value(task, "title") + " by " + names[Plan::value(assignment, "@idref")] +
                            " units " + Plan::number(assignment, "@units"));
        }
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

// The custom fields of tasks and resources: declared names and each object's values.
Lines customFields(const Plan& plan) {
    return plan.document && plan.document->rootElement()
               ? bundleread::customFieldLines(plan.bundle, *plan.document->rootElement())
               : Lines{};
}

// Each baseline file of the bundle by name, with the start of each task but the top one that it
// holds: the one the planning application computed, else the one an import states, the lock or the
// leveled start.
Lines baselines(const Plan& plan) {
    Lines lines;
    for (const char* file : {"Baseline.xml", "Baseline1.xml", "Baseline2.xml"}) {
        const Plan baseline(plan.bundle, file);
        if (!baseline.document) {
            continue;
        }
        lines.push_back(file);
        for (const ElementPtr& task : baseline.elements("task")) {
            std::string start = Plan::value(task, "start-date");
            for (const char* stated : {"locked-start-date", "leveled-start"}) {
                start = start.empty() ? Plan::value(task, stated) : start;
            }
            if (Plan::value(task, "@id") != "t-1") {
                lines.push_back(Plan::value(task, "title") + " from " + start);
            }
        }
    }
    return lines;
}

// One part of a plan. A part that the export doesn't write yet comes back empty and is only
// reported; from the day any of it comes back, all of it must agree.
struct Part {
    const char* name;
    std::function<Lines(const Plan&)> read;
    bool writtenToday;
};

const Part kParts[] = {
    {"tasks", tasks, true},
    {"links and limits", links, true},
    {"baselines", baselines, true},
    {"resources", resources, false},
    {"assignments", assignments, false},
    {"custom fields", customFields, true},
};

int run(const std::string& arguments, const fs::path& config) {
    return std::system(("XDG_CONFIG_HOME=" + shellQuoted(config.string()) + ' ' +
                        shellQuoted(TVMSPFILTER_PATH) + ' ' + arguments + " >/dev/null 2>&1")
                           .c_str());
}

TEST(SampleRoundTripTest, TheSampleComesBackFromItsPlanFile) {
    const testsupport::TempDir dir;
    const fs::path sample = kSource / "samples" / "OfficeFitOut.tvnx";
    const fs::path mpp = dir.path() / "OfficeFitOut.mpp";
    ASSERT_EQ(run("-export --template-path " +
                      shellQuoted((kSource / "templates" / "Template.mpp").string()) + ' ' +
                      shellQuoted(sample.string()) + ' ' + shellQuoted(mpp.string()),
                  dir.path()),
              0);
    ASSERT_EQ(run("--template-path " + shellQuoted((kSource / "templates" / "Template.tvnx").string()) + ' ' +
                      shellQuoted(mpp.string()) + ' ' + shellQuoted(dir.path().string()),
                  dir.path()),
              0);
    const Plan before(sample);
    const Plan after(dir.path() / "OfficeFitOut.tvnx");

    for (const Part& part : kParts) {
        const Lines stated = part.read(before);
        const Lines back = part.read(after);
        ASSERT_FALSE(stated.empty()) << part.name << ": the sample states none";
        if (!part.writtenToday && back.empty()) {
            std::cout << part.name << ": not written by the export yet\n";
            continue;
        }
        EXPECT_EQ(stated, back) << part.name;
    }
}

} // namespace
