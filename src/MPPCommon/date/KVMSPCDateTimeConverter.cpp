#include "MPPCommon/date/KVMSPCDateTimeConverter.h"

#include "MPPCommon/date/DatePatternFormatter.h"
#include "MPPCommon/date/IcuText.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"

#include <algorithm>
#include <map>
#include <memory>
#include <stdexcept>
#include <unicode/regex.h>
#include <utility>
#include <vector>

namespace {

const char* const kMspdiDateTimePattern = "yyyy-MM-dd'T'HH:mm:ss";
const char* const kDateOnlyPattern = "yyyy-MM-dd";
const char* const kTvnxParsePattern = "yyyy-MM-dd'T'HH:mm:ss.SSSZZZ";
const char* const kTvnxFormatPattern = "yyyy-MM-dd'T'HH:mm:ssZ";

// The system zone; the first use logs which zone the conversions run in.
TVTimeZone systemZone() {
    static const bool logged = [] {
        tvLog(stringWithFormat("  Running in %s", TVTimeZone::systemTimeZone().name().c_str()));
        return true;
    }();
    (void)logged;
    return TVTimeZone::systemTimeZone();
}

TVTimeZone zoneForcingUTC(bool forceUTC) {
    return forceUTC ? TVTimeZone::gmt() : systemZone();
}

// Formatters are costly to build: one is kept per pattern and zone.
const DatePatternFormatter& formatter(const char* pattern, const TVTimeZone& zone) {
    static std::map<std::pair<std::string, std::string>, std::unique_ptr<DatePatternFormatter>> formatters;
    auto& kept = formatters[{pattern, zone.name()}];
    if (!kept) {
        kept = std::make_unique<DatePatternFormatter>(pattern, zone);
    }
    return *kept;
}

std::unique_ptr<icu::RegexPattern> compileMultiLine(const char* expression) {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::RegexPattern> pattern(
        icu::RegexPattern::compile(icu::UnicodeString(expression), UREGEX_MULTILINE, status));
    if (U_FAILURE(status)) {
        throw std::runtime_error(std::string("Cannot compile the expression ") + expression);
    }
    return pattern;
}

// Start and end (UTF-16 indices) of every match of `pattern` in `text`.
std::vector<std::pair<int32_t, int32_t>> matchRanges(const icu::RegexPattern& pattern,
                                                     const icu::UnicodeString& text) {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::RegexMatcher> matcher(pattern.matcher(text, status));
    std::vector<std::pair<int32_t, int32_t>> ranges;
    while (U_SUCCESS(status) && matcher->find(status)) {
        ranges.emplace_back(matcher->start(status), matcher->end(status));
    }
    return ranges;
}

// A zone offset at the end of a bundle date: "+hh", "+hh:mm" or "+hh:mm:ss".
const icu::RegexPattern& tvnxZoneExpression() {
    static const auto pattern = compileMultiLine("[\\+\\-]{1}[:digit:]{2}(:[:digit:]{2}){0,2}$");
    return *pattern;
}

// The numeric zone that the formatter writes at the end: "+hhmm".
const icu::RegexPattern& formattedZoneExpression() {
    static const auto pattern = compileMultiLine("[\\+\\-]{1}[:digit:]{4,6}$");
    return *pattern;
}

icu::UnicodeString trimmed(const std::string& text) {
    return trimmedWhiteSpaceAndNewlines(unicodeFromUTF8(text));
}

bool containsT(const icu::UnicodeString& text) {
    return text.indexOf(u'T') >= 0;
}

} // namespace

std::optional<TVDate> KVMSPCDateTimeConverter::mppFromMspdiDateTime(const std::string& text) {
    const icu::UnicodeString value = trimmed(text);
    if (value.isEmpty()) {
        return std::nullopt;
    }
    if (!containsT(value)) {
        return mppFromMspdiDateOnly(text);
    }
    return formatter(kMspdiDateTimePattern, systemZone()).dateFromString(value);
}

std::optional<TVDate> KVMSPCDateTimeConverter::mppFromMspdiDateOnly(const std::string& text) {
    const icu::UnicodeString value = trimmed(text);
    if (value.isEmpty()) {
        return std::nullopt;
    }
    return formatter(kDateOnlyPattern, systemZone()).dateFromString(value);
}

