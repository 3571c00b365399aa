#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPExporter/MPPObjects/KVMPPCalendarException.h"
#include "MPPExporter/MPPObjects/KVMPPCalendarWorkWeek.h"
#include "MPPExporter/MPPObjects/MPPDeferred.h"
#include "MPPExporter/MPPObjects/MPPGuid.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// A calendar of the plan: a base calendar, or a resource's calendar derived from a base. Its weeks
// and exceptions always exist, empty until a calendar mapper fills them.
class KVMPPCalendar {
public:
    // A random GUID.
    KVMPPCalendar() = default;
    // The GUID given, or a random one for none.
    explicit KVMPPCalendar(const std::optional<MPPGuid>& guid) : GUID(guid.value_or(newRandomMPPGuid())) {}

    const MPPGuid& getGUID() const { return GUID; }

    // Working seconds between two dates on a fixed week, Monday to Friday 08:00 to 12:00 and 13:00 to
    // 17:00, whatever this calendar's own weeks say, to the second that the bundle's dates state. It
    // measures the span of an assignment's timephased work.
    // The days between are counted by wall-clock dates in the system zone; the weekday of the last
    // day is not examined.
    static int64_t workingTimeFromDate(TVDate fromDate, TVDate toDate);
    // The overlap of a range with an interval, in their unit; never below 0.
    static int64_t workingTimeFromTime(int64_t fromTime, int64_t toTime, int64_t rangeStart,
                                       int64_t rangeEnd);

    MPPGuid GUID = newRandomMPPGuid();
    bool isBaseCalendar = false;
    // The calendar UID.
    uint64_t ID = 0;
    std::optional<std::string> name;
    MPPDeferred<KVMPPCalendar> baseCalendar;
    KVMPPCalendarWorkWeek defaultWorkWeek;
    // Dated work weeks.
    std::vector<KVMPPCalendarWorkWeek> workWeeks;
    std::vector<KVMPPCalendarException> exceptions;
};
