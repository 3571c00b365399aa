#include "MPPCommon/shared/MSPCUnicodeStrings.h"

#include "MPPCommon/support/TVException.h"

#include <algorithm>
#include <memory>
#include <string_view>
#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

namespace {

std::string utf8Of(const icu::UnicodeString& unicode) {
    std::string result;
    unicode.toUTF8String(result);
    return result;
}

// The character break iterator, made once: the tool runs on one thread.
icu::BreakIterator& characterBreaks() {
    static std::unique_ptr<icu::BreakIterator> breaks = [] {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::BreakIterator> iterator(
            icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
        tvAssert(U_SUCCESS(status) && iterator != nullptr, "Failed to create the character break iterator.");
        return iterator;
    }();
    return *breaks;
}

} // namespace

std::string stringFromWchar(const char32_t* wide) {
    if (wide == nullptr) {
        return std::string();
    }
    const std::u32string_view units(wide);
    const int32_t length = static_cast<int32_t>(std::min<size_t>(units.size(), INT32_MAX));
    return utf8Of(icu::UnicodeString::fromUTF32(reinterpret_cast<const UChar32*>(units.data()), length));
}

std::u32string wcharFromString(const std::string& text) {
    const icu::UnicodeString unicode = icu::UnicodeString::fromUTF8(text);
    // A code point never takes more UTF-32 units than UTF-16 units.
    std::u32string wide(static_cast<size_t>(unicode.length()), U'\0');
    UErrorCode status = U_ZERO_ERROR;
    const int32_t length =
        unicode.toUTF32(reinterpret_cast<UChar32*>(wide.data()), static_cast<int32_t>(wide.size()), status);
    wide.resize(U_SUCCESS(status) ? static_cast<size_t>(length) : 0);
    return wide;
}

std::string charFromString(const std::string& text) {
    return utf8Of(icu::UnicodeString::fromUTF8(text));
}

size_t spaceAllocatedForUnicode(const std::string& text) {
    const size_t bytes = static_cast<size_t>(icu::UnicodeString::fromUTF8(text).length()) * 2;
    return (bytes + 2 + 3) / 4 * 4;
}

std::string truncateUnicodeString(const std::string& text, size_t start, size_t maximum) {
    const icu::UnicodeString unicode = icu::UnicodeString::fromUTF8(text);
    const size_t length = static_cast<size_t>(unicode.length());
    const size_t first = std::min(start, length);
    const size_t last = first + std::min(maximum, length - first);
    if (first == last) {
        return std::string();
    }
    icu::BreakIterator& breaks = characterBreaks();
    breaks.setText(unicode);
    const int32_t from = static_cast<int32_t>(first);
    const int32_t to = static_cast<int32_t>(last);
    // The start of the sequence around `from`: the boundary before the next one. (preceding() would
    // step back a whole sequence from the middle of a surrogate pair.)
    int32_t widenedFrom = from;
    if (!breaks.isBoundary(from)) {
        breaks.following(from);
        widenedFrom = breaks.previous();
    }
    const int32_t widenedTo = breaks.isBoundary(to) ? to : breaks.following(to);
    return utf8Of(unicode.tempSubStringBetween(widenedFrom, widenedTo));
}
