#include "MPPCommon/date/DateExtensions.h"
#include "MPPCommon/storage/SSLRoot.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPCommon/xml/KVMSPCXMLDocument.h"
#include "MPPImporter/file/KVMSPIMPPReader.h"
#include "MPPImporter/file/KVMSPIMPPVersionReader.h"
#include "MPPImporter/query/adapters/KVMSPIXQAdapters.h"
#include "MPPImporter/readers/KVMSPIMPPCalendarReader.h"
#include "MPPImporter/readers/KVMSPIMPPProjectReader.h"
#include "MPPImporter/readers/KVMSPISingleCalendarReader.h"
#include "support/TestSupport.h"

#include <algorithm>
#include <cstdio>
#include <gtest/gtest.h>
#include <regex>

namespace {

using Objects = KVMSPIXQuery::Objects;

constexpr const char* kRecurringPlan =
    "generated__calendar-recurring-exceptions__calendar-recurring-exceptions-project2013-mpp14.mpp";
constexpr const char* kCalendarsPlan =
    "generated__calendar-calendars__calendar-calendars-project2013-mpp14.mpp";

// One corpus plan opened with the whole reader tree, with the query layer installed.
class CalendarPlan {
public:
    explicit CalendarPlan(const std::string& name) : m_root(path(name).string()) {
        KVMSPIXQAdapters::install();
        if (m_root.lastError() == 0) {
            // The readers log their progress; these tests don't look at it.
            tvSetLogSink([](const std::string&) {});
            KVMSPIMPPVersionReader versionReader(path(name).string(),
                                                 KVMSPIMPPProjectReader::projectReaderFactory());
            m_reader = versionReader.getMppReader(m_root, true, nullptr);
            tvSetLogSink({});
        }
    }

    KVMSPIMPPProjectReader* project() const {
        return m_reader ? dynamic_cast<KVMSPIMPPProjectReader*>(m_reader->projectReader()) : nullptr;
    }
    KVMSPIMPPCalendarReader* calendars() const {
        return project() ? dynamic_cast<KVMSPIMPPCalendarReader*>(project()->calendarReader()) : nullptr;
    }
    // The calendar of `uid`, shared-owned as the project's answers are.
    std::shared_ptr<KVMSPISingleCalendarReader> calendar(int32_t uid) const {
        return std::make_shared<KVMSPISingleCalendarReader>(uid, *calendars());
    }

private:
    static std::filesystem::path path(const std::string& name) {
        return testsupport::corpusDir() / "mpp" / name;
    }

