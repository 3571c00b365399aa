#pragma once

#include <string>
#include <string_view>

// Conversions between the tool's UTF-8 strings and the library's wide strings. A wide string holds
// the UTF-16 units of a name or text, each widened to 32 bits, as the file stores them; so its
// length is the length that counts against the file's limits.
class SSL {
public:
    // The wide form of a UTF-8 string; code points above U+FFFF become surrogate pairs and invalid
    // input becomes U+FFFD.
    static std::u32string wstringFromNSString(std::string_view string);
    // The UTF-8 form of a wide string up to its first NUL unit; surrogate pairs are joined, and units
    // that form no code point become U+FFFD.
    static std::string stringWithWCharStr(std::u32string_view wide);
};
