#include "MPPExporter/MPPObjects/ScheduleDateExtensions.h"

#include "MPPCommon/date/DateTestSupport.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPExporter/MPPObjects/KVMSPEScheduleCalendar.h"
#include "MPPExporter/MPPObjects/KVMSPEWorkingTime.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

const std::string kAdvanceWarning = "WARINING: Custom Calendars not supported to advance date by duration "
                                    "yet. Standard propject Calendar will be used instead.";
const std::string kWorkingDayWarning = "WARINING: Custom Calendars not supported to determine working days "
                                       "yet. Standard propject Calendar will be used instead.";

// Works every hour of every day, so that any use of it instead of the standard calendar shows.
KVMSPEScheduleCalendar roundTheClockCalendar() {
    KVMSPEScheduleCalendar calendar;
    for (int64_t weekday = 1; weekday <= 7; ++weekday) {
        calendar.addWorkingTimePeriod(WorkingTimePeriod{0, 0, 0, 24, 0, 0}, weekday);
    }
    return calendar;
}

// Collects the log lines written while it lives.
class LogCapture {
public:
    LogCapture() {
        tvSetLogSink([this](const std::string& line) { m_lines.push_back(line); });
    }
    ~LogCapture() { tvSetLogSink({}); }
    const std::vector<std::string>& lines() const { return m_lines; }

private:
    std::vector<std::string> m_lines;
};

using ScheduleDateExtensionsZoneTest = ZoneTest;

TEST_P(ScheduleDateExtensionsZoneTest, AdvancesThroughTheWeekendOfTheStandardCalendar) {
    LogCapture log;
    EXPECT_EQ(dateAdvancedByDuration(february(6, 16), 2 * 3600.0, true, nullptr), february(9, 9));
    EXPECT_EQ(dateAdvancedByDuration(february(9, 9), 2 * 3600.0, false, nullptr), february(6, 16));
    // Saturday noon is not working time: the advance starts on Monday morning.
    EXPECT_EQ(dateAdvancedByDuration(february(7, 12), 3600.0, true, nullptr), february(9, 9));
    EXPECT_TRUE(log.lines().empty());
}

TEST_P(ScheduleDateExtensionsZoneTest, EdgeTimeIsAllowedUnlessTurnedOff) {
    EXPECT_EQ(dateAdvancedByDuration(february(6, 8), 8 * 3600.0, true, nullptr), february(6, 17));
    EXPECT_EQ(dateAdvancedByDuration(february(6, 8), 8 * 3600.0, true, true, nullptr), february(6, 17));
    EXPECT_EQ(dateAdvancedByDuration(february(6, 8), 8 * 3600.0, true, false, nullptr), february(9, 8));
    EXPECT_EQ(dateAdvancedByDuration(std::optional(february(6, 8)), 4 * 3600.0, true, false, nullptr),
              february(6, 13));
}

TEST_P(ScheduleDateExtensionsZoneTest, CustomCalendarIsReportedAndIgnored) {
    const KVMSPEScheduleCalendar custom = roundTheClockCalendar();
    LogCapture log;
    EXPECT_EQ(dateAdvancedByDuration(february(6, 16), 2 * 3600.0, true, &custom), february(9, 9));
    EXPECT_EQ(dateAdvancedByDuration(february(6, 16), 2 * 3600.0, true, false, &custom), february(9, 9));
    EXPECT_FALSE(isWorkingDayInCalendar(february(7, 12), &custom));
    EXPECT_TRUE(isWorkingDayInCalendar(february(6, 23), &custom));
    EXPECT_EQ(log.lines(), (std::vector<std::string>{kAdvanceWarning, kAdvanceWarning, kWorkingDayWarning,
                                                     kWorkingDayWarning}));
}

INSTANTIATE_TEST_SUITE_P(Zones, ScheduleDateExtensionsZoneTest, ::testing::ValuesIn(kTestZones));

TEST(ScheduleDateExtensionsTest, DateTheCalendarCannotMoveIsGivenBack) {
    const TVDate farAway{1e300};
    EXPECT_EQ(dateAdvancedByDuration(farAway, 3600.0, true, nullptr), farAway);
}

TEST(ScheduleDateExtensionsTest, MissingDateIsAnInternalError) {
    try {
        dateAdvancedByDuration(std::nullopt, 60.0, true, false, nullptr);
        ADD_FAILURE() << "no assertion";
    } catch (const TVException& exception) {
        EXPECT_EQ(exception.reason(), "Date to advance from not specified.");
    }
}

TEST(KVMSPEWorkingTimeTest, DescriptionShowsBothTimesAsClockText) {
    EXPECT_EQ(KVMSPEWorkingTime(8 * 3600.0, 12.5 * 3600.0).description(),
              "KVMSPEWorkingTime: [08:00:00-12:30:00] ");
}

} // namespace
