#include "MPPImporter/format/MPPExtendedFieldBlock.h"

#include "MPPImporter/format/MPPValueCodecs.h"

#include <gtest/gtest.h>

namespace {

constexpr uint32_t kCostField = 0x0B4001E4;
constexpr uint32_t kDurationField = 0x0B4001E7;
constexpr uint32_t kStartField = 0x0B4001E2;

// Little-endian bytes of the numbers given, each of its own width.
template <typename... Numbers>
std::vector<uint8_t> bytesOf(Numbers... numbers) {
    std::vector<uint8_t> bytes;
    const auto append = [&bytes](auto number) {
        bytes.resize(bytes.size() + sizeof number);
        encodeMPPNumber(number, std::span(bytes).last(sizeof number));
    };
    (append(numbers), ...);
    return bytes;
}

// Three fields as a format 9 task saves them: cost 2.5 at 32, duration 4800 at 40, and a start of
// 08:00 on day 11000 at 44.
std::vector<uint8_t> threeFields() {
    return bytesOf(48u, 3u, kCostField, 32u, kDurationField, 40u, kStartField, 44u, 2.5, 4800u,
                   uint16_t{4800}, uint16_t{11000});
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
    EXPECT_FALSE(MPPExtendedFieldBlock(bytesOf(16u, 1u, kCostField, 0xFFFFFFF0u)).doubleValue(kCostField));
    const auto endless = bytesOf(16u, 0xFFFFFFFFu, kDurationField, 0u);
    EXPECT_EQ(MPPExtendedFieldBlock(endless).intValue(kDurationField), 16);
    EXPECT_FALSE(MPPExtendedFieldBlock(endless).intValue(kCostField));
    EXPECT_FALSE(MPPExtendedFieldBlock({1, 0, 0}).intValue(kCostField));
}

TEST(MPPExtendedFieldBlock, NullDateIsNoValue) {
    const auto nullDate = bytesOf(20u, 1u, kStartField, 16u, 0xFFFFFFFFu);
    EXPECT_FALSE(MPPExtendedFieldBlock(nullDate).timestampValue(kStartField));
}

} // namespace
