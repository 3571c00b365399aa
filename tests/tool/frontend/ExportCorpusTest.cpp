#include "MPPCommon/support/Log.h"
#include "MPPCommon/xml/KVMSPCXMLDocument.h"
#include "support/CorpusComparison.h"
#include "support/TestSupport.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iostream>
#include <map>
#include <regex>
#include <sstream>

// Exports real plans as the program does: each plan of the corpus is imported, its bundle exported
// through a template, and the exported file imported again; the two bundles must hold the same task
// outline, dates and links, and every stream of the exported file must read in olefile.

namespace {

namespace fs = std::filesystem;
using ElementPtr = KVMSPCXMLElement::ElementPtr;

using testsupport::shellQuoted;

// Runs a command with an empty preference folder; its exit status.
int run(const std::string& command, const fs::path& config) {
    return std::system(
        ("XDG_CONFIG_HOME=" + shellQuoted(config.string()) + " " + command + " >/dev/null 2>&1").c_str());
}

std::string text(const ElementPtr& element) {
    return element ? element->stringValue().value_or("") : "";
}

std::string attribute(const KVMSPCXMLElement& element, const char* name) {
    const auto node = element.attributeForName(name);
    return node ? node->stringValue().value_or("") : "";
}

ElementPtr child(const KVMSPCXMLElement& element, const char* name) {
    const auto children = element.elementsForName(name);
    return children.empty() ? nullptr : children.front();
}

// The wall clock of a bundle date: its zone label dropped.
std::string wallClock(const std::string& date) {
    static const std::regex zone(R"((\d\d:\d\d:\d\d)(?:\.\d+)?(?:Z|[+-]\d\d:\d\d)$)");
    return std::regex_replace(date, zone, "$1");
}

// The task outline of a bundle's actual plan, one line per task in outline order. The structure
// holds depth, title and the links by the outline position of their prerequisite, sorted, since
// their order means nothing; the schedule holds each task's kind and dates.
struct Outline {
    std::vector<std::string> structure;
    std::vector<std::string> schedule;
};

Outline outline(const fs::path& bundle) {
    TVError error;
    const auto document = KVMSPCXMLDocument::initWithContentsOfURL(bundle / "Actual.xml", 0, nullptr, &error);
    if (!document || !document->rootElement()) {
        return {{"no actual plan"}, {}};
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
    for (const auto& [depth, task] : order) {
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
    }
    return result;
}

std::vector<fs::path> bundlesIn(const fs::path& folder) {
    std::vector<fs::path> bundles;
    if (fs::exists(folder)) {
        for (const auto& entry : fs::directory_iterator(folder)) {
            if (entry.path().extension() == ".tvnx") {
                bundles.push_back(entry.path());
            }
        }
    }
    return bundles;
}

// The first line where two outlines differ.
std::string difference(const std::vector<std::string>& first, const std::vector<std::string>& second) {
    for (size_t i = 0; i < std::max(first.size(), second.size()); ++i) {
        const std::string a = i < first.size() ? first[i] : "(none)";
        const std::string b = i < second.size() ? second[i] : "(none)";
        if (a != b) {
            return "task " + std::to_string(i) + ": " + a + "\n    <> " + b;
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

// One export and import again. Either why that failed, or the outlines of the bundle and of the
// bundle of the exported file, which is left in `work`/second.
struct RoundTrip {
    std::string failure;
    Outline before;
    Outline after;
};

RoundTrip roundTrip(const fs::path& bundle, const fs::path& mppTemplate, const fs::path& work,
                    const fs::path& config) {
    fs::remove_all(work);
    fs::create_directories(work);
    const fs::path mpp = work / "plan.mpp";
    const int status = exportBundle(bundle, mpp, mppTemplate, config);
    if (status != 0 || !fs::exists(mpp)) {
        return {"export status " + std::to_string(status), {}, {}};
    }
    if (const std::string unreadable = unreadableStreams(mpp); !unreadable.empty()) {
        return {"olefile: " + unreadable, {}, {}};
    }
    const std::optional<fs::path> again = importPlan(mpp, work / "second", config);
    if (!again) {
        return {"the exported file does not import", {}, {}};
    }
    return {"", outline(bundle), outline(*again)};
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

std::string structureDifference(const RoundTrip& trip) {
    return trip.failure.empty() ? difference(trip.before.structure, trip.after.structure) : trip.failure;
}

std::string scheduleDifference(const RoundTrip& trip) {
    return trip.failure.empty() ? difference(trip.before.schedule, trip.after.schedule) : trip.failure;
}

// Each plan's round trip as the fields "structure" (outline and links) and "schedule" (kinds and
// dates), and the second round's as "second round".
TEST_F(ExportCorpusTest, EveryImportedPlanComesBackTheSame) {
    TVMSP_REQUIRE_CORPUS();
    testsupport::CorpusComparison comparison("tool/frontend/ExportCorpusTest.manifest", 1100);
    for (const auto& [name, trip] : s_first) {
        const std::string structure = structureDifference(trip);
        comparison.check(name, "structure", "", structure.empty(), structure);
        const std::string schedule = scheduleDifference(trip);
        comparison.check(name, "schedule", "", schedule.empty(), schedule);
    }
    for (const auto& [name, trip] : s_second) {
        const std::string changed = structureDifference(trip) + scheduleDifference(trip);
        comparison.check(name, "second round", "", changed.empty(), changed);
    }
    std::cout << comparison.summary();
    const std::string failures = comparison.failures();
    EXPECT_TRUE(failures.empty()) << failures;
}

} // namespace
