#include "MPPImporter/Mapper/mapping/MSPIXmlCharacters.h"

#include <cstdint>

namespace {

bool isXmlCharacter(uint32_t c) {
    return c == 0x9 || c == 0xA || c == 0xD || (c >= 0x20 && c <= 0xD7FF) || (c >= 0xE000 && c <= 0xFFFD) ||
           (c >= 0x10000 && c <= 0x10FFFF);
}

// The length of the UTF-8 sequence at `position` and its code point; 0 for bytes that aren't one.
size_t decode(const std::string& text, size_t position, uint32_t& codePoint) {
    const auto byte = [&text](size_t index) { return static_cast<uint8_t>(text[index]); };
    const uint8_t lead = byte(position);
    size_t length = lead < 0x80             ? 1
                    : (lead & 0xE0) == 0xC0 ? 2
                    : (lead & 0xF0) == 0xE0 ? 3
                    : (lead & 0xF8) == 0xF0 ? 4
                                            : 0;
    if (length == 0 || position + length > text.size()) {
        return 0;
    }
    codePoint = length == 1 ? lead : lead & (0x7F >> length);
    for (size_t index = 1; index < length; ++index) {
        if ((byte(position + index) & 0xC0) != 0x80) {
            return 0;
        }
        codePoint = (codePoint << 6) | (byte(position + index) & 0x3F);
    }
    static constexpr uint32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    return codePoint >= kSmallest[length] ? length : 0;
}

} // namespace

std::string xmlCharacterText(const std::string& text) {
    std::string clean;
    clean.reserve(text.size());
    for (size_t position = 0; position < text.size();) {
        uint32_t codePoint = 0;
        const size_t length = decode(text, position, codePoint);
        if (length == 0) {
            ++position;
            continue;
        }
        if (isXmlCharacter(codePoint)) {
            clean.append(text, position, length);
        }
        position += length;
    }
    return clean;
}
