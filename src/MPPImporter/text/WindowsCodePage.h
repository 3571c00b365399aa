#pragma once

#include <optional>
#include <string>
#include <string_view>

// Windows code pages, as RTF documents and property sets name them, decoded through ICU.

inline constexpr int kCodePageWindowsLatin1 = 1252;
inline constexpr int kCodePageUTF16LE = 1200;
inline constexpr int kCodePageUTF8 = 65001;

// What a conversion does with bytes that the code page doesn't define.
enum class InvalidBytes {
    fail,    // the whole conversion fails
    replace, // each becomes U+FFFD (or the code page's own substitute)
};

// The ICU converter name of a Windows code page number, or "" when ICU has no converter for it.
std::string converterNameForCodePage(int codePage);

// The bytes decoded as UTF-16; none for an unknown code page, or with InvalidBytes::fail for bytes
// that the code page doesn't define.
std::optional<std::u16string> utf16FromCodePage(std::string_view bytes, int codePage, InvalidBytes invalid);

// The same as UTF-8 text.
std::optional<std::string> utf8FromCodePage(std::string_view bytes, int codePage, InvalidBytes invalid);
