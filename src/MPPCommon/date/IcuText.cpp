#include "MPPCommon/date/IcuText.h"

#include <unicode/uchar.h>

icu::UnicodeString unicodeFromUTF8(const std::string& text) {
    return icu::UnicodeString::fromUTF8(text);
}

std::string utf8FromUnicode(const icu::UnicodeString& text) {
    std::string result;
    text.toUTF8String(result);
    return result;
}

icu::UnicodeString trimmedWhiteSpaceAndNewlines(const icu::UnicodeString& text) {
    int32_t start = 0;
    int32_t end = text.length();
    while (start < end && u_isUWhiteSpace(text.char32At(start))) {
        start = text.moveIndex32(start, 1);
    }
    while (end > start && u_isUWhiteSpace(text.char32At(text.moveIndex32(end, -1)))) {
        end = text.moveIndex32(end, -1);
    }
    return icu::UnicodeString(text, start, end - start);
}
