#include "MPPImporter/Mapper/utilities/KVMSPIUtilities.h"

#include "MPPCommon/date/DateExtensions.h"
#include "MPPCommon/date/DatePatternFormatter.h"
#include "MPPCommon/date/StringExtensions.h"
#include "MPPCommon/shared/MSPCAtomicWrite.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/PosixRegex.h"
#include "MPPCommon/support/TVException.h"
#include "MPPCommon/xml/KVMSPCXMLDocument.h"
#include "MPPExporter/MPPObjects/ScheduleDateExtensions.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <utility>

namespace {

constexpr int64_t kSecondsPerHour = 3600;
constexpr int64_t kSecondsPerMinute = 60;

const PosixRegex& isoDateExpression() {
    static const PosixRegex expression("(-?([[:digit:]]*)-([[:digit:]]*)-([[:digit:]]*))?", 16);
    return expression;
}

const PosixRegex& isoTimeExpression() {
    static const PosixRegex expression("([[:digit:]]*):([[:digit:]]*):([[:digit:]]*)(.([[:digit:]]*))?"
                                       "(((\\+|-)([[:digit:]]*):([[:digit:]]*))|Z)?",
                                       16);
    return expression;
}

const PosixRegex& isoDurationExpression() {
    static const PosixRegex expression("P((([[:digit:]]*)Y)?(([[:digit:]]*)M)?(([[:digit:]]*)D)?)?"
                                       "T((([[:digit:]]*)H)?(([[:digit:]]*)M)?(([[:digit:]]*)S)?)?",
                                       15);
    return expression;
}

const PosixRegex& strictMspdiDurationExpression() {
    static const PosixRegex expression("PT([[:digit:]]*)H([[:digit:]]*)M([[:digit:]]*)S", 4);
    return expression;
}

// Stores the integer of a non-empty group in `field` and adds `unit` to the flags.
void storeGroup(const PosixMatch& match, size_t group, int64_t& field, TVCalendarUnits unit,
                TVCalendarUnits& flags) {
    const std::string_view text = match.group(group);
    if (!text.empty()) {
        field = intValue(text);
        flags |= unit;
    }
}

bool hasAnyUnit(TVCalendarUnits flags, TVCalendarUnits units) {
    return (flags & units) != 0;
}

// Flags that name at least one unit and not a failed parse.
bool parsedSomething(TVCalendarUnits flags) {
    return flags != 0 && flags != kMSPCParseFailed;
}

struct ParsedDateTime {
    MSPCDateComponents components;
    TVCalendarUnits flags = 0;
};

std::optional<ParsedDateTime> parseDateTime(const std::string& text) {
    ParsedDateTime parsed;
    parsed.flags = KVMSPIUtilities::updateDateTimeComponents(parsed.components, text);
    if (!parsedSomething(parsed.flags)) {
        return std::nullopt;
    }
    return parsed;
}

// Raises the internal-inconsistency exception naming the text when `condition` is false.
void requireForText(bool condition, const char* failureFormat, const std::string& text) {
    if (!condition) {
        throw TVException(kInternalInconsistencyException, stringWithFormat(failureFormat, text.c_str()));
    }
}

ParsedDateTime requiredDateTime(const std::string& text, const char* failureFormat) {
    auto parsed = parseDateTime(text);
    requireForText(parsed.has_value(), failureFormat, text);
    return *parsed;
}

constexpr const char* kMspdiParseFailure = "Failed to make MSPCDateComponents from MSPDI date-time: '%s'.";
constexpr const char* kTvnxParseFailure = "Failed to make MSPCDateComponents from TVNX date-time: '%s'.";

// Toward zero, held to 64 bits; 0 for a value that isn't a number.
int64_t truncatedToInt64(double value) {
    if (std::isnan(value)) {
        return 0;
    }
    constexpr double kLimit = 9.2e18;
    return static_cast<int64_t>(std::clamp(value, -kLimit, kLimit));
}

int64_t secondsOfTimeUnits(const MSPCDateComponents& components, TVCalendarUnits flags) {
    int64_t seconds = 0;
    if (hasAnyUnit(flags, kTVCalendarUnitHour)) {
        seconds += components.hour * kSecondsPerHour;
    }
    if (hasAnyUnit(flags, kTVCalendarUnitMinute)) {
        seconds += components.minute * kSecondsPerMinute;
    }
    if (hasAnyUnit(flags, kTVCalendarUnitSecond)) {
        seconds += components.second;
    }
    return seconds;
}

// The zone of a TVNX record: GMT for UTC, its offset otherwise, the system zone when the text had
// none.
std::optional<TVTimeZone> zoneOfTvnxRecord(const ParsedDateTime& parsed) {
    if (!hasAnyUnit(parsed.flags, kMSPCTimeZoneUnits)) {
        return TVTimeZone::systemTimeZone();
    }
    if (parsed.components.isUTC()) {
        return TVTimeZone::gmt();
    }
    const int64_t hour = parsed.components.timeZoneHour();
    const int64_t minute = parsed.components.timeZoneMinute();
    if (std::abs(hour) > TVTimeZone::kMaxSecondsFromGMT ||
        std::abs(minute) > TVTimeZone::kMaxSecondsFromGMT) {
        return std::nullopt;
    }
    return TVTimeZone::forSecondsFromGMT((hour * 60 + minute) * 60);
}

// Appends the three fields of a date or a time that `unitFlags` names. Once the text has begun, a
// separator follows each of the first two places, whether its field was written or not. The first
// field takes `firstFormat`, the others two digits.
void appendFields(std::string& text, TVCalendarUnits unitFlags, const char* firstFormat, char separator,
                  const std::array<std::pair<TVCalendarUnits, int64_t>, 3>& fields) {
    for (size_t index = 0; index < fields.size(); ++index) {
        if (index > 0 && !text.empty()) {
            text += separator;
        }
        const auto& [unit, value] = fields[index];
        if (hasAnyUnit(unitFlags, unit)) {
            text += stringWithFormat(index == 0 ? firstFormat : "%02d", static_cast<int>(value));
        }
    }
}

// The instant of ISO text read in the system zone; none for text that holds no date.
std::optional<TVDate> dateOfIsoText(const std::string& text) {
    const auto components = KVMSPIUtilities::componentsFromISODateTime(text);
    return components ? KVMSPIUtilities::dateFromComponents(*components) : std::nullopt;
}

const char* yesOrNo(bool flag) {
    return flag ? "YES" : "NO";
}

std::string fixedStreamText(const char* group, const MPPFixedStreamParams& params) {
    return stringWithFormat("    %s.metaStreamMagicNumber=%X\n    %s.metaStreamItemSize=%u\n"
                            "    %s.dataStreamMinItemSize=%u\n    %s.dataStreamMaxItemSize=%u\n",
                            group, params.metaStreamMagicNumber, group, params.metaStreamItemSize, group,
                            params.dataStreamMinItemSize, group, params.dataStreamMaxItemSize);
}

int orderOf(auto first, auto second) {
    return first < second ? -1 : (second < first ? 1 : 0);
}

} // namespace

