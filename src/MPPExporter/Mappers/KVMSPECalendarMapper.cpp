#include "MPPExporter/Mappers/KVMSPECalendarMapper.h"

#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPCommon/date/StringExtensions.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPExporter/MPPObjects/MSPEScheduleClock.h"
#include "MPPExporter/Mappers/MSPETvnxReading.h"

#include <algorithm>

namespace {

using namespace tvnx;

constexpr const char* kProjectCalendarName = "Standard";
constexpr const char* kExceptionDaysName = "Exception days";

KVMSPCXMLElement::ElementPtr firstChild(const KVMSPCXMLElement& element, const char* name) {
    const auto children = element.elementsForName(name);
    return children.empty() ? nullptr : children.front();
}

// The day type of a `day-of-week` name, 1 (Sunday) to 7; none for another text.
std::optional<int64_t> dayTypeOfName(const std::optional<std::string>& name) {
    for (size_t dayType = 1; name && dayType < kTVNXDayOfWeek.size(); ++dayType) {
        if (*name == kTVNXDayOfWeek[dayType]) {
            return static_cast<int64_t>(dayType);
        }
    }
    return std::nullopt;
}

std::string uidText(int64_t uid) {
    return stringWithFormat("%ld", static_cast<long>(uid));
}

} // namespace

KVMSPECalendarMapper::KVMSPECalendarMapper(CalendarUIDSource nextCalendarUID)
    : _nextCalendarUID(std::move(nextCalendarUID)) {}

const KVMSPEScheduleInfo* KVMSPECalendarMapper::scheduleInfo(const std::string& key) const {
    const auto found = _scheduleInfoMap.find(key);
    return found != _scheduleInfoMap.end() ? found->second.get() : nullptr;
}

int64_t KVMSPECalendarMapper::mapCalendarForResource(const ElementPtr& resource,
                                                     const ElementPtr& parentResource) {
    const int64_t uid = newCalendarFromTvnxResource(resource, parentResource);
    tvAssert(uid >= 1,
             stringWithFormat("Incorrect value of new Calendar UID (%ld).", static_cast<long>(uid)));
    return uid;
}

int64_t KVMSPECalendarMapper::newCalendarFromTvnxResource(const ElementPtr& resource,
                                                          const ElementPtr& parentResource) {
    const auto name = resource->stringValueForXQuery(element::kName, nullptr);
    const int64_t uid = _nextCalendarUID();
    tvLog(parentResource
              ? stringWithFormat("  *** Mapping Schedule for Resource '%s' ...", name.value_or("").c_str())
              : std::string("  *** Mapping Schedule for Project ..."));
    tvAssert(uid >= 1, stringWithFormat("Incorrect Calendar UID (%ld). Should be greater than zero.",
                                        static_cast<long>(uid)));
    tvAssert(parentResource || uid == 1, "Top resource calendar UID mast be equal to 1.");
    std::optional<std::string> parentKey;
    if (parentResource) {
        parentKey = tvnxread::attribute(*parentResource, attribute::kId);
        tvAssert(parentKey.has_value(), "Top resource, and only top resource, has no parent resource.");
    }
    const auto key = tvnxread::attribute(*resource, attribute::kId);
    tvAssert(key.has_value(), "Resource has no 'id' attribute.");
    tvAssert(!_scheduleInfoMap.contains(*key),
             stringWithFormat("Duplicated schedule of resource id='%s'.", key->c_str()));
    auto owned = std::make_unique<KVMSPEScheduleInfo>(
        resource, parentKey, uid, parentResource ? name.value_or("") : kProjectCalendarName);
    KVMSPEScheduleInfo& info = *owned;
    _scheduleInfoKeys.push_back(*key);
    _scheduleInfoMap.emplace(*key, std::move(owned));

    const ElementPtr schedule = firstChild(*resource, element::kSchedule);
    if (!schedule) {
        // The resource inherits everything from its parent.
        if (uid != 1) {
            tvAssert(parentKey.has_value(), "No parent resource specified.");
            tvAssert(_scheduleInfoMap.contains(*parentKey),
                     "Can not find parent resource schedule in the map.");
        }
        return uid;
    }
    info.setExtendedFormat(!schedule->elementsForName(element::kFlattenedScheduleDay).empty());
    if (!parentResource) {
        info.setProjetDefaults();
    }
    readScheduleDays(info, *schedule);
    readScheduleExceptions(info, *schedule);
    return uid;
}

