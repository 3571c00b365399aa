#include "MPPImporter/format/MPPExtendedFieldBlock.h"

#include "MPPImporter/file/StreamFileFixture.h"

#include <cstring>
#include <gtest/gtest.h>

namespace {

constexpr uint32_t kCostField = 0x0B4001E4;
constexpr uint32_t kDurationField = 0x0B4001E7;
constexpr uint32_t kStartField = 0x0B4001E2;

ByteWriter& putDouble(ByteWriter& writer, double value) {
    std::vector<uint8_t> bytes(sizeof value);
    std::memcpy(bytes.data(), &value, sizeof value);
    return writer.bytes(bytes);
}

// Three fields as a format 9 task saves them: cost 2.5 at 32, duration 4800 at 40, and a start of
// 08:00 on day 11000 at 44.
std::vector<uint8_t> threeFields() {
    ByteWriter writer;
    writer.u32(48).u32(3);
    writer.u32(kCostField).u32(32).u32(kDurationField).u32(40).u32(kStartField).u32(44);
    putDouble(writer, 2.5).u32(4800).u16(4800).u16(11000);
    return writer.data();
}

TEST(MPPExtendedFieldBlock, ValuesAreFoundByTheirFieldIDs) {
    const MPPExtendedFieldBlock block(threeFields());
    EXPECT_EQ(block.doubleValue(kCostField), 2.5);
    EXPECT_EQ(block.intValue(kDurationField), 4800);
    ASSERT_TRUE(block.timestampValue(kStartField));
    EXPECT_EQ(*block.timestampValue(kStartField), getMPPEpoch().addingSeconds(11000 * 86400.0 + 8 * 3600.0));
    EXPECT_FALSE(block.doubleValue(0x0B4001EF));
}

TEST(MPPExtendedFieldBlock, ReadsStayInsideTheBlock) {
    // A value that runs past the end, an offset beyond it, and a count larger than the entries.
    std::vector<uint8_t> bytes = threeFields();
    bytes.resize(46);
    EXPECT_FALSE(MPPExtendedFieldBlock(bytes).timestampValue(kStartField));
    EXPECT_EQ(MPPExtendedFieldBlock(bytes).intValue(kDurationField), 4800);
    ByteWriter beyond;
    beyond.u32(16).u32(1).u32(kCostField).u32(0xFFFFFFF0);
    EXPECT_FALSE(MPPExtendedFieldBlock(beyond.data()).doubleValue(kCostField));
    ByteWriter endless;
    endless.u32(16).u32(0xFFFFFFFF).u32(kDurationField).u32(0);
    EXPECT_EQ(MPPExtendedFieldBlock(endless.data()).intValue(kDurationField), 16);
    EXPECT_FALSE(MPPExtendedFieldBlock(endless.data()).intValue(kCostField));
    EXPECT_FALSE(MPPExtendedFieldBlock({1, 0, 0}).intValue(kCostField));
}

TEST(MPPExtendedFieldBlock, NullDateIsNoValue) {
    ByteWriter writer;
    writer.u32(20).u32(1).u32(kStartField).u32(16).u16(0xFFFF).u16(0xFFFF);
    EXPECT_FALSE(MPPExtendedFieldBlock(writer.data()).timestampValue(kStartField));
}

} // namespace
