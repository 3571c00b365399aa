#include "MPPCommon/date/KVMSPCDateTimeConverter.h"

#include "MPPCommon/date/DateTestSupport.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"

#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>

namespace {

using Converter = KVMSPCDateTimeConverter;

// The zone suffix that the bundle writer gives an instant in the system zone: "+hh:mm:ss".
std::string tvnxZoneSuffix(TVDate date) {
    const long offset = localOffsetSeconds(date);
    const long magnitude = std::labs(offset);
    return stringWithFormat("%c%02ld:%02ld:00", offset < 0 ? '-' : '+', magnitude / 3600,
                            magnitude / 60 % 60);
}

// Wall clocks from 1984 to 2049, with both sides of New York's daylight-saving changes of 2024.
const char* const kWallClocks[] = {
    "1984-01-01T00:00:00", "1991-06-30T23:59:59", "2000-02-29T12:00:00",
    "2024-03-10T01:59:59", "2024-03-10T03:00:00", "2024-11-03T00:59:59",
    "2024-11-03T02:00:00", "2037-07-04T08:30:00", "2049-12-31T23:59:59",
};

using ConverterZoneTest = ZoneTest;

TEST_P(ConverterZoneTest, MspdiToTvnxAndBackKeepsInstantAndWallClock) {
    for (const char* text : kWallClocks) {
        int y, mo, d, h, mi, s;
        ASSERT_EQ(std::sscanf(text, "%d-%d-%dT%d:%d:%d", &y, &mo, &d, &h, &mi, &s), 6);
        const auto instant = Converter::mppFromMspdiDateTime(text);
        EXPECT_EQ(instant, localInstant(y, mo, d, h, mi, s)) << text;
        ASSERT_TRUE(instant);
        EXPECT_EQ(Converter::mspdiFromMppDateTime(*instant), text);
        const auto tvnx = Converter::tvnxFromMspdiDateTime(text);
        ASSERT_TRUE(tvnx);
        EXPECT_EQ(*tvnx, std::string(text) + tvnxZoneSuffix(*instant));
        const auto utc = Converter::tvnxFromMspdiDateTime(text, true);
        ASSERT_TRUE(utc);
        EXPECT_EQ(utc->back(), 'Z');
        // The reader needs fractional seconds; the zone may be "Z" or "+hh:mm[:ss]".
        for (const std::string& written : {*tvnx, *utc}) {
            std::string withFraction = written;
            withFraction.insert(19, ".000");
            EXPECT_EQ(Converter::mppFromTvnxDateTime(withFraction), instant) << withFraction;
            EXPECT_EQ(Converter::mspdiFromTvnxDateTime(withFraction), text);
        }
    }
}

TEST_P(ConverterZoneTest, DateOnlyFormsStayOnTheirDay) {
    for (const char* day : {"1984-01-01", "2024-03-10", "2024-11-03", "2049-12-31"}) {
        const auto date = Converter::mppFromMspdiDateOnly(day);
        ASSERT_TRUE(date);
        EXPECT_EQ(Converter::mspdiFromMppDateOnly(*date), day);
        EXPECT_EQ(Converter::tvnxFromMspdiDateOnly(day), day);
        EXPECT_EQ(Converter::mspdiFromTvnxDateOnly(day), day);
        EXPECT_EQ(Converter::mppFromMspdiDateTime(day), date);
        EXPECT_EQ(Converter::mppFromTvnxDateTime(day), date);
    }
}

INSTANTIATE_TEST_SUITE_P(Zones, ConverterZoneTest, ::testing::ValuesIn(kTestZones));

TEST(KVMSPCDateTimeConverterTest, BundleTextsWithOffsetsNameTheirInstant) {
    SystemZoneScope zone("America/New_York");
    const TVDate instant = utcInstant(2024, 1, 15, 7, 0, 0);
    EXPECT_EQ(Converter::mppFromTvnxDateTime("2024-01-15T07:00:00.000Z"), instant);
    EXPECT_EQ(Converter::mppFromTvnxDateTime("2024-01-15T12:30:00.000+05:30"), instant);
    EXPECT_EQ(Converter::mppFromTvnxDateTime(" 2024-01-15T02:00:00.000-05:00:00\n"), instant);
    EXPECT_EQ(Converter::mppFromTvnxDateTime("2024-01-15T08:00:00.000+01"), instant);
    EXPECT_EQ(Converter::mppFromTvnxDateTime("2024-01-15T07:00:00.250Z"), instant.addingSeconds(0.25));
    // Without fractional seconds the reader doesn't take the text.
    EXPECT_FALSE(Converter::mppFromTvnxDateTime("2024-01-15T07:00:00Z"));
    EXPECT_FALSE(Converter::mppFromTvnxDateTime("2024-01-15T07:00:00.000+05:30x"));
    EXPECT_FALSE(Converter::mppFromTvnxDateTime(" \n"));
    EXPECT_THROW(Converter::mppFromTvnxDateTime("2024-01-15T07:00:00.000+01\n+02"), TVException);
}

TEST(KVMSPCDateTimeConverterTest, WriterWritesOffsetOrShiftsToUTC) {
    SystemZoneScope zone("Asia/Kolkata");
    const TVDate instant = utcInstant(2024, 1, 14, 20, 0, 0);
    EXPECT_EQ(Converter::tvnxFromMppDateTime(instant), "2024-01-15T01:30:00+05:30:00");
    EXPECT_EQ(Converter::tvnxFromMppDateTime(instant, true), "2024-01-14T20:00:00Z");
    EXPECT_EQ(Converter::tvnxFromMppDateOnly(instant), "2024-01-15");
    EXPECT_EQ(Converter::tvnxFromMppDateOnly(instant, true), "2024-01-14");
}

TEST(KVMSPCDateTimeConverterTest, ParsingIsStrict) {
    SystemZoneScope zone("UTC");
    EXPECT_FALSE(Converter::mppFromMspdiDateTime("2024-01-15T08:00:00x"));
    EXPECT_FALSE(Converter::mppFromMspdiDateTime("2024-01-15T08:00"));
    EXPECT_FALSE(Converter::mppFromMspdiDateOnly("2024-02-30"));
    EXPECT_FALSE(Converter::mppFromMspdiDateOnly("2024-01-15T"));
    EXPECT_FALSE(Converter::mppFromMspdiDateOnly(""));
    EXPECT_FALSE(Converter::mspdiFromTvnxDateTime("not a date"));
    EXPECT_EQ(Converter::mppFromMspdiDateTime("\t2024-01-15T08:00:00 \r\n"), utcInstant(2024, 1, 15, 8));
}

TEST(KVMSPCDateTimeConverterTest, ZoneFormatOfTheWriter) {
    EXPECT_EQ(Converter::ensureISOTimeZoneFormat("2024-01-15", false), "2024-01-15T00:00:00Z");
    EXPECT_EQ(Converter::ensureISOTimeZoneFormat("2024-01-15T08:00:00", true), "2024-01-15T08:00:00Z");
    EXPECT_EQ(Converter::ensureISOTimeZoneFormat("2024-01-15T08:00:00-0330", false),
              "2024-01-15T08:00:00-03:30:00");
    EXPECT_EQ(Converter::ensureISOTimeZoneFormat("2024-01-15T08:00:00+013015", false),
              "2024-01-15T08:00:00+01:30:15");
    EXPECT_EQ(Converter::ensureISOTimeZoneFormat("2024-01-15T08:00:00+0100", true), "2024-01-15T08:00:00Z");
    EXPECT_THROW(Converter::ensureISOTimeZoneFormat("", false), TVException);
    EXPECT_THROW(Converter::ensureISOTimeZoneFormat("+0100\n+0200", false), TVException);
}

} // namespace
