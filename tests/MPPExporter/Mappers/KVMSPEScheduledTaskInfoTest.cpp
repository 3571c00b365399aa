#include "MPPExporter/Mappers/KVMSPEScheduledTaskInfo.h"

#include "MPPCommon/date/DateTestSupport.h"
#include "MPPCommon/support/TVException.h"

#include <gtest/gtest.h>

namespace {

KVMSPEScheduledTaskInfo infoOf(const std::string& xml) {
    TVError error;
    const auto task = KVMSPCXMLElement::initWithXMLString(xml, &error);
    EXPECT_TRUE(task) << xml;
    return KVMSPEScheduledTaskInfo(*task);
}

using ScheduledTaskInfoZoneTest = ZoneTest;

TEST_P(ScheduledTaskInfoZoneTest, ReadsDatesNumbersAndWordsOfATask) {
    const auto info =
        infoOf("<task id='t5'><type>task</type><schedule-type>alap</schedule-type>"
               "<leveled-start>2026-02-03T09:00:00Z</leveled-start><priority>700</priority>"
               "<effort>57600.00</effort><effort-done>14400</effort-done>"
               "<locked-end-date>2026-02-06T17:00:00+01:00</locked-end-date>"
               "<recalculate>units</recalculate>"
               "<start-no-earlier-than>2026-02-02T08:00:00Z</start-no-earlier-than>"
               "<end-no-earlier-than>2026-02-09T08:00:00Z</end-no-earlier-than>"
               "<end-no-later-than>2026-02-10T17:00:00Z</end-no-later-than>"
               "<start-date>2026-02-02T08:00:00Z</start-date><end-date>2026-02-04T17:00:00Z</end-date>"
               "<duration>28800.00</duration><actual-duration>7200</actual-duration>"
               "<elapsed-leveling-delay>3600</elapsed-leveling-delay><total-cost>12.5</total-cost>"
               "<cost-done>3</cost-done></task>");
    EXPECT_EQ(info.uid(), "t5");
    EXPECT_EQ(info.taskType(), 0);
    EXPECT_EQ(info.scheduleType(), 2);
    EXPECT_EQ(info.recalculate(), 2);
    EXPECT_EQ(info.priority(), 700);
    EXPECT_EQ(info.startDate(), utcInstant(2026, 2, 2, 8));
    EXPECT_EQ(info.endDate(), utcInstant(2026, 2, 4, 17));
    EXPECT_EQ(info.leveledStart(), utcInstant(2026, 2, 3, 9));
    EXPECT_EQ(info.lockedEndDate(), utcInstant(2026, 2, 6, 16));
    EXPECT_FALSE(info.lockedStartDate() || info.preleveledStart() || info.preleveledFinish());
    // The start form of a limit wins; the end form counts where there is no start form.
    EXPECT_EQ(info.noEarlierThanConstraintDate(), utcInstant(2026, 2, 2, 8));
    EXPECT_EQ(info.noEarlierThanConstrainedTaskEnd(), 0);
    EXPECT_EQ(info.noLaterThanConstraintDate(), utcInstant(2026, 2, 10, 17));
    EXPECT_EQ(info.noLaterThanConstrainedTaskEnd(), 1);
    EXPECT_EQ(info.effort(), 57600.0);
    EXPECT_EQ(info.effortDone(), 14400.0);
    EXPECT_EQ(info.workPercentCompletion(), 0.25);
    EXPECT_EQ(info.duration(), 28800.0);
    EXPECT_EQ(info.actualDuration(), 7200.0);
    EXPECT_EQ(info.remainingDuration(), 21600.0);
    EXPECT_EQ(info.percentCompletion(), 0.25);
    EXPECT_EQ(info.levelingDelay(), 3600.0);
    EXPECT_EQ(info.totalCost(), 12.5);
    EXPECT_EQ(info.costDone(), 3.0);
    EXPECT_FALSE(info.childTaskUIDs());
}

INSTANTIATE_TEST_SUITE_P(Zones, ScheduledTaskInfoZoneTest, ::testing::ValuesIn(kTestZones));

TEST(KVMSPEScheduledTaskInfoTest, MissingRepeatedAndUnknownValuesFallBack) {
    // Work done without a planned amount gives no share rather than an infinite one.
    const auto bare =
        infoOf("<task id='t1'><type>phase</type><recalculate>work</recalculate>"
               "<schedule-type>fixed</schedule-type><priority>1</priority><priority>2</priority>"
               "<actual-duration>600</actual-duration><effort-done>60</effort-done></task>");
    EXPECT_EQ(bare.taskType(), 0);
    EXPECT_EQ(bare.recalculate(), 0);
    EXPECT_EQ(bare.scheduleType(), 0);
    EXPECT_EQ(bare.priority(), 0);
    EXPECT_EQ(bare.duration(), 0.0);
    EXPECT_EQ(bare.remainingDuration(), -600.0);
    EXPECT_EQ(bare.percentCompletion(), 0.0);
    EXPECT_EQ(bare.workPercentCompletion(), 0.0);
    EXPECT_FALSE(bare.startDate() || bare.endDate() || bare.noEarlierThanConstraintDate());
    EXPECT_TRUE(bare.constraints().empty());

    // A milestone reads its own share and no effort.
    const auto milestone = infoOf("<task id='t2'><type>milestone</type><effort>3600</effort>"
                                  "<completion-percentage>0.75</completion-percentage></task>");
    EXPECT_EQ(milestone.taskType(), 1);
    EXPECT_EQ(milestone.effort(), 0.0);
    EXPECT_EQ(milestone.completionPercentage(), 0.75);
    EXPECT_EQ(milestone.workPercentCompletion(), 0.75);

    try {
        infoOf("<task><type>task</type></task>");
        ADD_FAILURE() << "a task without id was read";
    } catch (const TVException& exception) {
        EXPECT_EQ(exception.reason(), "Task attribute 'id' not found.");
    }
}

TEST(KVMSPEScheduledTaskInfoTest, LinksAndGroupMembers) {
    const auto info =
        infoOf("<task id='t9'><type>group</type><child-task idref='t10'/><child-task/>"
               "<child-task idref='t11'/>"
               "<prerequisite-task idref='t1'/>"
               "<prerequisite-task idref='t2' kind='SF' external='x'>"
               "<lead-time is-percentage='true'>0.5</lead-time></prerequisite-task>"
               "<prerequisite-task idref='t3' kind='SS'><is-resource-dependency>yes"
               "</is-resource-dependency><lead-time is-percentage='TRUE'>3600</lead-time>"
               "</prerequisite-task>"
               "<prerequisite-task idref='t4' kind='FF'/><prerequisite-task kind='XY'/></task>");
    EXPECT_EQ(info.taskType(), 2);
    EXPECT_EQ(info.childTaskUIDs(), (std::vector<std::string>{"t10", "t11"}));
    ASSERT_EQ(info.constraints().size(), 5u);
    ASSERT_EQ(info.prerequisites().size(), 5u);
    const struct {
        std::optional<std::string> prerequisite;
        int32_t constraintType;
        int32_t kind;
        double lag;
        bool isPercentage;
    } expected[] = {{"t1", 1, 0, 0, false},
                    {"t2", 2, 1, 0.5, true},
                    {"t3", 3, 2, 3600, false},
                    {"t4", 0, 3, 0, false},
                    {std::nullopt, 1, 0, 0, false}};
    for (size_t index = 0; index < 5; ++index) {
        const KVMPPConstraint& constraint = info.constraints()[index];
        const auto& record = info.prerequisites()[index];
        EXPECT_EQ(constraint.task1ID, "t9") << index;
        EXPECT_EQ(constraint.task2ID, expected[index].prerequisite) << index;
        EXPECT_EQ(constraint.constraintType, expected[index].constraintType) << index;
        EXPECT_EQ(record.kind, expected[index].kind) << index;
        EXPECT_EQ(constraint.lag, expected[index].lag) << index;
        EXPECT_EQ(constraint.isPercentage, expected[index].isPercentage) << index;
        EXPECT_EQ(record.isResourceDependency, index == 2) << index;
    }
    EXPECT_EQ(info.prerequisites()[1].external, "x");

    // Child references count on a group only; a hammock is a kind of its own.
    const auto hammock = infoOf("<task id='t3'><type>hammock</type><child-task idref='t4'/></task>");
    EXPECT_EQ(hammock.taskType(), 3);
    EXPECT_FALSE(hammock.childTaskUIDs());
}

} // namespace
