#include "MPPImporter/readers/KVMSPIMPPTaskReader.h"

#include "MPPCommon/date/DateTestSupport.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/file/KVMSPIMPP14PropertyList.h"
#include "MPPImporter/readers/KVMSPIMPPProjectReader.h"
#include "MPPImporter/readers/KVMSPISingleExtendedAttribute.h"
#include "MPPImporter/readers/KVMSPISingleTaskReader.h"
#include "TaskReaderFixture.h"

#include <gtest/gtest.h>

namespace {

// Offsets and property numbers of the format 14 task layout.
constexpr int32_t kParentOffset = 36;
constexpr int32_t kOutlineLevelOffset = 40;
constexpr int32_t kDurationOffset = 42;
constexpr int32_t kStartOffset = 106;
constexpr int32_t kWorkOffset = 126;
constexpr int32_t kCostOffset = 150;
constexpr int32_t kMilestoneMetaOffset = 8;
constexpr int32_t kEffortDrivenMetaOffset = 11;
constexpr int32_t kFlag1MetaOffset = 35;
constexpr int32_t kNameProperty = 14;
constexpr int32_t kBaseline0CostProperty = 6;
constexpr int32_t kBaseline0DurationProperty = 27;
constexpr int32_t kBaseline0StartProperty = 43;
constexpr int32_t kBaseline0WorkProperty = 1;
constexpr int32_t kBaseline1CostProperty = 484;
constexpr int32_t kBaseline2StartProperty = 493;

int32_t firstProperty(std::span<const MPPCustomFieldRecord> table) {
    return static_cast<int32_t>(table.front().propertyNumber);
}

FixtureTask fixtureTask(int32_t uid, int32_t id) {
    FixtureTask task;
    task.uid = uid;
    task.id = id;
    return task;
}

class QuietLog : public ::testing::Test {
protected:
    QuietLog() {
        tvSetLogSink([](const std::string&) {});
    }
    ~QuietLog() override { tvSetLogSink(nullptr); }
};

// UID 0 summarises the plan and holds no baseline. UID 7 (ID 2) is a child of UID 0 with stored
// values, baseline 0 values, a baseline 1 cost alone, a baseline 2 start and custom fields; UID 3
// (ID 1), a child of UID 7, has neither baseline nor custom values.
std::vector<FixtureTask> plan() {
    const KVMSPIMPPPropertyList& list = KVMSPIMPP14PropertyList::shared();
    FixtureTask top = fixtureTask(0, 0);
    top.data[kParentOffset] = le32(0xFFFFFFFF);
    FixtureTask seven = fixtureTask(7, 2);
    seven.data = {{kParentOffset, le32(0)},        {kOutlineLevelOffset, le16(1)},
                  {kDurationOffset, le32(4800)},   {kStartOffset, mppTimestamp(11000, 4800)},
                  {kWorkOffset, leDouble(960000)}, {kCostOffset, leDouble(123456)}};
    seven.meta = {
        {kMilestoneMetaOffset, {0x63}}, {kEffortDrivenMetaOffset, {0x10}}, {kFlag1MetaOffset, {0x40}}};
    seven.var = {{kNameProperty, {'S', 0, 'e', 0, 'v', 0, 'e', 0, 'n', 0, 0, 0}},
                 {kBaseline0CostProperty, leDouble(1250)},
                 {kBaseline0DurationProperty, le32(2400)},
                 {kBaseline0StartProperty, mppTimestamp(10990, 4800)},
                 {kBaseline0WorkProperty, leDouble(720000)},
                 {kBaseline1CostProperty, leDouble(700)},
                 {kBaseline2StartProperty, mppTimestamp(10980, 4800)},
                 {firstProperty(list.taskDurationCustomFields()), le32(4800)},
                 {firstProperty(list.taskNumberCustomFields()), leDouble(2.5)},
                 // A text field that refers to outline code 9, in a plan without an outline code store.
                 {firstProperty(list.taskTextCustomFields()), {0x00, 0x07, 9, 0, 0, 0}},
                 {firstProperty(list.taskOutlineCodeCustomFields()), {0, 0, 9, 0, 0, 0}}};
    FixtureTask three = fixtureTask(3, 1);
    three.data = {{kParentOffset, le32(7)}, {kOutlineLevelOffset, le16(2)}};
    three.meta = {{kMilestoneMetaOffset, {0x02}}, {kFlag1MetaOffset, {0x80}}};
    return {top, seven, three};
}

class KVMSPIMPPTaskReaderTest : public QuietLog {
protected:
    KVMSPIMPPTaskReaderTest() : m_plan(plan(), TaskPlanFixture::propsStream({})) {}

    KVMSPIMPPTaskReader& tasks() { return m_plan.tasks(); }

