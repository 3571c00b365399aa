#include "BundleElementReads.h"
#include "BundleReferenceAgreement.h"
#include "MPPCommon/date/DateTestSupport.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/xml/KVMSPCXMLDocument.h"
#include "MPPImporter/Mapper/mapping/KVMSPIMapper.h"
#include "support/CorpusComparison.h"
#include "support/TestSupport.h"
#include "tool/frontend/ImportDriver.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iostream>
#include <map>
#include <regex>
#include <sstream>

// Imports real plans through the import driver, as the program does, and checks the bundles.

namespace {

namespace fs = std::filesystem;
using ElementPtr = KVMSPCXMLElement::ElementPtr;
using bundleread::attribute;
using bundleread::bundlesIn;
using bundleread::child;

class ImportCorpusTest : public ::testing::Test {
protected:
    void SetUp() override {
        tvSetLogSink([this](const std::string& line) { m_log += line + "\n"; });
    }
    void TearDown() override { tvSetLogSink({}); }

    // Imports the arguments' inputs into `folder` as the program does; the status of the last input.
    int import(const std::vector<std::string>& inputs, const fs::path& folder) {
        m_log.clear();
        fs::create_directories(folder);
        const ImporterFactory makeImporter = [mapperFactory =
                                                  KVMSPIMapper::factory()](const TVInfoDictionary& info) {
            return std::make_unique<KVMSPIMPPImporter>(info, mapperFactory);
        };
        const ImportDriver driver(makeImporter, PreferencesStore((m_temp.path() / "config").string()));
        std::vector<std::string> arguments = {"tvmspfilter", "--template-path",
                                              std::string(TVMSP_SOURCE_DIR) + "/templates/Template.tvnx"};
        if (inputs.size() == 1) {
            arguments.push_back(inputs.front());
        } else {
            const fs::path list = folder / "inputs.txt";
            std::ofstream out(list);
            for (const std::string& input : inputs) {
                out << input << "\n";
            }
            arguments.insert(arguments.end(), {"--input-list", list.string()});
        }
        arguments.insert(arguments.end(), {folder.string(), "-accept-downgraded"});
        return driver.run(arguments, "tvmspfilter");
    }

    std::string failureLines() const {
        std::string lines;
        std::istringstream log(m_log);
        for (std::string line; std::getline(log, line);) {
            if (line.find("ASSERTION") != std::string::npos || line.find("FAILED") != std::string::npos ||
                line.find("EXCEPTION") != std::string::npos) {
                lines += line + "\n";
            }
        }
        return lines;
    }

    testsupport::TempDir m_temp;
    std::string m_log;
};

// What is wrong with a bundle: XML files that don't parse, and a table of contents that doesn't name
// the scenario files, the editing scenario, or next ids above every id used.
std::string bundleProblems(const fs::path& bundle) {
    std::string problems;
    std::map<std::string, ElementPtr> roots;
    for (const auto& entry : fs::directory_iterator(bundle)) {
        TVError error;
        const auto document = KVMSPCXMLDocument::initWithContentsOfURL(entry.path(), 0, nullptr, &error);
        if (document == nullptr || document->rootElement() == nullptr) {
            problems += entry.path().filename().string() + " is no well-formed XML; ";
        } else {
            roots[entry.path().filename().string()] = document->rootElement();
        }
    }
    const ElementPtr toc = roots["__TOC.xml"];
    if (toc == nullptr || roots["Actual.xml"] == nullptr) {
        return problems + "no table of contents or no actual plan";
    }
    const ElementPtr project = child(*toc, "project");
    const ElementPtr window = child(*toc, "window");
    for (const ElementPtr& scenario : project->elementsForName("scenario")) {
        if (roots.count(attribute(*scenario, "filename")) == 0) {
            problems += "the scenario " + attribute(*scenario, "name") + " names no file; ";
        }
    }
    const ElementPtr editing = child(*window, "editing-scenario");
    if (!editing || editing->stringValue() != attribute(*roots["Actual.xml"], "id")) {
        problems += "the editing scenario is not the actual plan; ";
    }
    const long long nextTaskId = std::atoll(child(*project, "next-task-id")->stringValue()->c_str());
    const long long nextResourceId = std::atoll(child(*project, "next-resource-id")->stringValue()->c_str());
    for (const auto& [name, root] : roots) {
        for (const char* kind : {"task", "resource"}) {
            for (const ElementPtr& object : root->elementsForName(kind)) {
                const long long id = std::atoll(attribute(*object, "id").c_str() + 1);
                if (id >= (kind[0] == 't' ? nextTaskId : nextResourceId)) {
                    problems += name + ": " + attribute(*object, "id") + " is not below the next id; ";
                }
            }
        }
    }
    return problems;
}

// Every plan of a generation that is read imports (status 0) into one well-formed bundle that agrees
// with the reference; plans of generation 8 are refused with status 1. The manifest lists the plans
// that do otherwise, with the status as the object, and the bundles' listed differences.
TEST_F(ImportCorpusTest, EveryReadablePlanImportsIntoOneWellFormedBundle) {
    TVMSP_REQUIRE_CORPUS();
    const auto index = testsupport::corpusIndex();
    testsupport::CorpusComparison comparison("tool/frontend/ImportCorpusTest.manifest", 70000);
    BundleReferenceAgreement agreement(comparison);
    for (const fs::path& plan : testsupport::corpusMppFiles()) {
        const std::string name = plan.filename().string();
        const fs::path folder = m_temp.path() / "out";
        fs::remove_all(folder);
        const auto modified = fs::last_write_time(plan);
        const int status = import({plan.string()}, folder);
        const std::vector<fs::path> bundles = bundlesIn(folder);
        comparison.check(name, "input", "*", fs::last_write_time(plan) == modified, "modified");
        const std::string expected = index.at(name).at("format_guess") == "8" ? "1" : "0";
        comparison.check(name, "status", std::to_string(status), std::to_string(status) == expected,
                         "status " + std::to_string(status) + ", expected " + expected + "\n" +
                             failureLines());
        if (status != 0) {
            comparison.check(name, "refusal", "*", failureLines().find("): (null)") == std::string::npos,
                             "the refusal names no reason");
            comparison.check(name, "refusal", "*", bundles.empty(), "a refused plan left a bundle");
        } else if (bundles.size() != 1) {
            comparison.differ(name, "bundle", "*", std::to_string(bundles.size()) + " bundles");
        } else {
            const std::string problems = bundleProblems(bundles.front());
            comparison.check(name, "bundle", "*", problems.empty(), problems);
            agreement.compare(name, bundles.front());
        }
    }
    std::cout << "Agreement with the reference, by field:\n" << comparison.summary();
    const std::string failures = comparison.failures();
    EXPECT_TRUE(failures.empty()) << failures;
}

// The text of every scenario of a bundle with what changes from run to run taken out: comments, the
// generated ids, and the zone labels of date-times (of the bundle's form and of the platform's text of
// a custom date), which follow the machine's zone.
std::map<std::string, std::string> comparableScenarios(const fs::path& bundle) {
    static const std::regex variable(
        R"(<!--.*?-->|(\bid="|<(?:editing|comparison)-scenario>)[-_A-Za-z0-9]{11}|)"
        R"((\d\d:\d\d:\d\d)(?:Z|[+-]\d\d:\d\d| [+-]\d{4}))");
    std::map<std::string, std::string> texts;
    for (const auto& entry : fs::directory_iterator(bundle)) {
        const std::vector<unsigned char> bytes = testsupport::readFileBytes(entry.path());
        texts[entry.path().filename().string()] =
            std::regex_replace(std::string(bytes.begin(), bytes.end()), variable, "$1$2");
    }
    return texts;
}

