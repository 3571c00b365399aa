#pragma once

#include "MPPCommon/support/TVDate.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>

// The encodings of the values that MPP streams hold, each as a pair of pure functions: `decode...`
// reads the value at the start of a byte span, `encode...` writes it there. The readers and the
// writers of the streams share these, so that every encoding is defined once. A span must hold at
// least the encoding's size (the kMPP...Size constants); numbers are little-endian.

using MPPConstBytes = std::span<const uint8_t>;
using MPPMutableBytes = std::span<uint8_t>;

// A plain number of the width of `Number`: integers composed byte by byte, floating point numbers
// in IEEE form, taken as stored.
template <typename Number>
requires std::integral<Number> || std::floating_point<Number> Number decodeMPPNumber(MPPConstBytes bytes) {
    using Bits =
        std::conditional_t<sizeof(Number) == 8, uint64_t,
                           std::conditional_t<sizeof(Number) == 4, uint32_t,
                                              std::conditional_t<sizeof(Number) == 2, uint16_t, uint8_t>>>;
    Bits bits = 0;
    for (size_t i = 0; i < sizeof(Number); ++i) {
        bits |= static_cast<Bits>(static_cast<Bits>(bytes[i]) << (8 * i));
    }
    return std::bit_cast<Number>(bits);
}

template <typename Number>
requires std::integral<Number> || std::floating_point<Number>
void encodeMPPNumber(Number value, MPPMutableBytes bytes) {
    using Bits =
        std::conditional_t<sizeof(Number) == 8, uint64_t,
                           std::conditional_t<sizeof(Number) == 4, uint32_t,
                                              std::conditional_t<sizeof(Number) == 2, uint16_t, uint8_t>>>;
    const auto bits = std::bit_cast<Bits>(value);
    for (size_t i = 0; i < sizeof(Number); ++i) {
        bytes[i] = static_cast<uint8_t>(bits >> (8 * i));
    }
}

// A computed amount as a whole number of the width of `Integer`, truncated toward zero. An amount that
// isn't a number counts as 0 and one beyond the type's range as its nearest bound: a plain conversion
// of either is undefined, and a plan's figure must not depend on it.
template <std::integral Integer>
Integer truncatedMPPInteger(double value) {
    if (std::isnan(value)) {
        return 0;
    }
    constexpr double kLowest = static_cast<double>(std::numeric_limits<Integer>::lowest());
    // The largest double below the type's maximum plus one, which converts exactly.
    constexpr double kBeyond = (static_cast<double>(std::numeric_limits<Integer>::max() / 2) + 1.0) * 2.0;
    if (value >= kBeyond) {
        return std::numeric_limits<Integer>::max();
    }
    return value <= kLowest ? std::numeric_limits<Integer>::lowest() : static_cast<Integer>(value);
}

// A day: a signed 16-bit count of days after the MPP epoch, 0xFFFF for no date. Decoding sums the
// seconds in 32 bits, as the format does, so counts from 0x8000 up lie before the epoch. Encoding
// keeps the whole days (rounding down) to 16 bits.
inline constexpr size_t kMPPDateSize = 2;
std::optional<TVDate> decodeMPPDate(MPPConstBytes bytes);
void encodeMPPDate(std::optional<TVDate> date, MPPMutableBytes bytes);

// A date and time: a time word (tenths of a minute after midnight), then a day word as above. 0xFFFF
// in either word is no date; an absent date is written as 0xFFFF twice.
inline constexpr size_t kMPPTimestampSize = 4;
std::optional<TVDate> decodeMPPTimestamp(MPPConstBytes bytes);
void encodeMPPTimestamp(std::optional<TVDate> date, MPPMutableBytes bytes);

// A time of day: unsigned 16-bit tenths of a minute after midnight, as microseconds.
inline constexpr size_t kMPPTimeSize = 2;
TVTimeSpan decodeMPPTime(MPPConstBytes bytes);
void encodeMPPTime(TVTimeSpan time, MPPMutableBytes bytes);

// A duration: signed 32-bit tenths of a minute, as microseconds; encoding truncates toward zero.
inline constexpr size_t kMPPDurationSize = 4;
TVTimeSpan decodeMPPDuration(MPPConstBytes bytes);
void encodeMPPDuration(TVTimeSpan duration, MPPMutableBytes bytes);

// Work: a double of thousandths of a minute, as microseconds truncated toward zero.
inline constexpr size_t kMPPWorkSize = 8;
TVTimeSpan mppWorkTimeSpan(double thousandthsOfMinute);
TVTimeSpan decodeMPPWork(MPPConstBytes bytes);
void encodeMPPWork(TVTimeSpan work, MPPMutableBytes bytes);

// Money, and units and percentages held as doubles: a double of hundredths of the value.
inline constexpr size_t kMPPHundredthsSize = 8;
double decodeMPPHundredths(MPPConstBytes bytes);
void encodeMPPHundredths(double value, MPPMutableBytes bytes);

// Text: UTF-16 units up to a NUL or the end of the span (an odd last byte is left out); encoding
// writes the units and the NUL, so the span must hold 2 * (units + 1) bytes.
std::u16string decodeMPPText(MPPConstBytes bytes);
void encodeMPPText(std::u16string_view text, MPPMutableBytes bytes);