// The week: `schedule-day` elements, or in the extended format the `flattened-schedule-day` elements
// that name a day of the week. Each stated day replaces what the info had for it.
void KVMSPECalendarMapper::readScheduleDays(KVMSPEScheduleInfo& info, KVMSPCXMLElement& schedule) const {
    for (const auto& day : schedule.elementsForName(info.extendedFormat() ? element::kFlattenedScheduleDay
                                                                          : element::kScheduleDay)) {
        const auto dayName = tvnxread::attribute(*day, attribute::kDayOfWeek);
        if (info.extendedFormat() && !dayName) {
            continue;
        }
        const auto dayType = dayTypeOfName(dayName);
        tvAssert(dayType.has_value(),
                 stringWithFormat("Unexpected day of week: %s", dayName.value_or("").c_str()));
        auto& workingTimes = info.resetWorkingTimesForDayType(*dayType);
        for (const auto& span : day->elementsForName(element::kTimeSpan)) {
            workingTimes.emplace_back(
                intValue(tvnxread::attribute(*span, attribute::kStartTime).value_or("")),
                intValue(tvnxread::attribute(*span, attribute::kEndTime).value_or("")));
        }
    }
}

// Exceptions: in the extended format the dated `flattened-schedule-day` elements (overtime with spans,
// time off without) when there are any; otherwise the `calendar` elements with their events.
void KVMSPECalendarMapper::readScheduleExceptions(KVMSPEScheduleInfo& info,
                                                  KVMSPCXMLElement& schedule) const {
    KVMSPCXMLElement::Elements overtimeDays;
    KVMSPCXMLElement::Elements timeOffDays;
    for (const auto& day : schedule.elementsForName(element::kFlattenedScheduleDay)) {
        if (day->attributeForName(attribute::kDate)) {
            (day->elementsForName(element::kTimeSpan).empty() ? timeOffDays : overtimeDays).push_back(day);
        }
    }
    if (!overtimeDays.empty() || !timeOffDays.empty()) {
        for (auto [days, overtime, list] : {std::tuple{&overtimeDays, true, &info.overtimeExceptions()},
                                            std::tuple{&timeOffDays, false, &info.timeOffExceptions()}}) {
            if (!days->empty()) {
                auto exceptions = std::make_shared<KVMSPECalendarExceptions>(*days, overtime);
                exceptions->mapEvents();
                list->push_back(std::move(exceptions));
            }
        }
        return;
    }
    for (const auto& calendar : schedule.elementsForName(element::kCalendar)) {
        auto exceptions = std::make_shared<KVMSPECalendarExceptions>(*calendar);
        if (!exceptions->overtime()) {
            tvLog(stringWithFormat(
                "    !!! WARNING: Mapping time-off hours to full non-working day exception in MS "
                "Project calendar '%s'.",
                info.calendarName().c_str()));
        }
        exceptions->mapEvents();
        (exceptions->overtime() ? info.overtimeExceptions() : info.timeOffExceptions())
            .push_back(std::move(exceptions));
    }
}

void KVMSPECalendarMapper::buildCalendarHierarchy() {
    const auto top = _topScheduleKey ? _scheduleInfoMap.find(*_topScheduleKey) : _scheduleInfoMap.end();
    tvAssert(top != _scheduleInfoMap.end(), "Can not find schedule info fo rtop resource.");
    KVMSPEScheduleInfo& topInfo = *top->second;
    tvAssert(topInfo.calendarUID() == 1,
             stringWithFormat("Incorrect project calendar UID for top schedule (%ld). Must be 1.",
                              static_cast<long>(topInfo.calendarUID())));
    topInfo.ensureProjetDefaultWeekDays();
    fixCalendarHierarchy();
    for (const std::string& key : _scheduleInfoKeys) {
        KVMSPEScheduleInfo& owner = *_scheduleInfoMap.at(key);
        // A schedule with a flat copy is made into one calendar: the copy's.
        KVMSPEScheduleInfo& info = owner.flatCopy() ? *owner.flatCopy() : owner;
        info.setCalendar(std::make_shared<KVMPPCalendar>());
        _calendars.push_back(info.calendar());
        mapScheduleInfo(info);
    }
}

void KVMSPECalendarMapper::fixCalendarHierarchy() {
    for (const std::string& key : _scheduleInfoKeys) {
        const KVMSPEScheduleInfo& info = *_scheduleInfoMap.at(key);
        if (info.parentKey()) {
            parentInfo(
                info, stringWithFormat("Can not find schedule info for key '%s'.", info.parentKey()->c_str()))
                .setIsParentSchedule(true);
        }
    }
    for (bool changed = true; changed;) {
        changed = false;
        for (const std::string& key : _scheduleInfoKeys) {
            KVMSPEScheduleInfo& info = *_scheduleInfoMap.at(key);
            if (!info.isParentSchedule() || info.isBaseCalendar()) {
                continue;
            }
            if (info.flatCopy()) {
                tvAssert(info.flatCopy()->isBaseCalendar(),
                         "Flattened copy of a schedule info must be marked as base calendar.");
                continue;
            }
            if (info.parentKey()) {
                auto copy = newFlatScheduleInfo(info);
                copy->setIsBaseCalendar(true);
                info.setFlatCopy(std::move(copy));
            } else {
                info.setIsBaseCalendar(true);
            }
            changed = true;
        }
    }
}

