#include "MPPExporter/Mappers/KVMSPEProjectMapper.h"

#include "MPPCommon/date/DateTestSupport.h"
#include "MPPCommon/date/KVMSPCDateTimeConverter.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPExporter/ExportBundleText.h"
#include "MPPExporter/MPPObjects/MPPProjectJSON.h"
#include "MPPExporter/Mappers/KVMSPEMapper.h"
#include "MPPExporter/Mappers/MSPEProjectPostProcessor.h"
#include "MPPImporter/Mapper/utilities/KVMSPIUtilities.h"

#include <gtest/gtest.h>

namespace {

using OrderedJSON = nlohmann::ordered_json;
using exportbundle::februaryText;
using exportbundle::scenario;

KVMSPCXMLDocument::DocumentPtr document(const std::string& text) {
    return exportbundle::parsedDocument(exportbundle::withoutNamespace(text));
}

// The plan that a scenario maps to, as the model printout shows it; `baselines` more scenarios.
OrderedJSON mapped(const std::string& scenarioText, size_t baselines = 0) {
    tvSetLogSink([](const std::string&) {});
    KVMSPEMapper mapper(document(scenarioText), document(exportbundle::tableOfContents()),
                        std::vector<KVMSPEMapper::DocumentPtr>(baselines, document(scenarioText)), {});
    mapper.map();
    tvSetLogSink({});
    return mapper.mppProject() ? MPPProjectJSON::projectToJSON(*mapper.mppProject()) : OrderedJSON();
}

std::string mappingFailure(const std::string& scenarioText) {
    try {
        mapped(scenarioText);
    } catch (const TVException& exception) {
        tvSetLogSink({});
        return exception.reason();
    }
    return "";
}

// The task of the printout with a title.
OrderedJSON taskTitled(const OrderedJSON& project, const std::string& title) {
    for (const OrderedJSON& task : project["tasks"]) {
        if (task["title"] == title) {
            return task;
        }
    }
    ADD_FAILURE() << "no task " << title;
    return OrderedJSON();
}

std::string printed(int day, int hour) {
    return KVMSPCDateTimeConverter::tvnxFromMppDateTime(localInstant(2026, 2, day, hour), true);
}

std::string task(const std::string& id, const std::string& content) {
    return R"(<task id=")" + id + R"(">)" + content + "</task>";
}

std::string prerequisite(const std::string& attributes, const std::string& content = "") {
    return "<prerequisite-task idref=\"t1\" " + attributes + ">" + content + "</prerequisite-task>";
}

} // namespace

