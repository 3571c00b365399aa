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

// The range counts of the seven days of the week read from `block` with `firstDayOffset`.
std::vector<std::optional<int16_t>> rangeCounts(const std::vector<uint8_t>& block, int32_t property,
                                                int32_t firstDayOffset) {
    StreamFile file({{"Props", propsWithWeekBlock(block)}});
    KVMSPIPropsReader reader(file.stream("Props"));
    const MPPDefaultCalendarWeek week(reader, property, firstDayOffset);
    std::vector<std::optional<int16_t>> counts;
    for (int32_t day = 0; day <= 7; ++day) {
        const auto record = week.dayRecord(day);
        counts.push_back(record ? record->readShort(2) : std::nullopt);
    }
    EXPECT_EQ(week.hasDefaultWorkingHours(), counts.front().has_value());
    return counts;
}

// Format 9 keeps the seven records 4 bytes into a 424-byte block, later formats at its start.
TEST(MPPDefaultCalendarWeekTest, DayRecordsFollowTheHeadOfTheFormat) {
    const std::vector<std::optional<int16_t>> week = {1, 2, 3, 4, 5, 6, 7, std::nullopt};
    EXPECT_EQ(rangeCounts(weekBlock(420, 0), kWeekProperty, 0), week);
    EXPECT_EQ(rangeCounts(weekBlock(424, 4), kWeekProperty, 4), week);
    const std::vector<std::optional<int16_t>> none(8);
    EXPECT_EQ(rangeCounts(weekBlock(420, 0), kWeekProperty + 1, 0), none) << "no such property";
    EXPECT_FALSE(MPPDefaultCalendarWeek().hasDefaultWorkingHours());
}

} // namespace
