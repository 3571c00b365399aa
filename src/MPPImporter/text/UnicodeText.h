#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Conversions between the tool's UTF-8 strings and UTF-16, the unit in which MPP files and limits
// count text.

// UTF-8 of UTF-16 units; an unpaired surrogate becomes U+FFFD.
std::string utf8FromUTF16(std::u16string_view units);

// UTF-16 of UTF-8 text; an invalid sequence becomes U+FFFD.
std::u16string utf16FromUTF8(std::string_view text);

// Length of UTF-8 text in UTF-16 units.
size_t utf16Length(std::string_view text);