TVCalendarUnits KVMSPIUtilities::updateDateTimeComponents(MSPCDateComponents& components,
                                                          const std::string& isoDateTime) {
    if (isoDateTime.empty()) {
        return kMSPCParseFailed;
    }
    const auto date = isoDateExpression().search(isoDateTime);
    if (!date) {
        return kMSPCParseFailed;
    }
    // A leading "-" lies outside the year's group: the year loses its sign.
    TVCalendarUnits flags = 0;
    storeGroup(*date, 2, components.year, kTVCalendarUnitYear, flags);
    storeGroup(*date, 3, components.month, kTVCalendarUnitMonth, flags);
    storeGroup(*date, 4, components.day, kTVCalendarUnitDay, flags);
    if (static_cast<size_t>(date->end(0)) == isoDateTime.size()) {
        return flags;
    }
    const auto time = isoTimeExpression().search(isoDateTime);
    if (!time) {
        return flags;
    }
    if (date->end(0) >= 1 && date->start(0) >= 0) {
        tvAssert(isoDateTime[static_cast<size_t>(date->end(0))] == 'T', "");
        tvAssert(time->start(0) == date->end(0) + 1, "");
    }
    storeGroup(*time, 1, components.hour, kTVCalendarUnitHour, flags);
    storeGroup(*time, 2, components.minute, kTVCalendarUnitMinute, flags);
    storeGroup(*time, 3, components.second, kTVCalendarUnitSecond, flags);

    // Group 4 is "any one character, then digits": it takes a "Z" or a fractional second.
    const std::string_view group4 = time->group(4);
    const bool isUTC = group4 == "Z" || (group4.size() >= 2 && group4[0] == '.' && time->group(6) == "Z");
    if (isUTC) {
        components.setTimeZoneHour(0);
        components.setTimeZoneMinute(0);
        components.setIsUTC(true);
        return flags | kMSPCUnitUTC;
    }
    if (group4.size() >= 2 && group4[0] == '.') {
        // A fractional second followed by a numeric offset loses the offset.
        return flags;
    }
    const int64_t sign = time->group(8) == "-" ? -1 : 1;
    if (!time->group(9).empty()) {
        components.setTimeZoneHour(sign * intValue(time->group(9)));
        flags |= kMSPCUnitTimeZoneHour;
    }
    if (!time->group(10).empty()) {
        components.setTimeZoneMinute(intValue(time->group(10)));
        flags |= kMSPCUnitTimeZoneMinute;
    }
    components.fixUTC();
    return flags;
}

