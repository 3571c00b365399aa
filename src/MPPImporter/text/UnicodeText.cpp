#include "MPPImporter/text/UnicodeText.h"

#include <unicode/ustring.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

namespace {

constexpr char16_t kReplacementCharacter = 0xFFFD;

// Calls `visit` with each code point of UTF-8 text in order; an invalid sequence gives a negative one.
template <typename Visit>
void forEachCodePoint(std::string_view text, Visit visit) {
    int32_t index = 0;
    const auto length = static_cast<int32_t>(text.size());
    const auto* bytes = reinterpret_cast<const uint8_t*>(text.data());
    while (index < length) {
        UChar32 c;
        U8_NEXT(bytes, index, length, c);
        visit(c);
    }
}

} // namespace

std::string utf8FromUTF16(std::u16string_view units) {
    std::string text;
    text.reserve(units.size());
    size_t index = 0;
    while (index < units.size()) {
        UChar32 c;
        U16_NEXT(units.data(), index, units.size(), c);
        if (U_IS_SURROGATE(c)) {
            c = kReplacementCharacter;
        }
        char buffer[U8_MAX_LENGTH];
        int32_t length = 0;
        U8_APPEND_UNSAFE(buffer, length, c);
        text.append(buffer, static_cast<size_t>(length));
    }
    return text;
}

std::u16string utf16FromUTF8(std::string_view text) {
    std::u16string units;
    units.reserve(text.size());
    forEachCodePoint(text, [&units](UChar32 c) {
        if (c < 0) {
            c = kReplacementCharacter;
        }
        if (U_IS_BMP(c)) {
            units.push_back(static_cast<char16_t>(c));
        } else {
            units.push_back(U16_LEAD(c));
            units.push_back(U16_TRAIL(c));
        }
    });
    return units;
}

size_t utf16Length(std::string_view text) {
    size_t count = 0;
    forEachCodePoint(text, [&count](UChar32 c) { count += (c > 0xFFFF) ? 2 : 1; });
    return count;
}
