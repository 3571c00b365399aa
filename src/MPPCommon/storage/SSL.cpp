#include "MPPCommon/storage/SSL.h"

#include "MPPCommon/storage/SSLUnicode.h"

namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool isHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool isLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

} // namespace

std::u32string SSL::wstringFromNSString(std::string_view string) {
    bool wellFormed = true;
    std::u32string wide;
    for (char32_t codePoint : sslunicode::decodeUtf8(string, &wellFormed)) {
        if (codePoint > 0xFFFF) {
            codePoint -= 0x10000;
            wide.push_back(0xD800 + (codePoint >> 10));
            wide.push_back(0xDC00 + (codePoint & 0x3FF));
        } else {
            wide.push_back(codePoint);
        }
    }
    return wide;
}

std::string SSL::stringWithWCharStr(std::u32string_view wide) {
    std::string text;
    for (size_t i = 0; i < wide.size() && wide[i] != 0; ++i) {
        char32_t unit = wide[i];
        if (isHighSurrogate(unit) && i + 1 < wide.size() && isLowSurrogate(wide[i + 1])) {
            unit = 0x10000 + ((unit - 0xD800) << 10) + (wide[++i] - 0xDC00);
        } else if (isHighSurrogate(unit) || isLowSurrogate(unit) || unit > 0x10FFFF) {
            unit = kReplacement;
        }
        sslunicode::appendUtf8(unit, &text);
    }
    return text;
}
