#include "MPPCommon/support/TVException.h"
#include "MPPImporter/Mapper/utilities/KVMSPIUtilities.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

using Utilities = KVMSPIUtilities;

TEST(KVMSPIUtilitiesDurationTest, SecondsOfMspdiDurations) {
    EXPECT_EQ(Utilities::mspdiDurationInSecs("PT8H"), 28800);
    EXPECT_EQ(Utilities::mspdiDurationInSecs("PT1H2M3S"), 3723);
    EXPECT_EQ(Utilities::mspdiDurationInSecs("PT0H90M0S"), 5400);
    // Years, months and days don't count.
    EXPECT_EQ(Utilities::mspdiDurationInSecs("P1Y2M3DT4H"), 14400);
    EXPECT_EQ(Utilities::mspdiDurationInSecs(""), -1);
    EXPECT_THROW(Utilities::mspdiDurationInSecs("P3D"), TVException);
    EXPECT_EQ(Utilities::mspdiToTvnxDuration("PT8H0M0S"), "28800");
    EXPECT_FALSE(Utilities::mspdiToTvnxDuration(""));
}

TEST(KVMSPIUtilitiesDurationTest, FileDurationsNeedAllThreeParts) {
    EXPECT_EQ(Utilities::mspdiToMppDuration("PT8H0M0S"), 28800.0);
    EXPECT_EQ(Utilities::mspdiToMppDuration("PT1H2M3S"), 3723.0);
    EXPECT_EQ(Utilities::mspdiToMppDuration("PT8H"), 0.0);
    EXPECT_EQ(Utilities::mspdiToMppDuration("PT1H0M0.5S"), 0.0);
    EXPECT_EQ(Utilities::mspdiToMppDuration(" PT1H0M0S"), 0.0);
    EXPECT_EQ(Utilities::mspdiToMppDuration(""), 0.0);
    EXPECT_EQ(Utilities::mspdiToMppDuration("PT99999999999H0M0S"), 2147483647.0 * 3600);
}

TEST(KVMSPIUtilitiesDurationTest, FileDurationsAsText) {
    EXPECT_EQ(Utilities::mppToMspdiDuration(3723.9), "PT1H2M3S");
    EXPECT_EQ(Utilities::mppToMspdiDuration(-90), "PT0H-1M-30S");
    // Whole seconds are cut to 32 bits.
    EXPECT_EQ(Utilities::mppToMspdiDuration(4294967296.0 + 61), "PT0H1M1S");
    EXPECT_EQ(Utilities::mppToMspdiDuration(NAN), "PT0H0M0S");
    EXPECT_EQ(Utilities::mppToTvnxDuration(1.005), "1.00");
    EXPECT_EQ(Utilities::mppToTvnxDuration(28800), "28800.00");
    EXPECT_EQ(Utilities::tvnxToMspdiDuration("5400"), "PT1H30M0S");
    EXPECT_EQ(Utilities::tvnxToMspdiDuration("5400.75"), "PT1H30M0S");
    EXPECT_FALSE(Utilities::tvnxToMspdiDuration(""));
}

TEST(KVMSPIUtilitiesDurationTest, DurationsRoundTripThroughEveryForm) {
    for (const double seconds : {0.0, 59.0, 3600.0, 28800.0, 3723.0, 86399.0, 9000000.0}) {
        const std::string mspdi = Utilities::mppToMspdiDuration(seconds);
        EXPECT_EQ(Utilities::mspdiToMppDuration(mspdi), seconds) << mspdi;
        const auto tvnx = Utilities::mspdiToTvnxDuration(mspdi);
        ASSERT_TRUE(tvnx);
        EXPECT_EQ(Utilities::tvnxToMspdiDuration(*tvnx), mspdi);
        EXPECT_EQ(Utilities::tvnxToMspdiDuration(Utilities::mppToTvnxDuration(seconds)), mspdi);
    }
}

} // namespace
