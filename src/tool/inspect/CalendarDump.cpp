#include "tool/inspect/CalendarDump.h"

#include "MPPImporter/readers/KVMSPIMPPAbsCalendarReader.h"
#include "tool/inspect/ReaderFieldDump.h"

#include <optional>

namespace {

using CalendarReader = KVMSPIMPPAbsCalendarReader;

constexpr int32_t kSunday = 1;
constexpr int32_t kSaturday = 7;

void addCalendarFields(CalendarReader& reader, int32_t uid, nlohmann::ordered_json& calendar) {
    ReaderFieldDump<CalendarReader, int32_t>(reader, calendar, uid)
        .field("calendarUID", &CalendarReader::calendarUID)
        .field("calendarName", &CalendarReader::calendarName)
        .field("calendarIsBaseCalendar", &CalendarReader::calendarIsBaseCalendar)
        .field("calendarBaseCalendarUID", &CalendarReader::calendarBaseCalendarUID)
        .field("calendarResourceUID", &CalendarReader::calendarResourceUID)
        .field("calendarExceptionsCount", &CalendarReader::calendarExceptionsCount);
}

// Leaves the key out when `read` answers false.
void addWorkingTimes(nlohmann::ordered_json& object, const char* key,
                     const std::function<bool(std::vector<MPPWorkingTimeRange>&)>& read) {
    std::vector<MPPWorkingTimeRange> ranges;
    if (!read(ranges)) {
        return;
    }
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const auto& range : ranges) {
        list.push_back({{"from", range.from}, {"to", range.to}});
    }
    object[key] = list;
}

// The days that the calendar sets itself. A derived calendar's day that follows its base calendar is
// left out, as the interchange file leaves it out: its working time is the base's.
nlohmann::ordered_json weekDays(CalendarReader& reader, int32_t uid) {
    nlohmann::ordered_json days = nlohmann::ordered_json::array();
    for (int32_t dayType = kSunday; dayType <= kSaturday; ++dayType) {
        bool followsBase = false;
        if (reader.calendarWeekDayFollowsBase(uid, dayType, followsBase, nullptr) && followsBase) {
            continue;
        }
        nlohmann::ordered_json day = {{"dayType", dayType}};
        ReaderFieldDump<CalendarReader, int32_t, int32_t>(reader, day, uid, dayType)
            .field("calendarWeekDayDayWorking", &CalendarReader::calendarWeekDayDayWorking)
            .field("calendarWeekDayTimePeriodFromDate", &CalendarReader::calendarWeekDayTimePeriodFromDate)
            .field("calendarWeekDayTimePeriodToDate", &CalendarReader::calendarWeekDayTimePeriodToDate);
        addWorkingTimes(day, "calendarWeekDayWorkingTimes", [&](auto& ranges) {
            return reader.calendarWeekDayWorkingTimes(uid, dayType, ranges, nullptr);
        });
        days.push_back(day);
    }
    return days;
}

nlohmann::ordered_json optionalDate(const std::optional<TVDate>& date) {
    return date ? DumpValue::of(*date) : nlohmann::ordered_json();
}

nlohmann::ordered_json exception(CalendarReader& reader, int32_t uid, int32_t index) {
    nlohmann::ordered_json object = {{"index", index}};
    int32_t type = 0;
    int32_t occurrenceCount = 0;
    std::optional<TVDate> fromDate;
    std::optional<TVDate> toDate;
    const bool hasRecurrence =
        reader.calendarExceptionRecurrenceType(uid, index, type, occurrenceCount, fromDate, toDate, nullptr);
    nlohmann::ordered_json recurrence = {{"fromDate", optionalDate(fromDate)},
                                         {"toDate", optionalDate(toDate)}};
    if (hasRecurrence) {
        recurrence["type"] = type;
        recurrence["occurrenceCount"] = occurrenceCount;
        std::vector<int32_t> parameters;
        if (reader.calendarExceptionRecurrenceParameter(uid, index, type, parameters, nullptr)) {
            object["calendarExceptionRecurrenceParameter"] = parameters;
        }
    }
    object["calendarExceptionRecurrenceType"] = recurrence;
    ReaderFieldDump<CalendarReader, int32_t, int32_t>(reader, object, uid, index)
        .field("calendarExceptionTimePeriodFromDate", &CalendarReader::calendarExceptionTimePeriodFromDate)
        .field("calendarExceptionTimePeriodToDate", &CalendarReader::calendarExceptionTimePeriodToDate);
    addWorkingTimes(object, "calendarExceptionWorkingTimes", [&](auto& ranges) {
        return reader.calendarExceptionWorkingTimes(uid, index, ranges, nullptr);
    });
    return object;
}

nlohmann::ordered_json exceptions(CalendarReader& reader, int32_t uid,
                                  const nlohmann::ordered_json& calendar) {
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    const int32_t count = calendar.value("calendarExceptionsCount", 0);
    for (int32_t index = 0; index < count; ++index) {
        list.push_back(exception(reader, uid, index));
    }
    return list;
}

} // namespace

nlohmann::ordered_json CalendarDump::of(CalendarReader& reader) {
    nlohmann::ordered_json calendars = nlohmann::ordered_json::array();
    for (int32_t uid : reader.uniqueIDs()) {
        calendars.push_back(dumpObject(uid, [&](nlohmann::ordered_json& calendar) {
            addCalendarFields(reader, uid, calendar);
            calendar["hasCalendarData"] = reader.hasCalendarDataForUID(uid);
            calendar["weekDays"] = weekDays(reader, uid);
            calendar["exceptions"] = exceptions(reader, uid, calendar);
        }));
    }
    return calendars;
}
