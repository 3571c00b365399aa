#include "MPPCommon/shared/MSPCBoolValue.h"

#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVMSPErrors.h"

#include <optional>
#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

namespace {

// The text without Unicode white space and line ends at either end, lower-cased.
std::string trimmedLowercase(const std::string& text) {
    icu::UnicodeString unicode = icu::UnicodeString::fromUTF8(text);
    int32_t start = 0;
    int32_t end = unicode.length();
    while (start < end && u_isUWhiteSpace(unicode.char32At(start))) {
        start = unicode.moveIndex32(start, 1);
    }
    while (end > start && u_isUWhiteSpace(unicode.char32At(unicode.moveIndex32(end, -1)))) {
        end = unicode.moveIndex32(end, -1);
    }
    std::string result;
    unicode.tempSubStringBetween(start, end).toLower(icu::Locale::getRoot()).toUTF8String(result);
    return result;
}

// An integer with an optional sign that fills the whole text: whether it is non-zero, or none. The
// digits are only looked at, never summed, so no length can overflow.
std::optional<bool> scannedIntegerIsNonZero(const std::string& text) {
    size_t position = !text.empty() && (text[0] == '+' || text[0] == '-') ? 1 : 0;
    if (position == text.size()) {
        return std::nullopt;
    }
    bool nonZero = false;
    for (; position < text.size(); ++position) {
        const char c = text[position];
        if (c < '0' || c > '9') {
            return std::nullopt;
        }
        nonZero = nonZero || c != '0';
    }
    return nonZero;
}

} // namespace

bool boolValueFromString(const std::string& text, TVError* error) {
    const std::string word = trimmedLowercase(text);
    if (word == "true" || word == "yes") {
        return true;
    }
    if (word == "false" || word == "no") {
        return false;
    }
    if (std::optional<bool> nonZero = scannedIntegerIsNonZero(word)) {
        return *nonZero;
    }
    setError(error, TVError::make(
                        kTVMSPGeneralErrorDomain, kTVMSPBoolValueError,
                        stringWithFormat("Failed to get boolean value from string: \"%s\"", text.c_str())));
    return false;
}
