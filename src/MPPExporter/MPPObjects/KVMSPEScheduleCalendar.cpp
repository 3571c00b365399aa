#include "MPPExporter/MPPObjects/KVMSPEScheduleCalendar.h"

#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPCommon/xml/KVMSPCXMLElement.h"
#include "MPPExporter/MPPObjects/MSPEScheduleAdvance.h"
#include "MPPExporter/MPPObjects/MSPEScheduleClock.h"
#include "MPPExporter/MPPObjects/MSPEScheduleIterator.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>

namespace {

void assertWeekday(int64_t weekday) {
    tvAssert(weekday >= 1 && weekday <= 7,
             stringWithFormat("Incorrect value of weekdey (%ld). Should be from 1 to 7.",
                              static_cast<long>(weekday)));
}

std::optional<int64_t> weekdayForName(const std::string& name) {
    for (size_t weekday = 1; weekday < kTVNXDayOfWeek.size(); ++weekday) {
        if (name == kTVNXDayOfWeek[weekday]) {
            return static_cast<int64_t>(weekday);
        }
    }
    return std::nullopt;
}

// A number at the start of a text, after white space, truncated to whole seconds; none when the text
// doesn't start with a finite number that whole seconds can hold.
std::optional<int64_t> scanWholeSeconds(const std::string& text) {
    const char* first = text.data();
    const char* const last = first + text.size();
    while (first != last && std::isspace(static_cast<unsigned char>(*first))) {
        ++first;
    }
    if (first != last && *first == '+') {
        ++first;
    }
    double value = 0;
    const auto scanned = std::from_chars(first, last, value, std::chars_format::general);
    constexpr double kWholeSecondsLimit = 9.0e18;
    if (scanned.ec != std::errc() || !std::isfinite(value) || std::fabs(value) >= kWholeSecondsLimit) {
        return std::nullopt;
    }
    return static_cast<int64_t>(value);
}

// A time attribute of a `time-span`: 0 when it is missing, none when it isn't a number.
std::optional<int64_t> timeAttribute(const KVMSPCXMLElement& span, const char* name) {
    const auto attribute = span.attributeForName(name);
    const auto text = attribute ? attribute->stringValue() : std::nullopt;
    return text ? scanWholeSeconds(*text) : std::optional<int64_t>(0);
}

// The period of the day that working time goes on in from `at`, seconds of the day, with `at` moved
// onto it: forward the first period that ends after `at`, backward the last that starts before it.
std::optional<int64_t> periodAround(const std::vector<WorkingTimePeriod>& periods, double& at, bool forward) {
    const auto count = static_cast<int64_t>(periods.size());
    for (int64_t step = 0; step < count; ++step) {
        const int64_t index = forward ? step : count - 1 - step;
        const double start = workingTimePeriodStart(periods[index]);
        const double end = workingTimePeriodEnd(periods[index]);
        if (forward && end > at) {
            at = std::max(at, start);
            return index;
        }
        if (!forward && start < at) {
            at = std::min(at, end);
            return index;
        }
    }
    return std::nullopt;
}

// Hands a time of day out to whichever outputs are given.
bool handOutTime(int64_t* hour, int64_t* minute, int64_t* second, int64_t hourValue, int64_t minuteValue,
                 int64_t secondValue) {
    for (const auto& [out, value] :
         {std::pair{hour, hourValue}, std::pair{minute, minuteValue}, std::pair{second, secondValue}}) {
        if (out) {
            *out = value;
        }
    }
    return true;
}

} // namespace

KVMSPEScheduleCalendar::KVMSPEScheduleCalendar(const KVMSPCXMLElement& schedule) {
    for (const auto& day : schedule.elementsForName(tvnx::element::kScheduleDay)) {
        const auto dayName = day->attributeForName(tvnx::attribute::kDayOfWeek);
        const auto weekday = dayName ? weekdayForName(dayName->stringValue().value_or("")) : std::nullopt;
        if (!weekday) {
            continue;
        }
        for (const auto& span : day->elementsForName(tvnx::element::kTimeSpan)) {
            const auto start = timeAttribute(*span, tvnx::attribute::kStartTime);
            const auto end = timeAttribute(*span, tvnx::attribute::kEndTime);
            if (start && end) {
                addWorkingTimePeriod(workingTimePeriodWithSeconds(*start, *end), *weekday);
            }
        }
    }
}

