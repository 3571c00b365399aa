#include "MPPCommon/date/DateTestSupport.h"
#include "MPPImporter/Mapper/utilities/KVMSPIUtilities.h"

#include <gtest/gtest.h>

namespace {

using Utilities = KVMSPIUtilities;
using KVMSPIUtilitiesWorkingTimeTest = ZoneTest;

// Friday 6 February 2026 at 16:00 and two working hours later, Monday the 9th at 09:00.
TEST_P(KVMSPIUtilitiesWorkingTimeTest, IsoDateAdvancesThroughTheWeekendAsTvnxText) {
    const auto monday = Utilities::mppToTvnxDateTime(localInstant(2026, 2, 9, 9));
    ASSERT_TRUE(monday);
    EXPECT_EQ(Utilities::isoDateTime("2026-02-06T16:00:00", 7200.0, true, nullptr), monday);
    EXPECT_EQ(Utilities::isoDateTime("2026-02-06T16:00:00", "7200", true, nullptr), monday);
    EXPECT_EQ(Utilities::isoDateTime("2026-02-09T09:00:00", 7200.0, false, nullptr),
              Utilities::mppToTvnxDateTime(localInstant(2026, 2, 6, 16)));
}

TEST_P(KVMSPIUtilitiesWorkingTimeTest, TextThatIsNoDateGivesNoneOrFalse) {
    EXPECT_FALSE(Utilities::isoDateTime("", 60.0, true, nullptr));
    EXPECT_FALSE(Utilities::isoDateTime("tomorrow", "60", true, nullptr));
    EXPECT_FALSE(Utilities::isWorkingDay("", nullptr));
    EXPECT_FALSE(Utilities::isWorkingDay("tomorrow", nullptr));
}

TEST_P(KVMSPIUtilitiesWorkingTimeTest, WorkingDaysOfTheStandardWeek) {
    EXPECT_TRUE(Utilities::isWorkingDay("2026-02-06T23:30:00", nullptr));
    EXPECT_FALSE(Utilities::isWorkingDay("2026-02-07T10:00:00", nullptr));
}

INSTANTIATE_TEST_SUITE_P(Zones, KVMSPIUtilitiesWorkingTimeTest, ::testing::ValuesIn(kTestZones));

} // namespace
