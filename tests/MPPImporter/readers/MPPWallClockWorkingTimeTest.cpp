#include "MPPImporter/readers/MPPWallClockWorkingTime.h"

#include "MPPCommon/date/DateTestSupport.h"
#include "MPPExporter/MPPObjects/KVMSPEScheduleCalendar.h"

#include <gtest/gtest.h>

namespace {

// The standard week (Monday to Friday, 08:00-12:00 and 13:00-17:00) on the wall clock of MPP dates,
// which is UTC whatever the machine's zone: every case runs in each test zone.
class MPPWallClockWorkingTimeTest : public ::testing::TestWithParam<const char*> {
protected:
    SystemZoneScope m_zone{GetParam()};
    const MPPWallClockWorkingTime m_time{KVMSPEScheduleCalendar::standardCalendar()};
};

// 2016-01-04 was a Monday.
TVDate at(int day, int hour, int minute = 0) {
    return utcInstant(2016, 1, day, hour, minute);
}

TEST_P(MPPWallClockWorkingTimeTest, AdvancesThroughTheWorkingPeriodsOfTheWallClock) {
    EXPECT_EQ(m_time.advanced(at(4, 8), 4 * 3600.0, true), at(4, 12));
    // A start on the end of a period is the start of the next one.
    EXPECT_EQ(m_time.advanced(at(4, 8), 4 * 3600.0, false), at(4, 13));
    EXPECT_EQ(m_time.advanced(at(4, 10, 30), 8 * 3600.0, true), at(5, 10, 30));
    // Seven working days from a Thursday end on the Friday after next at 17:00, and a start there is on
    // the next Monday at 08:00, however long the walk before.
    EXPECT_EQ(m_time.advanced(at(7, 8), 56 * 3600.0, true), at(15, 17));
    EXPECT_EQ(m_time.advanced(at(7, 8), 56 * 3600.0, false), at(18, 8));
    // No work: the first working instant at or after the date.
    EXPECT_EQ(m_time.advanced(at(9, 11), 0.0, false), at(11, 8));
    EXPECT_EQ(m_time.advanced(at(4, 17), 0.0, false), at(5, 8));
    EXPECT_EQ(m_time.advanced(at(4, 12, 30), 0.0, false), at(4, 13));
    EXPECT_EQ(m_time.advanced(at(4, 9), 0.0, false), at(4, 9));
}

TEST_P(MPPWallClockWorkingTimeTest, AWeekWithoutWorkingTimeLeavesTheDate) {
    const KVMSPEScheduleCalendar idle;
    EXPECT_EQ(MPPWallClockWorkingTime(idle).advanced(at(4, 9), 3600.0, true), at(4, 9));
}

INSTANTIATE_TEST_SUITE_P(Zones, MPPWallClockWorkingTimeTest, ::testing::ValuesIn(kTestZones));

} // namespace
