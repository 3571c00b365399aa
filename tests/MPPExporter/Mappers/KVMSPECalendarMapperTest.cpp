#include "MPPExporter/Mappers/KVMSPECalendarMapper.h"

#include "MPPCommon/date/DateTestSupport.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPExporter/ExportBundleText.h"
#include "MPPImporter/Mapper/utilities/KVMSPIUtilities.h"

#include <gtest/gtest.h>

namespace {

using ElementPtr = KVMSPCXMLElement::ElementPtr;

using exportbundle::februaryText;

// A scenario's resources mapped as the project mapping walks them: the top resource "r-1" first,
// then each `child-resource` under its parent, depth first.
class MappedScenario {
public:
    explicit MappedScenario(const std::string& resources) {
        TVError error;
        _scenario = KVMSPCXMLElement::initWithXMLString("<scenario>" + resources + "</scenario>", &error);
        EXPECT_TRUE(_scenario) << resources;
        tvSetLogSink([this](const std::string& line) { log += line + "\n"; });
        mapper.setTopScheduleKey("r-1");
        map(resource("r-1"), nullptr);
        mapper.buildCalendarHierarchy();
        tvSetLogSink({});
    }

    // The calendar of a UID as "name base=K|base: sun=... mon=..." with "?" for an unstated day and
    // "off" for a stated non-working day, then its exceptions and dated weeks.
    std::string calendar(uint64_t uid) const {
        for (const auto& calendar : mapper.calendars()) {
            if (calendar->ID == uid) {
                return text(*calendar);
            }
        }
        return "none";
    }

    std::vector<uint64_t> uids() const {
        std::vector<uint64_t> uids;
        for (const auto& calendar : mapper.calendars()) {
            uids.push_back(calendar->ID);
        }
        return uids;
    }

    KVMSPECalendarMapper mapper{[this] { return _nextUID++; }};
    std::map<std::string, int64_t> resourceUIDs;
    std::string log;

private:
    ElementPtr resource(const std::string& id) const {
        const auto found = _scenario->objectsForXQuery("resource[@id='" + id + "']", nullptr);
        return found.empty() ? nullptr : std::dynamic_pointer_cast<KVMSPCXMLElement>(found.front());
    }

    void map(const ElementPtr& element, const ElementPtr& parent) {
        if (!element) {
            return;
        }
        const std::string id = element->attributeForName("id")->stringValue().value_or("");
        resourceUIDs[id] = mapper.mapCalendarForResource(element, parent);
        for (const auto& child : element->elementsForName("child-resource")) {
            map(resource(child->attributeForName("idref")->stringValue().value_or("")), element);
        }
    }

    static std::string week(const KVMPPCalendarWorkWeek& week) {
        std::string text;
        for (int64_t day = 1; day <= 7; ++day) {
            const auto& ranges = week.workRangesForDay(day);
            text += " " + KVMPPCalendarWorkWeek::dayName(day).substr(0, 3) + "=";
            if (!ranges) {
                text += "?";
            } else if (ranges->empty()) {
                text += "off";
            }
            for (size_t index = 0; ranges && index < ranges->size(); ++index) {
                const auto& range = (*ranges)[index];
                text +=
                    stringWithFormat("%s%02d:%02d-%02d:%02d", index == 0 ? "" : ",", range.start().hours(),
                                     range.start().minutes(), range.end().hours(), range.end().minutes());
            }
        }
        return text;
    }

    static std::string text(const KVMPPCalendar& calendar) {
        std::string text = calendar.name.value_or("") + (calendar.isBaseCalendar ? " base" : "") +
                           " key=" + (calendar.baseCalendar.key() ? *calendar.baseCalendar.key() : "none") +
                           ":" + week(calendar.defaultWorkWeek);
        for (const auto& exception : calendar.exceptions) {
            text += " | " + exception.name.value_or("") + " " +
                    KVMSPIUtilities::mppToTvnxDateTime(*exception.startDate)->substr(5, 11) + " " +
                    std::to_string(exception.workRanges.size());
        }
        for (const auto& dated : calendar.workWeeks) {
            text += " | " + dated.name.value_or("") + week(dated);
        }
        return text;
    }

