#include "MPPImporter/file/MPPMemReadUnicode.h"

#include "MPPCommon/support/TVException.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

std::vector<uint8_t> utf16Bytes(const std::u16string& text) {
    std::vector<uint8_t> bytes;
    for (char16_t unit : text) {
        bytes.push_back(static_cast<uint8_t>(unit & 0xFF));
        bytes.push_back(static_cast<uint8_t>(unit >> 8));
    }
    return bytes;
}

TEST(MPPMemReadUnicode, UnicodeReadsUTF16UpToNulOrEndAndCountsUnits) {
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

TEST(MPPMemReadUnicode, UnicodeTakesThePlainTextOfAnRtfDocument) {
    const std::string rtf = "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0 First\\par Second}";
    std::string text;
    int32_t added = memReadUnicode(text, reinterpret_cast<const uint8_t*>(rtf.data()), 0,
                                   static_cast<int32_t>(rtf.size()));
    EXPECT_EQ(text, "First\nSecond");
    EXPECT_EQ(added, 12);
}

TEST(MPPMemReadUnicode, UnicodeRefusesAnEmptyRange) {
    const uint8_t bytes[] = {'a', 0};
    std::string text;
    EXPECT_THROW(memReadUnicode(text, bytes, 2, 2), TVException);
}

} // namespace
