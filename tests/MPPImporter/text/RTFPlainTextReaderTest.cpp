#include "MPPImporter/text/RTFPlainTextReader.h"

#include <gtest/gtest.h>

namespace {

std::string textOf(std::string_view rtf) {
    auto text = RTFPlainTextReader::plainText(rtf);
    EXPECT_TRUE(text.has_value()) << rtf;
    return text.value_or("<no RTF>");
}

} // namespace

TEST(RTFPlainTextReader, RefusesBytesThatAreNoRTF) {
    EXPECT_FALSE(RTFPlainTextReader::plainText("").has_value());
    EXPECT_FALSE(RTFPlainTextReader::plainText("plain text").has_value());
    EXPECT_FALSE(RTFPlainTextReader::plainText(" {\\rtf1 x}").has_value());
    EXPECT_FALSE(RTFPlainTextReader::plainText("{\\rt").has_value());
    // A UTF-16 text that starts with a brace is no RTF either.
    EXPECT_FALSE(RTFPlainTextReader::plainText(std::string_view("{\0\\\0r\0t\0f\0", 10)).has_value());
    EXPECT_EQ(textOf("{\\rtf"), "");
}

TEST(RTFPlainTextReader, ParagraphsLinesTabsAndTables) {
    EXPECT_EQ(textOf("{\\rtf1\\ansi Line one\\par Line two\\line three\\tab end\\par}"),
              "Line one\nLine two\nthree\tend\n");
    // \pard resets paragraph formatting and adds no text; raw line ends are no text either.
    EXPECT_EQ(textOf("{\\rtf1 \\pard\\ql a\r\nb\\par\\pard c}"), "ab\nc");
    EXPECT_EQ(textOf("{\\rtf1 \\trowd\\cellx100 A\\cell B\\cell\\row after}"), "A\tB\t\nafter");
    // A backslash before a line end is a paragraph too.
    EXPECT_EQ(textOf("{\\rtf1 a\\\nb}"), "a\nb");
}

TEST(RTFPlainTextReader, ControlWordDelimiters) {
    // One blank ends a control word and is dropped; further blanks are text. A digit run is the
    // parameter, and a minus is part of it only when a digit follows.
    EXPECT_EQ(textOf("{\\rtf1 \\b bold\\b0  two}"), "bold two");
    EXPECT_EQ(textOf("{\\rtf1 \\fs20-3\\li-20 x}"), "-3x");
    EXPECT_EQ(textOf("{\\rtf1 a\\par\\par b}"), "a\n\nb");
    EXPECT_EQ(textOf("{\\rtf1 \\unknownword12 kept}"), "kept");
}

TEST(RTFPlainTextReader, EscapedSymbolsAndSpecialCharacters) {
    EXPECT_EQ(textOf("{\\rtf1 \\{a\\}\\\\b}"), "{a}\\b");
    EXPECT_EQ(textOf("{\\rtf1 a\\~b\\_c\\-d}"), "a\u00A0b\u2011cd");
    EXPECT_EQ(textOf("{\\rtf1 \\lquote x\\rquote  \\ldblquote y\\rdblquote \\emdash\\endash\\bullet}"),
              "\u2018x\u2019 \u201Cy\u201D\u2014\u2013\u2022");
}

TEST(RTFPlainTextReader, UnicodeEscapesAndTheirFallbacks) {
    // The default skip count is 1; \uc changes it for the group only.
    EXPECT_EQ(textOf("{\\rtf1 \\u233?t\\u8364?}"), "\u00E9t\u20AC");
    EXPECT_EQ(textOf("{\\rtf1 {\\uc2\\u233\\'3f\\'3fa}\\u233?b}"), "\u00E9a\u00E9b");
    EXPECT_EQ(textOf("{\\rtf1 \\uc0\\u233 x}"), "\u00E9x");
    // Negative values wrap to 16 bits; two escapes make a surrogate pair.
    EXPECT_EQ(textOf("{\\rtf1 \\u-3913?}"), "\uF0B7");
    EXPECT_EQ(textOf("{\\rtf1 \\u-10179?\\u-8704?}"), "\U0001F600");
    // A control word or symbol counts as one fallback character; a brace ends the fallback.
    EXPECT_EQ(textOf("{\\rtf1 \\uc1\\u233\\par x}"), "\u00E9x");
    EXPECT_EQ(textOf("{\\rtf1 {\\uc3\\u233}abc}"), "\u00E9abc");
    // An unpaired surrogate can't be UTF-8 and becomes the replacement character.
    EXPECT_EQ(textOf("{\\rtf1 \\u-10179?x}"), "\uFFFDx");
}

