#include "MPPCommon/support/Log.h"
#include "MPPCommon/xml/KVMSPCXMLDocument.h"
#include "MPPImporter/Mapper/mapping/KVMSPIMapper.h"
#include "MPPImporter/pipeline/KVMSPIMPPImporter.h"
#include "support/TestSupport.h"
#include "tool/inspect/ModelCommand.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <sstream>

// Imports every plan of the corpus and prints the export model of its bundle: the export maps every
// bundle that the import makes, post-processes and verifies it, and keeps its outline and links.
// Skipped when ../shared/corpus is absent.

namespace {

namespace fs = std::filesystem;
using json = nlohmann::ordered_json;

// What the bundle's actual scenario holds that the export model must show: the tasks of the outline
// (every task element but the pieces of split tasks), the links among them, and the tasks that are no
// group, each of which has an assignment.
struct ScenarioCounts {
    size_t tasks = 0;
    size_t links = 0;
    size_t assignedTasks = 0;
};

ScenarioCounts countsOf(const fs::path& bundle) {
    TVError error;
    const auto document = KVMSPCXMLDocument::initWithContentsOfURL(bundle / "Actual.xml", 0, nullptr, &error);
    const auto root = document ? document->rootElement() : nullptr;
    if (!root) {
        ADD_FAILURE() << bundle;
        return {};
    }
    std::set<std::string> pieces;
    const auto tasks = root->elementsForName("task");
    for (const auto& task : tasks) {
        if (!task->elementsForName("split").empty()) {
            for (const auto& piece : task->elementsForName("child-task")) {
                pieces.insert(piece->attributeForName("idref")->stringValue().value_or(""));
            }
        }
    }
    ScenarioCounts counts;
    for (const auto& task : tasks) {
        if (pieces.count(task->attributeForName("id")->stringValue().value_or("")) == 0) {
            ++counts.tasks;
            counts.links += task->elementsForName("prerequisite-task").size();
            const auto type = task->stringValueForXQuery("type", nullptr);
            counts.assignedTasks += type == "group" ? 0 : 1;
        }
    }
    return counts;
}

// Plans whose bundles the export refuses, with the text it ends with: "<file>\t<text>\t<reason>" per
// line, "#" starting a comment.
std::map<std::string, std::string> refusals() {
    std::map<std::string, std::string> expected;
    std::ifstream in(std::string(TVMSP_SOURCE_DIR) + "/tests/tool/inspect/ModelCommandCorpusTest.manifest");
    for (std::string line; std::getline(in, line);) {
        std::istringstream parts(line);
        std::string file;
        std::string text;
        if (!line.empty() && line[0] != '#' && std::getline(parts, file, '\t') &&
            std::getline(parts, text, '\t')) {
            expected[file] = text;
        }
    }
    return expected;
}

} // namespace

TEST(ModelCommandCorpusTest, EveryImportedBundleMapsToAVerifiedModel) {
    TVMSP_REQUIRE_CORPUS();
    testsupport::TempDir temp;
    tvSetLogSink([](const std::string&) {});
    TVInfoDictionary info;
    info.setURL(kInfoTVNXTemplateUrl,
                TVFileURL(std::string(TVMSP_SOURCE_DIR) + "/templates/Template.tvnx", true));
    const std::map<std::string, std::string> expectedRefusals = refusals();
    std::set<std::string> refused;
    long mapped = 0;
    for (const fs::path& plan : testsupport::corpusMppFiles()) {
        const fs::path bundle = temp.path() / (plan.stem().string() + ".tvnx");
        KVMSPIMPPImporter importer(info, KVMSPIMapper::factory());
        TVError error;
        // Plans that the import refuses are the import's tests' concern.
        if (!importer.importFromMppURL(TVFileURL(plan.string(), false), TVFileURL(bundle.string(), true),
                                       true, &error)) {
            fs::remove_all(bundle);
            continue;
        }
        const json model = ModelCommand::modelOfBundle(bundle.string());
        const auto expectedRefusal = expectedRefusals.find(plan.filename().string());
        if (expectedRefusal != expectedRefusals.end()) {
            EXPECT_EQ(model.value("/error/text"_json_pointer, ""), expectedRefusal->second)
                << plan.filename();
            refused.insert(expectedRefusal->first);
            continue;
        }
        if (model.contains("error")) {
            ADD_FAILURE() << plan.filename() << ": " << model.dump();
            continue;
        }
        const ScenarioCounts counts = countsOf(bundle);
        EXPECT_EQ(model["tasks"].size(), counts.tasks) << plan.filename();
        EXPECT_EQ(model["links"].size(), counts.links) << plan.filename();
        EXPECT_EQ(model["calendarID"], 1) << plan.filename();
        std::set<json> assigned;
        for (const json& assignment : model["assignments"]) {
            assigned.insert(assignment["taskID"]);
        }
        EXPECT_EQ(assigned.size(), counts.assignedTasks) << plan.filename();
        // The outline's parents agree with its levels.
        std::map<json, int> levels;
        for (const json& task : model["tasks"]) {
            levels[task["ID"]] = task["outlineLevel"].get<int>();
            if (!task["parentID"].is_null()) {
                EXPECT_EQ(levels[task["parentID"]] + 1, levels[task["ID"]]) << plan.filename();
            }
        }
        fs::remove_all(bundle);
        ++mapped;
    }
    tvSetLogSink({});
    EXPECT_GE(mapped, testsupport::corpusShare(550));
    if (testsupport::corpusShare(1) == 1) {
        for (const auto& [file, text] : expectedRefusals) {
            EXPECT_EQ(refused.count(file), 1u) << "manifest entry matches no refused plan: " << file;
        }
    }
}
