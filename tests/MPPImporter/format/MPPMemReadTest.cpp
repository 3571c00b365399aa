#include "MPPImporter/format/MPPMemRead.h"

#include <gtest/gtest.h>
#include <vector>

namespace {

TEST(MPPMemRead, NumbersAreLittleEndianAtTheOffset) {
    const uint8_t bytes[] = {0xAA, 0xFE, 0xFF, 0x34, 0x12, 0xFF, 0xFF, 0xFF, 0x80};
    EXPECT_EQ(memReadByte(bytes, 1), -2);
    EXPECT_EQ(memReadUByte(bytes, 1), 0xFE);
    EXPECT_EQ(memReadShort(bytes, 1), -2);
    EXPECT_EQ(memReadUShort(bytes, 3), 0x1234);
    EXPECT_EQ(memReadInt(bytes, 5), static_cast<int32_t>(0x80FFFFFF));
    EXPECT_EQ(memReadUInt(bytes, 1), 0x1234FFFEu);
    EXPECT_EQ(LE_GET_UINT8(bytes + 8), 0x80);

    const uint8_t floats[] = {0, 0x00, 0x00, 0xC0, 0x3F, 0, 0, 0, 0, 0, 0, 0xF8, 0x3F};
    EXPECT_EQ(memReadFloat(floats, 1), 1.5f);
    EXPECT_EQ(memReadDouble(floats, 5), 1.5);
}

TEST(MPPMemRead, DurationsOfEveryWidth) {
    const uint8_t long6[] = {0x01, 0x00, 0x00, 0x00, 0x02, 0x00};
    EXPECT_EQ(memReadDurationLong6(long6, 0), (int64_t{2} << 32) + 1);
    const uint8_t negative6[] = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
    EXPECT_EQ(memReadDurationLong6(negative6, 0), -1);
    const uint8_t long8[] = {0x10, 0, 0, 0, 0x01, 0, 0, 0x80};
    EXPECT_EQ(memReadDurationLong(long8, 0), static_cast<int64_t>(0x8000000100000010ull));
    EXPECT_EQ(memReadDurationInt(long8, 4), static_cast<int32_t>(0x80000001));
    EXPECT_EQ(memReadDurationShort(negative6, 2), -1);
}

TEST(MPPMemRead, ByteArrayMayOverlapItsSource) {
    uint8_t bytes[] = {1, 2, 3, 4, 5};
    memReadByteArray(bytes + 1, bytes, 0, 4);
    EXPECT_EQ(std::vector<uint8_t>(bytes, bytes + 5), (std::vector<uint8_t>{1, 1, 2, 3, 4}));
}

} // namespace