TEST(RTFPlainTextReader, HexEscapesFollowTheDocumentAndFontCodePages) {
    EXPECT_EQ(textOf("{\\rtf1\\ansi\\ansicpg1252 caf\\'e9 \\'80}"), "caf\u00E9 \u20AC");
    EXPECT_EQ(textOf("{\\rtf1\\ansi\\ansicpg1251 \\'cf\\'f0\\'e8}"), "\u041F\u0440\u0438");
    // The font's character set wins over the document's code page, and a group restores the font.
    EXPECT_EQ(textOf("{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fnil\\fcharset0 Arial;}"
                     "{\\f1\\fnil\\fcharset238 Arial CE;}}\\'e8{\\f1\\'e8}\\'e8}"),
              "\u00E8\u010D\u00E8");
    // Double-byte characters whose halves come as separate escapes, or as an escape and a letter.
    EXPECT_EQ(textOf("{\\rtf1\\ansi\\ansicpg932\\deff0{\\fonttbl{\\f0\\fnil\\fcharset128 MS Gothic;}}"
                     "\\'93\\'fa\\'96\\'7b\\'83e}"),
              "\u65E5\u672C\u30C6");
    // \cpg on a font names its code page directly.
    EXPECT_EQ(textOf("{\\rtf1{\\fonttbl{\\f3\\cpg1253 G;}}\\f3\\'e1}"), "\u03B1");
    // Malformed escapes are dropped.
    EXPECT_EQ(textOf("{\\rtf1 a\\'zzb\\'4}"), "azzb4");
}

TEST(RTFPlainTextReader, DestinationsThatAreNoBodyTextAreSkipped) {
    EXPECT_EQ(textOf("{\\rtf1{\\fonttbl{\\f0 Times;}}{\\colortbl;\\red255\\green0\\blue0;}"
                     "{\\stylesheet{\\s0 Normal;}}{\\info{\\title T}{\\author A}}"
                     "{\\header H}{\\footer F}{\\pict\\wmetafile8 0a0b}Body}"),
              "Body");
    EXPECT_EQ(textOf("{\\rtf1 a{\\*\\unknowndest skipped {nested} too}b}"), "ab");
    EXPECT_EQ(textOf("{\\rtf1 {\\field{\\*\\fldinst HYPERLINK \"x\"}{\\fldrslt shown}}}"), "shown");
    // Binary data is skipped by its length, braces in it included.
    EXPECT_EQ(textOf("{\\rtf1 {\\pict\\bin4 {}}}}after}"), "after");
    EXPECT_EQ(textOf("{\\rtf1 a\\bin99"), "a");
    // Hidden text is not shown.
    EXPECT_EQ(textOf("{\\rtf1 a{\\v hidden}b\\v c\\v0 d}"), "abd");
}

TEST(RTFPlainTextReader, GroupsNestAndTheDocumentEndsAtItsLastBrace) {
    EXPECT_EQ(textOf("{\\rtf1 a{b{c}d}e}trailing"), "abcde");
    // Cut off documents keep what was read; stray closing braces end the document.
    EXPECT_EQ(textOf("{\\rtf1 a{b"), "ab");
    EXPECT_EQ(textOf("{\\rtf1 a}}b"), "a");
    EXPECT_EQ(textOf("{\\rtf1 a\\"), "a");
}

TEST(RTFPlainTextReader, DeepNestingIsBoundedAndKeepsText) {
    std::string deep = "{\\rtf1 ";
    deep += std::string(100000, '{') + "x" + std::string(100000, '}') + "y}";
    EXPECT_EQ(textOf(deep), "xy");
    // Skipping still applies inside groups beyond the stacking limit.
    std::string skipped = "{\\rtf1 {\\*\\x " + std::string(2000, '{') + "z" + std::string(2000, '}') + "}w}";
    EXPECT_EQ(textOf(skipped), "w");
}