KVMSPEScheduleCalendar KVMSPEScheduleCalendar::initWithStandardCalendar() {
    KVMSPEScheduleCalendar calendar;
    constexpr int64_t kMonday = 2;
    constexpr int64_t kFriday = 6;
    for (int64_t weekday = kMonday; weekday <= kFriday; ++weekday) {
        calendar.addWorkingTimePeriod(WorkingTimePeriod{8, 0, 0, 12, 0, 0}, weekday);
        calendar.addWorkingTimePeriod(WorkingTimePeriod{13, 0, 0, 17, 0, 0}, weekday);
    }
    return calendar;
}

const KVMSPEScheduleCalendar& KVMSPEScheduleCalendar::standardCalendar() {
    static const KVMSPEScheduleCalendar calendar = initWithStandardCalendar();
    return calendar;
}

void KVMSPEScheduleCalendar::addWorkingTimePeriod(const WorkingTimePeriod& period, int64_t weekday) {
    assertWeekday(weekday);
    WorkingDay& day = m_workingDays[weekday];
    if (!day.timePeriods) {
        day.timePeriods.emplace();
    }
    day.timePeriods->push_back(period);
    day.isWorkingDay = true;
}

const KVMSPEScheduleCalendar::WorkingDay& KVMSPEScheduleCalendar::workingDay(int64_t weekday) const {
    assertWeekday(weekday);
    return m_workingDays[weekday];
}

bool KVMSPEScheduleCalendar::isWorkingDayWeekday(int64_t weekday) const {
    return workingDay(weekday).isWorkingDay;
}

bool KVMSPEScheduleCalendar::isWorkingDay(TVDate date) const {
    const auto weekday = MSPEScheduleClock().weekday(date);
    return weekday && isWorkingDayWeekday(*weekday);
}

int64_t KVMSPEScheduleCalendar::timePeriodsInWeekday(int64_t weekday) const {
    const auto& periods = workingDay(weekday).timePeriods;
    return periods ? static_cast<int64_t>(periods->size()) : 0;
}

const WorkingTimePeriod* KVMSPEScheduleCalendar::timePeriodAt(int64_t timePeriod, int64_t weekday) const {
    if (weekday < 1 || weekday > 7) {
        return nullptr;
    }
    const auto& periods = m_workingDays[weekday].timePeriods;
    if (!periods || timePeriod < 0 || timePeriod >= static_cast<int64_t>(periods->size())) {
        return nullptr;
    }
    return &(*periods)[timePeriod];
}

const std::vector<WorkingTimePeriod>& KVMSPEScheduleCalendar::workingPeriods(int64_t weekday) const {
    static const std::vector<WorkingTimePeriod> none;
    const WorkingDay& day = workingDay(weekday);
    return day.isWorkingDay && day.timePeriods ? *day.timePeriods : none;
}

double KVMSPEScheduleCalendar::durationOfTimePeriod(int64_t timePeriod, int64_t weekday) const {
    const WorkingTimePeriod* period = timePeriodAt(timePeriod, weekday);
    return period ? workingTimePeriodEnd(*period) - workingTimePeriodStart(*period) : -1.0;
}

bool KVMSPEScheduleCalendar::startHour(int64_t* hour, int64_t* minute, int64_t* second, int64_t timePeriod,
                                       int64_t weekday) const {
    const WorkingTimePeriod* period = timePeriodAt(timePeriod, weekday);
    return period &&
           handOutTime(hour, minute, second, period->fromHour, period->fromMinute, period->fromSecond);
}

bool KVMSPEScheduleCalendar::endHour(int64_t* hour, int64_t* minute, int64_t* second, int64_t timePeriod,
                                     int64_t weekday) const {
    const WorkingTimePeriod* period = timePeriodAt(timePeriod, weekday);
    return period && handOutTime(hour, minute, second, period->toHour, period->toMinute, period->toSecond);
}

double KVMSPEScheduleCalendar::startTimeForTimePeriod(int64_t timePeriod, int64_t weekday) const {
    const WorkingTimePeriod* period = timePeriodAt(timePeriod, weekday);
    return period ? workingTimePeriodStart(*period) : -1.0;
}

