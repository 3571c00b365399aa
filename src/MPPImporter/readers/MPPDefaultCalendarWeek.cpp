#include "MPPImporter/readers/MPPDefaultCalendarWeek.h"

#include "MPPImporter/file/KVMSPIPropsReader.h"
#include "MPPImporter/format/MPPCalendarDataBlock.h"

#include <algorithm>

namespace {

constexpr TVTimeSpan kHour = 3600000000;

bool isWeekend(int32_t dayIndex) {
    return dayIndex == 0 || dayIndex == MPPCalendarDataBlock::kDaysInWeek - 1;
}

} // namespace

MPPDefaultCalendarWeek::MPPDefaultCalendarWeek(KVMSPIPropsReader& propsReader, int32_t property,
                                               int32_t firstDayOffset) {
    if (firstDayOffset < 0) {
        return;
    }
    const auto head = static_cast<size_t>(firstDayOffset);
    std::vector<uint8_t> bytes(head + kBlockSize);
    if (propsReader.readPropertyByteArray(bytes.data(), static_cast<uint32_t>(bytes.size()), property,
                                          false)) {
        m_block.emplace();
        std::copy(bytes.begin() + static_cast<std::ptrdiff_t>(head), bytes.end(), m_block->begin());
    }
}

std::optional<MPPCalendarRecord> MPPDefaultCalendarWeek::dayRecord(int32_t dayIndex) const {
    if (!m_block || dayIndex < 0 || dayIndex >= MPPCalendarDataBlock::kDaysInWeek) {
        return std::nullopt;
    }
    constexpr auto recordSize = static_cast<size_t>(MPPCalendarDataBlock::kDayRecordSize);
    return MPPCalendarRecord(
        std::span<const uint8_t>(*m_block).subspan(recordSize * static_cast<size_t>(dayIndex), recordSize));
}

bool MPPDefaultCalendarWeek::isDefaultWorkingDay(int32_t dayIndex) {
    return !isWeekend(dayIndex);
}

const std::vector<MPPWorkingTimeRange>& MPPDefaultCalendarWeek::defaultWorkingTimes(int32_t dayIndex) {
    static const std::vector<MPPWorkingTimeRange> workingDay = {{8 * kHour, 12 * kHour},
                                                                {13 * kHour, 17 * kHour}};
    static const std::vector<MPPWorkingTimeRange> dayOff;
    return isWeekend(dayIndex) ? dayOff : workingDay;
}
