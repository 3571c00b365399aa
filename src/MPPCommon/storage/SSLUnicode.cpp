#include "MPPCommon/storage/SSLUnicode.h"

namespace sslunicode {

namespace {

bool isContinuation(unsigned char byte) {
    return (byte & 0xC0) == 0x80;
}

} // namespace

std::u32string decodeUtf8(std::string_view text, bool* wellFormed) {
    static constexpr char32_t kSmallest[5] = {0, 0, 0x80, 0x800, 0x10000};
    std::u32string out;
    *wellFormed = true;
    for (size_t i = 0; i < text.size();) {
        const auto lead = static_cast<unsigned char>(text[i]);
        size_t length = lead < 0x80           ? 1
                        : (lead >> 5) == 0x6  ? 2
                        : (lead >> 4) == 0xE  ? 3
                        : (lead >> 3) == 0x1E ? 4
                                              : 0;
        bool valid = length != 0 && i + length <= text.size();
        char32_t codePoint = length == 1 ? lead : lead & (0x7F >> length);
        for (size_t k = 1; valid && k < length; ++k) {
            const auto byte = static_cast<unsigned char>(text[i + k]);
            valid = isContinuation(byte);
            codePoint = (codePoint << 6) | (byte & 0x3F);
        }
        valid = valid && codePoint >= kSmallest[length] && codePoint <= 0x10FFFF &&
                (codePoint < 0xD800 || codePoint > 0xDFFF);
        if (!valid) {
            *wellFormed = false;
            out.push_back(0xFFFD);
            ++i;
            continue;
        }
        out.push_back(codePoint);
        i += length;
    }
    return out;
}

void appendUtf8(char32_t codePoint, std::string* out) {
    if (codePoint < 0x80) {
        out->push_back(static_cast<char>(codePoint));
    } else if (codePoint < 0x800) {
        out->push_back(static_cast<char>(0xC0 | (codePoint >> 6)));
        out->push_back(static_cast<char>(0x80 | (codePoint & 0x3F)));
    } else if (codePoint < 0x10000) {
        out->push_back(static_cast<char>(0xE0 | (codePoint >> 12)));
        out->push_back(static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F)));
        out->push_back(static_cast<char>(0x80 | (codePoint & 0x3F)));
    } else {
        out->push_back(static_cast<char>(0xF0 | (codePoint >> 18)));
        out->push_back(static_cast<char>(0x80 | ((codePoint >> 12) & 0x3F)));
        out->push_back(static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F)));
        out->push_back(static_cast<char>(0x80 | (codePoint & 0x3F)));
    }
}

} // namespace sslunicode
