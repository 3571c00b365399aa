#include "MPPImporter/text/WindowsCodePage.h"

#include "MPPImporter/text/UnicodeText.h"

#include <gtest/gtest.h>

TEST(WindowsCodePage, ConverterNamesExistForTheCodePagesOfPlanFiles) {
    for (int codePage : {874, 932, 936, 949, 950, 1200, 1250, 1251, 1252, 1253, 1254, 1255, 1256, 1257, 1258,
                         10000, 65001}) {
        std::string name = converterNameForCodePage(codePage);
        ASSERT_FALSE(name.empty()) << codePage;
        EXPECT_TRUE(utf8FromCodePage("abc", codePage == 1200 ? 1252 : codePage, InvalidBytes::fail)) << name;
    }
    EXPECT_EQ(converterNameForCodePage(0), "");
    EXPECT_EQ(converterNameForCodePage(-5), "");
    EXPECT_EQ(converterNameForCodePage(12345), "");
    EXPECT_FALSE(utf8FromCodePage("abc", 12345, InvalidBytes::replace).has_value());
}

TEST(WindowsCodePage, DecodesSingleAndMultiByteText) {
    EXPECT_EQ(utf8FromCodePage("caf\xE9 \x80", 1252, InvalidBytes::fail), "caf\u00E9 \u20AC");
    EXPECT_EQ(utf8FromCodePage("\xE8\x9A", 1250, InvalidBytes::fail), "\u010D\u0161");
    EXPECT_EQ(utf8FromCodePage("\x93\xFA\x96\x7B", 932, InvalidBytes::fail), "\u65E5\u672C");
    EXPECT_EQ(utf8FromCodePage("\xC4\xE3\xBA\xC3", 936, InvalidBytes::fail), "\u4F60\u597D");
    EXPECT_EQ(utf8FromCodePage("\xC7\xD1", 949, InvalidBytes::fail), "\uD55C");
    EXPECT_EQ(utf8FromCodePage("\xA4\xA4", 950, InvalidBytes::fail), "\u4E2D");
    EXPECT_EQ(utf8FromCodePage("\xC3\xA9", 65001, InvalidBytes::fail), "\u00E9");
    EXPECT_EQ(utf8FromCodePage(std::string_view("A\0\xAC\x20", 4), 1200, InvalidBytes::fail), "A\u20AC");
    EXPECT_EQ(utf8FromCodePage("", 1252, InvalidBytes::fail), "");
}

TEST(WindowsCodePage, InvalidBytesFailOrAreReplaced) {
    EXPECT_FALSE(utf8FromCodePage("a\xC3", 65001, InvalidBytes::fail).has_value());
    EXPECT_FALSE(utf8FromCodePage("\xFF\xFE\xFD", 65001, InvalidBytes::fail).has_value());
    EXPECT_EQ(utf8FromCodePage("a\xFF"
                               "b",
                               65001, InvalidBytes::replace),
              "a\uFFFD"
              "b");
    // A lead byte without its trail byte.
    EXPECT_FALSE(utf8FromCodePage("\x93", 932, InvalidBytes::fail).has_value());
}

TEST(UnicodeText, CountsAndConvertsUTF16Units) {
    EXPECT_EQ(utf16Length("a\u00E9\u20AC\U0001F600"), 5u);
    EXPECT_EQ(utf16FromUTF8("a\U0001F600"), u"a\U0001F600");
    EXPECT_EQ(utf8FromUTF16(u"a\U0001F600"), "a\U0001F600");
    EXPECT_EQ(utf16FromUTF8("a\xFF"), u"a\uFFFD");
    EXPECT_EQ(utf8FromUTF16(std::u16string(1, char16_t(0xDC00)) + u"x"), "\uFFFDx");
}
