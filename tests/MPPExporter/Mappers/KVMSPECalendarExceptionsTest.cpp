#include "MPPExporter/Mappers/KVMSPECalendarExceptions.h"

#include "MPPCommon/date/DateTestSupport.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/Mapper/utilities/KVMSPIUtilities.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

std::string tvnx(TVDate date) {
    return *KVMSPIUtilities::mppToTvnxDateTime(date);
}

std::string event(TVDate start, TVDate end) {
    return "<event start='" + tvnx(start) + "' end='" + tvnx(end) + "'/>";
}

KVMSPCXMLElement::ElementPtr element(const std::string& xml) {
    TVError error;
    auto parsed = KVMSPCXMLElement::initWithXMLString(xml, &error);
    EXPECT_TRUE(parsed) << xml;
    return parsed;
}

// The exceptions as "first day.hh:mm:ss-last day.hh:mm:ss/days [from-to ...]", days of February.
std::string exceptionsText(const KVMSPECalendarExceptions& exceptions) {
    const auto clock = [](TVDate date) {
        const double seconds = date.secondsSince(february(1));
        const int day = static_cast<int>(std::floor(seconds / 86400.0)) + 1;
        const int time = static_cast<int>(seconds - (day - 1) * 86400.0);
        return stringWithFormat("%d.%02d:%02d:%02d", day, time / 3600, time % 3600 / 60, time % 60);
    };
    std::string text;
    for (int64_t index = 0; index < exceptions.exceptionsCount(); ++index) {
        TVDate from;
        TVDate to;
        int64_t days = 0;
        int64_t count = 0;
        EXPECT_TRUE(exceptions.exception(index, &from, &to, &days));
        EXPECT_TRUE(exceptions.exception(index, &count));
        text += clock(from) + "-" + clock(to) + "/" + std::to_string(days);
        for (int64_t time = 0; time < count; ++time) {
            double fromTime = 0;
            double toTime = 0;
            EXPECT_TRUE(exceptions.exception(index, time, &fromTime, &toTime));
            text += stringWithFormat(" %.0f-%.0f", fromTime, toTime);
        }
        text += ";";
    }
    TVDate unused;
    EXPECT_FALSE(exceptions.exception(exceptions.exceptionsCount(), &unused, &unused, nullptr));
    return text;
}

std::string mappedCalendar(const std::string& events, const char* overtime = "yes") {
    KVMSPECalendarExceptions exceptions(*element(std::string("<calendar name='Overtime' overtime='") +
                                                 overtime + "'>" + events + "</calendar>"));
    exceptions.mapEvents();
    return exceptionsText(exceptions);
}

using CalendarExceptionsZoneTest = ZoneTest;

TEST_P(CalendarExceptionsZoneTest, EventsBecomeStretchesOfWholeDaysThatDontOverlap) {
    // A whole day ending at midnight, hours on one day, and the same hours on each of three days.
    EXPECT_EQ(mappedCalendar(event(february(2), february(3))), "2.00:00:00-2.23:59:59/1 0-86399;");
    EXPECT_EQ(mappedCalendar(event(february(2, 9), february(2, 12))), "2.00:00:00-2.23:59:59/1 32400-43200;");
    EXPECT_EQ(mappedCalendar(event(february(2, 9), february(4, 12))), "2.00:00:00-4.23:59:59/3 32400-43200;");
    // A repeated event counts on its occurrences, consecutive ones as one stretch; an unreadable rule
    // leaves the series one event from its first start to its end.
    const auto series = [](const std::string& rule) {
        const std::string events = event(february(2, 9), february(8, 12));
        return mappedCalendar(events.substr(0, events.size() - 2) + " rrule='" + rule + "'/>");
    };
    EXPECT_EQ(series("FREQ=DAILY;INTERVAL=2;COUNT=3"),
              "2.00:00:00-2.23:59:59/1 32400-43200;4.00:00:00-4.23:59:59/1 32400-43200;"
              "6.00:00:00-6.23:59:59/1 32400-43200;");
    EXPECT_EQ(series("FREQ=WEEKLY;BYDAY=TU,WE,SA"),
              "3.00:00:00-4.23:59:59/2 32400-43200;7.00:00:00-7.23:59:59/1 32400-43200;");
    EXPECT_EQ(series("FREQ=SECONDLY"), "2.00:00:00-8.23:59:59/7 32400-43200;");
    // Two series that meet on a day give its hours once.
    EXPECT_EQ(mappedCalendar(event(february(4, 9), february(4, 12)) + event(february(4, 9), february(4, 12))),
              "4.00:00:00-4.23:59:59/1 32400-43200;");
    // Two days off a week apart, given out of order, and nothing for the gap.
    EXPECT_EQ(mappedCalendar(
                  event(february(9), february(9, 23, 59)) + event(february(2), february(2, 23, 59)), "no"),
              "2.00:00:00-2.23:59:59/1 0-86340;9.00:00:00-9.23:59:59/1 0-86340;");
    // Monday to Wednesday and Tuesday to Thursday: a new stretch wherever the active events change,
    // with the hours of both side by side where they overlap.
    EXPECT_EQ(
        mappedCalendar(event(february(3, 10), february(5, 14)) + event(february(2, 9), february(4, 12))),
        "2.00:00:00-2.23:59:59/1 32400-43200;3.00:00:00-4.23:59:59/2 32400-43200 36000-50400;"
        "5.00:00:00-5.23:59:59/1 36000-50400;");
    EXPECT_EQ(mappedCalendar(""), "");
}

