#pragma once

#include "MPPImporter/format/MPPCalendarRecord.h"
#include "MPPImporter/format/MPPWorkingTimeRange.h"

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

    // Reads the default week block, the first 420 bytes of `property` of the Props stream, unless it is
    // loaded already. Day index n is the record at 60 * n of the block. A failed read leaves it absent,
    // for a later reader to try again.
    static void loadDefaultWeekBlock(KVMSPIPropsReader& propsReader, int32_t property);
    static bool hasDefaultWorkingHours();
    // Drops the loaded block, so that the next calendar reader loads the one of its own plan, as the
    // first plan of a process does.
    static void forgetDefaultWeekBlock();
    // The record of day index 0 (Sunday) to 6 of the default week block; none without the block.
    static std::optional<MPPCalendarRecord> dayRecord(int32_t dayIndex);

    // The default table's working flag and ranges of day index 0 (Sunday) to 6.
    static bool isDefaultWorkingDay(int32_t dayIndex);
    static const std::vector<MPPWorkingTimeRange>& defaultWorkingTimes(int32_t dayIndex);
};
