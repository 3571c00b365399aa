#pragma once

#include <string>
#include <string_view>

// UTF-8 decoding and encoding for the storage layer's text conversions.
namespace sslunicode {

// The code points of UTF-8 text. A byte that starts no well-formed sequence (overlong forms and
// surrogates included) becomes U+FFFD, and `wellFormed` tells whether there was any.
std::u32string decodeUtf8(std::string_view text, bool* wellFormed);
void appendUtf8(char32_t codePoint, std::string* out);

} // namespace sslunicode
