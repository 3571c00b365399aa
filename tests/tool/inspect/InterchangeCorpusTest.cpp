#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPCommon/support/TVMSPErrors.h"
#include "support/CorpusComparison.h"
#include "support/TestSupport.h"
#include "tool/inspect/PlanOptions.h"
#include "tool/inspect/QueriedFile.h"

#include <cmath>
#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <iostream>
#include <map>
#include <regex>

namespace {

// The kind in which a leaf is asked: the kind in which the readers' adapters answer it. A value leaf
// is a path whose answer objects are values, read with ".", as a mapper reads "TimePeriod/FromDate".
// A Text is a String whose trailing line feeds don't count: the plain text of a rich-text note ends
// with its last paragraph mark, which the interchange file drops and the note mapping leaves out. A
// Day is the date of a Value: the file holds an exception's last day, which the interchange file
// writes with the day's end, and the calendar mapping takes the day only.
enum class Kind { String, Text, Integer, Float, Boolean, Value, Day };

struct Leaf {
    const char* name;
    Kind kind;
    // Whether the leaf is compared on an object of the interchange file; always when none.
    bool (*compared)(KVMSPIXQuery& xml) = nullptr;
};

// The summary task and the plan's own resource, UID 0, are not compared on some leaves.
bool isNotUIDZero(KVMSPIXQuery& xml) {
    return xml.stringValueForXQuery("UID", nullptr) != "0";
}
// The interchange file leaves out the max units of material and cost resources, which the file holds
// as 100 %, and the rates of cost resources, which it holds as 0; the resource mapping reads neither.
bool isWorkResource(KVMSPIXQuery& xml) {
    return xml.stringValueForXQuery("Type", nullptr) == "1";
}
bool isNoCostResource(KVMSPIXQuery& xml) {
    return xml.stringValueForXQuery("IsCostResource", nullptr) != "1";
}

// A base calendar's base is none, which some interchange files write as 0 and others leave out.
bool isBaseCalendar(KVMSPIXQuery& xml) {
    return xml.stringValueForXQuery("IsBaseCalendar", nullptr) == "1";
}
bool isDerivedCalendar(KVMSPIXQuery& xml) {
    return !isBaseCalendar(xml);
}

// A collection below a parent object: the query that selects it, the leaves that identify one of its
// objects across the two files, the leaves that are compared, and the collections below it.
struct Collection {
    const char* query;
    std::vector<Leaf> keyLeaves;
    std::vector<Leaf> leaves;
    std::vector<Collection> below;
};

const std::vector<Leaf> kProjectLeaves = {
    {"CurrencyCode", Kind::String},       {"CurrencySymbol", Kind::String},
    {"FinishDate", Kind::String},         {"StartDate", Kind::String},
    {"CurrencyDigits", Kind::Integer},    {"CurrencySymbolPosition", Kind::Integer},
    {"DaysPerMonth", Kind::Integer},      {"MinutesPerDay", Kind::Integer},
    {"MinutesPerWeek", Kind::Integer},    {"WeekStartDay", Kind::Integer},
    {"ScheduleFromStart", Kind::Boolean},
};

// Leaves answered in several kinds from one reader operation are asked in one of them. Leaves that the
// interchange file doesn't have (the pinned texts, the scheduled dates, the manual dates as text
// fields) or has in another form (the project's name, title and units) are not asked. The summary
// task carries the plan's title, which follows the name each copy was saved under.
const Collection kTasks = {
    "Tasks/Task",
    {{"UID", Kind::String}},
    {
        {"ID", Kind::String},
        {"Name", Kind::String, isNotUIDZero},
        {"Notes", Kind::Text},
        {"Start", Kind::String},
        {"Finish", Kind::String},
        {"Duration", Kind::String},
        {"Work", Kind::String},
        {"ActualWork", Kind::String},
        {"RemainingWork", Kind::String},
        {"OutlineLevel", Kind::Integer},
        {"PercentComplete", Kind::String},
        {"PercentWorkComplete", Kind::String},
        {"Priority", Kind::String},
        {"ConstraintType", Kind::Integer},
        {"ConstraintDate", Kind::String},
        {"Type", Kind::Integer},
        {"FixedCostAccrual", Kind::Integer},
        {"EarlyStart", Kind::String},
        {"EarlyFinish", Kind::String},
        {"LateStart", Kind::String},
        {"LateFinish", Kind::String},
        {"PreLeveledStart", Kind::String},
        {"PreLeveledFinish", Kind::String},
        {"ActualStart", Kind::String},
        {"ActualFinish", Kind::String},
        {"FixedCost", Kind::Float},
        {"Cost", Kind::Float},
        {"TotalCost", Kind::Float},
        {"ActualCost", Kind::Float},
        {"RemainingCost", Kind::Float},
        {"IsNull", Kind::Boolean},
        {"Manual", Kind::Boolean},
        {"Summary", Kind::Boolean},
        {"Milestone", Kind::Boolean},
        {"Estimated", Kind::Boolean},
        {"EffortDriven", Kind::Boolean},
        {"Hammock", Kind::Boolean},
        {"PreHammock", Kind::Boolean},
        {"PostHammock", Kind::Boolean},
    },
    {{"PredecessorLink",
      {{"PredecessorUID", Kind::Integer}},
      {{"Type", Kind::Integer}, {"LinkLag", Kind::Integer}, {"LagFormat", Kind::Integer}},
      {}}},
};

const Collection kResources = {
    "Resources/Resource",
    {{"UID", Kind::String}},
    {
        {"ID", Kind::String},
        {"Name", Kind::String},
        {"EmailAddress", Kind::String},
        {"Notes", Kind::Text},
        {"CostPerUse", Kind::String, isNoCostResource},
        {"StandardRate", Kind::String, isNoCostResource},
        {"AvailableFrom", Kind::String},
        {"AvailableTo", Kind::String},
        {"CalendarUID", Kind::Integer, isNotUIDZero},
        {"Type", Kind::Integer},
        {"MaxUnits", Kind::Float, isWorkResource},
        {"IsCostResource", Kind::Boolean},
    },
    {},
};

const Collection kAssignments = {
    "Assignments/Assignment",
    {{"TaskUID", Kind::String}, {"ResourceUID", Kind::String}},
    {{"Work", Kind::String},
     {"ActualWork", Kind::String},
     {"RemainingWork", Kind::String},
     {"Units", Kind::Float},
     {"Cost", Kind::Float}},
    {},
};

const Collection kWorkingTimes = {
    "WorkingTimes/WorkingTime", {{"FromTime", Kind::String}}, {{"ToTime", Kind::String}}, {}};

// The ordinary days and the exceptions, asked as the calendar mapping asks them. A resource's calendar
// has no name of its own in the file; the interchange file names it after its resource. Resource 0
// stands for the plan: its calendar names no resource that the interchange file has.
const Collection kCalendars = {
    "Calendars/Calendar",
    {{"UID", Kind::String}},
    {{"Name", Kind::String, isBaseCalendar},
     {"BaseCalendarUID", Kind::String, isDerivedCalendar},
     {"IsBaseCalendar", Kind::String}},
    {
        {"WeekDays/WeekDay[DayType>=1 and DayType<=7]",
         {{"DayType", Kind::Integer}},
         {{"DayWorking", Kind::Boolean}},
         {kWorkingTimes}},
        {"Exceptions/Exception",
         {{"TimePeriod/FromDate", Kind::Value}},
         {{"TimePeriod/ToDate", Kind::Day}},
         {kWorkingTimes}},
    },
};

constexpr const char* kNone = "(none)";
constexpr const char* kNotPorted = "(not ported)";

// A leaf's answer as text. Reader errors are left out, as a mapper leaves them: a value that can't be
// read is an absent value. A query that the vocabulary doesn't hold is an answer of its own.
std::string answerOf(KVMSPIXQuery& object, const Leaf& leaf) {
    TVError error;
    std::string answer;
    switch (leaf.kind) {
    case Kind::String:
        answer = object.stringValueForXQuery(leaf.name, &error).value_or(kNone);
        break;
    case Kind::Text:
        answer = object.stringValueForXQuery(leaf.name, &error).value_or(kNone);
        answer.erase(answer.find_last_not_of("\r\n") + 1);
        break;
    case Kind::Integer:
        answer = std::to_string(object.intValueForXQuery(leaf.name, &error));
        break;
    case Kind::Float:
        answer = stringWithFormat("%.17g", object.floatValueForXQuery(leaf.name, &error));
        break;
    case Kind::Boolean:
        answer = object.boolValueForXQuery(leaf.name, &error) ? "true" : "false";
        break;
    case Kind::Value:
    case Kind::Day:
        answer = kNone;
        for (const auto& value : object.objectsForXQuery(leaf.name, &error)) {
            answer = value->stringValueForXQuery(".", nullptr).value_or(kNone);
        }
        answer = leaf.kind == Kind::Day ? answer.substr(0, answer.find('T')) : answer;
        break;
    }
    const bool notPorted =
        error.domain == kTVMSPGeneralErrorDomain && error.code == kTVMSPNotPortedXQueryError;
    return notPorted ? kNotPorted : answer;
}

// Stands for a number in NumberedText::rest.
constexpr char kNumberMark = '\x01';

// The numbers in a text, and the text between them.
struct NumberedText {
    std::vector<double> numbers;
    std::string rest;
};

NumberedText numbered(const std::string& text) {
    static const std::regex kNumber(R"(-?[0-9]+(\.[0-9]+)?)");
    NumberedText parts;
    parts.rest = std::regex_replace(text, kNumber, std::string(1, kNumberMark));
    for (auto match = std::sregex_iterator(text.begin(), text.end(), kNumber);
         match != std::sregex_iterator(); ++match) {
        parts.numbers.push_back(std::strtod(match->str().c_str(), nullptr));
    }
    return parts;
}

// Two answers are the same when they differ only in how their numbers are written: the interchange
// format writes a number in the precision its writer likes ("1" and "1.00"), and durations and times
// with or without leading zeros ("PT8H0M0S" and "PT8H00M00S", "08:00:00" and "8:00:00"). A mapper reads
// all of them by value. Doubles that the readers compute may differ from the text in the last places.
// The interchange file ends a day at "00:00:00", the readers at "24:00:00".
bool sameAnswer(const std::string& xml, const std::string& mpp) {
    if (xml == mpp || (xml == "00:00:00" && mpp == "24:00:00")) {
        return true;
    }
    const NumberedText xmlParts = numbered(xml);
    const NumberedText mppParts = numbered(mpp);
    if (xmlParts.rest != mppParts.rest || xmlParts.numbers.size() != mppParts.numbers.size()) {
        return false;
    }
    for (size_t i = 0; i < xmlParts.numbers.size(); ++i) {
        const double a = xmlParts.numbers[i];
        const double b = mppParts.numbers[i];
        if (std::fabs(a - b) > 1e-9 * std::max({1.0, std::fabs(a), std::fabs(b)})) {
            return false;
        }
    }
    return true;
}

// The text with each number written in one form, so that keys match as sameAnswer matches answers.
std::string canonical(const std::string& text) {
    const NumberedText parts = numbered(text);
    std::string result;
    size_t next = 0;
    for (const char c : parts.rest) {
        if (c == kNumberMark && next < parts.numbers.size()) {
            result += stringWithFormat("%.15g", parts.numbers[next++]);
        } else {
            result.push_back(c);
        }
    }
    return result;
}

// "Calendars/Calendar/WeekDays/WeekDay": a path for the report, without predicates.
std::string fieldPath(const std::string& path) {
    static const std::regex kPredicate(R"(\[[^\]]*\])");
    return std::regex_replace(path, kPredicate, "");
}

// Asks an interchange document and an MPP file of the same plan the same queries and records each
// answer.
class PlanComparison {
public:
    PlanComparison(std::string file, testsupport::CorpusComparison& comparison)
        : m_file(std::move(file)), m_comparison(comparison) {}

