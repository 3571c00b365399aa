#pragma once

#include <cstdint>
#include <string>

// Appends the text of the bytes from `start` to `end` to `text`: the plain text if they hold an RTF
// document, otherwise the UTF-16 string at `start` up to its NUL (or `end`). Returns the number of
// UTF-16 units appended. The caller has checked that the bytes are there.
int32_t memReadUnicode(std::string& text, const uint8_t* bytes, int32_t start, int32_t end);