TVCalendarUnits KVMSPIUtilities::updateDateTimeComponents(MSPCDateComponents& components,
                                                          ISODuration isoDuration) {
    if (isoDuration.text.empty()) {
        return kMSPCParseFailed;
    }
    const auto match = isoDurationExpression().search(isoDuration.text);
    if (!match) {
        return kMSPCParseFailed;
    }
    TVCalendarUnits flags = 0;
    storeGroup(*match, 3, components.year, kTVCalendarUnitYear, flags);
    storeGroup(*match, 5, components.month, kTVCalendarUnitMonth, flags);
    storeGroup(*match, 7, components.day, kTVCalendarUnitDay, flags);
    storeGroup(*match, 10, components.hour, kTVCalendarUnitHour, flags);
    storeGroup(*match, 12, components.minute, kTVCalendarUnitMinute, flags);
    storeGroup(*match, 14, components.second, kTVCalendarUnitSecond, flags);
    return flags;
}

std::optional<std::string> KVMSPIUtilities::stringFromComponents(const MSPCDateComponents& components,
                                                                 TVCalendarUnits unitFlags) {
    if (unitFlags == kMSPCParseFailed) {
        return std::nullopt;
    }
    std::string text;
    if (hasAnyUnit(unitFlags, kMSPCDateUnits)) {
        appendFields(text, unitFlags, "%d", '-',
                     {{{kTVCalendarUnitYear, components.year},
                       {kTVCalendarUnitMonth, components.month},
                       {kTVCalendarUnitDay, components.day}}});
    }
    if (hasAnyUnit(unitFlags, kMSPCTimeZoneUnits | kMSPCTimeUnits) && !text.empty()) {
        text += "T";
    }
    if (hasAnyUnit(unitFlags, kMSPCTimeUnits)) {
        appendFields(text, unitFlags, "%02d", ':',
                     {{{kTVCalendarUnitHour, components.hour},
                       {kTVCalendarUnitMinute, components.minute},
                       {kTVCalendarUnitSecond, components.second}}});
    }
    if (!hasAnyUnit(unitFlags, kMSPCTimeZoneUnits)) {
        return text;
    }
    if (hasAnyUnit(unitFlags, kMSPCUnitUTC) && components.isUTC()) {
        return text + "Z";
    }
    const int64_t zoneHour = hasAnyUnit(unitFlags, kMSPCUnitTimeZoneHour) ? components.timeZoneHour() : 0;
    const int64_t zoneMinute =
        hasAnyUnit(unitFlags, kMSPCUnitTimeZoneMinute) ? components.timeZoneMinute() : 0;
    return text + stringWithFormat("%+03d:%02d", static_cast<int>(zoneHour), static_cast<int>(zoneMinute));
}

std::optional<MSPCDateComponents> KVMSPIUtilities::componentsFromISODateTime(const std::string& text) {
    const auto parsed = parseDateTime(text);
    return parsed ? std::optional(parsed->components) : std::nullopt;
}

