#include "MPPImporter/format/MPPMemRead.h"

#include "MPPCommon/support/TVException.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

constexpr double kDay = 86400;

std::vector<uint8_t> utf16Bytes(const std::u16string& text) {
    std::vector<uint8_t> bytes;
    for (char16_t unit : text) {
        bytes.push_back(static_cast<uint8_t>(unit & 0xFF));
        bytes.push_back(static_cast<uint8_t>(unit >> 8));
    }
    return bytes;
}

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

TEST(MPPMemRead, TimeIsTenthsOfAMinuteAsMicroseconds) {
    const uint8_t bytes[] = {0x58, 0x02, 0xFF, 0xFF};
    EXPECT_EQ(memReadTime(bytes, 0), 3600 * kMicrosecondsPerSecond);
    EXPECT_EQ(memReadTime(bytes, 2), 65535 * 6 * kMicrosecondsPerSecond);
}

TEST(MPPMemRead, DatesCountDaysFromTheEpochAsSigned16Bit) {
    const uint8_t bytes[] = {0x00, 0x00, 0x01, 0x00, 0xFE, 0xFF, 0xFF, 0xFF, 0x00, 0x80};
    EXPECT_EQ(memReadDate(bytes, 0), getMPPEpoch());
    EXPECT_EQ(memReadDate(bytes, 2), TVDate::fromUnixSeconds(441763200)); // 1984-01-01
    EXPECT_EQ(memReadDate(bytes, 4), getMPPEpoch().addingSeconds(-2 * kDay));
    EXPECT_EQ(memReadDate(bytes, 6), std::nullopt);
    // -32768 days overflow the 32-bit seconds and wrap, as the format's own arithmetic does.
    EXPECT_EQ(memReadDate(bytes, 8), getMPPEpoch().addingSeconds(-32768 * kDay + 4294967296.0));
}

TEST(MPPMemRead, TimestampIsTimeWordThenDayWordAndNullIfEitherIsFFFF) {
    const uint8_t bytes[] = {0x58, 0x02, 0x01, 0x00, 0xFF, 0xFF, 0x01, 0x00, 0x58, 0x02, 0xFF, 0xFF};
    EXPECT_EQ(memReadTimestamp(bytes, 0), getMPPEpoch().addingSeconds(kDay + 3600));
    EXPECT_EQ(memReadTimestamp(bytes, 4), std::nullopt);
    EXPECT_EQ(memReadTimestamp(bytes, 8), std::nullopt);
}

TEST(MPPMemRead, ByteArrayMayOverlapItsSource) {
    uint8_t bytes[] = {1, 2, 3, 4, 5};
    memReadByteArray(bytes + 1, bytes, 0, 4);
    EXPECT_EQ(std::vector<uint8_t>(bytes, bytes + 5), (std::vector<uint8_t>{1, 1, 2, 3, 4}));
}

TEST(MPPMemRead, UnicodeReadsUTF16UpToNulOrEndAndCountsUnits) {
    auto bytes = utf16Bytes(u"Ab\U0001F600\0tail");
    std::string text = "x";
    EXPECT_EQ(memReadUnicode(text, bytes.data(), 0, static_cast<int32_t>(bytes.size())), 4);
    EXPECT_EQ(text, "xAb\xF0\x9F\x98\x80");

    // No NUL before the end: the text stops at the end, and an odd last byte is left out.
    auto unterminated = utf16Bytes(u"Name");
    std::string name;
    EXPECT_EQ(memReadUnicode(name, unterminated.data(), 2, 7), 2);
    EXPECT_EQ(name, "am");
}

TEST(MPPMemRead, UnicodeTakesThePlainTextOfAnRtfDocument) {
    const std::string rtf = "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0 First\\par Second}";
    std::string text;
    int32_t added = memReadUnicode(text, reinterpret_cast<const uint8_t*>(rtf.data()), 0,
                                   static_cast<int32_t>(rtf.size()));
    EXPECT_EQ(text, "First\nSecond");
    EXPECT_EQ(added, 12);
}

TEST(MPPMemRead, UnicodeRefusesAnEmptyRange) {
    const uint8_t bytes[] = {'a', 0};
    std::string text;
    EXPECT_THROW(memReadUnicode(text, bytes, 2, 2), TVException);
}

} // namespace
