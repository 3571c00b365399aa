#include "MPPExporter/writers/KVMPP15CalendarWriter.h"

#include "MPPCommon/date/DateTestSupport.h"
#include "MPPCommon/storage/SSLRoot.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPExporter/MPPObjects/KVMPPProject.h"
#include "MPPExporter/writers/KVMPP15ProjectWriter.h"
#include "MPPImporter/file/KVMSPIMPPVersionReader.h"
#include "MPPImporter/format/MPPCalendarRecord.h"
#include "MPPImporter/readers/KVMSPIMPPCalendarReader.h"
#include "MPPImporter/readers/KVMSPIMPPProjectReader.h"
#include "WriterTestSupport.h"
#include "support/TestSupport.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;

// Midnight of a day after the Monday, as the instant whose wall clock in the system zone it is.
TVDate day(int days) {
    const TVDate utc = TVDate::fromUnixSeconds(kMonday + days * 86400.0);
    return utc.addingSeconds(-TVTimeZone::systemTimeZone().secondsFromGMT(utc));
}

KVMPPCalendarTimeRange range(int32_t fromHour, int32_t toHour) {
    return KVMPPCalendarTimeRange::initWithStartTotalMinutes(fromHour * 60, toHour * 60);
}

std::string text(const std::vector<MPPWorkingTimeRange>& ranges) {
    std::string result;
    for (const MPPWorkingTimeRange& each : ranges) {
        result += stringWithFormat("%lld-%lld ", static_cast<long long>(each.from / (kHour / 60)),
                                   static_cast<long long>(each.to / (kHour / 60)));
    }
    return result;
}

// A plan with every kind of calendar: the standard calendar with stated, empty, degenerate and default
// days and two exceptions; a base calendar; a resource without a calendar and one whose calendar is
// derived from the base calendar and holds an exception.
struct CalendarPlan {
    KVMPPProject project;

    CalendarPlan() {
        // The mapping replaces the project's standard calendar with the bundle's.
        project.standardCalendar = std::make_shared<KVMPPCalendar>();
        project.calendar.setObject(project.standardCalendar);
        KVMPPCalendar& standard = *project.standardCalendar;
        standard.isBaseCalendar = true;
        standard.defaultWorkWeek.setWorkRanges(KVMPPCalendarWorkWeek::Ranges{}, 1);
        standard.defaultWorkWeek.setWorkRanges(KVMPPCalendarWorkWeek::Ranges{range(9, 17)}, 2);
        standard.defaultWorkWeek.setWorkRanges(KVMPPCalendarWorkWeek::Ranges{range(22, 0)}, 3);
        standard.defaultWorkWeek.setWorkRanges(KVMPPCalendarWorkWeek::Ranges{range(10, 9)}, 4);
        standard.defaultWorkWeek.setWorkRanges(
            KVMPPCalendarWorkWeek::Ranges{range(1, 2), range(3, 4), range(5, 6), range(7, 8), range(9, 10)},
            6);
        KVMPPCalendarException off;
        off.startDate = day(2);
        off.endDate = day(4);
        off.name = "Time Off";
        KVMPPCalendarException overtime;
        overtime.startDate = day(5);
        overtime.endDate = day(5);
        overtime.workRanges = {range(8, 12)};
        overtime.name = "Overtime";
        standard.exceptions = {off, overtime};
        project.baseCalendars.push_back(project.standardCalendar);

        night = std::make_shared<KVMPPCalendar>();
        night->isBaseCalendar = true;
        night->name = "Night";
        night->defaultWorkWeek.setWorkRanges(KVMPPCalendarWorkWeek::Ranges{range(20, 23)}, 2);
        project.baseCalendars.push_back(night);

        auto plain = std::make_shared<KVMPPResource>();
        plain->ID = 1;
        auto worker = std::make_shared<KVMPPResource>();
        worker->ID = 2;
        auto own = std::make_shared<KVMPPCalendar>();
        own->name = "Worker";
        own->baseCalendar.setObject(night);
        KVMPPCalendarException holiday;
        holiday.startDate = day(1);
        holiday.endDate = day(1);
        own->exceptions = {holiday};
        worker->calendar.setObject(own);
        project.resources = {plain, worker};
    }

    std::shared_ptr<KVMPPCalendar> night;
};

