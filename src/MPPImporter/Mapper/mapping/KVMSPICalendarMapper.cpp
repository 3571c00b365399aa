#include "MPPImporter/Mapper/mapping/KVMSPICalendarMapper.h"

#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPCommon/date/TVCalendar.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/Mapper/mapping/KVMSPIMapper.h"
#include "MPPImporter/Mapper/mapping/MSPIQueryAnswers.h"
#include "MPPImporter/Mapper/utilities/KVMSPIUtilities.h"
#include "MPPImporter/readers/KVMSPIMPPProjectReader.h"
#include "MPPImporter/readers/KVMSPISingleExceptionReader.h"
#include "MPPImporter/readers/KVMSPISingleWeekDayReader.h"
#include "MPPImporter/readers/KVMSPISingleWorkingTimeReader.h"

#include <array>
#include <cmath>

namespace {

using ElementPtr = KVMSPCXMLElement::ElementPtr;

// Recurrence types of an exception.
constexpr int32_t kYearlyOnDate = 2;
constexpr int32_t kYearlyOnWeekday = 3;
constexpr int32_t kMonthlyOnDay = 4;
constexpr int32_t kMonthlyOnWeekday = 5;
constexpr int32_t kWeekly = 6;
constexpr int32_t kDaily = 7;
// The ordinal of the last weekday of a month.
constexpr int32_t kLastOrdinal = 4;
constexpr int32_t kLastMinuteOfDay = 1439;
constexpr std::array<const char*, 7> kRecurrenceDayNames = {"SU", "MO", "TU", "WE", "TH", "FR", "SA"};

// Calendar dates are worked out in UTC, where the readers keep the file's wall clock.
const TVCalendar& utcCalendar() {
    static const TVCalendar calendar(TVTimeZone::gmt());
    return calendar;
}

struct Fields {
    int64_t year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0, weekday = 1;
};

std::optional<Fields> fieldsOf(TVDate date) {
    const auto components = utcCalendar().components(
        kTVCalendarUnitYear | kTVCalendarUnitMonth | kTVCalendarUnitDay | kTVCalendarUnitHour |
            kTVCalendarUnitMinute | kTVCalendarUnitSecond | kTVCalendarUnitWeekday,
        date);
    if (!components) {
        return std::nullopt;
    }
    return Fields{components->year,   components->month,  components->day,    components->hour,
                  components->minute, components->second, components->weekday};
}

// Lenient: a month of 13 is January of the next year, a day 0 the last of the month before.
std::optional<TVDate> dateOf(const Fields& fields) {
    TVDateComponents components;
    components.year = fields.year;
    components.month = fields.month;
    components.day = fields.day;
    components.hour = fields.hour;
    components.minute = fields.minute;
    components.second = fields.second;
    return utcCalendar().dateFromComponents(components);
}

int64_t parameter(const std::vector<int32_t>& parameters, size_t index) {
    return index < parameters.size() ? parameters[index] : 0;
}

// The weekday 1 (Sunday) to 7 of a day of a month.
int64_t weekdayOf(int64_t year, int64_t month, int64_t day) {
    const auto date = dateOf({year, month, day, 0, 0, 0, 1});
    const auto fields = date ? fieldsOf(*date) : std::nullopt;
    return fields ? fields->weekday : 1;
}

int64_t daysInMonth(int64_t year, int64_t month) {
    const auto date = dateOf({year, month + 1, 0, 0, 0, 0, 1});
    const auto fields = date ? fieldsOf(*date) : std::nullopt;
    return fields ? fields->day : 28;
}

// The day of the month of the ordinal (0 first to 4 last) weekday (0 Sunday to 6) of a month (1 to 12
// or beyond, lenient).
int64_t dayOfOrdinalWeekday(int64_t year, int64_t month, int64_t ordinal, int64_t weekday) {
    const int64_t wanted = weekday + 1;
    if (ordinal >= kLastOrdinal) {
        const int64_t last = daysInMonth(year, month);
        return last - (weekdayOf(year, month, last) - wanted + 7) % 7;
    }
    return 1 + (wanted - weekdayOf(year, month, 1) + 7) % 7 + 7 * std::max<int64_t>(ordinal, 0);
}

// ";BYDAY=" of an ordinal weekday: the ordinal from 1, the last as -1.
std::string byOrdinalDay(int64_t ordinal, int64_t weekday) {
    const int64_t number = ordinal + 1 == 5 ? -1 : ordinal + 1;
    const char* name = weekday >= 0 && weekday < 7 ? kRecurrenceDayNames[static_cast<size_t>(weekday)] : "";
    return stringWithFormat(";BYDAY=%lld%s", static_cast<long long>(number), name);
}

bool isValidWeekdayAndMonth(int64_t weekday, int64_t month) {
    return weekday >= 0 && weekday < 7 && month >= 0 && month < 12;
}

TVDate firstWeeklyOccurrence(const Fields& from, TVDate date, int64_t interval, int64_t mask) {
    const int64_t w = from.weekday;
    int64_t offset = 0;
    if ((mask & (0xFF << w) & 0xFF) != 0) {
        offset = 8 - w;
    } else {
        int64_t lowest = 7;
        for (int64_t bit = 0; bit < 7; ++bit) {
            if ((mask & (1 << bit)) != 0) {
                lowest = bit;
                break;
            }
        }
        offset = interval * 7 + 1 - w + lowest;
    }
    return offset > 0 ? date.addingSeconds(static_cast<double>(offset) * 86400.0) : date;
}

} // namespace