    ElementPtr _scenario;
    int64_t _nextUID = 1;
};

constexpr const char* kDefaultWeek =
    " sun=off mon=08:00-12:00,13:00-17:00 tue=08:00-12:00,13:00-17:00 wed=08:00-12:00,13:00-17:00"
    " thu=08:00-12:00,13:00-17:00 fri=08:00-12:00,13:00-17:00 sat=off";

TEST(KVMSPECalendarMapperTest, TheTopScheduleIsTheStandardBaseCalendarWithTheDefaultWeekFilledIn) {
    EXPECT_EQ(MappedScenario("<resource id='r-1'><type>Group</type></resource>").calendar(1),
              std::string("Standard base key=-1:") + kDefaultWeek);
    const MappedScenario statesMonday(
        "<resource id='r-1'><name>Plan</name><schedule><schedule-day "
        "day-of-week='monday'><time-span start-time='32400' end-time='36000'/>"
        "</schedule-day><schedule-day day-of-week='saturday'><time-span "
        "start-time='0' end-time='86400'/></schedule-day></schedule></resource>");
    EXPECT_EQ(statesMonday.calendar(1),
              "Standard base key=-1: sun=off mon=09:00-10:00 tue=08:00-12:00,13:00-17:00 "
              "wed=08:00-12:00,13:00-17:00 thu=08:00-12:00,13:00-17:00 "
              "fri=08:00-12:00,13:00-17:00 sat=00:00-24:00");
}

// r-1 holds the group g (r5, Tuesday off) with the staff s (r6, Monday 10-11) and a nested unnamed
// group (r8, nothing of its own) with the staff u (r9); the staff t (r7) sits directly under r-1.
TEST(KVMSPECalendarMapperTest, NestedSchedulesBecomeBaseCopiesAndCalendarsDerivedFromThem) {
    const MappedScenario scenario(
        "<resource id='r-1'><schedule/><child-resource idref='r5'/><child-resource idref='r7'/></resource>"
        "<resource id='r5'><name>g</name><type>Group</type><schedule><schedule-day day-of-week='tuesday'/>"
        "</schedule><child-resource idref='r6'/><child-resource idref='r8'/></resource>"
        "<resource id='r6'><name>s</name><schedule><schedule-day day-of-week='monday'><time-span "
        "start-time='36000' end-time='39600'/></schedule-day></schedule></resource>"
        "<resource id='r8'><type>Group</type><child-resource idref='r9'/></resource>"
        "<resource id='r9'><name>u</name></resource>"
        "<resource id='r7'><name>t</name></resource>");
    EXPECT_EQ(scenario.resourceUIDs, (std::map<std::string, int64_t>{
                                         {"r-1", 1}, {"r5", 2}, {"r6", 3}, {"r8", 4}, {"r9", 5}, {"r7", 6}}));
    // One calendar per schedule, in reading order; a group's is its flat copy, with a UID of its own.
    EXPECT_EQ(scenario.uids(), (std::vector<uint64_t>{1, 7, 3, 8, 5, 6}));
    const std::string groupWeek = " sun=off mon=08:00-12:00,13:00-17:00 tue=off wed=08:00-12:00,13:00-17:00"
                                  " thu=08:00-12:00,13:00-17:00 fri=08:00-12:00,13:00-17:00 sat=off";
    EXPECT_EQ(scenario.calendar(7), "g base key=-1:" + groupWeek);
    EXPECT_EQ(scenario.calendar(3), "s key=7: sun=? mon=10:00-11:00 tue=? wed=? thu=? fri=? sat=?");
    EXPECT_EQ(scenario.calendar(8), " base key=-1:" + groupWeek);
    EXPECT_EQ(scenario.calendar(5), "u key=8: sun=? mon=? tue=? wed=? thu=? fri=? sat=?");
    EXPECT_EQ(scenario.calendar(6), "t key=1: sun=? mon=? tue=? wed=? thu=? fri=? sat=?");
    EXPECT_EQ(scenario.calendar(2), "none");
}

TEST(KVMSPECalendarMapperTest, EventsBecomeExceptionsThatFlatCopiesInheritFromTheNearestAncestor) {
    const MappedScenario scenario(
        "<resource id='r-1'><schedule><calendar name='Overtime' overtime='yes'><event start='" +
        februaryText(7, 9) + "' end='" + februaryText(7, 12) +
        "'/></calendar><calendar name='Time&#10;Off' overtime='no'><event start='" + februaryText(3, 10) +
        "' end='" + februaryText(3, 11) + "'/><event start='" + februaryText(7, 12) + "' end='" +
        februaryText(7, 23) +
        "'/></calendar></schedule><child-resource idref='r5'/></resource>"
        "<resource id='r5'><type>Group</type><child-resource idref='r6'/></resource>"
        "<resource id='r6'><schedule><calendar overtime=''><event start='" +
        februaryText(4) + "' end='" + februaryText(5) + "'/></calendar></schedule></resource>");
    // Time off with hours blocks the whole day, with a warning, unless an overtime exception holds the
    // same days; a calendar without name is overtime's.
    EXPECT_NE(
        scenario.log.find("    !!! WARNING: Mapping time-off hours to full non-working day exception in MS "
                          "Project calendar 'Standard'."),
        std::string::npos);
    EXPECT_EQ(scenario.calendar(1), std::string("Standard base key=-1:") + kDefaultWeek +
                                        " | Overtime 02-07T00:00 1 | TimeOff 02-03T00:00 0");
    EXPECT_EQ(scenario.calendar(4), std::string(" base key=-1:") + kDefaultWeek +
                                        " | Overtime 02-07T00:00 1 | TimeOff 02-03T00:00 0");
    EXPECT_EQ(scenario.calendar(3),
              " key=4: sun=? mon=? tue=? wed=? thu=? fri=? sat=? | Overtime 02-04T00:00 0");
}

TEST(KVMSPECalendarMapperTest, TheExtendedFormatTakesFlattenedDaysAndBlanksTheDaysBehindOvertime) {
    const MappedScenario scenario(
        "<resource id='r-1'><schedule><schedule-day day-of-week='monday'/>"
        "<flattened-schedule-day day-of-week='sunday'><time-span start-time='3600' end-time='7200'/>"
        "</flattened-schedule-day><flattened-schedule-day date='" +
        februaryText(7) +
        "'><time-span start-time='36000' end-time='39600'/></flattened-schedule-day>"
        "<flattened-schedule-day date='" +
        februaryText(9) + "'/><calendar overtime='yes'><event start='" + februaryText(2, 9) + "' end='" +
        februaryText(2, 12) + "'/></calendar></schedule></resource>");
    EXPECT_EQ(scenario.calendar(1),
              "Standard base key=-1: sun=01:00-02:00 mon=08:00-12:00,13:00-17:00 tue=08:00-12:00,13:00-17:00 "
              "wed=08:00-12:00,13:00-17:00 thu=08:00-12:00,13:00-17:00 fri=08:00-12:00,13:00-17:00 sat=off"
              " | Overtime 02-07T00:00 1 | Time Off 02-09T00:00 0"
              " | Exception days sun=? mon=? tue=? wed=? thu=? fri=? sat=off");
}

TEST(KVMSPECalendarMapperTest, SchedulesThatCantFormAHierarchyAreInternalErrors) {
    const auto failure = [](const std::string& resources) {
        try {
            MappedScenario scenario(resources);
        } catch (const TVException& exception) {
            tvSetLogSink({});
            return exception.reason();
        }
        return std::string("no failure");
    };
    EXPECT_EQ(
        failure("<resource id='r-1'><schedule><schedule-day day-of-week='Monday'/></schedule></resource>"),
        "Unexpected day of week: Monday");
    EXPECT_EQ(failure("<resource id='r-1'><child-resource idref='r2'/><child-resource idref='r2'/></resource>"
                      "<resource id='r2'/>"),
              "Duplicated schedule of resource id='r2'.");
    EXPECT_EQ(failure("<resource id='r-2'/>"), "Can not find schedule info fo rtop resource.");

    // Schedules mapped out of order, each naming the other as parent, are caught on the walk up.
    KVMSPECalendarMapper mapper([uid = int64_t(1)]() mutable { return uid++; });
    TVError error;
    const auto top = KVMSPCXMLElement::initWithXMLString("<resource id='r-1'/>", &error);
    const auto first =
        KVMSPCXMLElement::initWithXMLString("<resource id='r2'><schedule/></resource>", &error);
    const auto second =
        KVMSPCXMLElement::initWithXMLString("<resource id='r3'><schedule/></resource>", &error);
    mapper.setTopScheduleKey("r-1");
    tvSetLogSink([](const std::string&) {});
    mapper.mapCalendarForResource(top, nullptr);
    mapper.mapCalendarForResource(first, second);
    mapper.mapCalendarForResource(second, first);
    try {
        mapper.buildCalendarHierarchy();
        ADD_FAILURE() << "a cycle of schedules was flattened";
    } catch (const TVException& exception) {
        EXPECT_EQ(exception.reason().find("Schedule parents form a cycle"), 0u) << exception.reason();
    }
    tvSetLogSink({});
}

} // namespace
