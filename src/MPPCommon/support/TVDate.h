#pragma once

#include <compare>
#include <cstdint>

// An instant, as seconds since 1970-01-01 00:00:00 UTC with fractions. "Date or none" is
// std::optional<TVDate>.
struct TVDate {
    double seconds = 0;

    static constexpr TVDate fromUnixSeconds(double s) { return TVDate{s}; }
    constexpr TVDate addingSeconds(double s) const { return TVDate{seconds + s}; }
    constexpr double secondsSince(TVDate other) const { return seconds - other.seconds; }
    constexpr auto operator<=>(const TVDate&) const = default;
};

// A time span: a signed count of microseconds.
using TVTimeSpan = int64_t;
inline constexpr TVTimeSpan kMicrosecondsPerSecond = 1000000;
inline constexpr int64_t kSecondsPerDay = 86400;

// The base of every date in an MPP stream: 1983-12-31 00:00:00 UTC, so that day 1 is 1984-01-01.
inline constexpr TVDate getMPPEpoch() {
    return TVDate{441676800.0};
}
