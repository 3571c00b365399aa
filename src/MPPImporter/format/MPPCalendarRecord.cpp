#include "MPPImporter/format/MPPCalendarRecord.h"

#include "MPPImporter/format/MPPMemRead.h"

namespace {

// One tenth of a minute in microseconds.
constexpr TVTimeSpan kTenthOfMinute = 6000000;

} // namespace

std::optional<uint8_t> MPPCalendarRecord::readUByte(int64_t offset) const {
    if (!holds(offset, 1)) {
        return std::nullopt;
    }
    return memReadUByte(m_bytes.data(), static_cast<int32_t>(offset));
}

std::optional<int16_t> MPPCalendarRecord::readShort(int64_t offset) const {
    if (!holds(offset, 2)) {
        return std::nullopt;
    }
    return memReadShort(m_bytes.data(), static_cast<int32_t>(offset));
}

std::optional<uint16_t> MPPCalendarRecord::readUShort(int64_t offset) const {
    if (!holds(offset, 2)) {
        return std::nullopt;
    }
    return memReadUShort(m_bytes.data(), static_cast<int32_t>(offset));
}

std::optional<int32_t> MPPCalendarRecord::readInt(int64_t offset) const {
    if (!holds(offset, 4)) {
        return std::nullopt;
    }
    return memReadInt(m_bytes.data(), static_cast<int32_t>(offset));
}

std::optional<TVDate> MPPCalendarRecord::readDate(int64_t offset) const {
    if (!holds(offset, 2)) {
        return std::nullopt;
    }
    return memReadDate(m_bytes.data(), static_cast<int32_t>(offset));
}

bool MPPCalendarRecord::readWorkingRanges(int64_t countOffset, int64_t startsOffset, int64_t lengthsOffset,
                                          std::vector<MPPWorkingTimeRange>& value) const {
    const auto count = readShort(countOffset);
    if (!count) {
        return false;
    }
    std::vector<MPPWorkingTimeRange> ranges;
    for (int64_t i = 0; i < *count; ++i) {
        const int64_t startOffset = startsOffset + 2 * i;
        const int64_t lengthOffset = lengthsOffset + 4 * i;
        if (!holds(startOffset, 2) || !holds(lengthOffset, 4)) {
            return false;
        }
        const TVTimeSpan start = memReadTime(m_bytes.data(), static_cast<int32_t>(startOffset));
        const TVTimeSpan length = memReadDurationInt(m_bytes.data(), static_cast<int32_t>(lengthOffset));
        ranges.push_back({start, start + length * kTenthOfMinute});
    }
    value.insert(value.end(), ranges.begin(), ranges.end());
    return true;
}