    SSLRoot m_root;
    std::unique_ptr<KVMSPIMPPReader> m_reader;
};

// The interchange file saved from the same plan: "...-project<year>-mpp<gen>.mpp" ->
// "...-project<year>-mspdi.xml"; none when the corpus has none.
KVMSPCXMLDocument::DocumentPtr interchangeDocument(const std::string& mppName) {
    const std::string name = mppName.substr(0, mppName.rfind("-mpp")) + "-mspdi.xml";
    std::optional<std::string> xmlns;
    return KVMSPCXMLDocument::initWithContentsOfURL(testsupport::corpusDir() / "mspdi" / name, 0, &xmlns,
                                                    nullptr);
}

std::string leaf(KVMSPIXQuery& object, const std::string& name) {
    return object.stringValueForXQuery(name, nullptr).value_or("(none)");
}

// The texts of an answer's elements, joined by ",". `dayOnly` keeps the date of each: the plan holds
// an exception's last day, which the interchange file writes with the day's end ("T23:59:00").
std::string texts(const Objects& objects, bool dayOnly = false) {
    std::string joined;
    for (const auto& object : objects) {
        const std::string text = leaf(*object, ".");
        joined += (joined.empty() ? "" : ",") + (dayOnly ? text.substr(0, text.find('T')) : text);
    }
    return joined;
}

// The working ranges in seconds of the day: the interchange file writes "08:00:00", the adapters
// "8:00:00".
std::string workingTimesText(KVMSPIXQuery& owner) {
    std::string text;
    for (const auto& range : owner.objectsForXQuery("WorkingTimes/WorkingTime", nullptr)) {
        for (const char* end : {"FromTime", "ToTime"}) {
            int hours = 0, minutes = 0, seconds = 0;
            std::sscanf(leaf(*range, end).c_str(), "%d:%d:%d", &hours, &minutes, &seconds);
            text += stringWithFormat(" %d", hours * 3600 + minutes * 60 + seconds);
        }
    }
    return text;
}

// A calendar as the import mapping reads it, one line per fact, by the same queries on an
// interchange element and on a calendar reader. Exceptions are sorted: the interchange file orders
// them by date, the plan by place. The plan leaves a resource's calendar unnamed where the
// interchange file names it after the resource, so `withName` is false for those.
std::vector<std::string> calendarLines(KVMSPIXQuery& calendar, bool withName) {
    std::vector<std::string> lines{"IsBaseCalendar=" + leaf(calendar, "IsBaseCalendar"),
                                   withName ? "Name=" + leaf(calendar, "Name") : ""};
    if (!calendar.boolValueForXQuery("IsBaseCalendar", nullptr)) {
        lines.push_back("BaseCalendarUID=" + leaf(calendar, "BaseCalendarUID"));
    }
    for (const auto& day :
         calendar.objectsForXQuery("WeekDays/WeekDay[DayType>=1 and DayType<=7]", nullptr)) {
        lines.push_back(stringWithFormat(
            "day %d working=%d times=%s", static_cast<int>(day->intValueForXQuery("DayType", nullptr)),
            day->boolValueForXQuery("DayWorking", nullptr) ? 1 : 0, workingTimesText(*day).c_str()));
    }
    const size_t firstException = lines.size();
    for (const auto& exception : calendar.objectsForXQuery("Exceptions/Exception", nullptr)) {
        lines.push_back("exception " + texts(exception->objectsForXQuery("TimePeriod/FromDate", nullptr)) +
                        " to " + texts(exception->objectsForXQuery("TimePeriod/ToDate", nullptr), true) +
                        workingTimesText(*exception));
    }
    std::sort(lines.begin() + static_cast<long>(firstException), lines.end());
    return lines;
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

TEST(CalendarAdapterCorpusTest, CorpusCalendarsAnswerAsTheInterchangeFileOfTheSamePlan) {
    TVMSP_REQUIRE_CORPUS();
    static const std::regex feature("generated__calendar-(calendars|recurring-exceptions)__.*\\.mpp");
    int compared = 0;
    for (const std::filesystem::path& path : testsupport::corpusMppFiles()) {
        const std::string name = path.filename().string();
        const KVMSPCXMLDocument::DocumentPtr document =
            std::regex_match(name, feature) ? interchangeDocument(name) : nullptr;
        if (!document) {
            continue;
        }
        CalendarPlan plan(name);
        ASSERT_NE(plan.calendars(), nullptr) << name;
        for (const auto& reference : document->objectsForXQuery("/Project/Calendars/Calendar", nullptr)) {
            const auto uid = static_cast<int32_t>(reference->intValueForXQuery("UID", nullptr));
            ASSERT_TRUE(plan.calendars()->isValidUID(uid)) << name << " calendar " << uid;
            const auto calendar = plan.calendar(uid);
            EXPECT_EQ(calendar->intValueForXQuery("UID", nullptr), uid);
            EXPECT_EQ(leaf(*calendar, "UID"), leaf(*reference, "UID"));
            int32_t resource = -1;
            const bool named = !calendar->calendarResourceUID(resource) || resource < 0;
            EXPECT_EQ(calendarLines(*calendar, named), calendarLines(*reference, named))
                << name << " " << uid;
            ++compared;
        }
    }
    EXPECT_GT(compared, testsupport::corpusShare(40));
}

TEST(CalendarAdapterCorpusTest, CorpusPeriodDatesGatherEveryExceptionOfTheCalendarInOrder) {
    TVMSP_REQUIRE_CORPUS();
    CalendarPlan plan(kRecurringPlan);
    ASSERT_NE(plan.calendars(), nullptr);
    const auto calendar = plan.calendar(1);
    std::string firstDays;
    for (const auto& exception : calendar->exceptionReaders()) {
        ASSERT_NE(exception->timePeriodReader(), nullptr);
        firstDays +=
            (firstDays.empty() ? "" : ",") + initWithDateTime(exception->timePeriodReader()->fromDate());
    }
    TVError error;
    EXPECT_EQ(texts(calendar->objectsForXQuery("//FromDate", &error)), firstDays);
    EXPECT_EQ(calendar->objectsForXQuery("//ToDate", &error).size(), calendar->exceptionReaders().size());

    // Without exceptions there are no period dates: week days and work weeks give none.
    CalendarPlan calendarsPlan(kCalendarsPlan);
    ASSERT_NE(calendarsPlan.calendars(), nullptr);
    const auto standard = calendarsPlan.calendar(1);
    ASSERT_TRUE(standard->exceptionReaders().empty());
    EXPECT_TRUE(standard->objectsForXQuery("//FromDate", &error).empty());
    EXPECT_TRUE(error.domain.empty()) << error.localizedDescription();
}

TEST(CalendarAdapterCorpusTest, CorpusPredicatesFilterWeekDaysAndExceptionsBeforeTheRestOfThePath) {
    TVMSP_REQUIRE_CORPUS();
    CalendarPlan plan(kRecurringPlan);
    ASSERT_NE(plan.calendars(), nullptr);
    const auto calendar = plan.calendar(1);
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
    CalendarPlan plan(kCalendarsPlan);
    ASSERT_NE(plan.project(), nullptr);
    KVMSPIMPPProjectReader& project = *plan.project();
    const auto resource =
        interchangeDocument(kCalendarsPlan)
            ->singleObjectForXQuery("/Project/Resources/Resource[Name=\"Resource One\"]", nullptr);
    ASSERT_NE(resource, nullptr);
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
    EXPECT_EQ(uids("Calendars/Calendar[ResourceUID=" + leaf(*resource, "UID") + "]"),
              std::vector<int64_t>{resource->intValueForXQuery("CalendarUID", nullptr)});
    // A name with other characters than letters, digits and blanks filters nothing.
    EXPECT_EQ(uids("Calendars/Calendar[Name=\"Night-Shift\"]"), uids("Calendars/Calendar"));
    EXPECT_FALSE(KVMSPISingleCalendarReader::predicateWithString("Name=\"\""));
    EXPECT_TRUE(isNotPorted(project, "Calendars/Calendar[UID=9999]"));
}

TEST(CalendarAdapterCorpusTest, CorpusUnknownPathsAreNotPortedAndPredicatesOnPlainComponentsAssert) {
    TVMSP_REQUIRE_CORPUS();
    CalendarPlan plan(kRecurringPlan);
    ASSERT_NE(plan.calendars(), nullptr);
    const auto calendar = plan.calendar(1);
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
    CalendarPlan plan(kRecurringPlan);
    ASSERT_NE(plan.calendars(), nullptr);
    auto calendar = plan.calendar(1);
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
