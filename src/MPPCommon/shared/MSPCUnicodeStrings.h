#pragma once

#include <cstddef>
#include <string>

// Conversions and measures of text in the units that files and limits count. Strings inside the tool
// are UTF-8; lengths and positions here are in UTF-16 units. Bytes that are no valid UTF-8, and wide
// units that are no code point, read as U+FFFD.

// The UTF-8 text of a NUL-terminated string of UTF-32 code points; none gives the empty string.
std::string stringFromWchar(const char32_t* wide);

// The UTF-32 code points of a string; the terminating NUL is the std::u32string's own.
std::u32string wcharFromString(const std::string& text);

// Well-formed UTF-8 of a string that may hold stray bytes.
std::string charFromString(const std::string& text);

// Bytes to reserve for the UTF-16 form of a string with its two-byte terminator, rounded up to a
// multiple of 4.
size_t spaceAllocatedForUnicode(const std::string& text);

// The part of `text` from UTF-16 position `start` with length min(length of text, maximum), widened
// at both ends to whole user-perceived characters: the result may run a little past the maximum
// rather than split an accented letter, a surrogate pair or an emoji sequence. A range past the end
// is cut at the end.
std::string truncateUnicodeString(const std::string& text, size_t start, size_t maximum);
