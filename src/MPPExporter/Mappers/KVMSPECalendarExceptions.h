#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPCommon/xml/KVMSPCXMLElement.h"
#include "MPPExporter/Mappers/MSPEExceptionInfo.h"
#include "MPPExporter/Mappers/MSPETvnxEventInfo.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// The exceptions of one bundle calendar in the form a plan calendar wants: the bundle's events may
// overlap, span days and repeat their hours day by day; the result is a sorted list of stretches of
// whole days that don't overlap, each with one set of working times. A new stretch starts wherever
// the set of active events changes, and the hours of overlapping events are kept side by side. An
// event with a recurrence rule counts on the days the rule selects between its first start and its end.
class KVMSPECalendarExceptions {
public:
    // A `calendar` element with its `event` children; `overtime` from its flag, false when missing. A
    // rule that can't be read leaves its event one stretch from its first start to its end.
    explicit KVMSPECalendarExceptions(const KVMSPCXMLElement& calendar);
    // Dated `flattened-schedule-day` elements: overtime days, each with its `time-span` children, or
    // days off without any (either the other way is an internal error). Named "Overtime" or
    // "Time Off".
    KVMSPECalendarExceptions(const KVMSPCXMLElement::Elements& flattenedDays, bool overtime);

    // Computes the exceptions from the events; run once after construction.
    void mapEvents();

    int64_t exceptionsCount() const { return static_cast<int64_t>(_mppExceptionInfos.size()); }
    // False for an index outside the list. The day count is optional.
    bool exception(int64_t index, TVDate* fromDate, TVDate* toDate, int64_t* numberOfDays) const;
    bool exception(int64_t index, int64_t* workingTimesCount) const;
    bool exception(int64_t index, int64_t workingTime, double* fromTime, double* toTime) const;

    const std::optional<std::string>& calendarName() const { return _calendarName; }
    bool overtime() const { return _overtime; }
    const std::vector<MSPETvnxEventInfo>& tvnxEventInfos() const { return _tvnxEventInfos; }

    std::string description() const;

private:
    const MSPEExceptionInfo* exceptionAt(int64_t index) const;
    void sortEvents();

    std::optional<std::string> _calendarName;
    bool _overtime = false;
    std::vector<MSPETvnxEventInfo> _tvnxEventInfos;
    std::vector<MSPEExceptionInfo> _mppExceptionInfos;
};