std::optional<TVDate> KVMSPIUtilities::dateFromComponents(const MSPCDateComponents& components) {
    return initWithDateComponents(components);
}

bool KVMSPIUtilities::isIsoiDateTime(const std::string& text) {
    return parseDateTime(text).has_value();
}

bool KVMSPIUtilities::isTvnxDateTime(const std::string& text) {
    const auto parsed = parseDateTime(text);
    return parsed && hasAnyUnit(parsed->flags, kMSPCTimeZoneUnits);
}

bool KVMSPIUtilities::isMspdiDateTime(const std::string& text) {
    const auto parsed = parseDateTime(text);
    return parsed && !hasAnyUnit(parsed->flags, kMSPCTimeZoneUnits);
}

bool KVMSPIUtilities::isMspdiDuration(const std::string& text) {
    MSPCDateComponents components;
    return updateDateTimeComponents(components, ISODuration{text}) != kMSPCParseFailed;
}

std::optional<std::string> KVMSPIUtilities::mspdiToTvnxDateTime(const std::string& text) {
    if (text.empty()) {
        return std::nullopt;
    }
    ParsedDateTime parsed = requiredDateTime(text, kMspdiParseFailure);
    if (!hasAnyUnit(parsed.flags, kMSPCTimeZoneUnits)) {
        requireForText(parsed.components.forceSystemTimezoneforDate(std::nullopt) != kMSPCParseFailed,
                       kMspdiParseFailure, text);
    }
    return stringFromComponents(parsed.components, parsed.flags | kMSPCTimeZoneUnits);
}

std::optional<std::string> KVMSPIUtilities::mspdiToTvnxTimeOnly(const std::string& text) {
    if (text.empty()) {
        return std::nullopt;
    }
    const ParsedDateTime parsed =
        requiredDateTime(text, "Failed to get time only value from MSPDI date-time: '%s'.");
    return stringWithFormat("%lld",
                            static_cast<long long>(secondsOfTimeUnits(parsed.components, parsed.flags)));
}

std::optional<std::string> KVMSPIUtilities::mspdiDateTimeToString(const std::string& text) {
    if (text.empty()) {
        return std::nullopt;
    }
    const auto date = dateFromComponents(requiredDateTime(text, kMspdiParseFailure).components);
    if (!date) {
        return std::nullopt;
    }
    return DatePatternFormatter("yyyy-MM-dd HH:mm:ss Z", TVTimeZone::systemTimeZone()).stringFromDate(*date);
}

std::optional<TVDate> KVMSPIUtilities::mspdiToMppDateTime(const std::string& text) {
    if (text.empty()) {
        return std::nullopt;
    }
    const ParsedDateTime parsed = requiredDateTime(text, kMspdiParseFailure);
    requireForText(!hasAnyUnit(parsed.flags, kMSPCTimeZoneUnits),
                   "Not a valid MSPDI date-time: '%s' (time zone?).", text);
    return dateFromComponents(parsed.components);
}

std::optional<TVDate> KVMSPIUtilities::tvnxToMppDateTime(const std::string& text) {
    if (text.empty()) {
        return std::nullopt;
    }
    const ParsedDateTime parsed = requiredDateTime(text, kTvnxParseFailure);
    const auto zone = zoneOfTvnxRecord(parsed);
    const auto date = zone ? TVCalendar(*zone).dateFromComponents(parsed.components) : std::nullopt;
    requireForText(date.has_value(), kTvnxParseFailure, text);
    return date;
}

std::optional<std::string> KVMSPIUtilities::tvnxToMspdiDateTime(const std::string& text) {
    return tvnxToMspdiDateTime(text, 0);
}

std::optional<std::string> KVMSPIUtilities::tvnxToMspdiDateTime(const std::string& text,
                                                                TVCalendarUnits calendarUnits) {
    if (text.empty()) {
        return std::nullopt;
    }
    ParsedDateTime parsed = requiredDateTime(text, kTvnxParseFailure);
    const TVCalendarUnits flags = parsed.components.convertToSystemTimezone();
    requireForText(flags != kMSPCParseFailed, kTvnxParseFailure, text);
    TVCalendarUnits rendered = flags & ~kMSPCTimeZoneUnits;
    if (calendarUnits != 0) {
        rendered &= calendarUnits;
    }
    return stringFromComponents(parsed.components, rendered);
}