// Priorities are clamped, recalculation words give task types, schedule types, locks and limits
// give constraint types with their dates, and link kinds give link types with their lags.
TEST(KVMSPEProjectMapperTest, TaskTablesThroughTheModel) {
    const std::string monday = "2026-02-02T08:00:00Z";
    const std::string friday = "2026-02-06T17:00:00Z";
    const OrderedJSON project = mapped(scenario(
        {"t1", "t2", "t3", "t4", "t8"},
        task("t1", "<title>Locked\nboth</title><type>task</type><schedule-type>alap</schedule-type>"
                   "<priority>1200</priority><locked-start-date>" +
                       monday + "</locked-start-date><locked-end-date>" + friday + "</locked-end-date>") +
            task("t2",
                 "<title>Finish limit</title><type>task</type><priority>-5</priority>"
                 "<recalculate>something_else</recalculate><end-no-earlier-than>" +
                     friday + "</end-no-earlier-than>" + prerequisite("") + prerequisite(R"(kind="SF")") +
                     prerequisite(R"(kind="SS")", R"(<lead-time is-percentage="true">50</lead-time>)") +
                     prerequisite(R"(kind="FF")", R"(<lead-time is-percentage="TRUE">3600</lead-time>)") +
                     prerequisite(R"(kind="XX")", "<lead-time>-7200.5</lead-time>")) +
            task("t3", "<title>Both limits</title><type>task</type><recalculate>effort</recalculate>"
                       "<effort>7200</effort><effort-done>1800</effort-done><start-no-earlier-than>" +
                           monday + "</start-no-earlier-than><start-no-later-than>" + friday +
                           "</start-no-later-than>") +
            task("t4", R"(<title>Group</title><type>group</type><child-task idref="t5"/>)"
                       R"(<child-task idref="t6"/><child-task idref="t7"/>)") +
            task("t5",
                 "<title>M1</title><type>milestone</type><completion-percentage>0.5</completion-percentage>"
                 "<effort>999</effort>") +
            task(
                "t6",
                "<title>M2</title><type>milestone</type><completion-percentage>1.0</completion-percentage>") +
            task("t7", "<title>Plain</title><type>task</type><schedule-type>asap</schedule-type>"
                       "<note><text><p><run><lit>one</lit></run></p><p><run><lit>tw</lit></run>"
                       "<run><lit>o</lit></run></p></text></note>") +
            task("t8", "<title>Start lock</title><type>task</type><schedule-type>asap</schedule-type>"
                       "<locked-start-date>" +
                           monday + "</locked-start-date>"),
        R"(fixed-end="true")"));

    // title, type, priority, constraint, its date, outline level, parent's title
    const std::vector<std::tuple<std::string, int, int, int, OrderedJSON, int, OrderedJSON>> expected = {
        {"Lockedboth", 2, 1000, 3, friday, 1, nullptr}, {"Finish limit", 0, 0, 6, friday, 1, nullptr},
        {"Both limits", 1, 0, 5, friday, 1, nullptr},   {"Group", 1, 0, 1, nullptr, 1, nullptr},
        {"M1", 2, 0, 1, nullptr, 2, "Group"},           {"M2", 2, 0, 1, nullptr, 2, "Group"},
        {"Plain", 2, 0, 0, nullptr, 2, "Group"},        {"Start lock", 2, 0, 2, monday, 1, nullptr},
    };
    ASSERT_EQ(project["tasks"].size(), expected.size() + 1);
    EXPECT_EQ(project["tasks"][0]["title"], nullptr);
    for (size_t i = 0; i < expected.size(); ++i) {
        const auto& [title, type, priority, constraint, date, level, parent] = expected[i];
        const OrderedJSON& mappedTask = project["tasks"][i + 1];
        EXPECT_EQ(mappedTask["title"], title);
        EXPECT_EQ(mappedTask["taskType"], type) << title;
        EXPECT_EQ(mappedTask["priority"], priority) << title;
        EXPECT_EQ(mappedTask["constraintType"], constraint) << title;
        EXPECT_EQ(mappedTask["constraintDate"], date) << title;
        EXPECT_EQ(mappedTask["outlineLevel"], level) << title;
        const OrderedJSON parentID = parent.is_null() ? OrderedJSON(0) : taskTitled(project, parent)["ID"];
        EXPECT_EQ(mappedTask["parentID"], parentID) << title;
    }
    EXPECT_EQ(project["scheduleFromStart"], false);
    // Locked at both ends, a task is scheduled by hand between its locks; one lock is a constraint.
    const OrderedJSON lockedBoth = taskTitled(project, "Lockedboth");
    EXPECT_EQ(lockedBoth["manual"], true);
    EXPECT_EQ(lockedBoth["start"], monday);
    EXPECT_EQ(lockedBoth["finish"], friday);
    EXPECT_EQ(taskTitled(project, "Start lock")["manual"], false);

    // Progress: work from effort, the group's from its milestones over all its members.
    const OrderedJSON bothLimits = taskTitled(project, "Both limits");
    EXPECT_EQ(bothLimits["work"], 7200.0);
    EXPECT_EQ(bothLimits["actualWork"], 1800.0);
    EXPECT_EQ(bothLimits["remainingWork"], 5400.0);
    EXPECT_EQ(bothLimits["workPercentComplete"], 0.25);
    EXPECT_EQ(taskTitled(project, "Group")["workPercentComplete"], 0.5);
    EXPECT_EQ(taskTitled(project, "M1")["work"], 0.0);
    EXPECT_EQ(taskTitled(project, "M1")["milestone"], true);
    EXPECT_EQ(taskTitled(project, "Plain")["notes"], "one\ntwo\n");

    // Every task but the groups has exactly one assignment, on the unassigned resource.
    std::vector<OrderedJSON> assigned;
    for (const OrderedJSON& assignment : project["assignments"]) {
        EXPECT_EQ(assignment["resourceID"], nullptr);
        assigned.push_back(assignment["taskID"]);
    }
    std::vector<OrderedJSON> plain;
    for (const OrderedJSON& mappedTask : project["tasks"]) {
        if (mappedTask["title"] != "Group" && mappedTask["ID"] != 0) {
            plain.push_back(mappedTask["ID"]);
        }
    }
    EXPECT_EQ(assigned, plain);

    // Links: FS 1, SF 2, SS 3, FF 0, an unknown kind FS; only "true" makes a percentage.
    const OrderedJSON lockedID = taskTitled(project, "Lockedboth")["ID"];
    const OrderedJSON limitID = taskTitled(project, "Finish limit")["ID"];
    const std::vector<std::tuple<int, double, bool>> links = {
        {1, 0.0, false}, {2, 0.0, false}, {3, 50.0, true}, {0, 3600.0, false}, {1, -7200.5, false}};
    ASSERT_EQ(project["links"].size(), links.size());
    for (size_t i = 0; i < links.size(); ++i) {
        const OrderedJSON& mappedLink = project["links"][i];
        EXPECT_EQ(mappedLink["type"], std::get<0>(links[i])) << i;
        EXPECT_EQ(mappedLink["lag"], std::get<1>(links[i])) << i;
        EXPECT_EQ(mappedLink["isPercentage"], std::get<2>(links[i])) << i;
        EXPECT_EQ(mappedLink["taskID"], limitID);
        EXPECT_EQ(mappedLink["predecessorID"], lockedID);
    }
}