double KVMSPEScheduleCalendar::endTimeForTimePeriod(int64_t timePeriod, int64_t weekday) const {
    const WorkingTimePeriod* period = timePeriodAt(timePeriod, weekday);
    return period ? workingTimePeriodEnd(*period) : -1.0;
}

std::optional<TVDate> KVMSPEScheduleCalendar::date(std::optional<TVDate> fromDate, double duration,
                                                   bool forward, bool allowEdgeTime) const {
    tvAssert(fromDate.has_value(), "Date to advance from not specified.");
    tvAssert(!(duration < 0.0),
             "Duration can not be negative. To specify backward advance use argument forward=NO.");
    TVDate snapped;
    double at = 0.0;
    int64_t index = -1;
    if (!startDate(&snapped, &at, &index, *fromDate, forward)) {
        return std::nullopt;
    }
    const auto day = MSPEScheduleClock().midnight(snapped);
    if (!day) {
        return std::nullopt;
    }
    if (std::fabs(duration) < 1.0) {
        return day->addingSeconds(at);
    }
    tvAssert(index >= 0, "No time period specified to start duration countdown from.");
    return MSPEScheduleAdvance(*this, forward, allowEdgeTime).endOfDuration(*day, at, index, duration);
}

bool KVMSPEScheduleCalendar::startDate(TVDate* startDate, TVDate forDate, bool forward) const {
    return this->startDate(startDate, nullptr, nullptr, forDate, forward);
}

bool KVMSPEScheduleCalendar::startDate(TVDate* startDate, double* startDuration, int64_t* startTimePeriod,
                                       TVDate forDate, bool forward) const {
    const MSPEScheduleClock clock;
    const auto secondsOfDay = clock.secondsOfDay(forDate);
    if (!secondsOfDay) {
        return false;
    }
    double at = *secondsOfDay;
    TVDate day = forDate;
    std::optional<int64_t> index;
    // The date's own day, then up to a week of days after it in the direction.
    for (int64_t step = 0; step <= MSPEScheduleClock::kDaysPerWeek && !index; ++step) {
        if (step > 0) {
            day = MSPEScheduleClock::stepDay(day, forward);
        }
        const auto weekday = clock.weekday(day);
        if (!weekday) {
            return false;
        }
        const auto& periods = workingPeriods(*weekday);
        if (periods.empty()) {
            continue;
        }
        if (step == 0) {
            index = periodAround(periods, at, forward);
        } else {
            index = forward ? 0 : static_cast<int64_t>(periods.size()) - 1;
            at = forward ? workingTimePeriodStart(periods.front()) : workingTimePeriodEnd(periods.back());
        }
    }
    const auto midnight = index ? clock.midnight(day) : std::nullopt;
    if (!midnight) {
        return false;
    }
    if (startDate) {
        *startDate = midnight->addingSeconds(at);
    }
    if (startDuration) {
        *startDuration = at;
    }
    if (startTimePeriod) {
        *startTimePeriod = *index;
    }
    return true;
}

double KVMSPEScheduleCalendar::workingTimeFromDate(TVDate fromDate, TVDate toDate) const {
    if (!(fromDate < toDate)) {
        return 0.0;
    }
    const MSPEScheduleClock clock;
    const auto firstDay = clock.midnight(fromDate);
    const auto lastDay = clock.midnight(toDate);
    const auto fromSeconds = clock.secondsOfDay(fromDate);
    const auto toSeconds = clock.secondsOfDay(toDate);
    if (!firstDay || !lastDay || !fromSeconds || !toSeconds) {
        return 0.0;
    }
    const TVDate walkLimit = firstDay->addingSeconds(kMaxWalkDays * kSecondsPerDay);
    MSPEScheduleIterator iterator(*this, fromDate, true);
    const WorkingTimePeriod* period = nullptr;
    TVDate day;
    double sum = 0.0;
    while (iterator.nextTimePeriod(&period, nullptr, &day, nullptr) && day <= *lastDay && day < walkLimit) {
        const double lower = day == *firstDay ? *fromSeconds : 0.0;
        const double upper = day == *lastDay ? *toSeconds : kSecondsPerDay;
        const double start = std::max(workingTimePeriodStart(*period), lower);
        const double end = std::min(workingTimePeriodEnd(*period), upper);
        if (end > start) {
            sum += end - start;
        }
    }
    return std::max(sum, 0.0);
}