class WrittenCalendars {
public:
    explicit WrittenCalendars(const fs::path& file) : m_root(file.string()) {
        KVMSPIMPPVersionReader versionReader(file.string(), KVMSPIMPPProjectReader::projectReaderFactory());
        m_reader = versionReader.getMppReader(m_root, false, nullptr);
        auto* project = m_reader ? dynamic_cast<KVMSPIMPPProjectReader*>(m_reader->projectReader()) : nullptr;
        m_calendars = project ? dynamic_cast<KVMSPIMPPCalendarReader*>(project->calendarReader()) : nullptr;
    }
    KVMSPIMPPCalendarReader* calendars() const { return m_calendars; }

private:
    SSLRoot m_root;
    std::unique_ptr<KVMSPIMPPReader> m_reader;
    KVMSPIMPPCalendarReader* m_calendars = nullptr;
};

TEST(KVMPP15CalendarWriter, TheReaderReadsBackEveryCalendarWithItsWeekAndExceptions) {
    for (const char* zone : {"UTC", "America/New_York"}) {
        SystemZoneScope scope(zone);
        testsupport::TempDir dir;
        CalendarPlan plan;
        const fs::path output = dir.path() / "plan.mpp";
        ASSERT_TRUE(KVMPP15ProjectWriter::writeProject(plan.project, output.string(),
                                                       writertest::shippedTemplate().string()));
        // The resource without a calendar got one derived from the project's calendar.
        ASSERT_NE(plan.project.resources[0]->calendar.object(), nullptr);
        EXPECT_EQ(plan.project.resources[0]->calendar.object()->baseCalendar.object(),
                  plan.project.standardCalendar.get());

        WrittenCalendars written(output);
        ASSERT_NE(written.calendars(), nullptr) << zone;
        KVMSPIMPPCalendarReader& reader = *written.calendars();
        std::vector<int32_t> uids = reader.uniqueIDs();
        std::sort(uids.begin(), uids.end());
        ASSERT_EQ(uids, (std::vector<int32_t>{1, 2, 3, 4, 5})) << zone;
        std::vector<std::string> summary;
        for (int32_t uid : uids) {
            std::string name;
            reader.calendarName(uid, name);
            int32_t base = 0;
            int32_t resource = 0;
            EXPECT_TRUE(reader.calendarBaseCalendarUID(uid, base) &&
                        reader.calendarResourceUID(uid, resource));
            summary.push_back(stringWithFormat("%d %s base %d resource %d data %d", uid, name.c_str(), base,
                                               resource, reader.hasCalendarDataForUID(uid) ? 1 : 0));
        }
        // Resource calendars lose their names; a derived calendar with nothing of its own has no data.
        EXPECT_EQ(summary, (std::vector<std::string>{
                               "1 Standard base -1 resource -1 data 1", "2  base 1 resource 0 data 0",
                               "3 Night base -1 resource -1 data 1", "4  base 1 resource 1 data 0",
                               "5  base 3 resource 2 data 1"}));

        // Sunday off; 09:00 to 17:00; a range to midnight runs to the day's end; a range that ends
        // before it starts has no length; Wednesday and Saturday follow the default week.
        const std::vector<std::string> week = {
            "",         "540-1020 ",         "1320-1440 ",
            "600-600 ", "480-720 780-1020 ", "60-120 180-240 300-360 420-480 540-600 ",
            ""};
        for (int32_t dayType = 1; dayType <= 7; ++dayType) {
            std::vector<MPPWorkingTimeRange> ranges;
            EXPECT_TRUE(reader.calendarWeekDayWorkingTimes(1, dayType, ranges));
            EXPECT_EQ(text(ranges), week[static_cast<size_t>(dayType - 1)]) << zone << " day " << dayType;
        }

        int32_t count = 0;
        ASSERT_TRUE(reader.calendarExceptionsCount(1, count));
        ASSERT_EQ(count, 2);
        TVDate from;
        TVDate to;
        std::vector<MPPWorkingTimeRange> ranges;
        EXPECT_TRUE(reader.calendarExceptionTimePeriodFromDate(1, 0, from) &&
                    reader.calendarExceptionTimePeriodToDate(1, 0, to) &&
                    reader.calendarExceptionWorkingTimes(1, 0, ranges));
        EXPECT_EQ(from, KVMPPData::wallClock(day(2))) << zone;
        EXPECT_EQ(to, KVMPPData::wallClock(day(4))) << zone;
        EXPECT_TRUE(ranges.empty());
        EXPECT_TRUE(reader.calendarExceptionTimePeriodFromDate(1, 1, from) &&
                    reader.calendarExceptionWorkingTimes(1, 1, ranges));
        EXPECT_EQ(from, KVMPPData::wallClock(day(5)));
        EXPECT_EQ(text(ranges), "480-720 ");
        int32_t type = 0;
        int32_t occurrences = 0;
        std::optional<TVDate> first;
        std::optional<TVDate> last;
        EXPECT_TRUE(reader.calendarExceptionRecurrenceType(1, 1, type, occurrences, first, last));
        EXPECT_EQ(type, 1) << "a single stretch of days";
        EXPECT_TRUE(reader.calendarExceptionsCount(5, count) && count == 1) << count;
    }
}

