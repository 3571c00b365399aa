#include "MPPImporter/readers/MPPDefaultCalendarWeek.h"

#include "MPPImporter/file/KVMSPIPropsReader.h"
#include "MPPImporter/format/MPPCalendarDataBlock.h"

#include <array>

namespace {

constexpr TVTimeSpan kHour = 3600000000;

std::optional<std::array<uint8_t, MPPDefaultCalendarWeek::kBlockSize>>& defaultWeekBlock() {
    static std::optional<std::array<uint8_t, MPPDefaultCalendarWeek::kBlockSize>> block;
    return block;
}

bool isWeekend(int32_t dayIndex) {
    return dayIndex == 0 || dayIndex == MPPCalendarDataBlock::kDaysInWeek - 1;
}

} // namespace

void MPPDefaultCalendarWeek::loadDefaultWeekBlock(KVMSPIPropsReader& propsReader, int32_t property) {
    auto& block = defaultWeekBlock();
    if (block) {
        return;
    }
    std::array<uint8_t, kBlockSize> bytes{};
    if (propsReader.readPropertyByteArray(bytes.data(), kBlockSize, property, false)) {
        block = bytes;
    }
}

void MPPDefaultCalendarWeek::forgetDefaultWeekBlock() {
    defaultWeekBlock().reset();
}

bool MPPDefaultCalendarWeek::hasDefaultWorkingHours() {
    return defaultWeekBlock().has_value();
}

std::optional<MPPCalendarRecord> MPPDefaultCalendarWeek::dayRecord(int32_t dayIndex) {
    const auto& block = defaultWeekBlock();
    if (!block || dayIndex < 0 || dayIndex >= MPPCalendarDataBlock::kDaysInWeek) {
        return std::nullopt;
    }
    constexpr auto recordSize = static_cast<size_t>(MPPCalendarDataBlock::kDayRecordSize);
    return MPPCalendarRecord(
        std::span<const uint8_t>(*block).subspan(recordSize * static_cast<size_t>(dayIndex), recordSize));
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