// The first file whose texts differ, with the text around the first difference.
std::string firstDifference(const std::map<std::string, std::string>& first,
                            const std::map<std::string, std::string>& second) {
    for (const auto& [name, text] : first) {
        const auto other = second.find(name);
        if (other == second.end()) {
            return name + " only in one bundle";
        }
        const auto [here, there] =
            std::mismatch(text.begin(), text.end(), other->second.begin(), other->second.end());
        if (here != text.end() || there != other->second.end()) {
            const size_t at = static_cast<size_t>(here - text.begin());
            const size_t from = at < 80 ? 0 : at - 80;
            return name + ": " + text.substr(from, 160) + "\n  <>  " + other->second.substr(from, 160);
        }
    }
    return first.size() == second.size() ? "" : "the bundles hold different files";
}

// Plans with split tasks, recurring exceptions, timephased work and many dates.
std::vector<std::string> datedPlans() {
    static const std::regex dated(
        "splittask|splits9|recurring|timephased|task-dates__task-dates-project2010");
    std::vector<std::string> plans;
    for (const fs::path& plan : testsupport::corpusMppFiles()) {
        if (std::regex_search(plan.filename().string(), dated)) {
            plans.push_back(plan.string());
        }
    }
    return plans;
}

TEST_F(ImportCorpusTest, WallClocksDoNotMoveWithTheZoneAndABatchGivesEachPlanItsOwnBundle) {
    TVMSP_REQUIRE_CORPUS();
    const std::vector<std::string> plans = datedPlans();
    ASSERT_FALSE(plans.empty());
    std::map<std::string, std::map<std::string, std::string>> alone;
    for (const std::string& plan : plans) {
        const fs::path folder = m_temp.path() / "alone" / fs::path(plan).stem();
        if (import({plan}, folder) == 0) {
            alone[plan] = comparableScenarios(bundlesIn(folder).front());
        }
    }
    for (const char* zone : kTestZones) {
        const SystemZoneScope scope(zone);
        const fs::path folder = m_temp.path() / zone;
        import(std::vector<std::string>(plans.rbegin(), plans.rend()), folder);
        for (const auto& [plan, scenarios] : alone) {
            const std::string name = fs::path(plan).filename().string();
            const fs::path bundle = folder / (fs::path(plan).stem().string() + ".tvnx");
            ASSERT_TRUE(fs::exists(bundle)) << name << " in " << zone;
            EXPECT_EQ(firstDifference(comparableScenarios(bundle), scenarios), "") << name << " in " << zone;
        }
    }
}

} // namespace