// A split task spans its pieces: its durations are their sums, and each of its assignments gets one
// phase per piece, shifted by working seconds from the first piece's start and as long as the piece's
// working time, whatever its effort.
TEST(KVMSPEProjectMapperTest, SplitTasksResourcesAndGroups) {
    const auto piece = [](const std::string& id, const std::string& start, const std::string& end,
                          const std::string& extra) {
        return task(id, "<start-date>" + start + "</start-date><end-date>" + end +
                            "</end-date><duration>28800</duration><effort>28801.5</effort>" + extra);
    };
    const std::string lateStart = *KVMSPIUtilities::mppToTvnxDateTime(localInstant(2026, 2, 5, 13, 0, 42));
    const std::string resources =
        R"(<resource id="r1"><name>Ann</name><type>Staff</type><units-available>0.5</units-available></resource>)"
        R"(<resource id="r2"><type>Group</type><child-resource idref="r3"/></resource>)"
        R"(<resource id="r3"><name>Bob</name><type>Staff</type></resource>)";
    const OrderedJSON project = mapped(
        scenario({"t1"},
                 resources +
                     task("t1",
                          "<title>Split</title><split/><effort>28800</effort><end-date>" +
                              februaryText(10, 17) + "</end-date>" +
                              R"(<child-task idref="t2"/><child-task idref="t3"/><child-task idref="t4"/>)") +
                     piece("t2", februaryText(2, 8), februaryText(2, 17),
                           R"(<assignment idref="r1" units="1"/><assignment idref="r3" units="3"/>)") +
                     piece("t3", lateStart, februaryText(6, 12), "") +
                     piece("t4", februaryText(10, 8), februaryText(10, 17), ""),
                 "", {"r1", "r2"}),
        3);

    const OrderedJSON split = taskTitled(project, "Split");
    EXPECT_EQ(split["hasSplits"], true);
    EXPECT_EQ(split["duration"], 3 * 28800.0);
    EXPECT_EQ(split["start"], printed(2, 8));
    EXPECT_EQ(split["finish"], printed(10, 17));
    EXPECT_EQ(project["tasks"].size(), 2u) << "pieces are no tasks of the outline";
    EXPECT_EQ(project["baselineSaveDates"], 3);

    // The dummy resource first, then the staff; the unnamed group gives its member its name.
    const OrderedJSON& mappedResources = project["resources"];
    ASSERT_EQ(mappedResources.size(), 3u);
    EXPECT_EQ(mappedResources[0]["ID"], 0);
    EXPECT_EQ(mappedResources[1]["name"], "Ann");
    EXPECT_EQ(mappedResources[1]["maxUnits"], 0.5);
    EXPECT_EQ(mappedResources[2]["name"], "Bob");
    EXPECT_EQ(mappedResources[2]["group"], "Anonymous_Group_1");
    EXPECT_EQ(mappedResources[1]["calendarID"], project["calendars"][1]["ID"]);

    // Work of one resource type is shared in the ratio of the units; actual work is not shared.
    const OrderedJSON& assignments = project["assignments"];
    ASSERT_EQ(assignments.size(), 2u);
    EXPECT_EQ(assignments[0]["resourceID"], mappedResources[1]["ID"]);
    EXPECT_EQ(assignments[1]["resourceID"], mappedResources[2]["ID"]);
    EXPECT_EQ(assignments[0]["work"], 28800.0 / 4);
    EXPECT_EQ(assignments[1]["work"], 28800.0 * 3 / 4);
    EXPECT_EQ(assignments[1]["units"], 30000.0);
    for (const OrderedJSON& assignment : assignments) {
        // Monday 08:00 to Thursday 13:00:42 is three days, a morning and 42 seconds; to Friday noon a
        // day more; the next Tuesday's start five days and a morning after Monday's start.
        constexpr int kMinute = 60;
        const OrderedJSON phases = {
            {{"startShift", 0}, {"finishShift", 480 * kMinute}, {"work", 28800.0}, {"workPerDay", 160000.0}},
            {{"startShift", 1680 * kMinute + 42},
             {"finishShift", 2160 * kMinute},
             {"work", 28800.0},
             {"workPerDay", 160000.0}},
            {{"startShift", 2880 * kMinute},
             {"finishShift", 3360 * kMinute},
             {"work", 28800.0},
             {"workPerDay", 160000.0}}};
        EXPECT_EQ(assignment["phases"], phases);
    }
}