KVMSPEScheduleInfo& KVMSPECalendarMapper::parentInfo(const KVMSPEScheduleInfo& info,
                                                     const std::string& missing) const {
    const auto found = info.parentKey() ? _scheduleInfoMap.find(*info.parentKey()) : _scheduleInfoMap.end();
    tvAssert(found != _scheduleInfoMap.end(), missing);
    return *found->second;
}

void KVMSPECalendarMapper::checkAncestorSteps(size_t steps, const std::string& key) const {
    tvAssert(steps <= _scheduleInfoKeys.size(),
             stringWithFormat("Schedule parents form a cycle at resource id='%s'.", key.c_str()));
}

const std::optional<KVMSPEScheduleInfo::WorkingTimes>&
KVMSPECalendarMapper::inheritedWorkingTimes(const KVMSPEScheduleInfo& info, int64_t dayType) const {
    const KVMSPEScheduleInfo* current = &info;
    for (size_t steps = 1;; ++steps) {
        tvAssert(current->parentKey().has_value(),
                 "We should eventually find working times, at least in Project default schedule.");
        checkAncestorSteps(steps, *current->parentKey());
        const KVMSPEScheduleInfo& parent = parentInfo(*current, "Schedule info has no parent info.");
        if (parent.flatCopy()) {
            const auto& workingTimes = parent.flatCopy()->workingTimesForDayType(dayType);
            tvAssert(workingTimes.has_value(),
                     "Flattened schedule copy must have all working times resolved.");
            return workingTimes;
        }
        const auto& workingTimes = parent.workingTimesForDayType(dayType);
        if (workingTimes) {
            return workingTimes;
        }
        tvAssert(!parent.isBaseCalendar(), "Base calendar schedule must have all working times resolved.");
        current = &parent;
    }
}

std::unique_ptr<KVMSPEScheduleInfo>
KVMSPECalendarMapper::newFlatScheduleInfo(const KVMSPEScheduleInfo& info) {
    tvAssert(!info.flatCopy(), "Do not flatten schedule info which already has flattened copy!");
    auto copy =
        std::make_unique<KVMSPEScheduleInfo>(nullptr, std::nullopt, _nextCalendarUID(), info.calendarName());
    copy->setExtendedFormat(info.extendedFormat());
    for (int64_t dayType = 1; dayType <= 7; ++dayType) {
        const auto& own = info.workingTimesForDayType(dayType);
        copy->addWorkingTimes(own ? own : inheritedWorkingTimes(info, dayType), dayType);
    }
    copy->overtimeExceptions() = info.overtimeExceptions();
    copy->timeOffExceptions() = info.timeOffExceptions();
    // Without exceptions of its own the copy takes those of the nearest ancestor that has any.
    const KVMSPEScheduleInfo* current = &info;
    for (size_t steps = 1; !copy->hasOvertimeData() && !copy->hasTimeOffData() && current->parentKey();
         ++steps) {
        checkAncestorSteps(steps, *current->parentKey());
        current = &parentInfo(*current, "Non-root schedule info has no parent info.");
        copy->overtimeExceptions() = current->overtimeExceptions();
        copy->timeOffExceptions() = current->timeOffExceptions();
    }
    return copy;
}

void KVMSPECalendarMapper::mapScheduleInfo(KVMSPEScheduleInfo& info) {
    tvAssert(info.calendar() != nullptr, "Schedule info has no associated calendar object.");
    KVMPPCalendar& calendar = *info.calendar();
    calendar.ID = static_cast<uint64_t>(info.calendarUID());
    calendar.name = info.calendarName();
    calendar.isBaseCalendar = info.isBaseCalendar();
    if (info.isBaseCalendar()) {
        calendar.baseCalendar.setKey("-1");
    } else {
        tvAssert(info.parentKey().has_value(), "Schedule info has no parent key.");
        const KVMSPEScheduleInfo& parent = parentInfo(info, "Schedule info has no parent info.");
        tvAssert(parent.isBaseCalendar() || parent.flatCopy(),
                 "Non-base parent schedule must have its flattened copy to make base calendar.");
        const KVMSPEScheduleInfo& base = parent.isBaseCalendar() ? parent : *parent.flatCopy();
        calendar.baseCalendar.setKey(uidText(base.calendarUID()));
    }
    mapScheduleInfo(info, calendar);
}

