#include "MPPExporter/Mappers/KVMSPECalendarExceptions.h"

#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPCommon/date/StringExtensions.h"
#include "MPPCommon/date/TVCalendar.h"
#include "MPPCommon/shared/MSPCBoolValue.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPExporter/Mappers/KVMSPERecurrenceRule.h"
#include "MPPExporter/Mappers/MSPETvnxReading.h"
#include "MPPImporter/Mapper/utilities/KVMSPIUtilities.h"

#include <algorithm>
#include <cmath>

namespace {

using namespace tvnx;

// The occurrences of the repeated events of one calendar, all rules together. A plan file counts the
// exceptions of a calendar in 16 bits, so it never holds more; the cap keeps a hostile rule from
// making the export allocate without bound.
constexpr size_t kMaxOccurrences = 32767;

// A date's day on the system zone's Gregorian calendar, the one `MSPETvnxEventInfo::dayOf` uses; none
// before the common era.
std::optional<std::chrono::sys_days> civilDay(TVDate date) {
    const auto components = TVCalendar().components(
        kTVCalendarUnitEra | kTVCalendarUnitYear | kTVCalendarUnitMonth | kTVCalendarUnitDay, date);
    if (!components || components->era != 1 || components->year > 9999) {
        return std::nullopt;
    }
    const std::chrono::year_month_day day{std::chrono::year(static_cast<int>(components->year)),
                                          std::chrono::month(static_cast<unsigned>(components->month)),
                                          std::chrono::day(static_cast<unsigned>(components->day))};
    return day.ok() ? std::optional<std::chrono::sys_days>(day) : std::nullopt;
}

// Noon of a day in the system zone, a date safely inside it.
std::optional<TVDate> noonOf(std::chrono::sys_days day) {
    const std::chrono::year_month_day date(day);
    TVDateComponents components;
    components.year = static_cast<int>(date.year());
    components.month = static_cast<unsigned>(date.month());
    components.day = static_cast<unsigned>(date.day());
    components.hour = 12;
    components.minute = 0;
    components.second = 0;
    return TVCalendar().dateFromComponents(components);
}

// The event repeated by its rule: one event per run of consecutive occurrence days, each with the
// event's hours. None when the rule or the dates can't be read, and the event then counts as one
// stretch from its first start to its end.
std::optional<std::vector<MSPETvnxEventInfo>> occurrencesOf(const MSPETvnxEventInfo& event,
                                                            const std::string& text, size_t& budget) {
    const auto rule = KVMSPERecurrenceRule::initWithString(text);
    const auto first = civilDay(event.fromDate());
    const auto last = civilDay(event.toDate());
    if (!rule || !first || !last) {
        tvLog(stringWithFormat("Calendar event repeated by a rule that can't be read: '%s'", text.c_str()));
        return std::nullopt;
    }
    std::vector<MSPETvnxEventInfo> runs;
    std::optional<std::chrono::sys_days> previous;
    for (const std::chrono::sys_days day : rule->occurrences(*first, *last, budget)) {
        const auto noon = noonOf(day);
        const auto bounds = noon ? MSPETvnxEventInfo::dayOf(*noon) : std::nullopt;
        if (!bounds) {
            continue;
        }
        --budget;
        if (previous && day == *previous + std::chrono::days(1) && !runs.empty()) {
            runs.back().setToDate(bounds->last);
        } else {
            MSPETvnxEventInfo run = event;
            run.setFromDate(bounds->first);
            run.setToDate(bounds->last);
            runs.push_back(run);
        }
        previous = day;
    }
    return runs;
}

// The seconds of day of a `time-span` attribute, as its leading integer.
double spanTime(const KVMSPCXMLElement& span, const char* name) {
    return static_cast<double>(intValue(tvnxread::attribute(span, name).value_or("")));
}

} // namespace

KVMSPECalendarExceptions::KVMSPECalendarExceptions(const KVMSPCXMLElement& calendar)
    : _calendarName(tvnxread::attribute(calendar, attribute::kName)) {
    const auto overtime = tvnxread::attribute(calendar, attribute::kOvertime);
    _overtime = overtime && !overtime->empty() && boolValueFromString(*overtime);
    size_t budget = kMaxOccurrences;
    for (const auto& event : calendar.elementsForName(element::kEvent)) {
        const auto info = MSPETvnxEventInfo::initWithTvnxEvent(*event);
        if (!info) {
            continue;
        }
        // A repeated event is expanded into its occurrences: taken as one stretch, the days between
        // them would become exception days too.
        const auto rule = tvnxread::attribute(*event, attribute::kRrule);
        const auto runs = rule && !rule->empty() ? occurrencesOf(*info, *rule, budget) : std::nullopt;
        if (runs) {
            _tvnxEventInfos.insert(_tvnxEventInfos.end(), runs->begin(), runs->end());
        } else {
            _tvnxEventInfos.push_back(*info);
        }
    }
    sortEvents();
}

KVMSPECalendarExceptions::KVMSPECalendarExceptions(const KVMSPCXMLElement::Elements& flattenedDays,
                                                   bool overtime)
    : _calendarName(overtime ? value::kCalendarOvertime : value::kCalendarTimeOff), _overtime(overtime) {
    for (const auto& flattenedDay : flattenedDays) {
        const auto text = tvnxread::attribute(*flattenedDay, attribute::kDate);
        const auto date = text ? KVMSPIUtilities::tvnxToMppDateTime(*text) : std::nullopt;
        const auto day = date ? MSPETvnxEventInfo::dayOf(*date) : std::nullopt;
        if (!day) {
            continue;
        }
        const auto spans = flattenedDay->elementsForName(element::kTimeSpan);
        if (overtime) {
            tvAssert(!spans.empty(), "We expect one or more 'time-span' children with time range.");
            for (const auto& span : spans) {
                _tvnxEventInfos.emplace_back(day->first, day->last, spanTime(*span, attribute::kStartTime),
                                             spanTime(*span, attribute::kEndTime));
            }
        } else {
            tvAssert(spans.empty(), "There should be no 'time-span' children. We need just a date.");
            _tvnxEventInfos.emplace_back(day->first, day->last);
        }
    }
    sortEvents();
}