std::optional<TVDate> KVMSPCDateTimeConverter::mppFromTvnxDateTime(const std::string& text) {
    icu::UnicodeString value = trimmed(text);
    if (value.isEmpty()) {
        return std::nullopt;
    }
    if (!containsT(value)) {
        return mppFromTvnxDateOnly(text);
    }
    if (value.endsWith(icu::UnicodeString(u"Z"))) {
        value.replace(value.length() - 1, 1, icu::UnicodeString(u"+00"));
    } else {
        const auto ranges = matchRanges(tvnxZoneExpression(), value);
        if (!ranges.empty()) {
            tvAssert(ranges.size() == 1, "[matches count] == 1");
            const auto [start, end] = ranges.front();
            icu::UnicodeString zone(value, start, end - start);
            zone.findAndReplace(icu::UnicodeString(u":"), icu::UnicodeString());
            value.replaceBetween(start, end, zone);
        }
    }
    return formatter(kTvnxParsePattern, systemZone()).dateFromString(value);
}

std::optional<TVDate> KVMSPCDateTimeConverter::mppFromTvnxDateOnly(const std::string& text) {
    return mppFromMspdiDateOnly(text);
}

std::string KVMSPCDateTimeConverter::mspdiFromMppDateTime(TVDate date) {
    return formatter(kMspdiDateTimePattern, systemZone()).stringFromDate(date);
}

std::string KVMSPCDateTimeConverter::mspdiFromMppDateOnly(TVDate date) {
    return formatter(kDateOnlyPattern, systemZone()).stringFromDate(date);
}

std::optional<std::string> KVMSPCDateTimeConverter::mspdiFromTvnxDateTime(const std::string& text) {
    const auto date = mppFromTvnxDateTime(text);
    return date ? std::optional(mspdiFromMppDateTime(*date)) : std::nullopt;
}

std::optional<std::string> KVMSPCDateTimeConverter::mspdiFromTvnxDateOnly(const std::string& text) {
    const auto date = mppFromTvnxDateOnly(text);
    return date ? std::optional(mspdiFromMppDateOnly(*date)) : std::nullopt;
}

std::string KVMSPCDateTimeConverter::tvnxFromMppDateTime(TVDate date, bool forceUTC) {
    const std::string text = formatter(kTvnxFormatPattern, zoneForcingUTC(forceUTC)).stringFromDate(date);
    return ensureISOTimeZoneFormat(text, forceUTC);
}

std::string KVMSPCDateTimeConverter::tvnxFromMppDateOnly(TVDate date, bool forceUTC) {
    return formatter(kDateOnlyPattern, zoneForcingUTC(forceUTC)).stringFromDate(date);
}

std::optional<std::string> KVMSPCDateTimeConverter::tvnxFromMspdiDateTime(const std::string& text,
                                                                          bool forceUTC) {
    const auto date = mppFromMspdiDateTime(text);
    return date ? std::optional(tvnxFromMppDateTime(*date, forceUTC)) : std::nullopt;
}

std::optional<std::string> KVMSPCDateTimeConverter::tvnxFromMspdiDateOnly(const std::string& text,
                                                                          bool forceUTC) {
    const auto date = mppFromMspdiDateOnly(text);
    return date ? std::optional(tvnxFromMppDateOnly(*date, forceUTC)) : std::nullopt;
}

std::string KVMSPCDateTimeConverter::ensureISOTimeZoneFormat(const std::string& text, bool forceUTC) {
    tvAssert(!text.empty(), "No date string specified.");
    icu::UnicodeString value = unicodeFromUTF8(text);
    const auto ranges = matchRanges(formattedZoneExpression(), value);
    if (ranges.empty()) {
        if (!containsT(value)) {
            value.append(icu::UnicodeString(u"T00:00:00"));
        }
        value.append(u'Z');
        return utf8FromUnicode(value);
    }
    tvAssert(ranges.size() == 1, "[matches count] == 1");
    const auto [start, end] = ranges.front();
    if (forceUTC) {
        value.replaceBetween(start, end, icu::UnicodeString(u"Z"));
        return utf8FromUnicode(value);
    }
    // "+hhmm[ss]" becomes "+hh:mm:ss", missing pairs written "00".
    icu::UnicodeString zone(value, start, 1);
    for (int32_t pair = 0, digit = start + 1; pair < 3; ++pair, digit += 2) {
        if (pair > 0) {
            zone.append(u':');
        }
        zone.append(digit < end ? icu::UnicodeString(value, digit, std::min(2, end - digit))
                                : icu::UnicodeString(u"00"));
    }
    value.replaceBetween(start, end, zone);
    return utf8FromUnicode(value);
}