// Days that the info doesn't state stay unstated, and a derived calendar takes them from its base.
void KVMSPECalendarMapper::mapScheduleInfo(const KVMSPEScheduleInfo& info, KVMPPCalendar& calendar) {
    for (int64_t dayType = 1; dayType <= 7; ++dayType) {
        const auto& workingTimes = info.workingTimesForDayType(dayType);
        if (!workingTimes) {
            continue;
        }
        KVMPPCalendarWorkWeek::Ranges ranges;
        for (const KVMSPEWorkingTime& workingTime : *workingTimes) {
            ranges.push_back(
                KVMPPCalendarTimeRange::initWithStartTime(workingTime.fromTime(), workingTime.toTime()));
        }
        calendar.defaultWorkWeek.addWorkDay(std::move(ranges), dayType);
    }
    if (info.hasOvertimeData()) {
        mapScheduleExceptions(info.overtimeExceptions(), calendar);
        if (info.extendedFormat()) {
            mapTimeOffExceptionsBG(info.overtimeExceptions(), calendar);
        }
    }
    if (info.hasTimeOffData()) {
        mapScheduleExceptions(info.timeOffExceptions(), calendar);
    }
}

// One calendar exception per computed exception. Time off adds no ranges: the exception is a whole
// non-working day, whatever hours the event had.
//
// A bundle keeps the hours of a working exception as overtime and the rest of its days as time-off
// hours (so the import writes it). As a whole non-working day, that time off would contradict the
// overtime exception of the very same days, and a plan's exceptions must not overlap; the overtime
// exception already says that those days work its hours and no others, so time off is left out where
// an exception of the same days is already there.
void KVMSPECalendarMapper::mapScheduleExceptions(const KVMSPEScheduleInfo::ExceptionsList& exceptions,
                                                 KVMPPCalendar& calendar) {
    const auto sameDays = [&calendar](TVDate fromDate, TVDate toDate) {
        return std::any_of(calendar.exceptions.begin(), calendar.exceptions.end(), [&](const auto& mapped) {
            return mapped.startDate == fromDate && mapped.endDate == toDate;
        });
    };
    for (const auto& list : exceptions) {
        for (int64_t index = 0; index < list->exceptionsCount(); ++index) {
            KVMPPCalendarException exception;
            TVDate fromDate;
            TVDate toDate;
            tvAssert(list->exception(index, &fromDate, &toDate, nullptr),
                     "Failed to get time period from MPP Calendar Exception Info.");
            if (!list->overtime() && sameDays(fromDate, toDate)) {
                continue;
            }
            exception.startDate = fromDate;
            exception.endDate = toDate;
            exception.name = list->calendarName()
                                 ? stringByReplacingOccurrencesOfNewline(*list->calendarName())
                                 : std::string(value::kCalendarOvertime);
            int64_t count = 0;
            for (int64_t time = 0; list->overtime() && list->exception(index, &count) && time < count;
                 ++time) {
                double fromTime = 0;
                double toTime = 0;
                list->exception(index, time, &fromTime, &toTime);
                exception.workRanges.push_back(KVMPPCalendarTimeRange::initWithStartTime(fromTime, toTime));
            }
            calendar.exceptions.push_back(std::move(exception));
        }
    }
}

// Overtime of the extended format comes on days the week doesn't work: a dated week with every day of
// the exception stated empty keeps the rest of those days blank behind the overtime.
void KVMSPECalendarMapper::mapTimeOffExceptionsBG(const KVMSPEScheduleInfo::ExceptionsList& exceptions,
                                                  KVMPPCalendar& calendar) {
    const MSPEScheduleClock clock;
    for (const auto& list : exceptions) {
        tvAssert(list->overtime(), "Expected overtime exceptions.");
        for (int64_t index = 0; index < list->exceptionsCount(); ++index) {
            TVDate fromDate;
            TVDate toDate;
            list->exception(index, &fromDate, &toDate, nullptr);
            KVMPPCalendarWorkWeek week;
            week.startDate = fromDate;
            week.endDate = toDate;
            week.name = kExceptionDaysName;
            // A week holds each day type once: seven steps state every day that a longer stretch has.
            TVDate date = fromDate;
            for (int64_t step = 0; step < MSPEScheduleClock::kDaysPerWeek && date < toDate;
                 ++step, date = MSPEScheduleClock::stepDay(date, true)) {
                const int64_t dayType = clock.weekday(date).value_or(0);
                tvAssert(dayType >= 1 && dayType <= 7,
                         stringWithFormat("Incorrect dayType (%d). Must be from 1 to 7.",
                                          static_cast<int>(dayType)));
                week.addWorkDay({}, dayType);
            }
            calendar.workWeeks.push_back(std::move(week));
        }
    }
}