    void compare(KVMSPIXQuery& xml, KVMSPIXQuery& mpp) {
        // Resource 0 stands for the plan; the interchange file names its calendar but leaves it out.
        for (const auto& resource : xml.objectsForXQuery("Resources/Resource", nullptr)) {
            if (!isNotUIDZero(*resource)) {
                m_projectsCalendar = resource->stringValueForXQuery("CalendarUID", nullptr).value_or("");
            }
        }
        compareLeaves(xml, mpp, kProjectLeaves, "", "project");
        for (const Collection* collection : {&kTasks, &kResources, &kAssignments, &kCalendars}) {
            compareCollection(xml, mpp, *collection, "", "");
        }
    }

private:
    using Keyed = std::map<std::string, std::shared_ptr<KVMSPIXQuery>>;

    void compareLeaves(KVMSPIXQuery& xml, KVMSPIXQuery& mpp, const std::vector<Leaf>& leaves,
                       const std::string& path, const std::string& object) {
        for (const Leaf& leaf : leaves) {
            if (leaf.compared != nullptr && !leaf.compared(xml)) {
                continue;
            }
            const std::string xmlAnswer = answerOf(xml, leaf);
            const std::string mppAnswer = answerOf(mpp, leaf);
            m_comparison.check(m_file, fieldPath(path + leaf.name), object, sameAnswer(xmlAnswer, mppAnswer),
                               "xml " + xmlAnswer + ", mpp " + mppAnswer);
        }
    }

