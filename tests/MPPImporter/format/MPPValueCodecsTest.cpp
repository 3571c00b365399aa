#include "MPPImporter/format/MPPValueCodecs.h"

#include "MPPCommon/date/DateTestSupport.h"

#include <gtest/gtest.h>
#include <limits>
#include <vector>

namespace {

using Bytes = std::vector<uint8_t>;

template <typename Value, typename Encode>
Bytes encoded(Encode encode, const Value& value, size_t size) {
    Bytes bytes(size, 0xEE);
    encode(value, bytes);
    return bytes;
}

TEST(MPPValueCodecs, DatesCountSigned16BitDaysFromTheEpochAndFFFFIsNone) {
    const TVDate epoch = getMPPEpoch();
    EXPECT_EQ(decodeMPPDate(Bytes{0x00, 0x00}), epoch);
    EXPECT_EQ(decodeMPPDate(Bytes{0x01, 0x00}), TVDate::fromUnixSeconds(441763200)); // 1984-01-01
    EXPECT_EQ(decodeMPPDate(Bytes{0xFE, 0xFF}), epoch.addingSeconds(-2 * kSecondsPerDay));
    EXPECT_EQ(decodeMPPDate(Bytes{0xFF, 0xFF}), std::nullopt);
    // -32768 days overflow the 32-bit seconds and wrap, as the format's own arithmetic does.
    EXPECT_EQ(decodeMPPDate(Bytes{0x00, 0x80}), epoch.addingSeconds(-32768 * kSecondsPerDay + 4294967296.0));

    // Encoding keeps whole days, rounding down, and writes none as 0xFFFF.
    EXPECT_EQ(encoded(encodeMPPDate, std::optional(epoch.addingSeconds(kSecondsPerDay + 3599)), 2),
              (Bytes{0x01, 0x00}));
    EXPECT_EQ(encoded(encodeMPPDate, std::optional(epoch.addingSeconds(-1)), 2), (Bytes{0xFF, 0xFF}));
    EXPECT_EQ(encoded(encodeMPPDate, std::optional<TVDate>(), 2), (Bytes{0xFF, 0xFF}));
}

TEST(MPPValueCodecs, TimestampsAreTimeWordThenDayWordAndNoneIfEitherIsFFFF) {
    const TVDate dayAfterAtEight = getMPPEpoch().addingSeconds(kSecondsPerDay + 8 * 3600);
    EXPECT_EQ(encoded(encodeMPPTimestamp, std::optional(dayAfterAtEight), 4),
              (Bytes{0xC0, 0x12, 0x01, 0x00}));
    EXPECT_EQ(encoded(encodeMPPTimestamp, std::optional(getMPPEpoch()), 4), (Bytes{0, 0, 0, 0}));
    EXPECT_EQ(encoded(encodeMPPTimestamp, std::optional<TVDate>(), 4), (Bytes{0xFF, 0xFF, 0xFF, 0xFF}));
    // Seconds below a tenth of a minute are dropped.
    EXPECT_EQ(encoded(encodeMPPTimestamp, std::optional(getMPPEpoch().addingSeconds(11)), 4),
              (Bytes{0x01, 0x00, 0x00, 0x00}));

    EXPECT_EQ(decodeMPPTimestamp(Bytes{0xC0, 0x12, 0x01, 0x00}), dayAfterAtEight);
    EXPECT_EQ(decodeMPPTimestamp(Bytes{0xFF, 0xFF, 0x01, 0x00}), std::nullopt);
    EXPECT_EQ(decodeMPPTimestamp(Bytes{0x58, 0x02, 0xFF, 0xFF}), std::nullopt);
}

TEST(MPPValueCodecs, TimesDurationsAndWorkCountTenthsOrThousandthsOfAMinute) {
    EXPECT_EQ(decodeMPPTime(Bytes{0xC0, 0x12}), 8 * kHour);
    EXPECT_EQ(decodeMPPTime(Bytes{0xFF, 0xFF}), 65535 * 6 * kMicrosecondsPerSecond);
    EXPECT_EQ(encoded(encodeMPPTime, 8 * kHour, 2), (Bytes{0xC0, 0x12}));

    EXPECT_EQ(encoded(encodeMPPDuration, kHour, 4), (Bytes{0x58, 0x02, 0x00, 0x00}));
    // Truncated toward zero: minus 1.55 minutes is minus 15 tenths.
    EXPECT_EQ(encoded(encodeMPPDuration, TVTimeSpan{-93 * kMicrosecondsPerSecond}, 4),
              (Bytes{0xF1, 0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(decodeMPPDuration(Bytes{0xFF, 0xFF, 0xFF, 0x7F}), TVTimeSpan{0x7FFFFFFF} * 6000000);
    EXPECT_EQ(decodeMPPDuration(Bytes{0x00, 0x00, 0x00, 0x80}), TVTimeSpan{-0x80000000LL} * 6000000);

    // Eight hours are 480000 thousandths of a minute, 0x411D4C0000000000 as a double.
    const Bytes eightHours{0, 0, 0, 0, 0, 0x4C, 0x1D, 0x41};
    EXPECT_EQ(encoded(encodeMPPWork, 8 * kHour, 8), eightHours);
    EXPECT_EQ(decodeMPPWork(eightHours), 8 * kHour);
    // A fraction of a microsecond is truncated.
    EXPECT_EQ(decodeMPPWork(encoded(encodeMPPNumber<double>, 0.00001, 8)), 0);
}

TEST(MPPValueCodecs, HundredthsAndPlainNumbers) {
    // 12.5 is stored as 1250.0, 0x40938800 00000000.
    const Bytes stored{0, 0, 0, 0, 0, 0x88, 0x93, 0x40};
    EXPECT_EQ(encoded(encodeMPPHundredths, 12.5, 8), stored);
    EXPECT_EQ(decodeMPPHundredths(stored), 12.5);
    EXPECT_EQ(decodeMPPHundredths(encoded(encodeMPPHundredths, -0.25, 8)), -0.25);

    EXPECT_EQ(encoded(encodeMPPNumber<int16_t>, int16_t{-2}, 2), (Bytes{0xFE, 0xFF}));
    EXPECT_EQ(encoded(encodeMPPNumber<int32_t>, INT32_MIN, 4), (Bytes{0, 0, 0, 0x80}));
    EXPECT_EQ(decodeMPPNumber<int32_t>(Bytes{0xFF, 0xFF, 0xFF, 0x7F}), INT32_MAX);
    EXPECT_EQ(decodeMPPNumber<uint16_t>(Bytes{0x34, 0x12}), 0x1234);
    EXPECT_EQ(decodeMPPNumber<float>(Bytes{0x00, 0x00, 0xC0, 0x3F}), 1.5f);
}

// Amounts that an export computes become whole numbers without undefined conversions: truncated
// toward zero, NaN as 0, anything beyond the type's range as its nearest bound.
TEST(MPPValueCodecs, ComputedAmountsTruncateAndHoldToTheirType) {
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(truncatedMPPInteger<int32_t>(-2.7), -2);
    EXPECT_EQ(truncatedMPPInteger<int32_t>(2147483647.9), INT32_MAX);
    EXPECT_EQ(truncatedMPPInteger<int32_t>(2147483648.0), INT32_MAX);
    EXPECT_EQ(truncatedMPPInteger<int32_t>(-2147483649.0), INT32_MIN);
    EXPECT_EQ(truncatedMPPInteger<int32_t>(kNaN), 0);
    EXPECT_EQ(truncatedMPPInteger<int64_t>(kInfinity), INT64_MAX);
    EXPECT_EQ(truncatedMPPInteger<int64_t>(-kInfinity), INT64_MIN);
    EXPECT_EQ(truncatedMPPInteger<int64_t>(9.3e18), INT64_MAX);
    EXPECT_EQ(truncatedMPPInteger<int64_t>(-9.2e18), static_cast<int64_t>(-9.2e18));
}

TEST(MPPValueCodecs, TextIsUTF16UpToItsNul) {
    EXPECT_EQ(encoded(encodeMPPText, std::u16string_view(), 2), (Bytes{0, 0}));
    EXPECT_EQ(encoded(encodeMPPText, std::u16string_view(u"A\u20AC"), 6), (Bytes{0x41, 0, 0xAC, 0x20, 0, 0}));
    EXPECT_EQ(decodeMPPText(Bytes{0x41, 0, 0, 0, 0x42, 0}), u"A");
    // Without a NUL the text ends with the span, and an odd last byte is left out.
    EXPECT_EQ(decodeMPPText(Bytes{0x41, 0, 0x42, 0, 0x43}), u"AB");
    EXPECT_EQ(decodeMPPText(Bytes{}), u"");
}

} // namespace
