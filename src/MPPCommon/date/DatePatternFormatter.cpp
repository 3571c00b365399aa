#include "MPPCommon/date/DatePatternFormatter.h"

#include "MPPCommon/date/IcuText.h"

#include <cmath>
#include <stdexcept>
#include <unicode/smpdtfmt.h>

DatePatternFormatter::DatePatternFormatter(const std::string& pattern, const TVTimeZone& zone) {
    UErrorCode status = U_ZERO_ERROR;
    m_format =
        std::make_unique<icu::SimpleDateFormat>(unicodeFromUTF8(pattern), icu::Locale("en_US_POSIX"), status);
    if (U_FAILURE(status)) {
        throw std::runtime_error("Cannot create a date formatter for '" + pattern + "'");
    }
    m_format->setLenient(false);
    m_format->setTimeZone(zone.icuZone());
}

DatePatternFormatter::~DatePatternFormatter() = default;

std::string DatePatternFormatter::stringFromDate(TVDate date) const {
    icu::UnicodeString text;
    // An instant that isn't finite has no calendar fields; it formats as the epoch.
    m_format->format(std::isfinite(date.seconds) ? date.seconds * 1000.0 : 0.0, text);
    return utf8FromUnicode(text);
}

std::optional<TVDate> DatePatternFormatter::dateFromString(const icu::UnicodeString& text) const {
    icu::ParsePosition position(0);
    const UDate milliseconds = m_format->parse(text, position);
    if (position.getErrorIndex() >= 0 || position.getIndex() != text.length()) {
        return std::nullopt;
    }
    return TVDate{milliseconds / 1000.0};
}

std::optional<TVDate> DatePatternFormatter::dateFromString(const std::string& text) const {
    return dateFromString(unicodeFromUTF8(text));
}