    void compareCollection(KVMSPIXQuery& xmlParent, KVMSPIXQuery& mppParent, const Collection& collection,
                           const std::string& parentPath, const std::string& parentObject) {
        const std::string path = parentPath + collection.query;
        const Keyed xmlObjects = keyed(xmlParent, collection, path);
        const Keyed mppObjects = keyed(mppParent, collection, path);
        for (const auto& [key, xml] : xmlObjects) {
            const std::string object = parentObject + collection.query + "[" + key + "]";
            const auto mpp = mppObjects.find(key);
            m_comparison.check(m_file, fieldPath(path), object, mpp != mppObjects.end(), "only in the xml");
            if (mpp == mppObjects.end()) {
                continue;
            }
            compareLeaves(*xml, *mpp->second, collection.leaves, path + "/", object);
            for (const Collection& below : collection.below) {
                compareCollection(*xml, *mpp->second, below, path + "/", object + "/");
            }
        }
        for (const auto& [key, mpp] : mppObjects) {
            if (!xmlObjects.count(key) && !(&collection == &kCalendars && key == m_projectsCalendar)) {
                m_comparison.differ(m_file, fieldPath(path),
                                    parentObject + collection.query + "[" + key + "]", "only in the mpp");
            }
        }
    }

    // The objects of a collection by their key leaves; a key that repeats gets its count appended.
    Keyed keyed(KVMSPIXQuery& parent, const Collection& collection, const std::string& path) {
        TVError error;
        const KVMSPIXQuery::Objects objects = parent.objectsForXQuery(collection.query, &error);
        if (error.domain == kTVMSPGeneralErrorDomain && error.code == kTVMSPNotPortedXQueryError) {
            m_comparison.differ(m_file, fieldPath(path), "", error.localizedDescription());
        }
        Keyed byKey;
        std::map<std::string, int> seen;
        for (const auto& object : objects) {
            std::string key;
            for (const Leaf& leaf : collection.keyLeaves) {
                key += key.empty() ? "" : ",";
                key += canonical(answerOf(*object, leaf));
            }
            const int count = ++seen[key];
            byKey[count == 1 ? key : key + "#" + std::to_string(count)] = object;
        }
        return byKey;
    }