void KVMSPECalendarExceptions::sortEvents() {
    std::sort(_tvnxEventInfos.begin(), _tvnxEventInfos.end(),
              [](const MSPETvnxEventInfo& first, const MSPETvnxEventInfo& second) {
                  return first.fromDate() != second.fromDate() ? first.fromDate() < second.fromDate()
                                                               : first.toDate() < second.toDate();
              });
}

// A sweep over the dates: from a cursor, the events that cover it make one exception, which ends at
// the first end among them or a second before the next event starts, whichever comes first.
void KVMSPECalendarExceptions::mapEvents() {
    if (_tvnxEventInfos.empty()) {
        return;
    }
    TVDate cursor = _tvnxEventInfos.front().fromDate();
    TVDate limit = _tvnxEventInfos.front().toDate();
    for (const MSPETvnxEventInfo& event : _tvnxEventInfos) {
        limit = std::max(limit, event.toDate());
    }
    // The cursor only moves on: the leading events that end before it never cover it again. The events
    // are sorted by start, so the scan ends at the first that starts behind the cursor.
    size_t first = 0;
    while (cursor < limit) {
        while (first < _tvnxEventInfos.size() && _tvnxEventInfos[first].toDate() < cursor) {
            ++first;
        }
        std::vector<const MSPETvnxEventInfo*> covering;
        std::optional<TVDate> nextStart;
        for (size_t index = first; index < _tvnxEventInfos.size() && !nextStart; ++index) {
            const MSPETvnxEventInfo& event = _tvnxEventInfos[index];
            if (event.fromDate() > cursor) {
                nextStart = event.fromDate();
            } else if (event.toDate() >= cursor) {
                covering.push_back(&event);
            }
        }
        if (covering.empty()) {
            cursor = nextStart.value_or(limit);
            continue;
        }
        MSPEExceptionInfo exception(cursor, limit);
        TVDate end = limit;
        for (const MSPETvnxEventInfo* event : covering) {
            end = std::min(end, event->toDate());
            if (event->hasTimeRange()) {
                exception.workingTimes().emplace_back(event->start(), event->end());
            }
        }
        if (nextStart && end > *nextStart) {
            end = nextStart->addingSeconds(-1.0);
        }
        exception.setToDate(end);
        // The same hours from two events (two series that meet on a day) are written once.
        auto& times = exception.workingTimes();
        std::sort(times.begin(), times.end(),
                  [](const KVMSPEWorkingTime& first, const KVMSPEWorkingTime& second) {
                      return first.fromTime() != second.fromTime() ? first.fromTime() < second.fromTime()
                                                                   : first.toTime() < second.toTime();
                  });
        times.erase(std::unique(times.begin(), times.end()), times.end());
        _mppExceptionInfos.push_back(std::move(exception));
        cursor = end.addingSeconds(1.0);
    }
}

const MSPEExceptionInfo* KVMSPECalendarExceptions::exceptionAt(int64_t index) const {
    return index >= 0 && index < exceptionsCount() ? &_mppExceptionInfos[static_cast<size_t>(index)]
                                                   : nullptr;
}

bool KVMSPECalendarExceptions::exception(int64_t index, TVDate* fromDate, TVDate* toDate,
                                         int64_t* numberOfDays) const {
    const MSPEExceptionInfo* exception = exceptionAt(index);
    if (exception == nullptr) {
        return false;
    }
    *fromDate = exception->fromDate();
    *toDate = exception->toDate();
    if (numberOfDays != nullptr) {
        *numberOfDays = static_cast<int64_t>(
            std::ceil(exception->toDate().secondsSince(exception->fromDate()) / 86400.0));
    }
    return true;
}

bool KVMSPECalendarExceptions::exception(int64_t index, int64_t* workingTimesCount) const {
    const MSPEExceptionInfo* exception = exceptionAt(index);
    if (exception == nullptr) {
        return false;
    }
    *workingTimesCount = static_cast<int64_t>(exception->workingTimes().size());
    return true;
}

bool KVMSPECalendarExceptions::exception(int64_t index, int64_t workingTime, double* fromTime,
                                         double* toTime) const {
    const MSPEExceptionInfo* exception = exceptionAt(index);
    if (exception == nullptr || workingTime < 0 ||
        workingTime >= static_cast<int64_t>(exception->workingTimes().size())) {
        return false;
    }
    const KVMSPEWorkingTime& time = exception->workingTimes()[static_cast<size_t>(workingTime)];
    *fromTime = time.fromTime();
    *toTime = time.toTime();
    return true;
}

std::string KVMSPECalendarExceptions::description() const {
    std::string exceptions;
    for (const MSPEExceptionInfo& exception : _mppExceptionInfos) {
        exceptions.append("\n").append(exception.description());
    }
    return stringWithFormat("KVMSPECalendarExceptions: name='%s' overtime=%s exceptions (%ld): %s",
                            _calendarName.value_or("").c_str(), _overtime ? "YES" : "NO",
                            static_cast<long>(_mppExceptionInfos.size()), exceptions.c_str());
}
