#include "tool/inspect/QueryCommand.h"

#include "InspectToolRun.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/query/frame/KVMSPIXQValue.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

namespace {

// An interchange document as the desktop application saves it: a byte order mark, the default
// namespace on the root, and a second task without a start.
const std::string kPlanXml = "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                             "<Project xmlns=\"http://schemas.microsoft.com/project\">"
                             "<Title>Office move</Title>"
                             "<Tasks>"
                             "<Task><UID>1</UID><Name>Pack</Name><Start>2024-03-04T08:00:00</Start></Task>"
                             "<Task><UID>2</UID><Name>Carry &amp; lift</Name></Task>"
                             "</Tasks></Project>";

class QueryCommandTest : public ::testing::Test {
protected:
    std::string writeFile(const std::string& name, const std::string& text) {
        const auto path = m_dir.path() / name;
        testsupport::writeFileBytes(path, std::vector<unsigned char>(text.begin(), text.end()));
        return path.string();
    }

    testsupport::TempDir m_dir;
};

TEST_F(QueryCommandTest, PrintsOneLineOfLeavesPerObjectOfAnXmlPlan) {
    // The name says nothing of the content: the document is told apart by its first character.
    const std::string plan = writeFile("plan.mpp", kPlanXml);
    const auto run = InspectToolRun::of({"query", plan, "Tasks/Task", "UID", "Name", "Start"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "1\tPack\t2024-03-04T08:00:00\n2\tCarry & lift\t\n");
    EXPECT_EQ(run.err, "");

    const auto values = InspectToolRun::of({"query", plan, "Tasks/Task/Name", "."});
    EXPECT_EQ(values.out, "Pack\nCarry & lift\n");
    EXPECT_EQ(InspectToolRun::of({"query", plan, "Resources/Resource", "UID"}).out, "");
}

TEST_F(QueryCommandTest, WithoutLeavesAsksTheProjectForOneString) {
    const std::string plan = writeFile("plan.xml", kPlanXml);
    EXPECT_EQ(InspectToolRun::of({"query", plan, "Title"}).out, "Office move\n");
    // The options of an MPP file are taken and have nothing to change in a document.
    EXPECT_EQ(InspectToolRun::of({"query", "--accept-downgraded", "--baseline", "3", plan, "Title"}).out,
              "Office move\n");
    const auto missing = InspectToolRun::of({"query", plan, "FinishDate"});
    EXPECT_EQ(missing.status, 0);
    EXPECT_EQ(missing.out, "\n");
}

TEST_F(QueryCommandTest, QueriesThatCantBeAnsweredEndTheRunWithTheirError) {
    const std::string plan = writeFile("plan.xml", kPlanXml);
    const auto badPath = InspectToolRun::of({"query", plan, "Tasks/Task[", "UID"});
    EXPECT_EQ(badPath.status, 1);
    EXPECT_EQ(badPath.out, "");
    EXPECT_FALSE(badPath.err.empty());

    KVMSPIXQValue value("42");
    EXPECT_EQ(QueryCommand::answersOf(value, ".", {}), "42\n");
    try {
        QueryCommand::answersOf(value, "UID", {});
        FAIL() << "a value answers nothing but \".\"";
    } catch (const TVException& exception) {
        EXPECT_EQ(std::string(exception.reason()).rfind("NOT PORTED XQUERY (", 0), 0u) << exception.reason();
    }
}

TEST_F(QueryCommandTest, FilesThatHoldNoPlanAreRefused) {
    const auto notProject = InspectToolRun::of({"query", writeFile("other.xml", "\n  <Plan/>"), "Title"});
    EXPECT_EQ(notProject.status, 1);
    EXPECT_NE(notProject.err.find("is not \"Project\"."), std::string::npos) << notProject.err;

    const auto brokenXml =
        InspectToolRun::of({"query", writeFile("broken.xml", "<Project><Title>"), "Title"});
    EXPECT_EQ(brokenXml.status, 1);
    EXPECT_NE(brokenXml.err.find("Failed to build XML DOM"), std::string::npos) << brokenXml.err;

    const auto junk = InspectToolRun::of({"query", writeFile("junk.mpp", std::string(600, 'x')), "Title"});
    EXPECT_EQ(junk.status, 1);
    EXPECT_EQ(junk.err, "MSPIMPPImporter: Couldn't open an invalid MPP file.\n");
    EXPECT_EQ(junk.out, "");
}

TEST_F(QueryCommandTest, ArgumentsOutsideTheUsageAreRefused) {
    const std::string usage =
        "usage: mppinspect query [--accept-downgraded] [--baseline N] FILE QUERY [LEAF ...]\n";
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{"query"},
                                               {"query", "plan.xml"},
                                               {"query", "--baseline", "plan.xml", "Title"},
                                               {"query", "--baseline", "-1", "plan.xml", "Title"},
                                               {"query", "--baseline", "11", "plan.xml", "Title"},
                                               {"query", "--leaves", "plan.xml", "Title"}}) {
        const auto run = InspectToolRun::of(arguments);
        EXPECT_EQ(run.status, 2) << arguments.size();
        EXPECT_EQ(run.err, usage);
        EXPECT_EQ(run.out, "");
    }
}

} // namespace