    std::string m_file;
    testsupport::CorpusComparison& m_comparison;
    std::string m_projectsCalendar;
};

// "generated__<feature>__<plan>-project<year>-mspdi.xml" is the interchange file of the MPP copies
// "generated__<feature>__<plan>-project<year>-mpp<format>.mpp" (format 8 is refused).
std::vector<std::filesystem::path> copiesOf(const std::string& interchange,
                                            const std::vector<std::filesystem::path>& files) {
    static const std::regex kInterchangeName(R"(^(generated__.+__.+-project\w+)-mspdi\.xml$)");
    std::smatch match;
    std::vector<std::filesystem::path> copies;
    if (std::regex_match(interchange, match, kInterchangeName)) {
        const std::regex copy(match[1].str() + R"(-mpp(9|12|14)\.mpp)");
        std::copy_if(files.begin(), files.end(), std::back_inserter(copies),
                     [&](const auto& path) { return std::regex_match(path.filename().string(), copy); });
    }
    return copies;
}

} // namespace

// Each MPP copy of a plan answers the import's queries as the interchange XML that the desktop
// application saved from the plan answers them, but for the differences in the manifest.
TEST(InterchangeCorpus, MppCopiesAnswerAsTheirInterchangeXml) {
    TVMSP_REQUIRE_CORPUS();
    tvSetLogSink([](const std::string&) {});
    testsupport::CorpusComparison comparison("tool/inspect/InterchangeCorpusTest.manifest", 200000);
    const auto files = testsupport::corpusMppFiles();
    for (const auto& entry : std::filesystem::directory_iterator(testsupport::corpusDir() / "mspdi")) {
        const std::vector<std::filesystem::path> copies = copiesOf(entry.path().filename().string(), files);
        if (copies.empty()) {
            continue;
        }
        const QueriedFile xml(entry.path().string(), true, PlanOptions::kActualPlan);
        ASSERT_NE(xml.project(), nullptr) << entry.path() << ": " << xml.failure();
        for (const auto& path : copies) {
            const std::string file = path.filename().string();
            const QueriedFile mpp(path.string(), true, PlanOptions::kActualPlan);
            if (!mpp.project()) {
                comparison.differ(file, "open", "", mpp.failure());
                continue;
            }
            try {
                PlanComparison(file, comparison).compare(*xml.project(), *mpp.project());
            } catch (const TVException& exception) {
                comparison.differ(file, "assertion", "", exception.reason());
            }
        }
    }
    tvSetLogSink({});
    std::cout << comparison.summary();
    // The leaves of each collection and of the whole plan, as one share each.
    for (const char* collection : {"Tasks/", "Resources/", "Assignments/", "Calendars/", ""}) {
        std::cout << "all " << (*collection != '\0' ? collection : "leaves") << " "
                  << comparison.shareOf(collection) << "\n";
    }
    const std::string failures = comparison.failures();
    EXPECT_TRUE(failures.empty()) << failures;
}
