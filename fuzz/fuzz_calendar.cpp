// Decodes arbitrary bytes as a calendar data block: the first byte picks the layout (format 9 when
// even, format 14 when odd), the rest is the block. Decoding must end without a crash or a hang, no
// more exceptions may be found than the block's count promises, and every record found must lie
// inside the block.
#include "MPPImporter/format/MPPCalendarDataBlock.h"
#include "MPPImporter/format/MPPVersionTables.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) {
        return 0;
    }
    const auto layout =
        MPPCalendarDataBlock::Layout::forVersion(*mppVersionTables(data[0] % 2 == 0 ? 9 : 14));
    const auto blockSize = static_cast<int64_t>(size - 1);
    const MPPCalendarDataBlock block(std::vector<uint8_t>(data + 1, data + size), layout);

    for (int32_t dayIndex = 0; dayIndex < MPPCalendarDataBlock::kDaysInWeek; ++dayIndex) {
        if (const auto day = block.dayRecord(dayIndex)) {
            std::vector<MPPWorkingTimeRange> ranges;
            MPPCalendarDataBlock::dayStatus(*day);
            MPPCalendarDataBlock::dayHasWorkingRanges(*day);
            MPPCalendarDataBlock::dayWorkingTimes(*day, ranges);
        }
    }
    if (block.listedExceptionsCount() > std::max(block.exceptionsCount(), 0)) {
        std::abort();
    }
    for (int32_t index = 0; index < block.listedExceptionsCount(); ++index) {
        const auto record = block.exceptionRecord(index);
        if (!record || record->size() < 0 || record->size() > blockSize) {
            std::abort();
        }
        block.exceptionRecurrence(index);
        std::vector<MPPWorkingTimeRange> ranges;
        block.exceptionWorkingTimes(index, ranges);
        for (int32_t type = 1; type <= 8; ++type) {
            std::vector<int32_t> parameters;
            block.exceptionRecurrenceParameters(index, type, parameters);
        }
    }
    return 0;
}
