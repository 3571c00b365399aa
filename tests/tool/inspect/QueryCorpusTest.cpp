#include "CorpusDifferences.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPCommon/support/TVMSPErrors.h"
#include "support/TestSupport.h"
#include "tool/inspect/PlanOptions.h"
#include "tool/inspect/QueriedFile.h"

#include <cmath>
#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <regex>

namespace {

// The kind in which a leaf is asked: the kind in which the readers' adapters answer it. A value leaf
// is a path whose answer objects are values, read with ".", as a mapper reads "TimePeriod/FromDate".
enum class Kind { String, Integer, Float, Boolean, Value };

struct Leaf {
    const char* name;
    Kind kind;
};

// A collection below a parent object: the query that selects it, the leaves that identify one of its
// objects across the two files, the leaves that are compared, and the collections below it.
struct Collection {
    const char* query;
    std::vector<Leaf> keyLeaves;
    std::vector<Leaf> leaves;
    std::vector<Collection> below;
};

const std::vector<Leaf> kProjectLeaves = {
    {"CurrencyCode", Kind::String},
    {"CurrencySymbol", Kind::String},
    {"DefaultCalendarName", Kind::String},
    {"FinishDate", Kind::String},
    {"StartDate", Kind::String},
    {"Name", Kind::String},
    {"Title", Kind::String},
    {"SaveVersion", Kind::Integer},
    {"CurrencyDigits", Kind::Integer},
    {"CurrencySymbolPosition", Kind::Integer},
    {"DaysPerMonth", Kind::Integer},
    {"DurationUnits", Kind::Integer},
    {"MinutesPerDay", Kind::Integer},
    {"MinutesPerWeek", Kind::Integer},
    {"WeekStartDay", Kind::Integer},
    {"WorkUnits", Kind::Integer},
    {"ScheduleFromStart", Kind::Boolean},
};

// Leaves answered in several kinds from one reader operation are asked in one of them.
const Collection kTasks = {
    "Tasks/Task",
    {{"UID", Kind::String}},
    {
        {"ID", Kind::String},
        {"Name", Kind::String},
        {"Notes", Kind::String},
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
        {"ManualDuration", Kind::String},
        {"PinnedDuration", Kind::String},
        {"ManualStart", Kind::String},
        {"PinnedStart", Kind::String},
        {"ManualFinish", Kind::String},
        {"PinnedFinish", Kind::String},
        {"ManualTaskStart", Kind::String},
        {"ManualTaskFinish", Kind::String},
        {"EarlyStart", Kind::String},
        {"EarlyFinish", Kind::String},
        {"LateStart", Kind::String},
        {"LateFinish", Kind::String},
        {"PreLeveledStart", Kind::String},
        {"PreLeveledFinish", Kind::String},
        {"ActualStart", Kind::String},
        {"ActualFinish", Kind::String},
        {"ScheduledStart", Kind::String},
        {"ScheduledFinish", Kind::String},
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
        {"Pinned", Kind::Boolean},
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
        {"Notes", Kind::String},
        {"CostPerUse", Kind::String},
        {"StandardRate", Kind::String},
        {"AvailableFrom", Kind::String},
        {"AvailableTo", Kind::String},
        {"CalendarUID", Kind::Integer},
        {"Type", Kind::Integer},
        {"MaxUnits", Kind::Float},
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

// The ordinary days and the exceptions, asked as the calendar mapping asks them.
const Collection kCalendars = {
    "Calendars/Calendar",
    {{"UID", Kind::String}},
    {{"Name", Kind::String}, {"BaseCalendarUID", Kind::String}, {"IsBaseCalendar", Kind::String}},
    {
        {"WeekDays/WeekDay[DayType>=1 and DayType<=7]",
         {{"DayType", Kind::Integer}},
         {{"DayWorking", Kind::Boolean}},
         {kWorkingTimes}},
        {"Exceptions/Exception",
         {{"TimePeriod/FromDate", Kind::Value}},
         {{"TimePeriod/ToDate", Kind::Value}},
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
        answer = kNone;
        for (const auto& value : object.objectsForXQuery(leaf.name, &error)) {
            answer = value->stringValueForXQuery(".", nullptr).value_or(kNone);
        }
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
bool sameAnswer(const std::string& xml, const std::string& mpp) {
    if (xml == mpp) {
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
        const bool number = c == kNumberMark && next < parts.numbers.size();
        result += number ? stringWithFormat("%.15g", parts.numbers[next++]) : std::string(1, c);
    }
    return result;
}

// "Calendars/Calendar/WeekDays/WeekDay": a path for the report, without predicates.
std::string fieldPath(const std::string& path) {
    static const std::regex kPredicate(R"(\[[^\]]*\])");
    return std::regex_replace(path, kPredicate, "");
}

// Asks an interchange document and an MPP file of the same plan the same queries and records where
// their answers differ.
class PlanComparison {
public:
    PlanComparison(std::string file, CorpusDifferences& differences)
        : m_file(std::move(file)), m_differences(differences) {}

    void compare(KVMSPIXQuery& xml, KVMSPIXQuery& mpp) {
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
            const std::string xmlAnswer = answerOf(xml, leaf);
            const std::string mppAnswer = answerOf(mpp, leaf);
            if (!sameAnswer(xmlAnswer, mppAnswer)) {
                m_differences.add(m_file, fieldPath(path + leaf.name),
                                  object + ": xml " + xmlAnswer + ", mpp " + mppAnswer);
            }
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
            if (mpp == mppObjects.end()) {
                m_differences.add(m_file, fieldPath(path) + " only in the xml", object);
                continue;
            }
            compareLeaves(*xml, *mpp->second, collection.leaves, path + "/", object);
            for (const Collection& below : collection.below) {
                compareCollection(*xml, *mpp->second, below, path + "/", object + "/");
            }
        }
        for (const auto& entry : mppObjects) {
            if (!xmlObjects.count(entry.first)) {
                m_differences.add(m_file, fieldPath(path) + " only in the mpp",
                                  parentObject + collection.query + "[" + entry.first + "]");
            }
        }
    }

    // The objects of a collection by their key leaves; a key that repeats gets its count appended.
    Keyed keyed(KVMSPIXQuery& parent, const Collection& collection, const std::string& path) {
        TVError error;
        const KVMSPIXQuery::Objects objects = parent.objectsForXQuery(collection.query, &error);
        if (error.domain == kTVMSPGeneralErrorDomain && error.code == kTVMSPNotPortedXQueryError) {
            m_differences.add(m_file, fieldPath(path), error.localizedDescription());
        }
        Keyed byKey;
        std::map<std::string, int> seen;
        for (const auto& object : objects) {
            std::string key;
            for (const Leaf& leaf : collection.keyLeaves) {
                key += (key.empty() ? "" : ",") + canonical(answerOf(*object, leaf));
            }
            const int count = ++seen[key];
            byKey[count == 1 ? key : key + "#" + std::to_string(count)] = object;
        }
        return byKey;
    }

    std::string m_file;
    CorpusDifferences& m_differences;
};

// "generated__<feature>__<plan>-project<year>-mspdi.xml" and the MPP copies of the same plan and year,
// "generated__<feature>__<plan>-project<year>-mpp<format>.mpp".
const std::regex kInterchangeName(R"(^(generated__.+__.+-project\w+)-mspdi\.xml$)");
const std::regex kCopyName(R"(^(generated__.+__.+-project\w+)-mpp\d+\.mpp$)");

std::multimap<std::string, std::filesystem::path> mppCopiesByPlan() {
    std::multimap<std::string, std::filesystem::path> copies;
    for (const auto& path : testsupport::corpusMppFiles()) {
        std::smatch match;
        const std::string name = path.filename().string();
        if (std::regex_match(name, match, kCopyName)) {
            copies.emplace(match[1].str(), path);
        }
    }
    return copies;
}

} // namespace

// Each MPP copy of a plan answers the import's queries as the interchange XML that the desktop
// application saved from the plan answers them, but for the differences in the manifest.
TEST(QueryCorpus, MppCopiesAnswerAsTheirInterchangeXml) {
    TVMSP_REQUIRE_CORPUS();
    tvSetLogSink([](const std::string&) {});
    CorpusDifferences differences("QueryCorpusTest.manifest");
    const auto copies = mppCopiesByPlan();
    int compared = 0;
    for (const auto& entry : std::filesystem::directory_iterator(testsupport::corpusDir() / "mspdi")) {
        std::smatch match;
        const std::string name = entry.path().filename().string();
        if (!std::regex_match(name, match, kInterchangeName)) {
            continue;
        }
        const QueriedFile xml(entry.path().string(), true, PlanOptions::kActualPlan);
        ASSERT_NE(xml.project(), nullptr) << name << ": " << xml.failure();
        const auto [first, last] = copies.equal_range(match[1].str());
        for (auto copy = first; copy != last; ++copy) {
            const std::string file = copy->second.filename().string();
            const QueriedFile mpp(copy->second.string(), true, PlanOptions::kActualPlan);
            if (!mpp.project()) {
                differences.add(file, "open", mpp.failure());
                continue;
            }
            try {
                PlanComparison(file, differences).compare(*xml.project(), *mpp.project());
            } catch (const TVException& exception) {
                differences.add(file, "assertion", exception.reason());
            }
            ++compared;
        }
    }
    EXPECT_GT(compared, 0);
    tvSetLogSink({});
    const std::string report = differences.report();
    EXPECT_TRUE(report.empty()) << report;
}
