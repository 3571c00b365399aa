#include "tool/inspect/DumpValue.h"

#include "MPPCommon/support/Log.h"

#include <chrono>
#include <cmath>

namespace {

// 0001-01-01 and 10000-01-01 as seconds since 1970.
constexpr double kFirstRenderedSecond = -62135596800.0;
constexpr double kPastLastRenderedSecond = 253402300800.0;

} // namespace

nlohmann::ordered_json DumpValue::of(TVDate date) {
    if (!std::isfinite(date.seconds) || date.seconds < kFirstRenderedSecond ||
        date.seconds >= kPastLastRenderedSecond) {
        return nullptr;
    }
    const auto seconds = static_cast<int64_t>(std::floor(date.seconds));
    // Floor division, so that instants before 1970 fall on the right day.
    const int64_t days =
        (seconds - (seconds % kSecondsPerDay + kSecondsPerDay) % kSecondsPerDay) / kSecondsPerDay;
    const int64_t secondOfDay = seconds - days * kSecondsPerDay;
    const std::chrono::year_month_day day{std::chrono::sys_days{std::chrono::days{days}}};
    return stringWithFormat("%04d-%02u-%02uT%02d:%02d:%02d", static_cast<int>(day.year()),
                            static_cast<unsigned>(day.month()), static_cast<unsigned>(day.day()),
                            static_cast<int>(secondOfDay / 3600), static_cast<int>(secondOfDay / 60 % 60),
                            static_cast<int>(secondOfDay % 60));
}

nlohmann::ordered_json DumpValue::ofSeconds(double seconds) {
    if (!std::isfinite(seconds) || std::fabs(seconds) > 9.2e12) {
        return nullptr;
    }
    return std::llround(seconds * 1e6);
}
