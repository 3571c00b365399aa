#include "MPPExporter/MPPObjects/KVMSPEScheduleCalendar.h"

#include "MPPCommon/date/DateTestSupport.h"
#include "MPPCommon/support/TVException.h"
#include "MPPCommon/xml/KVMSPCXMLElement.h"

#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <limits>

namespace {

const KVMSPEScheduleCalendar& standard() {
    return KVMSPEScheduleCalendar::standardCalendar();
}

std::optional<TVDate> snapped(TVDate date, bool forward) {
    TVDate result;
    return standard().startDate(&result, date, forward) ? std::optional(result) : std::nullopt;
}

// Every day works 00:00-06:00 and 22:00-24:00: work runs through midnight.
KVMSPEScheduleCalendar nightShiftCalendar() {
    KVMSPEScheduleCalendar calendar;
    for (int64_t weekday = 1; weekday <= 7; ++weekday) {
        calendar.addWorkingTimePeriod(WorkingTimePeriod{0, 0, 0, 6, 0, 0}, weekday);
        calendar.addWorkingTimePeriod(WorkingTimePeriod{22, 0, 0, 24, 0, 0}, weekday);
    }
    return calendar;
}

void expectAssertion(const std::function<void()>& call, const std::string& text) {
    try {
        call();
        ADD_FAILURE() << "no assertion: " << text;
    } catch (const TVException& exception) {
        EXPECT_EQ(exception.name(), kInternalInconsistencyException);
        EXPECT_EQ(exception.reason(), text);
    }
}

using ScheduleCalendarZoneTest = ZoneTest;

TEST_P(ScheduleCalendarZoneTest, AdvancesForwardThroughLunchBreaksAndWeekends) {
    EXPECT_EQ(standard().date(february(2, 8), 4 * 3600.0, true, true), february(2, 12));
    EXPECT_EQ(standard().date(february(2, 8), 4 * 3600.0, true, false), february(2, 13));
    EXPECT_EQ(standard().date(february(2, 8), 8 * 3600.0, true, true), february(2, 17));
    EXPECT_EQ(standard().date(february(2, 8), 8 * 3600.0, true, false), february(3, 8));
    EXPECT_EQ(standard().date(february(4, 11, 30), 3600.0, true), february(4, 13, 30));
    EXPECT_EQ(standard().date(february(6, 16), 2 * 3600.0, true), february(9, 9));
    EXPECT_EQ(standard().date(february(7, 10), 3600.0, true), february(9, 9));
    EXPECT_EQ(standard().date(february(2, 10), 40 * 3600.0, true), february(9, 10));
    EXPECT_EQ(standard().date(february(2, 9), 0.5, true), february(2, 9));
}

TEST_P(ScheduleCalendarZoneTest, AdvancesBackwardThroughLunchBreaksAndWeekends) {
    EXPECT_EQ(standard().date(february(3, 10), 3 * 3600.0, false), february(2, 16));
    EXPECT_EQ(standard().date(february(2, 14), 2 * 3600.0, false), february(2, 11));
    EXPECT_EQ(standard().date(february(2, 14), 3600.0, false, true), february(2, 13));
    EXPECT_EQ(standard().date(february(2, 14), 3600.0, false, false), february(2, 12));
    EXPECT_EQ(standard().date(february(3, 9), 3600.0, false, false), february(2, 17));
    EXPECT_EQ(standard().date(february(2, 9), 2 * 3600.0, false), localInstant(2026, 1, 30, 16));
}

TEST_P(ScheduleCalendarZoneTest, SnapsOntoWorkingTime) {
    EXPECT_EQ(snapped(february(7, 10), true), february(9, 8));
    EXPECT_EQ(snapped(february(7, 10), false), february(6, 17));
    EXPECT_EQ(snapped(february(2, 12, 30), true), february(2, 13));
    EXPECT_EQ(snapped(february(2, 12, 30), false), february(2, 12));
    EXPECT_EQ(snapped(february(2, 12), true), february(2, 13));
    EXPECT_EQ(snapped(february(2, 12), false), february(2, 12));
    EXPECT_EQ(snapped(february(2, 8), false), localInstant(2026, 1, 30, 17));
    EXPECT_EQ(snapped(february(6, 17), true), february(9, 8));

    TVDate date;
    double seconds = 0;
    int64_t index = -1;
    ASSERT_TRUE(standard().startDate(&date, &seconds, &index, february(4, 12, 30), true));
    EXPECT_EQ(date, february(4, 13));
    EXPECT_EQ(seconds, 13 * 3600.0);
    EXPECT_EQ(index, 1);
}

TEST_P(ScheduleCalendarZoneTest, MeasuresWorkingTimeBetweenDates) {
    EXPECT_EQ(standard().workingTimeFromDate(february(2, 10), february(2, 14)), 3 * 3600.0);
    EXPECT_EQ(standard().workingTimeFromDate(february(6, 16), february(9, 9)), 2 * 3600.0);
    EXPECT_EQ(standard().workingTimeFromDate(february(2, 0), february(7, 0)), 40 * 3600.0);
    EXPECT_EQ(standard().workingTimeFromDate(february(2, 12, 10), february(2, 12, 50)), 0.0);
    EXPECT_EQ(standard().workingTimeFromDate(february(7, 1), february(8, 23)), 0.0);
    EXPECT_EQ(standard().workingTimeFromDate(february(2, 10), february(2, 10)), 0.0);
    EXPECT_EQ(standard().workingTimeFromDate(february(2, 14), february(2, 10)), 0.0);
}

TEST_P(ScheduleCalendarZoneTest, WorksThroughMidnight) {
    const KVMSPEScheduleCalendar calendar = nightShiftCalendar();
    EXPECT_EQ(calendar.date(february(2, 23), 2 * 3600.0, true), february(3, 1));
    EXPECT_EQ(calendar.date(february(2, 22), 2 * 3600.0, true, false), february(3, 0));
    EXPECT_EQ(calendar.date(february(3, 1), 2 * 3600.0, false), february(2, 23));
    EXPECT_EQ(calendar.date(february(2, 12), 0.0, true), february(2, 22));
    EXPECT_EQ(calendar.workingTimeFromDate(february(2, 23), february(3, 1)), 2 * 3600.0);
}

TEST_P(ScheduleCalendarZoneTest, AdvancesIntoADayWithFewerPeriods) {
    // Mondays work one period, Tuesdays two: an advance that ends a Tuesday in its second period goes
    // on from the first period of the next Monday.
    KVMSPEScheduleCalendar calendar;
    calendar.addWorkingTimePeriod(WorkingTimePeriod{8, 0, 0, 12, 0, 0}, 2);
    calendar.addWorkingTimePeriod(WorkingTimePeriod{8, 0, 0, 12, 0, 0}, 3);
    calendar.addWorkingTimePeriod(WorkingTimePeriod{13, 0, 0, 17, 0, 0}, 3);
    EXPECT_EQ(calendar.date(february(3, 14), 5 * 3600.0, true), february(9, 10));
}

INSTANTIATE_TEST_SUITE_P(Zones, ScheduleCalendarZoneTest, ::testing::ValuesIn(kTestZones));

// A day step is a fixed 86400 seconds, so after a change of daylight saving the stepped day starts an
// hour off midnight and the result keeps that hour.
TEST(ScheduleCalendarTest, DayStepsKeepFixedLengthAcrossDaylightSavingChanges) {
    SystemZoneScope zone("America/New_York");
    // Fri 2026-03-06 16:00 EST + 2 h: Mon 10:00 EDT.
    EXPECT_EQ(standard().date(TVDate{1772830800}, 2 * 3600.0, true), TVDate{1773064800});
    // Fri 2026-10-30 16:00 EDT + 2 h: Monday begins at Mon 23:00 EST, so Tue 08:00 EST.
    EXPECT_EQ(standard().date(TVDate{1793390400}, 2 * 3600.0, true), TVDate{1793710800});
    // Mon 2026-03-09 09:00 EDT - 2 h: Friday is reached at Fri 23:00 EST, so Sat 15:00 EST.
    EXPECT_EQ(standard().date(TVDate{1773061200}, 2 * 3600.0, false), TVDate{1772913600});
    // Fri 16:00 EST to Mon 10:00 EDT: Monday's walk starts at 01:00 EDT, after the last midnight.
    EXPECT_EQ(standard().workingTimeFromDate(TVDate{1772830800}, TVDate{1773064800}), 3600.0);
}

TEST(ScheduleCalendarTest, AnswersQuestionsOnDaysAndPeriods) {
    EXPECT_FALSE(standard().isWorkingDayWeekday(1));
    EXPECT_TRUE(standard().isWorkingDayWeekday(2));
    EXPECT_EQ(standard().timePeriodsInWeekday(7), 0);
    EXPECT_EQ(standard().timePeriodsInWeekday(6), 2);
    EXPECT_EQ(standard().durationOfTimePeriod(1, 3), 4 * 3600.0);
    EXPECT_EQ(standard().startTimeForTimePeriod(1, 3), 13 * 3600.0);
    EXPECT_EQ(standard().endTimeForTimePeriod(0, 3), 12 * 3600.0);
    for (const auto& [period, weekday] :
         {std::pair{0, 1}, std::pair{0, 0}, std::pair{0, 8}, std::pair{2, 2}}) {
        EXPECT_EQ(standard().durationOfTimePeriod(period, weekday), -1.0);
        EXPECT_EQ(standard().endTimeForTimePeriod(period, weekday), -1.0);
        EXPECT_FALSE(standard().startHour(nullptr, nullptr, nullptr, period, weekday));
    }
    int64_t hour = 0;
    int64_t minute = 0;
    EXPECT_TRUE(standard().endHour(&hour, &minute, nullptr, 1, 4));
    EXPECT_EQ(hour, 17);
    EXPECT_EQ(minute, 0);
}

TEST(ScheduleCalendarTest, RejectsProgrammingErrors) {
    const std::string weekdayText = "Incorrect value of weekdey (8). Should be from 1 to 7.";
    expectAssertion([] { standard().isWorkingDayWeekday(8); }, weekdayText);
    expectAssertion([] { KVMSPEScheduleCalendar().addWorkingTimePeriod({}, 0); },
                    "Incorrect value of weekdey (0). Should be from 1 to 7.");
    expectAssertion([] { standard().date(std::nullopt, 1.0, true); }, "Date to advance from not specified.");
    expectAssertion([] { standard().date(TVDate{0}, -1.0, true); },
                    "Duration can not be negative. To specify backward advance use argument forward=NO.");
}

TEST(ScheduleCalendarTest, CalendarWithoutWorkingTimeGivesNoAnswer) {
    const KVMSPEScheduleCalendar calendar;
    TVDate date{42};
    EXPECT_FALSE(calendar.startDate(&date, TVDate{1772830800}, true));
    EXPECT_EQ(date, TVDate{42});
    EXPECT_EQ(calendar.date(TVDate{1772830800}, 3600.0, true), std::nullopt);
    EXPECT_EQ(calendar.workingTimeFromDate(TVDate{0}, TVDate{1772830800}), 0.0);
}

// Durations and dates that only a corrupt file can hold end in no answer, never in an endless walk.
TEST(ScheduleCalendarTest, EndsWalksThatCannotFinish) {
    KVMSPEScheduleCalendar emptyPeriods;
    emptyPeriods.addWorkingTimePeriod(WorkingTimePeriod{9, 0, 0, 9, 0, 0}, 2);
    emptyPeriods.addWorkingTimePeriod(WorkingTimePeriod{9, 0, 0, 10, 0, 0}, 4);
    KVMSPEScheduleCalendar reversed;
    reversed.addWorkingTimePeriod(WorkingTimePeriod{17, 0, 0, 8, 0, 0}, 2);
    const TVDate monday{1772830800 - 4 * 86400};
    EXPECT_EQ(emptyPeriods.date(monday, 1e12, true), std::nullopt);
    EXPECT_EQ(reversed.date(monday, 3600.0, true), std::nullopt);
    EXPECT_EQ(standard().date(monday, std::numeric_limits<double>::infinity(), true), std::nullopt);
    EXPECT_EQ(standard().date(monday, std::nan(""), true), std::nullopt);
    EXPECT_EQ(standard().date(TVDate{std::nan("")}, 3600.0, true), std::nullopt);
    EXPECT_EQ(standard().date(TVDate{1e300}, 3600.0, true), std::nullopt);
    EXPECT_FALSE(standard().isWorkingDay(TVDate{std::numeric_limits<double>::infinity()}));
    const double walked = standard().workingTimeFromDate(TVDate{0}, TVDate{1e11});
    EXPECT_GT(walked, 0.0);
    EXPECT_LE(walked, KVMSPEScheduleCalendar::kMaxWalkDays * 8 * 3600.0);
}

TEST(ScheduleCalendarTest, ReadsTheWeekOfABundleSchedule) {
    const auto schedule = KVMSPCXMLElement::initWithXMLString(
        "<schedule><schedule-day day-of-week=\"monday\">"
        "<time-span start-time=\" 28800.9\" end-time=\"45045\"/>"
        "<time-span start-time=\"x\" end-time=\"50000\"/><time-span start-time=\"50000\" end-time=\"\"/>"
        "<time-span end-time=\"60\"/></schedule-day>"
        "<schedule-day day-of-week=\"Tuesday\"><time-span start-time=\"0\" end-time=\"60\"/></schedule-day>"
        "<schedule-day day-of-week=\"friday\"/>"
        "<flattened-schedule-day day-of-week=\"sunday\"><time-span start-time=\"0\" end-time=\"60\"/>"
        "</flattened-schedule-day></schedule>",
        nullptr);
    ASSERT_TRUE(schedule);
    const KVMSPEScheduleCalendar calendar(*schedule);
    ASSERT_EQ(calendar.timePeriodsInWeekday(2), 2);
    EXPECT_EQ(calendar.workingPeriods(2)[0], (WorkingTimePeriod{8, 0, 0, 12, 30, 45}));
    EXPECT_EQ(calendar.workingPeriods(2)[1], (WorkingTimePeriod{0, 0, 0, 0, 1, 0}));
    for (int64_t weekday : {1, 3, 6}) {
        EXPECT_FALSE(calendar.isWorkingDayWeekday(weekday)) << weekday;
    }
}

} // namespace