// The records as the files hold them: the lengths summed up to each range in a third list, and the
// day's total behind the count.
TEST(KVMPP15CalendarWriter, DayRecordsHoldTotalsAndNamesTheirByteCounts) {
    std::vector<uint8_t> record(MPPCalendarDataBlock::kDayRecordSize, 0xAA);
    const std::vector<MPPWorkingTimeRange> ranges =
        KVMPP15CalendarWriter::recordRanges({range(8, 12), range(13, 17)});
    MPPCalendarDataBlock::encodeDayRecord(&ranges, record);
    const MPPCalendarRecord day(record);
    EXPECT_EQ(day.readShort(0), 0);
    EXPECT_EQ(day.readShort(2), 2);
    EXPECT_EQ(day.readInt(4), 4800);
    EXPECT_EQ(day.readShort(8), 4800) << "08:00 in tenths of a minute";
    EXPECT_EQ(day.readShort(10), 7800);
    EXPECT_EQ(day.readInt(20), 2400);
    EXPECT_EQ(day.readInt(24), 2400);
    EXPECT_EQ(day.readInt(40), 2400);
    EXPECT_EQ(day.readInt(44), 4800);
    EXPECT_EQ(day.readInt(56), 0);
    MPPCalendarDataBlock::encodeDayRecord(nullptr, record);
    EXPECT_EQ(day.readShort(0), 1) << "a day without a list follows its base";
    EXPECT_EQ(day.readShort(2), 0);

    // 00:00 to midnight is the whole day, 22:00 to midnight two hours.
    EXPECT_EQ(text(KVMPP15CalendarWriter::recordRanges({range(0, 0), range(22, 0)})), "0-1440 1320-1440 ");

    for (const auto& [name, size] : std::vector<std::pair<std::u16string, size_t>>{
             {u"abc", 4 + 8}, {u"ab", 4 + 6 + 2}, {u"a", 4 + 4}, {u"", 4}}) {
        std::vector<uint8_t> bytes;
        MPPCalendarDataBlock::appendSizedName(name, bytes);
        EXPECT_EQ(bytes.size(), size);
    }
}

TEST(KVMPP15CalendarWriter, SixRangesInADayEndTheExportWithoutAFile) {
    testsupport::TempDir dir;
    CalendarPlan plan;
    plan.night->defaultWorkWeek.setWorkRanges(KVMPPCalendarWorkWeek::Ranges{range(1, 2), range(3, 4),
                                                                            range(5, 6), range(7, 8),
                                                                            range(9, 10), range(11, 12)},
                                              3);
    const fs::path output = dir.path() / "plan.mpp";
    EXPECT_FALSE(KVMPP15ProjectWriter::writeProject(plan.project, output.string(),
                                                    writertest::shippedTemplate().string()));
    EXPECT_FALSE(fs::exists(output));
    try {
        KVMPP15CalendarWriter::recordRanges(*plan.night->defaultWorkWeek.workRangesForDay(3));
        ADD_FAILURE() << "six ranges were taken";
    } catch (const TVException& exception) {
        EXPECT_EQ(exception.name() + ": " + exception.reason(),
                  "TooManyRangesException: Not more than 5 time ranges can be written to a calendar");
    }
}

} // namespace
