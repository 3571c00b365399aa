#include "MPPExporter/MPPObjects/KVMPPProject.h"

#include "MPPCommon/date/DateTestSupport.h"
#include "MPPCommon/support/TVException.h"

#include <gtest/gtest.h>

namespace {

KVMPPExtendedAttribute attribute(const char* alias, const char* value) {
    KVMPPExtendedAttribute result;
    result.alias = alias;
    result.value = value;
    return result;
}

std::string assertionText(const std::function<void()>& action) {
    try {
        action();
    } catch (const TVException& exception) {
        EXPECT_EQ(exception.name(), kInternalInconsistencyException);
        return exception.reason();
    }
    return "";
}

} // namespace

TEST(KVMPPProjectTest, NewProjectHoldsOnlyTheDefaultResourceAndItsCalendar) {
    KVMPPProject project;
    EXPECT_EQ(project.taskType, 1);
    EXPECT_FALSE(project.getEffortDriven());
    EXPECT_TRUE(KVMPPTask().getEffortDriven());
    EXPECT_TRUE(project.resources.empty());
    EXPECT_EQ(project.getParentTaskID(), 0xFFFFFFFFu);
    EXPECT_EQ(project.getCalendarID(), 0xFFFFFFFFu);

    const KVMPPResource& resource = project.defaultResource();
    const MPPGuid fixed = {0x7E, 0x8B, 0xCB, 0xA0, 0x8C, 0x2A, 0x6D, 0x43, 0, 0, 0, 0, 0, 0, 0, 0xFF};
    EXPECT_EQ(resource.ID, 0u);
    EXPECT_EQ(resource.getGUID(), fixed);
    EXPECT_EQ(resource.getMaxUnits(), 10000.0);
    const KVMPPCalendar* calendar = resource.calendar.object();
    ASSERT_NE(calendar, nullptr);
    EXPECT_EQ(calendar->ID, 1u);
    EXPECT_EQ(calendar->getGUID(), fixed);
    EXPECT_EQ(calendar->baseCalendar.object(), project.standardCalendar.get());
    EXPECT_EQ(project.standardCalendar->ID, 0u);
    EXPECT_EQ(project.standardCalendar->name, "Standard");
    // Every other object draws a GUID of its own.
    EXPECT_NE(KVMPPTask().getGUID(), KVMPPTask().getGUID());
}

TEST(KVMPPProjectTest, ResourceKindAndSetFieldsTravelTogether) {
    KVMPPResource resource;
    resource.setResourceTypeCost();
    EXPECT_EQ(resource.getResourceType(), 1u);
    EXPECT_TRUE(resource.isCostResource());
    resource.setResourceTypeMaterial();
    EXPECT_FALSE(resource.isCostResource());
    resource.setResourceTypeWork();
    EXPECT_EQ(resource.getResourceType(), 0u);
    resource.notes = "";
    EXPECT_TRUE(resource.hasNotes());
    EXPECT_FALSE(resource.hasGroup());

    resource.customFieldsText.addAttribute(attribute("b", "two"));
    resource.customFieldsText.addAttribute(attribute("x", "dropped"));
    resource.customFieldsText.addAttribute(attribute("b", "second b"));
    EXPECT_FALSE(resource.hasCustomFieldText(2));
    resource.customFieldsText.resolve({"a", "b"});
    EXPECT_EQ(resource.customFieldsText.values(), (std::vector<std::string>{"", "two"}));
    EXPECT_FALSE(resource.hasCustomFieldText(1));
    EXPECT_TRUE(resource.hasCustomFieldText(2));
    EXPECT_FALSE(resource.hasCustomFieldText(3));
}

TEST(KVMPPProjectTest, WorkingTimeBetweenDatesUsesTheFixedWeek) {
    constexpr int64_t kMinute = 60;
    EXPECT_EQ(KVMPPCalendar::workingTimeFromDate(february(2, 8), february(2, 17)), 480 * kMinute);
    EXPECT_EQ(KVMPPCalendar::workingTimeFromDate(february(6, 17), february(9, 8)), 0);
    EXPECT_EQ(KVMPPCalendar::workingTimeFromDate(february(2, 10, 30), february(2, 13, 15)),
              (90 + 15) * kMinute);
    // Seconds count: split pieces start and end to the second.
    EXPECT_EQ(KVMPPCalendar::workingTimeFromDate(february(2, 8, 0, 41), february(3, 11, 25, 42)),
              480 * kMinute - 41 + 3 * 3600 + 25 * kMinute + 42);
    // Monday 12:00 to the next Tuesday 10:00: Monday afternoon, the five weekdays among the seven days
    // between, and Tuesday morning, although the end's clock is earlier than the start's.
    EXPECT_EQ(KVMPPCalendar::workingTimeFromDate(february(2, 12), february(10, 10)),
              (240 + 5 * 480 + 120) * kMinute);
    EXPECT_EQ(KVMPPCalendar::workingTimeFromDate(february(2, 16), february(3, 9)), (60 + 60) * kMinute);
    // The last day's weekday is not examined: a Saturday morning counts as a working morning.
    EXPECT_EQ(KVMPPCalendar::workingTimeFromDate(february(6, 17), february(7, 12)), 240 * kMinute);
    EXPECT_EQ(KVMPPCalendar::workingTimeFromTime(600, 800, 480, 720), 120);
    EXPECT_EQ(KVMPPCalendar::workingTimeFromTime(800, 900, 480, 720), 0);
}

TEST(KVMPPProjectTest, WorkWeekDaysAndTimes) {
    KVMPPCalendarWorkWeek week;
    EXPECT_FALSE(week.workRangesForDay(0));
    EXPECT_FALSE(week.workRangesForDay(8));
    EXPECT_FALSE(week.workRangesForDay(3));
    week.addWorkDay({KVMPPCalendarTimeRange::initWithStartTime(28800, 43200.9)}, 2);
    const auto& monday = week.workRangesForDay(2);
    ASSERT_TRUE(monday);
    EXPECT_EQ(monday->front().end().totalMinutes(), 720);
    EXPECT_EQ(monday->front().start().ToTvnxTime(), "28800");
    week.addWorkDay({}, 3);
    week.addWorkDay({}, 3); // an empty day takes a list again
    EXPECT_EQ(assertionText([&] { week.addWorkDay({}, 2); }),
              "Expected MPPCalendarWorkWeek.mondayWorkRanges to be nil");
    EXPECT_EQ(assertionText([&] { week.addWorkDay({}, 0); }), "Unexpected WeekDay dayType: 0");

    MPPCalendarTime time = MPPCalendarTime::initWithTime(90000); // 25 hours
    EXPECT_EQ(time.hours(), 25);
    time.setHours(24);
    time.setMinutes(75);
    EXPECT_EQ(time.hours(), 0);
    EXPECT_EQ(time.minutes(), 59);
    EXPECT_EQ(time.totalMinutes(), 1500);
    EXPECT_EQ(MPPCalendarTime::initWithTime(1e300).totalMinutes(), 0);
}