KVMSPICalendarMapper::KVMSPICalendarMapper(KVMSPIMapper& mapper) : KVMSPIObjectMapperBase(mapper) {}

KVMSPICalendarMapper::ElementPtr KVMSPICalendarMapper::newScheduleFromMSPCalendar(
    KVMSPIXQuery& calendar, const std::vector<MPPResourceAvailabilityPeriod>* availability) {
    using namespace tvnx;
    const ElementPtr schedule = KVMSPCXMLElement::initWithName(element::kSchedule);
    const int64_t uid = queryInt(calendar, "UID").value_or(0);
    const int64_t baseUID = queryInt(calendar, "BaseCalendarUID").value_or(-1);
    if (baseUID == -1) {
        addWorkWeek(newCalendarWorkWeekFromMSPCalendar(calendar), *schedule);
    } else {
        std::shared_ptr<KVMSPIXQuery> baseCalendar;
        if (baseUID >= 0) {
            const auto found =
                queryObjectsOrEmpty(*_mapper.mspProject(), stringWithFormat("Calendars/Calendar[UID=%lld]",
                                                                            static_cast<long long>(baseUID)));
            baseCalendar = found.empty() ? nullptr : found.front();
        }
        const KVMPPCalendarWorkWeek baseWeek =
            baseCalendar ? newCalendarWorkWeekFromMSPCalendar(*baseCalendar) : KVMPPCalendarWorkWeek();
        if (uid >= 2 && uid != baseUID) {
            KVMPPCalendarWorkWeek week = newCalendarWorkWeekFromMSPCalendar(calendar);
            for (int64_t day = 1; day <= 7; ++day) {
                if (!week.workRangesForDay(day)) {
                    week.setWorkRanges(baseWeek.workRangesForDay(day), day);
                }
            }
            addWorkWeek(week, *schedule);
        } else {
            addWorkWeek(baseWeek, *schedule);
        }
    }
    Events overtimeEvents;
    Events offtimeEvents;
    if (availability) {
        addCalendarEventFromAvailability(*availability, offtimeEvents);
    }
    addCalenarEventsFromMSPCalendar(calendar, overtimeEvents, offtimeEvents);
    for (const auto& [events, name, overtime] :
         {std::tuple{&overtimeEvents, value::kCalendarOvertime, value::kYes},
          {&offtimeEvents, value::kCalendarTimeOff, value::kNo}}) {
        if (events->empty()) {
            continue;
        }
        const ElementPtr exceptions = schedule->addChildElementWithName(element::kCalendar);
        exceptions->setAttributeWithName(attribute::kName, name);
        exceptions->setAttributeWithName(attribute::kEditable, value::kYes);
        exceptions->setAttributeWithName(attribute::kOvertime, overtime);
        for (const ElementPtr& event : *events) {
            exceptions->addChild(event);
        }
    }
    return schedule;
}

