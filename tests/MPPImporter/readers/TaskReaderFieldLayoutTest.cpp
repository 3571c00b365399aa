#include "MPPCommon/support/Log.h"
#include "MPPImporter/file/KVMSPIMPP15PropertyList.h"
#include "MPPImporter/readers/KVMSPIMPPTaskReader.h"
#include "TaskReaderFixture.h"

#include <gtest/gtest.h>

namespace {

constexpr TVTimeSpan kHour = 3600LL * 1000000;

TVDate mppDate(int day, int tenthsOfMinute) {
    return getMPPEpoch().addingSeconds(day * 86400.0 + tenthsOfMinute * 6.0);
}

class TaskReaderFieldLayoutTest : public ::testing::Test {
protected:
    TaskReaderFieldLayoutTest() {
        tvSetLogSink([](const std::string&) {});
    }
    ~TaskReaderFieldLayoutTest() override { tvSetLogSink(nullptr); }
};

// A manually scheduled task as application 14 saves it: the dates that the scheduler would give it
// at 64 and 68, its own start at 106 with the finish at 8, and its work done so far at 134.
TEST_F(TaskReaderFieldLayoutTest, ApplicationFourteenKeepsTheStartApartFromTheScheduledDates) {
    FixtureTask task;
    task.uid = 1;
    task.id = 1;
    task.data = {{8, mppTimestamp(11700, 10200)},
                 {64, mppTimestamp(11766, 4800)},
                 {68, mppTimestamp(11779, 10200)},
                 {106, mppTimestamp(11689, 4800)},
                 {114, mppTimestamp(0xFFFF, 0xFFFF)},
                 {126, leDouble(4.8e6)},
                 {134, leDouble(1.2e6)},
                 {184, leDouble(9e6)}};
    const TaskPlanFixture plan({task}, TaskPlanFixture::propsStream({}));
    KVMSPIMPPTaskReader& tasks = plan.tasks();

    for (const auto read : {&KVMSPIMPPTaskReader::taskStart, &KVMSPIMPPTaskReader::taskManualStart,
                            &KVMSPIMPPTaskReader::taskEarlyStart}) {
        TVDate date;
        ASSERT_TRUE((tasks.*read)(1, date, nullptr));
        EXPECT_EQ(date, mppDate(11689, 4800));
    }
    for (const auto read : {&KVMSPIMPPTaskReader::taskFinish, &KVMSPIMPPTaskReader::taskManualFinish,
                            &KVMSPIMPPTaskReader::taskEarlyFinish}) {
        TVDate date;
        ASSERT_TRUE((tasks.*read)(1, date, nullptr));
        EXPECT_EQ(date, mppDate(11700, 10200));
    }
    TVTimeSpan work = 0;
    ASSERT_TRUE(tasks.taskActualWork(1, work));
    EXPECT_EQ(work, 20 * kHour);
    ASSERT_TRUE(tasks.taskWork(1, work));
    EXPECT_EQ(work, 80 * kHour);
}

// Applications 15 and 16 mark an effort-driven task with bit 3 of the meta byte at 13; bit 4 there,
// the mark of the older layouts, is set on tasks that are not effort driven.
TEST_F(TaskReaderFieldLayoutTest, ApplicationFifteenMarksEffortDrivenTasksOneBitLower) {
    std::vector<FixtureTask> tasks;
    for (const auto& [uid, mark] :
         std::vector<std::pair<int32_t, uint8_t>>{{1, 0x08}, {2, 0x10}, {3, 0x18}}) {
        FixtureTask task;
        task.uid = uid;
        task.id = uid;
        task.meta = {{13, {mark}}};
        tasks.push_back(task);
    }
    const TaskPlanFixture plan(tasks, TaskPlanFixture::propsStream({}), KVMSPIMPP15PropertyList::shared());

    for (const auto& [uid, expected] :
         std::vector<std::pair<int32_t, bool>>{{1, true}, {2, false}, {3, true}}) {
        bool effortDriven = !expected;
        ASSERT_TRUE(plan.tasks().taskEffortDriven(uid, effortDriven)) << "UID " << uid;
        EXPECT_EQ(effortDriven, expected) << "UID " << uid;
    }
}

} // namespace
