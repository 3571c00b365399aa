#include "MPPImporter/format/MPPResourceAvailabilityTable.h"

#include "MPPImporter/format/MPPMemRead.h"

namespace {

constexpr size_t kRowCountSize = 2;
constexpr size_t kFirstRowOffset = 12;
constexpr size_t kRowSize = 20;
constexpr size_t kStartSize = 4;
constexpr size_t kUnitsOffsetInRow = 4;
constexpr size_t kUnitsSize = 8;
constexpr double kSecondsPerStartUnit = 6.0;
constexpr double kStoredUnitsDivisor = 100.0;

} // namespace

void MPPResourceAvailabilityTable::appendPeriods(std::vector<MPPResourceAvailabilityPeriod>& periods) const {
    if (m_size < kRowCountSize) {
        return;
    }
    const int32_t count = memReadShort(m_bytes, 0);
    const auto dateAt = [this](size_t offset) {
        return getMPPEpoch().addingSeconds(memReadUInt(m_bytes, static_cast<int32_t>(offset)) *
                                           kSecondsPerStartUnit);
    };
    for (int32_t row = 0; row < count; ++row) {
        const size_t rowOffset = kFirstRowOffset + kRowSize * static_cast<size_t>(row);
        if (rowOffset + kUnitsOffsetInRow + kUnitsSize > m_size) {
            return;
        }
        const double units = memReadDouble(m_bytes, static_cast<int32_t>(rowOffset + kUnitsOffsetInRow));
        if (units == 0.0) {
            continue;
        }
        const size_t endOffset = rowOffset + kRowSize;
        if (endOffset + kStartSize > m_size) {
            return;
        }
        periods.push_back({dateAt(rowOffset), dateAt(endOffset), units / kStoredUnitsDivisor});
    }
}