// A base calendar states every day. A derived one states only the days it changes: a working day
// without working times stays its base's.
KVMPPCalendarWorkWeek KVMSPICalendarMapper::newCalendarWorkWeekFromMSPCalendar(KVMSPIXQuery& calendar) const {
    KVMPPCalendarWorkWeek week;
    const bool isBaseCalendar = queryBool(calendar, "IsBaseCalendar").value_or(false);
    const auto days = queryObjects(calendar, "WeekDays/WeekDay[DayType>=1 and DayType<=7]");
    if (!days) {
        return week;
    }
    if (days->empty()) {
        // A base calendar without week days gets a range of no length on each usual working day.
        for (int64_t day = 1; isBaseCalendar && day <= 7; ++day) {
            week.setWorkRanges(kTVNXWorkingDay[static_cast<size_t>(day)]
                                   ? Ranges{KVMPPCalendarTimeRange::initWithStartTotalMinutes(0, 0)}
                                   : Ranges(),
                               day);
        }
        return week;
    }
    for (const auto& day : *days) {
        tvAssert(dynamic_cast<KVMSPISingleWeekDayReader*>(day.get()) != nullptr,
                 "Expected MSPISingleWeekDayReader as a WeekDay object.");
        const int64_t dayType = queryInt(*day, "DayType").value_or(0);
        tvAssert(dayType >= 1 && dayType <= 7,
                 stringWithFormat("Unexpected DayType value %lld. Must be from 1 to 7.",
                                  static_cast<long long>(dayType)));
        const KVMSPIXQuery::Objects workingTimes = queryObjectsOrEmpty(*day, "WorkingTimes/WorkingTime");
        const bool working = queryBool(*day, "DayWorking").value_or(!workingTimes.empty());
        if (!isBaseCalendar && working && workingTimes.empty()) {
            continue;
        }
        week.setWorkRanges(working ? rangesOfWorkingTimes(workingTimes) : Ranges(), dayType);
    }
    return week;
}

KVMSPICalendarMapper::Ranges
KVMSPICalendarMapper::rangesOfWorkingTimes(const KVMSPIXQuery::Objects& workingTimes) {
    Ranges ranges;
    for (const auto& object : workingTimes) {
        const auto* workingTime = dynamic_cast<const KVMSPISingleWorkingTimeReader*>(object.get());
        tvAssert(workingTime != nullptr, "Expected MSPISingleWorkingTimeReader as a WorkingTime object.");
        ranges.push_back(KVMPPCalendarTimeRange::initWithStartTimeSpan(workingTime->fromTimeSpan(),
                                                                       workingTime->toTimeSpan()));
    }
    return ranges;
}

void KVMSPICalendarMapper::addWorkWeek(const KVMPPCalendarWorkWeek& week, KVMSPCXMLElement& schedule) {
    using namespace tvnx;
    for (int64_t day = 1; day <= 7; ++day) {
        const auto& ranges = week.workRangesForDay(day);
        if (!ranges) {
            continue;
        }
        const ElementPtr scheduleDay = schedule.addChildElementWithName(element::kScheduleDay);
        scheduleDay->setAttributeWithName(attribute::kDayOfWeek, kTVNXDayOfWeek[static_cast<size_t>(day)]);
        for (const KVMPPCalendarTimeRange& range : *ranges) {
            const ElementPtr span = scheduleDay->addChildElementWithName(element::kTimeSpan);
            span->setAttributeWithName(attribute::kStartTime, range.start().ToTvnxTime());
            span->setAttributeWithName(attribute::kEndTime, range.end().ToTvnxTime());
        }
    }
}

// The exceptions of the calendar itself; those of its base are not inherited here.
void KVMSPICalendarMapper::addCalenarEventsFromMSPCalendar(KVMSPIXQuery& calendar, Events& overtimeEvents,
                                                           Events& offtimeEvents) const {
    const auto exceptions = queryObjects(calendar, "Exceptions/Exception");
    if (!exceptions) {
        return;
    }
    for (const auto& object : *exceptions) {
        const auto* exception = dynamic_cast<const KVMSPISingleExceptionReader*>(object.get());
        tvAssert(exception != nullptr, "Expected MSPISingleExceptionReader as an Exception object.");
        if (queryObjectsOrEmpty(*object, "TimePeriod").empty()) {
            continue;
        }
        const auto workingTimes = queryObjects(*object, "WorkingTimes/WorkingTime");
        TVDate from;
        TVDate to;
        if (!workingTimes || !exception->exceptionTimePeriodFromDate(from) ||
            !exception->exceptionTimePeriodToDate(to)) {
            continue;
        }
        const Ranges ranges = exception->isDayWorking() ? rangesOfWorkingTimes(*workingTimes) : Ranges();
        addEventsFrom(firstOcurrenceDateFromException(*exception, from), to, ranges,
                      newReoccurenceRuleFromException(*exception), overtimeEvents, offtimeEvents);
    }
}

