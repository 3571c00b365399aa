#include "InspectToolRun.h"
#include "support/TestSupport.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace {

std::string corpusFile(const std::string& folder, const std::string& name) {
    return (testsupport::corpusDir() / folder / name).string();
}

const std::string kPlanName = "generated__task-links__task-links-project2019";

} // namespace

TEST(QueryCommandCorpus, AnMppFileAnswersInTheFormOfItsInterchangeXml) {
    TVMSP_REQUIRE_CORPUS();
    const std::string mpp = corpusFile("mpp", kPlanName + "-mpp14.mpp");
    const std::string xml = corpusFile("mspdi", kPlanName + "-mspdi.xml");

    const auto tasks = InspectToolRun::of({"query", mpp, "Tasks/Task", "UID", "ID"});
    EXPECT_EQ(tasks.status, 0) << tasks.err;
    EXPECT_EQ(tasks.out, InspectToolRun::of({"query", xml, "Tasks/Task", "UID", "ID"}).out);
    EXPECT_EQ(std::count(tasks.out.begin(), tasks.out.end(), '\n'), 17);

    // Typed leaves are read as the mappers read them: the readers' integers and flags against the
    // interchange file's texts read as numbers.
    const std::vector<std::string> typed{"Tasks/Task", "UID:int", "OutlineLevel:int", "Milestone:bool",
                                         "Summary:bool"};
    std::vector<std::string> mppTyped{"query", mpp}, xmlTyped{"query", xml};
    mppTyped.insert(mppTyped.end(), typed.begin(), typed.end());
    xmlTyped.insert(xmlTyped.end(), typed.begin(), typed.end());
    const auto typedAnswers = InspectToolRun::of(mppTyped);
    EXPECT_EQ(typedAnswers.status, 0) << typedAnswers.err;
    EXPECT_EQ(typedAnswers.out, InspectToolRun::of(xmlTyped).out);
    EXPECT_NE(typedAnswers.out.find("\t1\n"), std::string::npos) << "no summary task";

    const auto start = InspectToolRun::of({"query", mpp, "StartDate"});
    EXPECT_EQ(start.out, InspectToolRun::of({"query", xml, "StartDate"}).out);
    EXPECT_EQ(start.out, "2018-10-18T08:00:00\n");

    // The project answers "Name" with none: an empty line.
    EXPECT_EQ(InspectToolRun::of({"query", mpp, "Name"}).out, "\n");

    const auto baseline =
        InspectToolRun::of({"query", "--baseline", "0", "--accept-downgraded", mpp, "Tasks/Task", "UID"});
    EXPECT_EQ(baseline.status, 0) << baseline.err;
    EXPECT_EQ(std::count(baseline.out.begin(), baseline.out.end(), '\n'), 17);
}

TEST(QueryCommandCorpus, AQueryThatIsNotPortedEndsWithItsError) {
    TVMSP_REQUIRE_CORPUS();
    const std::string mpp = corpusFile("mpp", kPlanName + "-mpp14.mpp");
    // An outline level is answered as an integer only and a name as text only; a task UID that isn't
    // valid isn't answered.
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{"query", mpp, "Tasks/Task", "UID", "OutlineLevel"},
                                               {"query", mpp, "Tasks/Task", "UID", "Name:int"},
                                               {"query", mpp, "Tasks/Task[UID=99999]", "Name"},
                                               {"query", mpp, "Views/View", "Name"},
                                               {"query", mpp, "DurationFormat"}}) {
        const auto run = InspectToolRun::of(arguments);
        EXPECT_EQ(run.status, 1) << arguments[2];
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err.rfind("NOT PORTED XQUERY (", 0), 0u) << run.err;
        EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1);
    }
}

TEST(QueryCommandCorpus, AFormatThatTheImportRefusesIsRefused) {
    TVMSP_REQUIRE_CORPUS();
    const auto run = InspectToolRun::of(
        {"query", corpusFile("mpp", "generated__task-links__task-links-project98-mpp8.mpp"), "Tasks/Task",
         "UID"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_FALSE(run.err.empty());
}
