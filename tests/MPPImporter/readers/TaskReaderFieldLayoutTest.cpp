#include "MPPCommon/date/DateTestSupport.h"
#include "MPPCommon/support/Log.h"
#include "MPPImporter/file/KVMSPIMPP14PropertyList.h"
#include "MPPImporter/file/KVMSPIMPP15PropertyList.h"
#include "MPPImporter/file/KVMSPIMPP16PropertyList.h"
#include "MPPImporter/readers/KVMSPIMPPTaskReader.h"
#include "TaskReaderFixture.h"

#include <gtest/gtest.h>
#include <tuple>

namespace {

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

// The marks of a task as each application writes them, with the bytes of real plans. Task 1 has every
// mark and task 2 none; task 2's bytes hold the marks of the other applications' layouts, and its
// Fixed2 meta byte 0x3F of application 15 is not the 0x7F of an automatically scheduled task.
struct MarkLayout {
    const KVMSPIMPPPropertyList* list;
    FixtureTask marked;
    FixtureTask unmarked;
};

FixtureTask taskWith(int32_t uid, std::map<int32_t, std::vector<uint8_t>> meta,
                     std::map<int32_t, std::vector<uint8_t>> data, uint8_t fixed2MetaMark) {
    FixtureTask task;
    task.uid = uid;
    task.id = uid;
    task.meta = std::move(meta);
    task.data = std::move(data);
    task.fixed2Meta = {{8, {fixed2MetaMark}}};
    return task;
}

TEST_F(TaskReaderFieldLayoutTest, EachApplicationKeepsTheTaskMarksInItsOwnBits) {
    const std::vector<MarkLayout> layouts = {
        {&KVMSPIMPP14PropertyList::shared(),
         taskWith(1, {{8, {0x23}}, {11, {0x10}}, {35, {0x40}}, {37, {0x01}}}, {{46, le16(53)}}, 0xCF),
         taskWith(2, {{8, {0x03}}, {11, {0x08}}, {35, {0x80}}, {10, {0xFF}}}, {{46, le16(21)}}, 0xC7)},
        {&KVMSPIMPP15PropertyList::shared(),
         taskWith(1, {{10, {0xFF}}, {13, {0x08}}, {24, {0x02}}, {33, {0x02}}}, {{164, le16(39)}}, 0xFF),
         taskWith(2, {{10, {0xFD}}, {13, {0x10}}, {24, {0x04}}, {35, {0x40}}}, {{164, le16(7)}}, 0x3F)},
        {&KVMSPIMPP16PropertyList::shared(),
         taskWith(1, {{10, {0xFF}}, {13, {0x18}}, {24, {0x02}}, {33, {0x02}}}, {{164, le16(35)}}, 0xFF),
         taskWith(2, {{10, {0xFD}}, {13, {0x10}}, {24, {0x04}}, {8, {0x23}}}, {{164, le16(21)}}, 0x7F)},
    };
    using Read = bool (KVMSPIMPPTaskReader::*)(int32_t, bool&, TVError*);
    const std::vector<std::pair<const char*, Read>> marks = {
        {"milestone", &KVMSPIMPPTaskReader::taskMilestone},
        {"effort-driven", &KVMSPIMPPTaskReader::taskEffortDriven},
        {"manual", &KVMSPIMPPTaskReader::taskManual},
        {"estimated", &KVMSPIMPPTaskReader::taskEstimated},
    };
    for (const MarkLayout& layout : layouts) {
        const TaskPlanFixture plan({layout.marked, layout.unmarked}, TaskPlanFixture::propsStream({}),
                                   *layout.list);
        KVMSPIMPPTaskReader& tasks = plan.tasks();
        const auto where = [&](const std::string& what, int32_t uid) {
            return what + " of task " + std::to_string(uid) + ", application " +
                   std::to_string(layout.list->mppVersion());
        };
        for (const auto& [name, read] : marks) {
            for (const int32_t uid : {1, 2}) {
                bool value = uid != 1;
                ASSERT_TRUE((tasks.*read)(uid, value, nullptr)) << where(name, uid);
                EXPECT_EQ(value, uid == 1) << where(name, uid);
            }
        }
        // Flags 1 and 11 are set on task 1, flag 2 on task 2.
        for (const auto& [uid, flag, expected] : std::vector<std::tuple<int32_t, int32_t, bool>>{
                 {1, 1, true}, {1, 2, false}, {1, 11, true}, {2, 1, false}, {2, 2, true}, {2, 11, false}}) {
            bool value = !expected;
            ASSERT_TRUE(tasks.taskFlag(flag, uid, value)) << where("flag", uid);
            EXPECT_EQ(value, expected) << where("flag " + std::to_string(flag), uid);
        }
    }
}

} // namespace
