#include "MPPImporter/format/MPPValueCodecs.h"

#include <cmath>

namespace {

constexpr int32_t kSecondsPerTenthOfMinute = 6;
constexpr TVTimeSpan kMicrosecondsPerTenthOfMinute = 6 * kMicrosecondsPerSecond;
constexpr double kMicrosecondsPerThousandthOfMinute = 60000.0;
constexpr double kHundredths = 100.0;
constexpr uint16_t kNullWord = 0xFFFF;

// Seconds of a day count and a time in tenths of a minute, summed in 32 bits as the MPP formats do:
// large day counts wrap the same way here.
int32_t mppSeconds(int32_t days, int32_t tenths) {
    return static_cast<int32_t>(static_cast<uint32_t>(days) * kSecondsPerDay +
                                static_cast<uint32_t>(tenths) * kSecondsPerTenthOfMinute);
}

uint16_t word(MPPConstBytes bytes, size_t offset) {
    return decodeMPPNumber<uint16_t>(bytes.subspan(offset));
}

// Whole days since the epoch, rounded down, and the rest of the day in seconds.
std::pair<int64_t, double> daysAndSeconds(TVDate date) {
    const double seconds = date.secondsSince(getMPPEpoch());
    const double days = std::floor(seconds / kSecondsPerDay);
    return {static_cast<int64_t>(days), seconds - days * kSecondsPerDay};
}

} // namespace

std::optional<TVDate> decodeMPPDate(MPPConstBytes bytes) {
    const uint16_t days = word(bytes, 0);
    if (days == kNullWord) {
        return std::nullopt;
    }
    return getMPPEpoch().addingSeconds(mppSeconds(static_cast<int16_t>(days), 0));
}

void encodeMPPDate(std::optional<TVDate> date, MPPMutableBytes bytes) {
    encodeMPPNumber(date ? static_cast<uint16_t>(daysAndSeconds(*date).first) : kNullWord, bytes);
}

std::optional<TVDate> decodeMPPTimestamp(MPPConstBytes bytes) {
    const uint16_t tenths = word(bytes, 0);
    const uint16_t days = word(bytes, 2);
    if (tenths == kNullWord || days == kNullWord) {
        return std::nullopt;
    }
    return getMPPEpoch().addingSeconds(mppSeconds(static_cast<int16_t>(days), static_cast<int16_t>(tenths)));
}

void encodeMPPTimestamp(std::optional<TVDate> date, MPPMutableBytes bytes) {
    uint16_t tenths = kNullWord;
    uint16_t days = kNullWord;
    if (date) {
        const auto [wholeDays, seconds] = daysAndSeconds(*date);
        days = static_cast<uint16_t>(wholeDays);
        tenths = static_cast<uint16_t>(seconds / kSecondsPerTenthOfMinute);
    }
    encodeMPPNumber(tenths, bytes);
    encodeMPPNumber(days, bytes.subspan(2));
}

TVTimeSpan decodeMPPTime(MPPConstBytes bytes) {
    return static_cast<TVTimeSpan>(word(bytes, 0)) * kMicrosecondsPerTenthOfMinute;
}

void encodeMPPTime(TVTimeSpan time, MPPMutableBytes bytes) {
    encodeMPPNumber(static_cast<uint16_t>(time / kMicrosecondsPerTenthOfMinute), bytes);
}

TVTimeSpan decodeMPPDuration(MPPConstBytes bytes) {
    return static_cast<TVTimeSpan>(decodeMPPNumber<int32_t>(bytes)) * kMicrosecondsPerTenthOfMinute;
}

void encodeMPPDuration(TVTimeSpan duration, MPPMutableBytes bytes) {
    encodeMPPNumber(static_cast<int32_t>(duration / kMicrosecondsPerTenthOfMinute), bytes);
}

TVTimeSpan mppWorkTimeSpan(double thousandthsOfMinute) {
    return truncatedMPPInteger<TVTimeSpan>(thousandthsOfMinute * kMicrosecondsPerThousandthOfMinute);
}

TVTimeSpan decodeMPPWork(MPPConstBytes bytes) {
    return mppWorkTimeSpan(decodeMPPNumber<double>(bytes));
}

void encodeMPPWork(TVTimeSpan work, MPPMutableBytes bytes) {
    encodeMPPNumber(static_cast<double>(work) / kMicrosecondsPerThousandthOfMinute, bytes);
}

double decodeMPPHundredths(MPPConstBytes bytes) {
    return decodeMPPNumber<double>(bytes) / kHundredths;
}

void encodeMPPHundredths(double value, MPPMutableBytes bytes) {
    encodeMPPNumber(value * kHundredths, bytes);
}

std::u16string decodeMPPText(MPPConstBytes bytes) {
    std::u16string units;
    for (size_t at = 0; at + 1 < bytes.size(); at += 2) {
        const auto unit = static_cast<char16_t>(word(bytes, at));
        if (unit == 0) {
            break;
        }
        units.push_back(unit);
    }
    return units;
}

void encodeMPPText(std::u16string_view text, MPPMutableBytes bytes) {
    for (size_t i = 0; i < text.size(); ++i) {
        encodeMPPNumber(static_cast<uint16_t>(text[i]), bytes.subspan(2 * i));
    }
    encodeMPPNumber(uint16_t{0}, bytes.subspan(2 * text.size()));
}