std::optional<std::string> KVMSPIUtilities::tvnxToMspdiDateOnly(const std::string& text) {
    return tvnxToMspdiDateTime(text, kMSPCDateUnits);
}

std::optional<std::string> KVMSPIUtilities::tvnxToMspdiDateStartTime(const std::string& text) {
    const auto date = tvnxToMspdiDateOnly(text);
    return date ? std::optional(*date + "T00:00:00") : std::nullopt;
}

std::optional<std::string> KVMSPIUtilities::tvnxToMspdiDateEndTime(const std::string& text) {
    const auto date = tvnxToMspdiDateOnly(text);
    return date ? std::optional(*date + "T23:59:59") : std::nullopt;
}

std::optional<std::string> KVMSPIUtilities::mppToTvnxDateTime(TVDate date) {
    return mppToTvnxDateTime(date, TVCalendar());
}

std::optional<std::string> KVMSPIUtilities::mppToTvnxDateTime(TVDate date, const TVCalendar& calendar) {
    const auto fields = calendar.components(kMSPCDateTimeUnits, date);
    if (!fields) {
        return std::nullopt;
    }
    MSPCDateComponents components(*fields);
    return stringFromComponents(components, components.forceSystemTimezoneforDate(date));
}

std::optional<std::string> KVMSPIUtilities::mppToMspdiDateTime(TVDate date) {
    const auto tvnx = mppToTvnxDateTime(date);
    return tvnx ? tvnxToMspdiDateTime(*tvnx) : std::nullopt;
}

int KVMSPIUtilities::compareMspdiDateTime(const std::string& first, const std::string& second) {
    if (first.empty() || second.empty()) {
        return orderOf(first.size(), second.size());
    }
    const auto dateOf = [](const std::string& text) {
        const auto date = dateFromComponents(requiredDateTime(text, kMspdiParseFailure).components);
        requireForText(date.has_value(), kMspdiParseFailure, text);
        return *date;
    };
    return orderOf(dateOf(first), dateOf(second));
}

std::optional<std::string> KVMSPIUtilities::isoDateTime(const std::string& text, double duration,
                                                        bool forward,
                                                        const KVMSPEScheduleCalendar* calendar) {
    const auto date = dateOfIsoText(text);
    return date ? mppToTvnxDateTime(dateAdvancedByDuration(*date, duration, forward, calendar))
                : std::nullopt;
}

std::optional<std::string> KVMSPIUtilities::isoDateTime(const std::string& text,
                                                        const std::string& tvnxDuration, bool forward,
                                                        const KVMSPEScheduleCalendar* calendar) {
    return isoDateTime(text, intValue(tvnxDuration), forward, calendar);
}

bool KVMSPIUtilities::isWorkingDay(const std::string& text, const KVMSPEScheduleCalendar* calendar) {
    const auto date = dateOfIsoText(text);
    return date && isWorkingDayInCalendar(*date, calendar);
}

int64_t KVMSPIUtilities::mspdiDurationInSecs(const std::string& text) {
    if (text.empty()) {
        return -1;
    }
    MSPCDateComponents components;
    const TVCalendarUnits flags = updateDateTimeComponents(components, ISODuration{text});
    requireForText(flags != kMSPCParseFailed, "Failed to convert MSPDI duration: '%s'.", text);
    return secondsOfTimeUnits(components, flags);
}

std::optional<std::string> KVMSPIUtilities::mspdiToTvnxDuration(const std::string& text) {
    const int64_t seconds = mspdiDurationInSecs(text);
    return seconds < 0 ? std::nullopt
                       : std::optional(stringWithFormat("%lld", static_cast<long long>(seconds)));
}

double KVMSPIUtilities::mspdiToMppDuration(const std::string& text) {
    const auto match = strictMspdiDurationExpression().search(text);
    if (!match || match->start(0) != 0 || match->end(0) == 0 || !match->isSet(1) || !match->isSet(2) ||
        !match->isSet(3)) {
        return 0.0;
    }
    return static_cast<double>(intValue(match->group(1))) * kSecondsPerHour +
           static_cast<double>(intValue(match->group(2))) * kSecondsPerMinute +
           static_cast<double>(intValue(match->group(3)));
}

