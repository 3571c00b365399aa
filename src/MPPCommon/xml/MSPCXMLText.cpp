#include "MPPCommon/xml/MSPCXMLText.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <ctime>

namespace {

std::string trimCharacters(const std::string& text, const char* characters) {
    size_t first = text.find_first_not_of(characters);
    if (first == std::string::npos) {
        return {};
    }
    size_t last = text.find_last_not_of(characters);
    return text.substr(first, last - first + 1);
}

bool isInvalidXmlCharacter(char c) {
    return (c >= 0x01 && c <= 0x08) || c == 0x0B || c == 0x0C || c == 0x0E || c == 0x0F;
}

bool gIdGeneratorSeeded = false;

} // namespace

std::optional<std::string> MSPCOptionalString(const xmlChar* text) {
    if (text == nullptr) {
        return std::nullopt;
    }
    return std::string(reinterpret_cast<const char*>(text));
}

std::string MSPCPlainString(const xmlChar* text) {
    return MSPCOptionalString(text).value_or("");
}

std::string MSPCTrimWhitespace(const std::string& text) {
    return trimCharacters(text, " \t");
}

std::string MSPCTrimWhitespaceAndNewlines(const std::string& text) {
    return trimCharacters(text, " \t\n\r\v\f");
}

std::string filterInvalidXmlCharacters(const std::string& text) {
    std::string result = text;
    std::erase_if(result, isInvalidXmlCharacter);
    return result;
}

std::string KFXMLCreateID() {
    static constexpr char kAlphabet[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_";
    if (!gIdGeneratorSeeded) {
        srandom(static_cast<unsigned>(time(nullptr)));
        gIdGeneratorSeeded = true;
    }
    const uint64_t value = static_cast<uint64_t>(random());
    std::string identifier(1, kAlphabet[value & 0xF]);
    for (unsigned shift = 4; shift <= 58; shift += 6) {
        identifier += kAlphabet[(value >> shift) & 0x3F];
    }
    return identifier;
}
