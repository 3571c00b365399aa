#include "tool/inspect/QueryCommand.h"

#include "InspectToolRun.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/query/frame/KVMSPIXQValue.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

namespace {

// An interchange document as the desktop application saves it: a byte order mark, the default
// namespace on the root, and a second task without a start, an outline level or a cost.
const std::string kPlanXml =
    "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<Project xmlns=\"http://schemas.microsoft.com/project\">"
    "<Title>Office move</Title><MinutesPerDay>480</MinutesPerDay>"
    "<Tasks>"
    "<Task><UID>1</UID><Name>Pack</Name><Start>2024-03-04T08:00:00</Start><OutlineLevel>2</OutlineLevel>"
    "<Milestone>0</Milestone><Cost>1250.75</Cost></Task>"
    "<Task><UID>2</UID><Name>Carry &amp; lift</Name><Milestone>1</Milestone></Task>"
    "</Tasks></Project>";

const std::string kUsage = "usage: mppinspect query [--accept-downgraded] [--baseline N] FILE QUERY[:TYPE] "
                           "[LEAF[:TYPE] ...] (TYPE: text, int, num or bool)\n";

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
    EXPECT_EQ(QueryLeaf::parse(".").answerOf(value), "42");
    EXPECT_EQ(QueryLeaf::parse(".:num").answerOf(value), "42");
    try {
        QueryLeaf::parse("UID:int").answerOf(value);
        FAIL() << "a value answers nothing but \".\"";
    } catch (const TVException& exception) {
        EXPECT_EQ(std::string(exception.reason()).rfind("NOT PORTED XQUERY (", 0), 0u) << exception.reason();
    }
}

TEST_F(QueryCommandTest, LeavesAreAskedAsTheTypeTheirSuffixNames) {
    const std::string plan = writeFile("plan.xml", kPlanXml);
    // A value that an object lacks is an empty field in every type, not the 0 of the typed read.
    const auto tasks = InspectToolRun::of({"query", plan, "Tasks/Task", "UID:int", "OutlineLevel:int",
                                           "Milestone:bool", "Cost:num", "Name:text"});
    EXPECT_EQ(tasks.status, 0) << tasks.err;
    EXPECT_EQ(tasks.out, "1\t2\t0\t1250.75\tPack\n2\t\t1\t\tCarry & lift\n");
    EXPECT_EQ(InspectToolRun::of({"query", plan, "MinutesPerDay:num"}).out, "480\n");
    EXPECT_EQ(InspectToolRun::of({"query", plan, "Title:text"}).out, "Office move\n");

    // Only a last colon followed by letters names a type; the colons of a time stay in the query.
    const QueryLeaf timed = QueryLeaf::parse("TimephasedData[Start=2024-03-04T08:00:00]");
    EXPECT_EQ(timed.query(), "TimephasedData[Start=2024-03-04T08:00:00]");
    EXPECT_EQ(timed.kind(), QueryLeaf::Kind::Text);
    EXPECT_EQ(QueryLeaf::parse("ns:Start:bool").query(), "ns:Start");
    EXPECT_EQ(QueryLeaf::parse("ns:Start:bool").kind(), QueryLeaf::Kind::Flag);
}

TEST_F(QueryCommandTest, UnknownTypesAndAnswersThatDontReadAsTheirTypeAreRefused) {
    const std::string plan = writeFile("plan.xml", kPlanXml);
    // The types are checked before the file is read, as leaves and as the project's single query.
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{"query", "absent.mpp", "Tasks/Task", "UID", "Milestone:flag"},
                                               {"query", plan, "Title:double"}}) {
        const auto run = InspectToolRun::of(arguments);
        EXPECT_EQ(run.status, 2) << arguments.back();
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err, "Unknown type \"" + arguments.back().substr(arguments.back().find(':') + 1) +
                               "\" of leaf \"" + arguments.back() +
                               "\"; a leaf is asked as text, int, num or bool.\n" + kUsage);
    }

    const auto name = InspectToolRun::of({"query", plan, "Tasks/Task", "UID", "Name:int"});
    EXPECT_EQ(name.status, 1);
    EXPECT_EQ(name.out, "");
    EXPECT_EQ(name.err, "Failed to get int value from XML node: Pack\n");
    const auto flag = InspectToolRun::of({"query", plan, "Tasks/Task", "Name:bool"});
    EXPECT_EQ(flag.status, 1);
    EXPECT_EQ(flag.err, "Failed to get boolean value from XML node: Pack\n");
    const auto number = InspectToolRun::of({"query", plan, "Title:num"});
    EXPECT_EQ(number.status, 1);
    EXPECT_EQ(number.err, "Failed to get float value from XML node: Office move\n");
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
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{"query"},
                                               {"query", "plan.xml"},
                                               {"query", "--baseline", "plan.xml", "Title"},
                                               {"query", "--baseline", "-1", "plan.xml", "Title"},
                                               {"query", "--baseline", "11", "plan.xml", "Title"},
                                               {"query", "--leaves", "plan.xml", "Title"}}) {
        const auto run = InspectToolRun::of(arguments);
        EXPECT_EQ(run.status, 2) << arguments.size();
        EXPECT_EQ(run.err, kUsage);
        EXPECT_EQ(run.out, "");
    }
}

} // namespace
