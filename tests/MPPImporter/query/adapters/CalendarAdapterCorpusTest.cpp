#include "AdapterCorpusPlan.h"
#include "MPPCommon/date/DateExtensions.h"
#include "MPPCommon/support/TVMSPErrors.h"
#include "MPPImporter/readers/KVMSPIMPPCalendarReader.h"
#include "MPPImporter/readers/KVMSPISingleCalendarReader.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>

namespace {

using Objects = KVMSPIXQuery::Objects;

constexpr const char* kRecurringPlan =
    "generated__calendar-recurring-exceptions__calendar-recurring-exceptions-project2013-mpp14.mpp";
constexpr const char* kCalendarsPlan =
    "generated__calendar-calendars__calendar-calendars-project2013-mpp14.mpp";

// The calendar of `uid` of a plan, shared-owned as the project's answers are.
std::shared_ptr<KVMSPISingleCalendarReader> calendarOf(const AdapterCorpusPlan& plan, int32_t uid) {
    auto* calendars = dynamic_cast<KVMSPIMPPCalendarReader*>(plan.project()->calendarReader());
    return std::make_shared<KVMSPISingleCalendarReader>(uid, *calendars);
}

std::string leaf(KVMSPIXQuery& object, const std::string& name) {
    return object.stringValueForXQuery(name, nullptr).value_or("(none)");
}

// The texts of an answer's elements, joined by ",".
std::string texts(const Objects& objects) {
    std::string joined;
    for (const auto& object : objects) {
        joined += joined.empty() ? "" : ",";
        joined += leaf(*object, ".");
    }
    return joined;
}

std::vector<int64_t> dayTypes(KVMSPIXQuery& calendar, const std::string& xquery) {
    std::vector<int64_t> types;
    for (const auto& day : calendar.objectsForXQuery(xquery, nullptr)) {
        types.push_back(day->intValueForXQuery("DayType", nullptr));
    }
    return types;
}

std::string assertionText(const std::function<void()>& query) {
    try {
        query();
    } catch (const TVException& exception) {
        return exception.reason();
    }
    return "(no assertion)";
}

// Whether the query answered nothing and set the not-ported error.
bool isNotPorted(KVMSPIXQuery& object, const std::string& xquery) {
    TVError error;
    return object.objectsForXQuery(xquery, &error).empty() && error.domain == kTVMSPGeneralErrorDomain &&
           error.code == kTVMSPNotPortedXQueryError;
}

TEST(CalendarAdapterCorpusTest, CorpusPeriodDatesGatherEveryExceptionOfTheCalendarInOrder) {
    TVMSP_REQUIRE_CORPUS();
    const auto plan = AdapterCorpusPlan::named(kRecurringPlan);
    ASSERT_NE(plan.project(), nullptr);
    const auto calendar = calendarOf(plan, 1);
    std::string firstDays;
    for (const auto& exception : calendar->exceptionReaders()) {
        ASSERT_NE(exception->timePeriodReader(), nullptr);
        firstDays += firstDays.empty() ? "" : ",";
        firstDays += initWithDateTime(exception->timePeriodReader()->fromDate());
    }
    TVError error;
    EXPECT_EQ(texts(calendar->objectsForXQuery("//FromDate", &error)), firstDays);
    EXPECT_EQ(calendar->objectsForXQuery("//ToDate", &error).size(), calendar->exceptionReaders().size());

    // Without exceptions there are no period dates: week days and work weeks give none.
    const auto calendarsPlan = AdapterCorpusPlan::named(kCalendarsPlan);
    ASSERT_NE(calendarsPlan.project(), nullptr);
    const auto standard = calendarOf(calendarsPlan, 1);
    ASSERT_TRUE(standard->exceptionReaders().empty());
    EXPECT_TRUE(standard->objectsForXQuery("//FromDate", &error).empty());
    EXPECT_TRUE(error.domain.empty()) << error.localizedDescription();
}

TEST(CalendarAdapterCorpusTest, CorpusPredicatesFilterWeekDaysAndExceptionsBeforeTheRestOfThePath) {
    TVMSP_REQUIRE_CORPUS();
    const auto plan = AdapterCorpusPlan::named(kRecurringPlan);
    ASSERT_NE(plan.project(), nullptr);
    const auto calendar = calendarOf(plan, 1);
    const std::vector<int64_t> week{1, 2, 3, 4, 5, 6, 7};
    EXPECT_EQ(dayTypes(*calendar, "WeekDays/WeekDay[DayType>=2 and DayType<=6]"),
              (std::vector<int64_t>{2, 3, 4, 5, 6}));
    EXPECT_EQ(dayTypes(*calendar, "WeekDays/WeekDay[DayType=7 and DayWorking=0]"), std::vector<int64_t>{7});
    EXPECT_TRUE(dayTypes(*calendar, "WeekDays/WeekDay[DayType=7 and DayWorking=1]").empty());
    // An empty number, or a predicate that week days don't take, filters nothing.
    EXPECT_EQ(dayTypes(*calendar, "WeekDays/WeekDay[DayType>= and DayType<=6]"), week);
    EXPECT_EQ(dayTypes(*calendar, "WeekDays/WeekDay[UID=2]"), week);
    const Objects ranges = calendar->objectsForXQuery(
        "WeekDays/WeekDay[DayType>=2 and DayType<=3]/WorkingTimes/WorkingTime", nullptr);
    ASSERT_EQ(ranges.size(), 4u);
    EXPECT_EQ(leaf(*ranges[0], "FromTime"), "8:00:00");
    EXPECT_EQ(leaf(*ranges[3], "ToTime"), "17:00:00");

    const auto& exceptions = calendar->exceptionReaders();
    for (int32_t freq : {1, 6, 7}) {
        const auto expected = std::count_if(exceptions.begin(), exceptions.end(), [&](const auto& exception) {
            return !exception->isDayWorking() && exception->freq() == freq;
        });
        const std::string query = stringWithFormat("Exceptions/Exception[DayWorking=0 and Type=%d]", freq);
        EXPECT_GT(expected, 0) << query;
        EXPECT_EQ(static_cast<long>(calendar->objectsForXQuery(query, nullptr).size()), expected) << query;
    }
    EXPECT_TRUE(calendar->objectsForXQuery("Exceptions/Exception[DayWorking=1 and Type=7]", nullptr).empty());
    EXPECT_EQ(calendar->objectsForXQuery("Exceptions/Exception[DayWorking=0 and Type=]", nullptr).size(),
              exceptions.size());
}

TEST(CalendarAdapterCorpusTest, CorpusProjectFindsCalendarsByNameResourceAndUID) {
    TVMSP_REQUIRE_CORPUS();
    const auto plan = AdapterCorpusPlan::named(kCalendarsPlan);
    ASSERT_NE(plan.project(), nullptr);
    KVMSPIMPPProjectReader& project = *plan.project();
    auto uids = [&](const std::string& xquery) {
        std::vector<int64_t> found;
        for (const auto& calendar : project.objectsForXQuery(xquery, nullptr)) {
            found.push_back(calendar->intValueForXQuery("UID", nullptr));
        }
        return found;
    };
    // Any longer name that begins with "Standard" asks for the standard calendar.
    EXPECT_EQ(uids("Calendars/Calendar[Name=\"Standard\"]"), std::vector<int64_t>{1});
    EXPECT_EQ(uids("Calendars/Calendar[Name=\"Standard 24 Hours\"]"), std::vector<int64_t>{1});
    EXPECT_EQ(uids("Calendars/Calendar[Name=\"Standard/Night\"]"), std::vector<int64_t>{1});
    EXPECT_EQ(uids("Calendars/Calendar[Name=\"Calendar1\"]"), std::vector<int64_t>{3});
    // A resource's calendar is found by the resource's UID.
    size_t resourceCalendars = 0;
    for (const int32_t uid : project.calendarReader()->uniqueIDs()) {
        int32_t resource = -1;
        if (project.calendarReader()->calendarResourceUID(uid, resource) && resource > 0) {
            EXPECT_EQ(uids(stringWithFormat("Calendars/Calendar[ResourceUID=%d]", resource)),
                      std::vector<int64_t>{uid});
            ++resourceCalendars;
        }
    }
    EXPECT_GT(resourceCalendars, 0U);
    // A name with other characters than letters, digits and blanks filters nothing.
    EXPECT_EQ(uids("Calendars/Calendar[Name=\"Night-Shift\"]"), uids("Calendars/Calendar"));
    EXPECT_FALSE(KVMSPISingleCalendarReader::predicateWithString("Name=\"\""));
    EXPECT_TRUE(isNotPorted(project, "Calendars/Calendar[UID=9999]"));
}

TEST(CalendarAdapterCorpusTest, CorpusUnknownPathsAreNotPortedAndPredicatesOnPlainComponentsAssert) {
    TVMSP_REQUIRE_CORPUS();
    const auto plan = AdapterCorpusPlan::named(kRecurringPlan);
    ASSERT_NE(plan.project(), nullptr);
    const auto calendar = calendarOf(plan, 1);
    for (const char* query : {"", "Foo", "WeekDays", "WeekDays/Exception", "//Start"}) {
        EXPECT_TRUE(isNotPorted(*calendar, query)) << query;
    }
    EXPECT_EQ(assertionText([&] { calendar->objectsForXQuery("WeekDays[DayType=1]/WeekDay", nullptr); }),
              "Unexpected predicate in component \"WeekDays\": \"DayType=1\".");

    const auto day = calendar->singleObjectForXQuery("WeekDays/WeekDay[DayType=2 and DayWorking=1]", nullptr);
    ASSERT_NE(day, nullptr);
    EXPECT_EQ(assertionText([&] { day->objectsForXQuery("WorkingTimes[x]/WorkingTime", nullptr); }),
              "Unexpected predicate in component \"WorkingTimes\": \"x\".");
    for (const char* query : {"TimePeriod", "TimePeriod/Start", "WorkingTimes/Foo"}) {
        EXPECT_TRUE(isNotPorted(*day, query)) << query;
    }
    // Week days have no period in the file: the reader fails and sets no error.
    TVError error;
    EXPECT_TRUE(day->objectsForXQuery("TimePeriod/FromDate", &error).empty());
    EXPECT_TRUE(error.domain.empty());

    const auto exception = calendar->singleObjectForXQuery("Exceptions/Exception", nullptr);
    ASSERT_NE(exception, nullptr);
    EXPECT_EQ(assertionText([&] { exception->objectsForXQuery("TimePeriod[x]/FromDate", nullptr); }),
              "Unexpected predicate in component \"TimePeriod\": \"x\".");
    const Objects periods = exception->objectsForXQuery("TimePeriod", nullptr);
    ASSERT_EQ(periods.size(), 1u);
    EXPECT_EQ(texts(exception->objectsForXQuery("TimePeriod/FromDate", nullptr)),
              leaf(*periods[0], "FromDate"));
    EXPECT_EQ(exception->stringValueForXQuery("Name", &error), std::nullopt);
    EXPECT_EQ(error.code, kTVMSPNotPortedXQueryError);
}

TEST(CalendarAdapterCorpusTest, CorpusAnswersKeepTheirCalendarAlive) {
    TVMSP_REQUIRE_CORPUS();
    const auto plan = AdapterCorpusPlan::named(kRecurringPlan);
    ASSERT_NE(plan.project(), nullptr);
    auto calendar = calendarOf(plan, 1);
    const std::weak_ptr<KVMSPISingleCalendarReader> watch = calendar;
    Objects ranges = calendar->objectsForXQuery("WeekDays/WeekDay/WorkingTimes/WorkingTime", nullptr);
    Objects periods = calendar->objectsForXQuery("Exceptions/Exception/TimePeriod", nullptr);
    ASSERT_FALSE(ranges.empty());
    ASSERT_FALSE(periods.empty());
    calendar.reset();
    EXPECT_FALSE(watch.expired());
    EXPECT_EQ(leaf(*ranges.front(), "FromTime"), "8:00:00");
    EXPECT_NE(leaf(*periods.front(), "FromDate"), "(none)");
    ranges.clear();
    periods.clear();
    EXPECT_TRUE(watch.expired());
}

} // namespace
