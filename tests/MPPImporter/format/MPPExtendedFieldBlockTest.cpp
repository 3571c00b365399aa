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

// The 32-bit number of the field's value in the block; none when the block doesn't hold it whole.
std::optional<uint32_t> wordOf(const std::vector<uint8_t>& bytes, uint32_t fieldID) {
    const MPPExtendedFieldBlock block(bytes);
    const auto value = block.value(fieldID, 4);
    return value ? std::optional(decodeMPPNumber<uint32_t>(*value)) : std::nullopt;
}

TEST(MPPExtendedFieldBlock, ValuesAreFoundByTheirFieldIDs) {
    const MPPExtendedFieldBlock block(threeFields());
    ASSERT_TRUE(block.value(kCostField, 8));
    EXPECT_EQ(decodeMPPNumber<double>(*block.value(kCostField, 8)), 2.5);
    EXPECT_EQ(wordOf(threeFields(), kDurationField), 4800u);
    EXPECT_EQ(decodeMPPTimestamp(*block.value(kStartField, 4)),
              getMPPEpoch().addingSeconds(11000 * 86400.0 + 8 * 3600.0));
    EXPECT_FALSE(block.value(0x0B4001EF, 8));
}

TEST(MPPExtendedFieldBlock, ReadsStayInsideTheBlock) {
    // A value that runs past the end, an offset beyond it, and a count larger than the entries.
    std::vector<uint8_t> bytes = threeFields();
    bytes.resize(46);
    EXPECT_FALSE(wordOf(bytes, kStartField));
    EXPECT_EQ(wordOf(bytes, kDurationField), 4800u);
    EXPECT_FALSE(MPPExtendedFieldBlock(bytesOf(16u, 1u, kCostField, 0xFFFFFFF0u)).value(kCostField, 8));
    const auto endless = bytesOf(16u, 0xFFFFFFFFu, kDurationField, 0u);
    EXPECT_EQ(wordOf(endless, kDurationField), 16u);
    EXPECT_FALSE(wordOf(endless, kCostField));
    EXPECT_FALSE(wordOf({1, 0, 0}, kCostField));
}

} // namespace
