#pragma once

#include <string>
#include <unicode/unistr.h>

// Conversions between the UTF-8 text kept everywhere and ICU's UTF-16 strings.
icu::UnicodeString unicodeFromUTF8(const std::string& text);
std::string utf8FromUnicode(const icu::UnicodeString& text);

// The text without white space and line ends (the Unicode White_Space set) at both ends.
icu::UnicodeString trimmedWhiteSpaceAndNewlines(const icu::UnicodeString& text);
