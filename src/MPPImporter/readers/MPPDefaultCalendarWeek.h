#pragma once

#include "MPPImporter/readers/MPPCalendarRecord.h"
#include "MPPImporter/readers/MPPWorkingTimeRange.h"

#include <cstdint>
#include <optional>
#include <vector>

class KVMSPIPropsReader;

// The week that calendars without data of their own fall back on, shared by every calendar reader of
// the process: the default week block of a project's Props stream (seven 60-byte day records, read
// once, by the first reader that finds it), and the fixed default table, Monday to Friday 08:00 to
// 12:00 and 13:00 to 17:00.
class MPPDefaultCalendarWeek {
public:
    static constexpr uint32_t kBlockSize = 420;

    // Reads the default week block from `property` of the Props stream, unless it is loaded already.
    // Its seven day records begin at `firstDayOffset`, as in the calendar data blocks of the file's
    // version (format 9 puts a 4-byte head before them); only the records are kept, so that files of
    // every version read the same block. A failed read leaves it absent, for a later reader to try again.
    static void loadDefaultWeekBlock(KVMSPIPropsReader& propsReader, int32_t property,
                                     int32_t firstDayOffset);
    static bool hasDefaultWorkingHours();
    // The record of day index 0 (Sunday) to 6 of the default week block; none without the block.
    static std::optional<MPPCalendarRecord> dayRecord(int32_t dayIndex);

    // The default table's working flag and ranges of day index 0 (Sunday) to 6.
    static bool isDefaultWorkingDay(int32_t dayIndex);
    static const std::vector<MPPWorkingTimeRange>& defaultWorkingTimes(int32_t dayIndex);
};