std::optional<std::vector<int32_t>>
KVMSPICalendarMapper::recurrenceParameters(const KVMSPISingleExceptionReader& exception) {
    std::vector<int32_t> parameters;
    if (!exception.calendarExceptionRecurrenceParameter(parameters) || parameters.empty()) {
        tvLog("Failed to read exception paramters");
        return std::nullopt;
    }
    return parameters;
}

std::string
KVMSPICalendarMapper::newReoccurenceRuleFromException(const KVMSPISingleExceptionReader& exception) {
    if (exception.freq() < kYearlyOnDate || exception.freq() > kDaily) {
        return std::string();
    }
    const auto parameters = recurrenceParameters(exception);
    return parameters ? reoccurenceRule(exception.freq(), *parameters, exception.occurrenceCount())
                      : std::string();
}

TVDate KVMSPICalendarMapper::firstOcurrenceDateFromException(const KVMSPISingleExceptionReader& exception,
                                                             TVDate from) {
    if (exception.freq() < kYearlyOnDate || exception.freq() > kWeekly) {
        return from;
    }
    const auto parameters = recurrenceParameters(exception);
    return parameters ? firstOcurrenceDate(exception.freq(), *parameters, from) : from;
}

std::string KVMSPICalendarMapper::reoccurenceRule(int32_t freq, const std::vector<int32_t>& parameters,
                                                  int32_t count) {
    if (freq < kYearlyOnDate || freq > kDaily || parameters.empty()) {
        return std::string();
    }
    const auto p = [&parameters](size_t index) { return static_cast<int>(parameter(parameters, index)); };
    switch (freq) {
    case kDaily:
        return stringWithFormat("FREQ=DAILY;INTERVAL=%d;COUNT=%d", p(0), count);
    case kWeekly: {
        std::string rule = stringWithFormat("FREQ=WEEKLY;INTERVAL=%d;COUNT=%d", p(0), count);
        std::string days;
        for (int bit = 0; bit < 7; ++bit) {
            if ((p(1) & (1 << bit)) != 0) {
                days.append(days.empty() ? "" : ",").append(kRecurrenceDayNames[static_cast<size_t>(bit)]);
            }
        }
        return days.empty() ? rule : rule + ";BYDAY=" + days;
    }
    case kMonthlyOnWeekday:
        return stringWithFormat("FREQ=MONTHLY;INTERVAL=%d;COUNT=%d", p(0), count) + byOrdinalDay(p(1), p(2));
    case kMonthlyOnDay:
        return stringWithFormat("FREQ=MONTHLY;INTERVAL=%d;COUNT=%d;BYMONTHDAY=%d", p(0), count, p(1));
    case kYearlyOnWeekday:
        return stringWithFormat("FREQ=YEARLY;INTERVAL=%d;COUNT=%d;BYMONTH=%d", 1, count, p(0) + 1) +
               byOrdinalDay(p(1), p(2));
    default:
        return stringWithFormat("FREQ=YEARLY;INTERVAL=%d;COUNT=%d;BYMONTH=%d;BYMONTHDAY=%d", 1, count,
                                p(1) + 1, p(2));
    }
}

