#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPExporter/MPPObjects/KVMPPCalendarTimeRange.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// A working week: a list of ranges for each day type, 1 (Sunday) to 7 (Saturday). An absent list
// says nothing about the day, so that a derived calendar takes it from its base; an empty list makes
// the day non-working. A dated week has a start and an end date; the default week of a calendar has
// neither.
class KVMPPCalendarWorkWeek {
public:
    using Ranges = std::vector<KVMPPCalendarTimeRange>;

    // Absent for a day without a list and for a number outside 1 to 7.
    const std::optional<Ranges>& workRangesForDay(int64_t dayType) const;
    // A number outside 1 to 7 does nothing.
    void setWorkRanges(std::optional<Ranges> ranges, int64_t dayType);
    // Stores the list of a day that has none yet. A day type outside 1 to 7 and a day that already
    // holds ranges are internal errors.
    void addWorkDay(Ranges ranges, int64_t dayType);

    // The lower-case English name of a day type ("sunday"), empty outside 1 to 7.
    static std::string dayName(int64_t dayType);

    std::optional<std::string> name;
    std::optional<TVDate> startDate;
    std::optional<TVDate> endDate;

private:
    static bool isDayType(int64_t dayType) { return dayType >= 1 && dayType <= 7; }

    std::array<std::optional<Ranges>, 8> _workRanges;
};
