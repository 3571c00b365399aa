#pragma once

#include "MPPExporter/MPPObjects/KVMPPCalendarTimeRange.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

// A working week: a list of ranges for each day type, 1 (Sunday) to 7 (Saturday). An absent list
// says nothing about the day, so that a derived calendar takes it from its base; an empty list makes
// the day non-working.
class KVMPPCalendarWorkWeek {
public:
    using Ranges = std::vector<KVMPPCalendarTimeRange>;

    // Absent for a day without a list and for a number outside 1 to 7.
    const std::optional<Ranges>& workRangesForDay(int64_t dayType) const;
    // A number outside 1 to 7 does nothing.
    void setWorkRanges(std::optional<Ranges> ranges, int64_t dayType);

private:
    static bool isDayType(int64_t dayType) { return dayType >= 1 && dayType <= 7; }

    std::array<std::optional<Ranges>, 8> _workRanges;
};