TEST_P(CalendarExceptionsZoneTest, FlattenedDaysAreOneExceptionEach) {
    const auto first = element("<flattened-schedule-day date='" + tvnx(february(3, 12)) +
                               "'><time-span start-time='28800' end-time='36000'/>"
                               "<time-span start-time='39600' end-time='43200'/></flattened-schedule-day>");
    const auto second = element("<flattened-schedule-day date='" + tvnx(february(4)) +
                                "'><time-span start-time='0' end-time='3600'/></flattened-schedule-day>");
    KVMSPECalendarExceptions overtime({first, second}, true);
    overtime.mapEvents();
    EXPECT_EQ(overtime.calendarName(), "Overtime");
    EXPECT_EQ(exceptionsText(overtime),
              "3.00:00:00-3.23:59:59/1 28800-36000 39600-43200;4.00:00:00-4.23:59:59/1 0-3600;");

    const auto dayOff = element("<flattened-schedule-day date='" + tvnx(february(6, 9)) + "'/>");
    KVMSPECalendarExceptions timeOff({dayOff}, false);
    timeOff.mapEvents();
    EXPECT_EQ(timeOff.calendarName(), "Time Off");
    EXPECT_FALSE(timeOff.overtime());
    EXPECT_EQ(exceptionsText(timeOff), "6.00:00:00-6.23:59:59/1;");
}

TEST_P(CalendarExceptionsZoneTest, EventsThatTheApplicationNeverWritesAreInternalErrors) {
    const struct {
        std::string xml;
        std::string reason;
    } rows[] = {
        {"<calendar>" + event(february(2), february(2)) + "</calendar>",
         "Calendar event start and end days are too close."},
        {"<calendar>" + event(february(2, 9), february(3, 9)) + "</calendar>",
         "Calendar event start and end times may be equal only at midnight (00:00:00)."},
        {"<calendar>" + event(february(2, 9), february(3, 8)) + "</calendar>",
         "Incoorrect calendar event start (09:00:00) and end (08:00:00) time."},
    };
    for (const auto& row : rows) {
        try {
            KVMSPECalendarExceptions exceptions(*element(row.xml));
            ADD_FAILURE() << row.xml;
        } catch (const TVException& exception) {
            EXPECT_EQ(exception.reason(), row.reason);
        }
    }
    const auto spanOnDayOff = element("<flattened-schedule-day date='" + tvnx(february(6)) +
                                      "'><time-span start-time='0' end-time='60'/></flattened-schedule-day>");
    EXPECT_THROW(KVMSPECalendarExceptions({spanOnDayOff}, false), TVException);
    const auto overtimeWithoutSpans = element("<flattened-schedule-day date='" + tvnx(february(6)) + "'/>");
    EXPECT_THROW(KVMSPECalendarExceptions({overtimeWithoutSpans}, true), TVException);
}

INSTANTIATE_TEST_SUITE_P(Zones, CalendarExceptionsZoneTest, ::testing::ValuesIn(kTestZones));

} // namespace
