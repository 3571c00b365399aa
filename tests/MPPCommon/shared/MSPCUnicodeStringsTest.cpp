#include "MPPCommon/shared/MSPCUnicodeStrings.h"

#include <gtest/gtest.h>

// Positions and lengths count UTF-16 units; the maximum is held against the whole length.
TEST(MSPCUnicodeStringsTest, TruncationCountsUTF16UnitsFromStart) {
    EXPECT_EQ(truncateUnicodeString("abcdef", 2, 3), "cde");
    EXPECT_EQ(truncateUnicodeString("abcdef", 4, 10), "ef");
    EXPECT_EQ(truncateUnicodeString("abcdef", 9, 2), "");
    EXPECT_EQ(truncateUnicodeString("\u00E9t\u00E9s", 0, 3), "\u00E9t\u00E9");
}

TEST(MSPCUnicodeStringsTest, TruncationWidensToWholeCharacterSequences) {
    EXPECT_EQ(truncateUnicodeString("cafe\u0301s", 0, 4), "cafe\u0301");
    EXPECT_EQ(truncateUnicodeString("cafe\u0301s", 4, 1), "e\u0301");
    EXPECT_EQ(truncateUnicodeString("a\U0001F600b", 0, 2), "a\U0001F600");
    EXPECT_EQ(truncateUnicodeString("a\U0001F600b", 2, 1), "\U0001F600");
    const std::string family = "\U0001F468\u200D\U0001F469\u200D\U0001F467"; // eight units, one character
    EXPECT_EQ(truncateUnicodeString(family + "x", 0, 3), family);
    EXPECT_EQ(truncateUnicodeString("\U0001F1EB\U0001F1F7\U0001F1E9\U0001F1EA", 0, 2),
              "\U0001F1EB\U0001F1F7");
}

TEST(MSPCUnicodeStringsTest, WidthsAndWideFormsCountCodeUnitsNotBytes) {
    const std::pair<const char*, size_t> spaces[] = {
        {"", 4}, {"a", 4}, {"ab", 8}, {"\u00E9", 4}, {"\U0001F600", 8}};
    for (const auto& [text, space] : spaces) {
        EXPECT_EQ(spaceAllocatedForUnicode(text), space) << text;
    }
    EXPECT_EQ(wcharFromString("a\U0001F600"), U"a\U0001F600");
    const char32_t wide[] = {U'a', 0x1F600, 0xD800, 0x110000, 0, U'z', 0};
    EXPECT_EQ(stringFromWchar(wide), "a\U0001F600\uFFFD\uFFFD");
    EXPECT_EQ(charFromString("ok\xFF"), "ok\uFFFD");
}