    TaskPlanFixture m_plan;
};

TEST_F(KVMSPIMPPTaskReaderTest, TasksComeInIDOrderWithTheirOutline) {
    EXPECT_EQ(tasks().uniqueIDs(), (std::vector<int32_t>{0, 3, 7}));
    EXPECT_EQ(tasks().parentTaskMap(), (std::unordered_map<int32_t, int32_t>{{7, 0}, {3, 7}}));
    bool summary = false;
    for (const auto& [uid, expected] : std::map<int32_t, bool>{{0, true}, {7, true}, {3, false}}) {
        EXPECT_TRUE(tasks().taskSummary(uid, summary));
        EXPECT_EQ(summary, expected) << "UID " << uid;
    }
}

TEST_F(KVMSPIMPPTaskReaderTest, StoredValuesAreConvertedToTheirUnits) {
    TVTimeSpan span = 0;
    ASSERT_TRUE(tasks().taskDuration(7, span));
    EXPECT_EQ(span, 8 * kHour);
    ASSERT_TRUE(tasks().taskWork(7, span));
    EXPECT_EQ(span, 16 * kHour);
    TVDate date;
    ASSERT_TRUE(tasks().taskStart(7, date));
    EXPECT_EQ(date, mppDate(11000, 4800));
    std::string name = "Task ";
    ASSERT_TRUE(tasks().taskName(7, name));
    EXPECT_EQ(name, "Task Seven");
    double cost = 0;
    ASSERT_TRUE(tasks().taskCost(7, cost));
    EXPECT_DOUBLE_EQ(cost, 1234.56);
    EXPECT_FALSE(tasks().taskName(3, name));
}

TEST_F(KVMSPIMPPTaskReaderTest, MetaFlagsUseTheirMasksAndMarks) {
    bool value = false;
    ASSERT_TRUE(tasks().taskMilestone(7, value));
    EXPECT_TRUE(value);
    // Bit 5 marks a milestone in format 14; bit 1 is the mark of applications 15 and 16.
    ASSERT_TRUE(tasks().taskMilestone(3, value));
    EXPECT_FALSE(value);
    ASSERT_TRUE(tasks().taskEffortDriven(7, value));
    EXPECT_TRUE(value);
    ASSERT_TRUE(tasks().taskEffortDriven(3, value));
    EXPECT_FALSE(value);
    // Flags 1 and 2 share a byte: 0x40 is flag 1, 0x80 flag 2.
    ASSERT_TRUE(tasks().taskFlag(1, 7, value));
    EXPECT_TRUE(value);
    ASSERT_TRUE(tasks().taskFlag(2, 7, value));
    EXPECT_FALSE(value);
    ASSERT_TRUE(tasks().taskFlag(1, 3, value));
    EXPECT_FALSE(value);
    ASSERT_TRUE(tasks().taskFlag(2, 3, value));
    EXPECT_TRUE(value);
    TVError error;
    EXPECT_FALSE(tasks().taskFlag(0, 7, value, &error));
    EXPECT_FALSE(tasks().taskFlag(21, 7, value, &error));
    EXPECT_TRUE(error.domain.empty());
}

TEST_F(KVMSPIMPPTaskReaderTest, BaselinesAreFoundByTheDataOfEachTask) {
    // The summary task marks none of them, yet baselines 0 and 2 are read; baseline 1 holds a cost
    // alone, which is no baseline data without a start, a finish or a duration.
    EXPECT_EQ(tasks().readersForBaseline(0).size(), 1U);
    EXPECT_TRUE(tasks().readersForBaseline(1).empty());
    EXPECT_EQ(tasks().readersForBaseline(2).count(7), 1U);
    EXPECT_THROW(tasks().readersForBaseline(11), TVException);

    auto has = [this](int32_t uid, int32_t number) {
        bool value = false;
        EXPECT_TRUE(tasks().hasBaseline(uid, number, value));
        return value;
    };
    EXPECT_TRUE(has(7, 0));
    EXPECT_FALSE(has(7, 1));
    EXPECT_TRUE(has(7, 2));
    EXPECT_FALSE(has(0, 0));
    EXPECT_FALSE(has(3, 2));
    bool value = false;
    EXPECT_FALSE(tasks().hasBaseline(7, 11, value));
    EXPECT_FALSE(tasks().hasBaseline(99, 0, value));
}

TEST_F(KVMSPIMPPTaskReaderTest, BaselineFieldsFollowTheSelectedBaseline) {

    m_plan.project().setBaselineNumber(0);
    EXPECT_EQ(tasks().baselineNumber(), 0);
    TVDate date;
    ASSERT_TRUE(tasks().taskStart(7, date));
    EXPECT_EQ(date, mppDate(10990, 4800));
    TVTimeSpan span = 0;
    ASSERT_TRUE(tasks().taskDuration(7, span));
    EXPECT_EQ(span, 4 * kHour);
    double cost = 0;
    ASSERT_TRUE(tasks().taskCost(7, cost));
    EXPECT_DOUBLE_EQ(cost, 12.5);
    // Baseline 0 keeps its own work, apart from the plan's 16 hours.
    ASSERT_TRUE(tasks().taskWork(7, span));
    EXPECT_EQ(span, 12 * kHour);
    EXPECT_FALSE(tasks().taskFinish(7, date));
    EXPECT_FALSE(tasks().taskStart(3, date));

    m_plan.project().setBaselineNumber(1);
    EXPECT_FALSE(tasks().taskStart(7, date));
    EXPECT_FALSE(tasks().taskCost(7, cost));
    m_plan.project().setBaselineNumber(2);
    ASSERT_TRUE(tasks().taskStart(7, date));
    EXPECT_EQ(date, mppDate(10980, 4800));
    m_plan.project().setBaselineNumber(-1);
    ASSERT_TRUE(tasks().taskStart(7, date));
    EXPECT_EQ(date, mppDate(11000, 4800));
}

TEST_F(KVMSPIMPPTaskReaderTest, CustomFieldsLeaveOutUnreadableAndOutlineCodeValues) {
    std::vector<std::unique_ptr<KVMSPISingleExtendedAttribute>> fields;
    ASSERT_TRUE(tasks().taskCustomFields(7, fields));
    ASSERT_EQ(fields.size(), 2U);
    const KVMSPIMPPPropertyList& list = KVMSPIMPP14PropertyList::shared();
    EXPECT_EQ(fields[0]->name(), list.taskNumberCustomFields().front().fieldName);
    EXPECT_DOUBLE_EQ(fields[0]->number(), 2.5);
    EXPECT_EQ(fields[0]->stringValue(), "2.500000");
    EXPECT_EQ(fields[1]->name(), list.taskDurationCustomFields().front().fieldName);
    EXPECT_EQ(fields[1]->duration(), 8 * kHour);
    EXPECT_THROW(fields[1]->number(), TVException);

    fields.clear();
    ASSERT_TRUE(tasks().taskCustomFields(3, fields));
    EXPECT_TRUE(fields.empty());
}

TEST_F(KVMSPIMPPTaskReaderTest, CustomFieldMarkedAsOutlineCodeNeedsTheOutlineCodeStore) {
    KVMPPVarDataReader& var = *tasks().varDataReader();
    const int32_t text = firstProperty(KVMSPIMPP14PropertyList::shared().taskTextCustomFields());
    std::string value;
    int32_t outlCode = -1;
    EXPECT_FALSE(m_plan.project().customFieldUnicodeValue(value, var, 7, text, &outlCode));
    EXPECT_EQ(outlCode, -1);
    double number = 0;
    const int32_t numberProperty = firstProperty(KVMSPIMPP14PropertyList::shared().taskNumberCustomFields());
    ASSERT_TRUE(m_plan.project().customFieldDoubleValue(number, var, 7, numberProperty, &outlCode));
    EXPECT_EQ(outlCode, 0);
}

TEST_F(KVMSPIMPPTaskReaderTest, SingleTaskReaderNeedsAValidTaskAndTheLinkStore) {
    try {
        KVMSPISingleTaskReader reader(99, tasks());
        FAIL() << "a reader of an unknown task was made";
    } catch (const TVException& exception) {
        EXPECT_NE(std::string(exception.what()).find("invalid UID=99 (may be deleted task)"),
                  std::string::npos);
    }
    // This plan has no constraint store, which every task reader needs for its links.
    EXPECT_THROW(KVMSPISingleTaskReader(7, tasks()), TVException);
}

class KVMSPIMPPProjectReaderTest : public QuietLog {};

// The properties are read by their catalogue rows (whose round trip FieldCatalogRoundTripTest checks);
// one that the stream lacks answers false, and stores that the plan lacks have no reader.
TEST_F(KVMSPIMPPProjectReaderTest, PropertiesAreReadByTheirRows) {
    const auto place = KVMSPIMPP14PropertyList::shared().fieldPlace(MPPField::projectMinutesPerDay, 14);
    ASSERT_TRUE(place);
    const TaskPlanFixture plan({FixtureTask{}}, TaskPlanFixture::propsStream({{place->position, le32(450)}}));
    KVMSPIMPPProjectReader& project = plan.project();
    int32_t minutes = 0;
    ASSERT_TRUE(project.propMinutesPerDay(minutes));
    EXPECT_EQ(minutes, 450);
    int16_t digits = 0;
    EXPECT_FALSE(project.propCurrencyDigits(digits));
    EXPECT_EQ(project.calendarReader(), nullptr);
    EXPECT_EQ(project.outlCodeReader(), nullptr);
}

} // namespace
