#pragma once

#include "MPPCommon/date/TVTimeZone.h"

#include <memory>
#include <optional>
#include <string>
#include <unicode/uversion.h>

U_NAMESPACE_BEGIN
class SimpleDateFormat;
class UnicodeString;
U_NAMESPACE_END

// Formats and parses dates by a fixed pattern (ICU pattern letters) in one zone, independent of the
// user's locale. Parsing is strict and must consume the whole text.
class DatePatternFormatter {
public:
    DatePatternFormatter(const std::string& pattern, const TVTimeZone& zone);
    ~DatePatternFormatter();
    DatePatternFormatter(const DatePatternFormatter&) = delete;
    DatePatternFormatter& operator=(const DatePatternFormatter&) = delete;

    std::string stringFromDate(TVDate date) const;
    std::optional<TVDate> dateFromString(const icu::UnicodeString& text) const;
    std::optional<TVDate> dateFromString(const std::string& text) const;

private:
    std::unique_ptr<icu::SimpleDateFormat> m_format;
};
