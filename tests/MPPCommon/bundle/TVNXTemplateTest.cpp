#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPCommon/xml/KVMSPCXMLDocument.h"
#include "support/TestSupport.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <regex.h>

namespace {

using DocumentPtr = KVMSPCXMLDocument::DocumentPtr;

const std::filesystem::path kTemplate =
    std::filesystem::path(TVMSP_SOURCE_DIR) / "templates" / "Template.tvnx";

DocumentPtr loadStripped(const std::filesystem::path& file) {
    std::optional<std::string> xmlns;
    TVError error;
    DocumentPtr document = KVMSPCXMLDocument::initWithContentsOfURL(file, 0, &xmlns, &error);
    EXPECT_NE(document, nullptr) << file << ": " << error.localizedDescription();
    EXPECT_EQ(xmlns, kTarvane2Namespace) << file;
    return document;
}

std::vector<std::string> childNames(const KVMSPCXMLNode::Ptr& node) {
    std::vector<std::string> names;
    for (const auto& child : node->children()) {
        if (child->kind() == XML_ELEMENT_NODE) {
            names.push_back(*child->name());
        }
    }
    return names;
}

class TVNXTemplateTest : public testing::Test {
protected:
    void SetUp() override {
        toc = loadStripped(kTemplate / tvnx::kTOCFileName);
        actual = loadStripped(kTemplate / tvnx::kActualFileName);
        ASSERT_TRUE(toc != nullptr && actual != nullptr);
    }
    DocumentPtr toc;
    DocumentPtr actual;
};

TEST_F(TVNXTemplateTest, TableOfContentsHoldsProjectAndWindow) {
    auto root = toc->rootElement();
    EXPECT_EQ(root->objectsForXQuery(tvnx::query::kProject, nullptr).size(), 1u);
    EXPECT_EQ(root->objectsForXQuery(tvnx::query::kWindow, nullptr).size(), 1u);
    EXPECT_EQ(root->objectsForXQuery("window/task-view/outline", nullptr).size(), 1u);

    // The children of `project` stand in the order that the insertion rules keep.
    std::vector<std::string> order = {tvnx::element::kTitle, tvnx::element::kNextTaskId,
                                      tvnx::element::kNextResourceId, tvnx::element::kScenario};
    order.insert(order.end(), tvnx::kGanttSettings.begin(), tvnx::kGanttSettings.end());
    order.insert(order.end(), {tvnx::element::kUserData, tvnx::element::kTaskUserDataKeys,
                               tvnx::element::kResourceUserDataKeys});
    auto project = std::dynamic_pointer_cast<KVMSPCXMLNode>(root->singleObjectForXQuery("project", nullptr));
    std::vector<size_t> positions;
    for (const std::string& name : childNames(project)) {
        auto found = std::find(order.begin(), order.end(), name);
        ASSERT_NE(found, order.end()) << name;
        positions.push_back(static_cast<size_t>(found - order.begin()));
    }
    EXPECT_TRUE(std::is_sorted(positions.begin(), positions.end()));

    for (const char* format : {"duration-format", "effort-format"}) {
        for (const char* attribute : {tvnx::attribute::kHoursPerDay, tvnx::attribute::kHoursPerWeek,
                                      tvnx::attribute::kHoursPerMonth, tvnx::attribute::kHoursPerYear}) {
            std::string query = stringWithFormat("project/%s/@%s", format, attribute);
            EXPECT_GT(root->intValueForXQuery(query, nullptr), 0) << query;
        }
    }
    regex_t expression;
    ASSERT_EQ(regcomp(&expression, tvnx::value::kCurrencyFormatPattern, REG_EXTENDED), 0);
    std::string currency = root->stringValueForXQuery(tvnx::query::kCurrencyFormat, nullptr).value_or("");
    EXPECT_EQ(regexec(&expression, currency.c_str(), 0, nullptr, 0), 0) << currency;
    regfree(&expression);
}

TEST_F(TVNXTemplateTest, EditingScenarioNamesTheActualFile) {
    auto root = toc->rootElement();
    std::optional<std::string> editing = root->stringValueForXQuery("window/editing-scenario", nullptr);
    ASSERT_TRUE(editing.has_value());
    auto project = std::dynamic_pointer_cast<KVMSPCXMLNode>(root->singleObjectForXQuery("project", nullptr));
    std::string byName = stringWithFormat(tvnx::query::kScenarioByName, tvnx::kActualScenarioName);
    auto entry = std::dynamic_pointer_cast<KVMSPCXMLElement>(project->singleObjectForXQuery(byName, nullptr));
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(entry->attributeForName(tvnx::attribute::kId)->stringValue(), editing);
    EXPECT_EQ(entry->attributeForName(tvnx::attribute::kFilename)->stringValue(),
              tvnx::scenarioFileName(tvnx::kActualScenarioName));
    EXPECT_EQ(actual->rootElement()->attributeForName(tvnx::attribute::kId)->stringValue(), editing);
}

TEST_F(TVNXTemplateTest, ActualScenarioHasTheTopResourceAndTopTask) {
    auto scenario = actual->rootElement();
    EXPECT_EQ(scenario->name(), tvnx::element::kScenario);
    EXPECT_EQ(scenario->stringValueForXQuery("top-resource/@idref", nullptr), tvnx::value::kTopResourceId);
    EXPECT_EQ(scenario->stringValueForXQuery("resource[1]/@id", nullptr), tvnx::value::kTopResourceId);
    EXPECT_EQ(scenario->stringValueForXQuery("resource[1]/type", nullptr), tvnx::value::kResourceTypeGroup);
    EXPECT_EQ(scenario->stringValueForXQuery("top-task/@idref", nullptr), tvnx::value::kTopTaskId);
    EXPECT_EQ(scenario->stringValueForXQuery("task[1]/@id", nullptr), tvnx::value::kTopTaskId);
    EXPECT_EQ(scenario->stringValueForXQuery("task[1]/type", nullptr), tvnx::value::kTaskTypeGroup);
    // The project schedule: two spans on each working day, none on the others.
    for (size_t day = 1; day < kTVNXDayOfWeek.size(); ++day) {
        std::string query = stringWithFormat("resource[1]/schedule/schedule-day[@day-of-week='%s']/time-span",
                                             kTVNXDayOfWeek[day]);
        EXPECT_EQ(scenario->objectsForXQuery(query, nullptr).size(), kTVNXWorkingDay[day] ? 2u : 0u) << query;
    }
}

TEST_F(TVNXTemplateTest, NamespaceIsPutBackOnWriting) {
    testsupport::TempDir dir;
    auto root = toc->rootElement();
    root->addNamespace(KVMSPCXMLNode::namespaceWithName("", kTarvane2Namespace));
    auto data = toc->XMLDataWithOptions(kXMLNodePrettyPrint);
    std::filesystem::path file = dir.path() / tvnx::kTOCFileName;
    testsupport::writeFileBytes(file, data);
    DocumentPtr reloaded = loadStripped(file);
    ASSERT_NE(reloaded, nullptr);
    EXPECT_EQ(reloaded->rootElement()->objectsForXQuery("project/scenario", nullptr).size(), 1u);
}

TEST(TVNXNamesTest, ScenarioNamesAndFiles) {
    EXPECT_EQ(tvnx::scenarioNameForBaseline(tvnx::kActualBaselineNumber), "Actual");
    EXPECT_EQ(tvnx::scenarioFileName(tvnx::scenarioNameForBaseline(0)), "Baseline.xml");
    EXPECT_EQ(tvnx::scenarioFileName(tvnx::scenarioNameForBaseline(1)), "Baseline1.xml");
    EXPECT_EQ(tvnx::scenarioFileName(tvnx::scenarioNameForBaseline(10)), "Baseline10.xml");
    EXPECT_THROW(tvnx::scenarioNameForBaseline(11), TVException);
    EXPECT_THROW(tvnx::scenarioNameForBaseline(-2), TVException);
}

} // namespace
