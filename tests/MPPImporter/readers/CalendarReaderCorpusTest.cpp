#include "MPPCommon/date/DateExtensions.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/readers/KVMSPIMPPCalendarReader.h"
#include "MPPImporter/readers/KVMSPIMPPProjectReader.h"
#include "MPPImporter/readers/KVMSPISingleCalendarReader.h"
#include "ReaderCorpusSupport.h"
#include "support/TestSupport.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <regex>
#include <sstream>

namespace {

using json = nlohmann::json;
using readercorpus::CorpusDifferences;
using readercorpus::Fields;
using readercorpus::OpenPlan;

constexpr const char* kDayNames[] = {"SUN", "MON", "TUE", "WED", "THU", "FRI", "SAT"};
constexpr TVTimeSpan kMinute = 60000000;

std::string dateText(TVDate date) {
    return initWithDateTime(date).substr(0, 10);
}

std::string hoursText(const std::vector<std::unique_ptr<KVMSPISingleWorkingTimeReader>>& readers) {
    std::string text;
    for (const auto& reader : readers) {
        auto clock = [](TVTimeSpan span) {
            const auto minutes = span / kMinute;
            return stringWithFormat("%02lld:%02lld", static_cast<long long>(minutes / 60 % 24),
                                    static_cast<long long>(minutes % 60));
        };
        text += (text.empty() ? "" : ",") + clock(reader->fromTimeSpan()) + "-" + clock(reader->toTimeSpan());
    }
    return text;
}

// The kind of a recurrence as the reference names it, with the interval where the type has one and
// the occurrence count.
std::string recurrenceText(const KVMSPISingleExceptionReader& exception) {
    std::vector<int32_t> parameters;
    exception.calendarExceptionRecurrenceParameter(parameters);
    const int32_t interval = parameters.empty() ? -1 : parameters[0];
    std::string kind;
    switch (exception.freq()) {
    case 2:
    case 3:
        kind = "YEARLY";
        break;
    case 4:
    case 5:
        kind = stringWithFormat("MONTHLY freq=%d", interval);
        break;
    case 6:
        kind = stringWithFormat("WEEKLY freq=%d", interval);
        break;
    case 7:
        kind = stringWithFormat("DAILY freq=%d", interval);
        break;
    default:
        return "null";
    }
    return kind + stringWithFormat(" occurrences=%d", exception.occurrenceCount());
}

// The reference's recurrence in the form of recurrenceText; its first date is in `start`.
std::string refRecurrenceText(const json& recurring, std::string& start) {
    if (!recurring.is_string()) {
        return "null";
    }
    const std::string text = recurring.get<std::string>();
    auto value = [&](const char* name) {
        std::smatch found;
        return std::regex_search(text, found, std::regex(std::string(" ") + name + "=(\\S+)"))
                   ? found[1].str()
                   : "";
    };
    start = value("start");
    const std::string kind = text.substr(0, text.find(' '));
    return kind + (kind == "YEARLY" ? "" : " freq=" + value("freq")) + " occurrences=" + value("occurrences");
}

// One exception as a line; the lines of a calendar are compared sorted, since the reference orders
// exceptions by their first occurrence and the file by their place.
std::string exceptionLine(const std::string& from, const std::string& to, const std::string& working,
                          const std::string& hours, const std::string& recurring) {
    return "from=" + from + " to=" + to + " working=" + working + " hours=" + hours +
           " recurring=" + recurring;
}

std::vector<std::string> ourExceptions(const KVMSPISingleCalendarReader& calendar) {
    std::vector<std::string> lines;
    for (const auto& exception : calendar.exceptionReaders()) {
        const auto* period = exception->timePeriodReader();
        lines.push_back(exceptionLine(
            period ? dateText(period->fromDate()) : "null", period ? dateText(period->toDate()) : "null",
            exception->isDayWorking() ? "true" : "false", hoursText(exception->workingTimeReaders()),
            recurrenceText(*exception)));
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

std::vector<std::string> refExceptions(const json& calendar) {
    std::vector<std::string> lines;
    for (const json& exception : calendar["exceptions"]) {
        std::string from = readercorpus::refText(exception["from"]);
        const std::string recurring = refRecurrenceText(exception["recurring"], from);
        lines.push_back(exceptionLine(from, readercorpus::refText(exception["to"]),
                                      readercorpus::refText(exception["working"]),
                                      readercorpus::refText(exception["hours"]), recurring));
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

void compareExceptions(const std::string& file, const std::string& where,
                       const std::vector<std::string>& ours, const std::vector<std::string>& ref,
                       CorpusDifferences& differences) {
    std::vector<std::string> onlyOurs;
    std::vector<std::string> onlyRef;
    std::set_difference(ours.begin(), ours.end(), ref.begin(), ref.end(), std::back_inserter(onlyOurs));
    std::set_difference(ref.begin(), ref.end(), ours.begin(), ours.end(), std::back_inserter(onlyRef));
    for (const std::string& line : onlyOurs) {
        differences.add(file, "exception", where + " only ours: " + line);
    }
    for (const std::string& line : onlyRef) {
        differences.add(file, "exception", where + " only ref: " + line);
    }
}

Fields ourCalendar(const KVMSPISingleCalendarReader& calendar) {
    Fields fields;
    std::string name;
    fields["name"] = calendar.calendarName(name) ? name : "null";
    int32_t base = -1;
    fields["base_calendar_uid"] =
        calendar.calendarBaseCalendarUID(base) && base != -1 ? std::to_string(base) : "null";
    for (const auto& day : calendar.weekDayReaders()) {
        std::string text = "WORKING " + hoursText(day->workingTimeReaders());
        bool working = false;
        if (day->workingTimeReaders().empty()) {
            // A day of a derived calendar without ranges of its own either follows the base (and
            // works as the base does) or is a day off.
            day->weekDayDayWorking(working);
            text = working && !calendar.isBaseCalendar() ? "DEFAULT" : "NON_WORKING";
        }
        fields[std::string("day.") + kDayNames[day->dayType() - 1]] = text;
    }
    return fields;
}

// The reference's day text; a day that follows a base calendar on which it is a day off reads as a
// day off, as ours does.
std::string refDayText(const json& calendar, const json& calendars, const char* day) {
    const std::string text = calendar["days"].value(day, "null");
    if (text != "DEFAULT" || !calendar["base_calendar_uid"].is_number_integer()) {
        return text;
    }
    for (const json& base : calendars) {
        if (base["uid"] == calendar["base_calendar_uid"]) {
            const std::string baseText = refDayText(base, calendars, day);
            return baseText == "NON_WORKING" ? baseText : text;
        }
    }
    return text;
}

Fields refCalendar(const json& calendar, const json& calendars, bool withWeekDays) {
    Fields fields;
    // The reference names a resource's calendar after the resource; the file leaves it unnamed.
    if (calendar.value("type", "") != "RESOURCE") {
        fields["name"] = readercorpus::refText(calendar["name"]);
    }
    fields["base_calendar_uid"] = readercorpus::refText(calendar["base_calendar_uid"]);
    if (withWeekDays) {
        for (const char* day : kDayNames) {
            fields[std::string("day.") + day] = refDayText(calendar, calendars, day);
        }
    }
    return fields;
}

// All calendars of one plan, as text, for comparing the copies of a plan saved by several versions.
// Later versions may renumber calendars, so the text holds no UIDs and lists the calendars sorted.
std::string planCalendarsText(KVMSPIMPPCalendarReader& reader) {
    std::vector<std::string> calendars;
    for (int32_t uid : reader.uniqueIDs()) {
        KVMSPISingleCalendarReader calendar(uid, reader);
        std::string text;
        for (const auto& [key, value] : ourCalendar(calendar)) {
            text += key == "base_calendar_uid" ? "" : key + "=" + value + "\n";
        }
        for (const std::string& line : ourExceptions(calendar)) {
            text += "exception " + line + "\n";
        }
        calendars.push_back(text);
    }
    std::sort(calendars.begin(), calendars.end());
    std::string text;
    for (const std::string& calendar : calendars) {
        text += calendar;
    }
    return text;
}

// The calendar reader of the plan's project reader; none when the plan has no calendar store.
KVMSPIMPPCalendarReader* calendarReaderOf(const OpenPlan& plan) {
    return plan.project() != nullptr
               ? dynamic_cast<KVMSPIMPPCalendarReader*>(plan.project()->calendarReader())
               : nullptr;
}

TEST(CalendarReaderCorpusTest, CorpusCalendarsMatchTheReference) {
    TVMSP_REQUIRE_CORPUS();
    tvSetLogSink([](const std::string&) {});
    CorpusDifferences differences("CalendarReaderCorpusTest.manifest");
    int calendarCount = 0;
    for (const std::filesystem::path& path : testsupport::corpusMppFiles()) {
        const std::string file = path.filename().string();
        const json ref = readercorpus::readReference(path);
        if (ref.is_null() || !ref["calendars"].is_array()) {
            continue;
        }
        try {
            OpenPlan plan(path);
            KVMSPIMPPCalendarReader* reader = calendarReaderOf(plan);
            if (reader == nullptr) {
                continue;
            }
            for (const json& refEntry : ref["calendars"]) {
                const int32_t uid = refEntry["uid"].get<int32_t>();
                const std::string where = "calendar " + std::to_string(uid);
                if (!reader->isValidUID(uid)) {
                    differences.add(file, "uid", where + " missing");
                    continue;
                }
                KVMSPISingleCalendarReader calendar(uid, *reader);
                // A derived calendar without data of its own has no week days.
                const bool withWeekDays = !calendar.weekDayReaders().empty();
                differences.compare(file, where, ourCalendar(calendar),
                                    refCalendar(refEntry, ref["calendars"], withWeekDays));
                compareExceptions(file, where, ourExceptions(calendar), refExceptions(refEntry), differences);
                ++calendarCount;
            }
        } catch (const TVException& exception) {
            differences.add(file, "open", exception.what());
        }
    }
    tvSetLogSink(nullptr);
    EXPECT_GT(calendarCount, testsupport::corpusShare(600));
    const std::string report = differences.report();
    EXPECT_TRUE(report.empty()) << report;
}

// The first line in which two texts differ, from each.
std::string firstDifference(const std::string& ours, const std::string& theirs) {
    std::istringstream ourLines(ours);
    std::istringstream theirLines(theirs);
    std::string ourLine;
    std::string theirLine;
    while (true) {
        const bool more = static_cast<bool>(std::getline(ourLines, ourLine));
        const bool theirMore = static_cast<bool>(std::getline(theirLines, theirLine));
        if (!more && !theirMore) {
            return "";
        }
        if (ourLine != theirLine || more != theirMore) {
            return "    " + ourLine + "\n    " + theirLine;
        }
    }
}

TEST(CalendarReaderCorpusTest, CorpusCopiesSavedByEachVersionReadTheSame) {
    TVMSP_REQUIRE_CORPUS();
    tvSetLogSink([](const std::string&) {});
    // The plan's name without the application and format that saved it. Format 9 copies are compared
    // among themselves: their default week block holds a 4-byte head that the other formats don't.
    const std::regex generated("(generated__.*)-project\\d+-mpp(\\d+)\\.mpp");
    std::map<std::string, std::pair<std::string, std::string>> firstCopies;
    CorpusDifferences differences("CalendarReaderCorpusTest.manifest");
    for (const std::filesystem::path& path : testsupport::corpusMppFiles()) {
        const std::string file = path.filename().string();
        std::smatch plan;
        if (!std::regex_match(file, plan, generated)) {
            continue;
        }
        OpenPlan open(path);
        KVMSPIMPPCalendarReader* reader = calendarReaderOf(open);
        if (reader == nullptr) {
            continue;
        }
        const std::string text = planCalendarsText(*reader);
        const std::string copies = plan[2] == "9" ? plan[1].str() + " (format 9)" : plan[1].str();
        const auto [first, inserted] = firstCopies.try_emplace(copies, file, text);
        if (!inserted && first->second.second != text) {
            differences.add(file, "copy",
                            "differs from " + first->second.first + ":\n" +
                                firstDifference(text, first->second.second));
        }
    }
    tvSetLogSink(nullptr);
    EXPECT_GT(firstCopies.size(), 20U);
    const std::string report = differences.report();
    EXPECT_TRUE(report.empty()) << report;
}

} // namespace