// What post-processing refuses, and the outline it builds from levels.
TEST(KVMSPEProjectMapperTest, PostProcessingChecks) {
    EXPECT_EQ(mappingFailure(scenario(
                  {}, R"(<resource id="r1"><name>Standard</name><type>Staff</type></resource>)", "", {"r1"})),
              "Only standard project calendar may have and must have name \"Standard\".");

    const auto parents = [](const std::vector<uint64_t>& levels) {
        KVMPPProject::List<KVMPPTask> tasks;
        for (const uint64_t level : levels) {
            tasks.push_back(std::make_shared<KVMPPTask>());
            tasks.back()->ID = tasks.size();
            tasks.back()->outlineLevel = level;
        }
        MSPEProjectPostProcessor::makeTaskTreeFromTasks(tasks);
        std::vector<uint64_t> result;
        for (const auto& task : tasks) {
            result.push_back(task->parent ? task->parent->ID : 0);
        }
        return result;
    };
    EXPECT_EQ(parents({0, 1, 2, 1, 0, 1}), (std::vector<uint64_t>{0, 1, 2, 1, 0, 5}));
    std::string failure;
    try {
        parents({0, 2});
    } catch (const TVException& exception) {
        failure = exception.reason();
    }
    EXPECT_EQ(failure, "Broken list levels: taskLevel=2 maxLevel=0");
}

// What the bundle leaves to the planning application to compute: a task's duration is its effort over
// its staff's units, its end follows from its start by working time, and a group spans its members.
TEST(KVMSPEProjectMapperTest, UnstatedDatesAndDurations) {
    const std::string staff = R"(<resource id="r1"><name>Ann</name><type>Staff</type></resource>)"
                              R"(<resource id="r2"><name>Cem</name><type>Material</type></resource>)";
    const OrderedJSON project = mapped(scenario(
        {"t1"},
        staff +
            task(
                "t1",
                R"(<title>Group</title><type>group</type><child-task idref="t2"/><child-task idref="t3"/>)") +
            task("t2", "<title>Pair</title><type>task</type><leveled-start>" + februaryText(2, 13) +
                           "</leveled-start><effort>57600</effort>"
                           R"(<assignment idref="r1" units="1"/><assignment idref="r1" units="1"/>)"
                           R"(<assignment idref="r2" units="5"/>)") +
            task("t3", "<title>Done</title><type>milestone</type><leveled-start>" + februaryText(3, 17) +
                           "</leveled-start><effort>0</effort>"),
        "", {"r1", "r2"}));
    const OrderedJSON pair = taskTitled(project, "Pair");
    EXPECT_EQ(pair["duration"], 28800.0);
    EXPECT_EQ(pair["start"], printed(2, 13));
    EXPECT_EQ(pair["finish"], printed(3, 12));
    const OrderedJSON done = taskTitled(project, "Done");
    EXPECT_EQ(done["duration"], 0.0);
    EXPECT_EQ(done["finish"], printed(3, 17));
    const OrderedJSON group = taskTitled(project, "Group");
    EXPECT_EQ(group["start"], printed(2, 13));
    EXPECT_EQ(group["finish"], printed(3, 17));
    EXPECT_EQ(project["tasks"][0]["finish"], printed(3, 17));
}
