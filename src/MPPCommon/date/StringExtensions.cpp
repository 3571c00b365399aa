#include "MPPCommon/date/StringExtensions.h"

#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"

#include <algorithm>
#include <cctype>
#include <climits>
#include <cmath>

namespace {

constexpr int64_t kMicrosecondsPerMinute = 60 * kMicrosecondsPerSecond;
constexpr int64_t kMicrosecondsPerHour = 60 * kMicrosecondsPerMinute;

int clampedToMinuteRange(int64_t value) {
    return static_cast<int>(std::clamp<int64_t>(value, 0, 59));
}

// "h:mm:ss", minutes and seconds held to 0..59.
std::string clockText(int64_t hours, int64_t minutes, int64_t seconds) {
    const int clampedMinutes = clampedToMinuteRange(minutes);
    const int clampedSeconds = clampedToMinuteRange(seconds);
    tvAssert(clampedMinutes < 60, stringWithFormat("Incorrect minutes value: %d", clampedMinutes));
    tvAssert(clampedSeconds < 60, stringWithFormat("Incorrect seconds value: %d", clampedSeconds));
    return stringWithFormat("%lld:%02d:%02d", static_cast<long long>(hours), clampedMinutes, clampedSeconds);
}

// A minute or second field of a time span; beyond 60 it is reported and taken as 0.
int spanField(int64_t value, const char* outOfRangeFormat) {
    if (value >= 61) {
        tvLog(stringWithFormat(outOfRangeFormat, static_cast<int>(value)));
        value = 0;
    }
    return clampedToMinuteRange(value);
}

} // namespace

int32_t intValue(std::string_view text) {
    size_t position = 0;
    while (position < text.size() && std::isspace(static_cast<unsigned char>(text[position]))) {
        ++position;
    }
    const bool negative = position < text.size() && text[position] == '-';
    if (position < text.size() && (text[position] == '-' || text[position] == '+')) {
        ++position;
    }
    constexpr int64_t kLimit = int64_t{INT32_MAX} + 1;
    int64_t magnitude = 0;
    for (; position < text.size() && std::isdigit(static_cast<unsigned char>(text[position])); ++position) {
        magnitude = std::min(magnitude * 10 + (text[position] - '0'), kLimit);
    }
    return static_cast<int32_t>(std::clamp<int64_t>(negative ? -magnitude : magnitude, INT32_MIN, INT32_MAX));
}

std::string stringByReplacingOccurrencesOfNewline(const std::string& text) {
    std::string result = text;
    std::erase(result, '\n');
    return result;
}

std::string initWithBytes(const uint8_t* bytes, size_t length, int format) {
    std::string text;
    for (size_t i = 0; i < length; ++i) {
        const uint8_t byte = bytes[i];
        switch (format) {
        case 0:
            // One Latin-1 character, written as UTF-8.
            if (byte < 0x80) {
                text += static_cast<char>(byte);
            } else {
                text += static_cast<char>(0xC0 | (byte >> 6));
                text += static_cast<char>(0x80 | (byte & 0x3F));
            }
            break;
        case 1:
            text += stringWithFormat("%d", byte);
            break;
        case 2:
            text += stringWithFormat(i > 0 && i % 4 == 0 ? " %02x" : "%02x", byte);
            break;
        default:
            return {};
        }
    }
    return text;
}

std::string initWithDuration(int64_t tenthsOfMinute) {
    const int64_t remainder = tenthsOfMinute % 600;
    return clockText(tenthsOfMinute / 600, remainder / 10, (remainder % 10) * 6);
}

std::string initWithTimeSpan(TVTimeSpan span) {
    return clockText(span / kMicrosecondsPerHour, (span % kMicrosecondsPerHour) / kMicrosecondsPerMinute,
                     (span % kMicrosecondsPerMinute) / kMicrosecondsPerSecond);
}

std::string initWithDurationTimeSpan(TVTimeSpan span) {
    if (span < 0) {
        return stringWithFormat("PT%dH%02dM%02dS", 0, 0, 0);
    }
    const long long hours = span / kMicrosecondsPerHour;
    tvAssert(hours >= 0, stringWithFormat("Incorrect hours value: %lld", hours));
    const int minutes =
        spanField((span % kMicrosecondsPerHour) / kMicrosecondsPerMinute, "minutes out of range: %d");
    const int seconds =
        spanField((span % kMicrosecondsPerMinute) / kMicrosecondsPerSecond, "Seconds out of range: %d");
    return stringWithFormat("PT%lldH%02dM%02dS", hours, minutes, seconds);
}

std::string hourMinSecFromDuration(double seconds) {
    // Whole seconds toward zero; a value that isn't a number counts as 0, a huge one is held to 64 bits.
    constexpr double kLimit = 9.2e18;
    const int64_t whole =
        std::isnan(seconds) ? 0 : static_cast<int64_t>(std::clamp(seconds, -kLimit, kLimit));
    return stringWithFormat("%02lld:%02d:%02d", static_cast<long long>(whole / 3600),
                            static_cast<int>((whole % 3600) / 60), static_cast<int>(whole % 60));
}