std::string KVMSPIUtilities::mppToTvnxDuration(double seconds) {
    return stringWithFormat("%.02f", seconds);
}

std::string KVMSPIUtilities::mppToMspdiDuration(double seconds) {
    // Whole seconds, truncated to 32 bits.
    const int32_t whole = static_cast<int32_t>(truncatedToInt64(seconds));
    return stringWithFormat("PT%dH%dM%dS", whole / 3600, (whole % 3600) / 60, whole % 60);
}

std::optional<std::string> KVMSPIUtilities::tvnxToMspdiDuration(const std::string& text) {
    if (text.empty()) {
        return std::nullopt;
    }
    return mppToMspdiDuration(intValue(text));
}

void KVMSPIUtilities::dumpXMLDocument(const KVMSPCXMLDocument& document, const TVFileURL& workingFolderUrl,
                                      const std::string& dumpName, int dumpNumber) {
    if (workingFolderUrl.isEmpty()) {
        tvLog(stringWithFormat(
            "*** ERROR: MSPIUtilities dumpXMLDocument:workingFolderUrl: Not a file URL: '%s'",
            workingFolderUrl.absoluteString().c_str()));
        return;
    }
    std::error_code error;
    if (!std::filesystem::is_directory(workingFolderUrl.path(), error)) {
        return;
    }
    const std::filesystem::path folder = std::filesystem::path(workingFolderUrl.path()) / "TVMSPDIFilterDump";
    std::filesystem::create_directories(folder, error);
    if (!std::filesystem::is_directory(folder, error)) {
        tvLog(stringWithFormat(
            "*** ERROR: MSPIUtilities dumpXMLDocument:workingFolderUrl: Failed to locate dump folder: '%s'.",
            TVFileURL(folder.string(), true).absoluteString().c_str()));
        return;
    }
    const std::string base =
        stringWithFormat("%s_dump", dumpName.empty() ? "TVMSPDIFilter" : dumpName.c_str());
    const std::string number = dumpNumber >= 1 ? stringWithFormat("(%d)", dumpNumber) : std::string();
    const std::filesystem::path file = folder / stringWithFormat("%s%s.xml", base.c_str(), number.c_str());
    if (!writeDataAtomically(
            file.string(), document.XMLDataWithOptions(kXMLNodePrettyPrint | kXMLNodeCompactEmptyElement))) {
        tvLog(stringWithFormat(
            "*** ERROR: MSPIUtilities dumpXMLDocument:workingFolderUrl: Failed to write '%s'.",
            file.c_str()));
    }
}

std::string KVMSPIUtilities::stringFromDataStreamParams(const MPPDataStreamParams& params) {
    return stringWithFormat("MPPDataStreamParams (%p):\n  hasPropsStream=%s\n  hasFixedStream=%s\n",
                            static_cast<const void*>(&params), yesOrNo(params.hasPropsStream),
                            yesOrNo(params.hasFixedStream)) +
           fixedStreamText("fixed", params.fixed) +
           stringWithFormat("  hasFixed2Stream=%s\n", yesOrNo(params.hasFixed2Stream)) +
           fixedStreamText("fixed2", params.fixed2) +
           stringWithFormat("  firstFixedIndex=%llu\n  hasVarStream=%s\n    var.metaStreamMagicNumber=%X\n"
                            "    var.metaStreamItemSize=%u\n",
                            static_cast<unsigned long long>(params.firstFixedIndex),
                            yesOrNo(params.hasVarStream), params.var.metaStreamMagicNumber,
                            params.var.metaStreamItemSize);
}

bool KVMSPIUtilities::dataStreamParams(const MPPDataStreamParams& params, const MPPDataStreamParams& other) {
    if (params.hasPropsStream != other.hasPropsStream || params.hasFixedStream != other.hasFixedStream) {
        return false;
    }
    if (params.hasFixedStream && params.fixed != other.fixed) {
        return false;
    }
    if (params.hasFixed2Stream && (!other.hasFixed2Stream || params.fixed2 != other.fixed2 ||
                                   params.firstFixedIndex != other.firstFixedIndex)) {
        return false;
    }
    return !params.hasVarStream || (other.hasVarStream && params.var == other.var);
}
