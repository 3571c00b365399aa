#include "MPPImporter/readers/MPPDefaultCalendarWeek.h"

#include "MPPImporter/file/KVMSPIPropsReader.h"
#include "MPPImporter/file/StreamFileFixture.h"

#include <gtest/gtest.h>

namespace {

constexpr uint32_t kWeekProperty = 40;

// A Props stream with one entry: `block` under `kWeekProperty`.
std::vector<uint8_t> propsWithWeekBlock(const std::vector<uint8_t>& block) {
    ByteWriter props;
    props.zeros(12).u16(1).u16(0);
    props.u32(static_cast<uint32_t>(block.size())).u32(kWeekProperty).u32(0).bytes(block);
    return props.data();
}

// A block of `size` bytes whose day record n holds the range count n + 1 at 60 * n + 2 from
// `firstDay`.
std::vector<uint8_t> weekBlock(size_t size, size_t firstDay) {
    std::vector<uint8_t> block(size);
    for (size_t day = 0; day < 7; ++day) {
        block[firstDay + 60 * day + 2] = static_cast<uint8_t>(day + 1);
    }
    return block;
}

class MPPDefaultCalendarWeekTest : public ::testing::Test {
protected:
    void SetUp() override { MPPDefaultCalendarWeek::forgetDefaultWeekBlock(); }
    void TearDown() override { MPPDefaultCalendarWeek::forgetDefaultWeekBlock(); }

    static void load(const std::vector<uint8_t>& block) {
        StreamFile file({{"Props", propsWithWeekBlock(block)}});
        KVMSPIPropsReader reader(file.stream("Props"));
        MPPDefaultCalendarWeek::loadDefaultWeekBlock(reader, kWeekProperty);
    }

    static std::optional<int16_t> rangeCount(int32_t dayIndex) {
        const auto day = MPPDefaultCalendarWeek::dayRecord(dayIndex);
        return day ? day->readShort(2) : std::nullopt;
    }
};

TEST_F(MPPDefaultCalendarWeekTest, DayRecordsLieAt60BytesEachFromTheBlocksStart) {
    EXPECT_FALSE(MPPDefaultCalendarWeek::hasDefaultWorkingHours());
    EXPECT_FALSE(rangeCount(0));
    load(weekBlock(420, 0));
    ASSERT_TRUE(MPPDefaultCalendarWeek::hasDefaultWorkingHours());
    for (int32_t day = 0; day < 7; ++day) {
        EXPECT_EQ(rangeCount(day), day + 1) << day;
    }
    EXPECT_FALSE(rangeCount(7));
}

TEST_F(MPPDefaultCalendarWeekTest, AHeadBeforeTheRecordsIsNotSkipped) {
    load(weekBlock(424, 4));
    for (int32_t day = 0; day < 7; ++day) {
        const auto record = MPPDefaultCalendarWeek::dayRecord(day);
        ASSERT_TRUE(record) << day;
        EXPECT_EQ(record->readShort(2), 0) << day;
        EXPECT_EQ(record->readShort(6), day + 1) << day;
    }
}

TEST_F(MPPDefaultCalendarWeekTest, TheFirstBlockLoadedStaysUntilForgotten) {
    load(weekBlock(420, 0));
    load(weekBlock(420, 4));
    EXPECT_EQ(rangeCount(6), 7);
    MPPDefaultCalendarWeek::forgetDefaultWeekBlock();
    EXPECT_FALSE(MPPDefaultCalendarWeek::hasDefaultWorkingHours());
    load(weekBlock(420, 4));
    EXPECT_EQ(rangeCount(6), 0) << "the second block's count lies 4 bytes further on";
}

} // namespace
