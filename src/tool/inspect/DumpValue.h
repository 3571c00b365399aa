#pragma once

#include "MPPCommon/support/TVDate.h"

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>

// The JSON forms of the dump: dates as "YYYY-MM-DDTHH:MM:SS" of the instant in UTC, time spans as whole
// microseconds, numbers, flags and texts as they are.
class DumpValue {
public:
    // Null for an instant outside the years 1 to 9999 or not finite.
    static nlohmann::ordered_json of(TVDate date);
    // Work and durations that a reader gives as seconds, as whole microseconds.
    static nlohmann::ordered_json ofSeconds(double seconds);
    // Integers (time spans included), money and other numbers, flags and texts.
    template <typename T>
    static nlohmann::ordered_json of(const T& value) {
        return nlohmann::ordered_json(value);
    }
};