// The weekly arithmetic doesn't always find the first matching day (a Monday start with Monday and
// Wednesday gives the next Sunday); the recurrence rule that goes with the event corrects for it.
TVDate KVMSPICalendarMapper::firstOcurrenceDate(int32_t freq, const std::vector<int32_t>& parameters,
                                                TVDate from) {
    const auto fields = fieldsOf(from);
    if (!fields || freq < kYearlyOnDate || freq > kWeekly || parameters.empty()) {
        return from;
    }
    const auto p = [&parameters](size_t index) { return parameter(parameters, index); };
    Fields target = *fields;
    switch (freq) {
    case kWeekly:
        return firstWeeklyOccurrence(*fields, from, p(0), p(1));
    case kMonthlyOnWeekday:
        if (!isValidWeekdayAndMonth(p(2), 0)) {
            return from;
        }
        target.day = dayOfOrdinalWeekday(fields->year, fields->month, p(1), p(2));
        if (fields->day > target.day) {
            target.month += p(0);
            target.day = dayOfOrdinalWeekday(target.year, target.month, p(1), p(2));
        }
        break;
    case kMonthlyOnDay:
        target.day = p(1);
        if (fields->day > target.day) {
            target.month += p(0);
        }
        break;
    default: {
        const bool onWeekday = freq == kYearlyOnWeekday;
        const int64_t month = onWeekday ? p(0) : p(1);
        if (!isValidWeekdayAndMonth(onWeekday ? p(2) : 0, month)) {
            return from;
        }
        target.month = month + 1;
        target.day = onWeekday ? dayOfOrdinalWeekday(target.year, target.month, p(1), p(2)) : p(2);
        const auto inYear = dateOf(target);
        if (inYear && from > *inYear) {
            ++target.year;
            if (onWeekday) {
                target.day = dayOfOrdinalWeekday(target.year, target.month, p(1), p(2));
            }
        }
    }
    }
    return dateOf(target).value_or(from);
}

void KVMSPICalendarMapper::addEventsFrom(TVDate from, TVDate to, const Ranges& ranges,
                                         const std::string& rule, Events& overtimeEvents,
                                         Events& offtimeEvents) {
    if (ranges.empty()) {
        addRanges({KVMPPCalendarTimeRange::initWithStartTotalMinutes(0, kLastMinuteOfDay)}, rule, from, to,
                  offtimeEvents);
        return;
    }
    Ranges offtime;
    int32_t position = 0;
    for (const KVMPPCalendarTimeRange& range : ranges) {
        offtime.push_back(
            KVMPPCalendarTimeRange::initWithStartTotalMinutes(position, range.start().totalMinutes()));
        position = range.end().totalMinutes();
    }
    offtime.push_back(KVMPPCalendarTimeRange::initWithStartTotalMinutes(position, kLastMinuteOfDay));
    addRanges(offtime, rule, from, to, offtimeEvents);
    addRanges(ranges, rule, from, to, overtimeEvents);
}

// Each range on the first day and on the last, seconds kept from the dates: with a rule the end is
// the end of the whole series.
void KVMSPICalendarMapper::addRanges(const Ranges& ranges, const std::string& rule, TVDate from,
                                     TVDate toDate, Events& events) {
    const auto fromFields = fieldsOf(from);
    const auto toFields = fieldsOf(toDate);
    if (!fromFields || !toFields) {
        return;
    }
    for (const KVMPPCalendarTimeRange& range : ranges) {
        Fields start = *fromFields;
        start.hour = range.start().hours();
        start.minute = range.start().minutes();
        Fields end = *toFields;
        end.hour = range.end().hours();
        end.minute = range.end().minutes();
        const auto startDate = dateOf(start);
        const auto endDate = dateOf(end);
        if (startDate && endDate) {
            events.push_back(newEvent(*startDate, *endDate, rule));
        }
    }
}

KVMSPICalendarMapper::ElementPtr KVMSPICalendarMapper::newEvent(TVDate start, TVDate end,
                                                                const std::string& rule) {
    using namespace tvnx;
    const ElementPtr event = KVMSPCXMLElement::initWithName(element::kEvent);
    event->setAttributeWithName(attribute::kStart, KVMSPIUtilities::mppToTvnxDateTime(start, utcCalendar()));
    event->setAttributeWithName(attribute::kEnd, KVMSPIUtilities::mppToTvnxDateTime(end, utcCalendar()));
    if (!rule.empty()) {
        event->setAttributeWithName(attribute::kRrule, rule);
    }
    return event;
}

void KVMSPICalendarMapper::addCalendarEventFromAvailability(
    const std::vector<MPPResourceAvailabilityPeriod>& availability, Events& offtimeEvents) {
    constexpr double kSecondsPerHour = 3600.0;
    constexpr double kLongestGapHours = 23.0;
    for (size_t index = 1; index < availability.size(); ++index) {
        const TVDate gapStart = availability[index - 1].end;
        const TVDate gapEnd = availability[index].start;
        if (std::floor(gapEnd.secondsSince(gapStart) / kSecondsPerHour) > kLongestGapHours) {
            offtimeEvents.push_back(newEvent(gapStart, gapEnd, std::string()));
        }
    }
}
