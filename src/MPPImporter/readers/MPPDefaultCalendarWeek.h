#pragma once

#include "MPPImporter/format/MPPCalendarRecord.h"
#include "MPPImporter/format/MPPWorkingTimeRange.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

class KVMSPIPropsReader;

// The week that the calendars of one plan without data of their own fall back on: the default week
// block of the plan's Props stream (seven 60-byte day records), and the fixed default table, Monday
// to Friday 08:00 to 12:00 and 13:00 to 17:00.
//
// Each plan's calendar reader holds its own block. A block kept for the whole process would give
// every plan after the first the first plan's week, so the working times of a batch would depend on
// the order of its plans.
class MPPDefaultCalendarWeek {
public:
    static constexpr uint32_t kBlockSize = 420;

    // A plan without a default week block.
    MPPDefaultCalendarWeek() = default;
    // Reads the block from `property` of the Props stream. Its seven day records begin at
    // `firstDayOffset`, as in the calendar data blocks of the file's format (format 9 puts a 4-byte
    // head before them). A failed read leaves the block absent.
    MPPDefaultCalendarWeek(KVMSPIPropsReader& propsReader, int32_t property, int32_t firstDayOffset);

    bool hasDefaultWorkingHours() const { return m_block.has_value(); }
    // The record of day index 0 (Sunday) to 6 of the block; none without the block.
    std::optional<MPPCalendarRecord> dayRecord(int32_t dayIndex) const;

    // The default table's working flag and ranges of day index 0 (Sunday) to 6.
    static bool isDefaultWorkingDay(int32_t dayIndex);
    static const std::vector<MPPWorkingTimeRange>& defaultWorkingTimes(int32_t dayIndex);

private:
    std::optional<std::array<uint8_t, kBlockSize>> m_block;
};
