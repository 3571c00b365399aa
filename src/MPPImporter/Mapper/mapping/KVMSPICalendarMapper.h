#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPCommon/xml/KVMSPCXMLElement.h"
#include "MPPExporter/MPPObjects/KVMPPCalendarWorkWeek.h"
#include "MPPImporter/Mapper/mapping/KVMSPIObjectMapperBase.h"
#include "MPPImporter/format/MPPResourceAvailabilityPeriod.h"

#include <cstdint>
#include <string>
#include <vector>

class KVMSPISingleExceptionReader;

// Makes the `schedule` of one calendar: its week as `schedule-day` elements, and its exceptions as
// events of a calendar "Overtime" (the working hours of an exception) and one "Time Off" (the rest of
// its days, and whole non-working days). A recurring exception keeps its recurrence as a rule.
class KVMSPICalendarMapper : public KVMSPIObjectMapperBase {
public:
    using ElementPtr = KVMSPCXMLElement::ElementPtr;
    using Events = std::vector<ElementPtr>;
    using Ranges = KVMPPCalendarWorkWeek::Ranges;

    explicit KVMSPICalendarMapper(KVMSPIMapper& mapper);

    // A calendar derived from another is written with a full week, its base's days filled in. The
    // availability of a resource (or none) adds time off between its periods.
    ElementPtr newScheduleFromMSPCalendar(KVMSPIXQuery& calendar,
                                          const std::vector<MPPResourceAvailabilityPeriod>* availability);

    // The plain parts of the mapping, all in the file's wall clock (UTC instants).

    // The recurrence rule of an exception of recurrence type `freq` (2 to 7) with its parameters and
    // occurrence count; empty for a single period or without parameters.
    static std::string reoccurenceRule(int32_t freq, const std::vector<int32_t>& parameters, int32_t count);
    // The date on which a recurring exception starting at `from` first falls.
    static TVDate firstOcurrenceDate(int32_t freq, const std::vector<int32_t>& parameters, TVDate from);
    // Events of an exception from `from` to `to`: without ranges the whole days off; with ranges the
    // ranges as overtime and the rest of each day as time off.
    static void addEventsFrom(TVDate from, TVDate to, const Ranges& ranges, const std::string& rule,
                              Events& overtimeEvents, Events& offtimeEvents);
    // Time off for each gap of a day or more between the periods of an availability table.
    static void
    addCalendarEventFromAvailability(const std::vector<MPPResourceAvailabilityPeriod>& availability,
                                     Events& offtimeEvents);

private:
    KVMPPCalendarWorkWeek newCalendarWorkWeekFromMSPCalendar(KVMSPIXQuery& calendar) const;
    static void addWorkWeek(const KVMPPCalendarWorkWeek& week, KVMSPCXMLElement& schedule);
    void addCalenarEventsFromMSPCalendar(KVMSPIXQuery& calendar, Events& overtimeEvents,
                                         Events& offtimeEvents) const;
    // The exception's recurrence parameters, none when they can't be read (logged).
    static std::optional<std::vector<int32_t>>
    recurrenceParameters(const KVMSPISingleExceptionReader& exception);
    static std::string newReoccurenceRuleFromException(const KVMSPISingleExceptionReader& exception);
    static TVDate firstOcurrenceDateFromException(const KVMSPISingleExceptionReader& exception, TVDate from);
    static void addRanges(const Ranges& ranges, const std::string& rule, TVDate from, TVDate toDate,
                          Events& events);
    static ElementPtr newEvent(TVDate start, TVDate end, const std::string& rule);
    // A working range of each working time reader of an answer.
    static Ranges rangesOfWorkingTimes(const KVMSPIXQuery::Objects& workingTimes);
};
