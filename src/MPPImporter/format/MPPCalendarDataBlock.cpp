#include "MPPImporter/format/MPPCalendarDataBlock.h"

#include "MPPCommon/support/TVException.h"
#include "MPPImporter/format/MPPFormatConstants.h"
#include "MPPImporter/format/MPPPropertyKeyTables.h"
#include "MPPImporter/format/MPPValueCodecs.h"
#include "MPPImporter/format/MPPVersionTables.h"

#include <algorithm>

namespace {

// Property keys of the calendar block's layout.
constexpr int32_t kExceptionBlockSizeKey = 14;
constexpr int32_t kExceptionExtraSizeKey = 15;
constexpr int32_t kExceptionListKey = 16;
constexpr int32_t kExceptionRangeCountKey = 17;
constexpr int32_t kExceptionRangeStartsKey = 18;
constexpr int32_t kExceptionRangeLengthsKey = 19;
constexpr int32_t kWeekDaysDataSizeKey = 21;

// Places in a day record.
constexpr int64_t kDayStatusOffset = 0;
constexpr int64_t kDayRangeCountOffset = 2;
constexpr int64_t kDayRangeStartsOffset = 8;
constexpr int64_t kDayRangeLengthsOffset = 20;

// Places in an exception record.
constexpr int64_t kFromDateOffset = 0;
constexpr int64_t kToDateOffset = 2;
constexpr int64_t kOccurrenceCountOffset = 4;
constexpr int64_t kRecurrenceTypeOffset = 72;
constexpr int64_t kParameterOffset1 = 76;
constexpr int64_t kParameterOffset2 = 77;
constexpr int64_t kParameterOffset3 = 78;
// The exception list starts this many bytes after its count.
constexpr int64_t kFirstExceptionOffset = 4;
// Places that only the writing fills: the total length of a record's ranges follows their count; the
// running totals of the lengths follow the five lengths; the single exception's marks.
constexpr int64_t kRangeTotalAfterCount = 2;
constexpr int64_t kRunningTotalsAfterLengths = 4 * MPPCalendarDataBlock::kMaxWorkingRanges;
constexpr int64_t kExceptionWorkingMarkOffset = 8;
constexpr int64_t kExceptionNumberOffset = 80;
constexpr int64_t kExceptionNoRecurrenceOffset = 84;
// An exception of one stretch of days; the files mark its missing recurrence with all bits set.
constexpr int32_t kSingleException = 1;
constexpr uint32_t kNoRecurrence = 0xFFFFFFFF;
constexpr int16_t kDayHeldInRecord = 0;
constexpr int16_t kDayFollowsBase = 1;
// Weekdays are stored from 3 for Sunday.
constexpr int32_t kStoredWeekdayBase = 3;
// The weekday mask of a weekly recurrence: bit 0 for Sunday to bit 6 for Saturday. The files keep
// other bits in the high byte of the word (0x58 in the corpus), so only the seven day bits are taken.
constexpr int32_t kWeekdayMaskBits = 0x7F;

enum RecurrenceType : int32_t {
    kYearlyOnDate = 2,
    kYearlyOnWeekday = 3,
    kMonthlyOnDay = 4,
    kMonthlyOnWeekday = 5,
    kWeekly = 6,
    kDaily = 7,
};

} // namespace

MPPCalendarDataBlock::Layout MPPCalendarDataBlock::Layout::forVersion(const MPPVersionTables& tables) {
    const auto offset = [&tables](int32_t key) { return mppPropertyOffset(tables.keyColumn, key); };
    Layout layout;
    layout.version = tables.mppVersion;
    layout.weekDaysDataSize = static_cast<int32_t>(offset(kWeekDaysDataSizeKey).value_or(0));
    layout.weekDayWorkingTimesOffset = tables.calendarWeekDayWorkingTimesOffset;
    layout.exceptionBlockSize = offset(kExceptionBlockSizeKey).value_or(0);
    layout.exceptionExtraSizeOffset = offset(kExceptionExtraSizeKey);
    layout.hasExceptionList = offset(kExceptionListKey).has_value();
    layout.rangeCountOffset = offset(kExceptionRangeCountKey);
    layout.rangeStartsOffset = offset(kExceptionRangeStartsKey);
    layout.rangeLengthsOffset = offset(kExceptionRangeLengthsKey);
    return layout;
}

MPPCalendarDataBlock::MPPCalendarDataBlock(std::vector<uint8_t> bytes, const Layout& layout)
    : m_bytes(std::move(bytes)), m_layout(layout) {
    listExceptions();
}

int32_t MPPCalendarDataBlock::exceptionsCount() const {
    if (static_cast<int64_t>(m_bytes.size()) <= m_layout.weekDaysDataSize) {
        return 0;
    }
    const int64_t countOffset = m_layout.version < kMSPDIVersion_2007 ? 0 : m_layout.weekDaysDataSize;
    return MPPCalendarRecord(m_bytes).readShort(countOffset).value_or(0);
}

std::span<const uint8_t> MPPCalendarDataBlock::exceptionBytes() const {
    const auto weekDaysSize = static_cast<size_t>(std::max(m_layout.weekDaysDataSize, 0));
    if (m_bytes.size() <= weekDaysSize) {
        return {};
    }
    return std::span<const uint8_t>(m_bytes).subspan(weekDaysSize);
}

void MPPCalendarDataBlock::listExceptions() {
    if (exceptionBytes().empty()) {
        return;
    }
    if (m_layout.version < kMSPDIVersion_2007) {
        listFixedSizeExceptions(exceptionsCount());
    } else if (m_layout.rangeCountOffset && m_layout.exceptionExtraSizeOffset && m_layout.hasExceptionList) {
        listSizedExceptions(exceptionsCount());
    }
}

void MPPCalendarDataBlock::listFixedSizeExceptions(int32_t count) {
    const auto available = static_cast<int64_t>(exceptionBytes().size());
    for (int64_t i = 0; i < count; ++i) {
        const int64_t offset = kFirstExceptionOffset + i * m_layout.exceptionBlockSize;
        if (offset >= available || (i > 0 && m_layout.exceptionBlockSize <= 0)) {
            return;
        }
        m_exceptionOffsets.push_back(offset);
    }
}

void MPPCalendarDataBlock::listSizedExceptions(int32_t count) {
    const MPPCalendarRecord exceptions(exceptionBytes());
    int64_t offset = kFirstExceptionOffset;
    for (int32_t i = 0; i < count && offset < exceptions.size(); ++i) {
        m_exceptionOffsets.push_back(offset);
        const auto extraSize = exceptions.readInt(*m_layout.exceptionExtraSizeOffset + offset);
        if (!extraSize) {
            return;
        }
        const int64_t size = *extraSize + m_layout.exceptionBlockSize;
        if (size <= 0) {
            return;
        }
        // The stored records are padded by the remainder itself, not by its complement to 4.
        offset += size + size % 4;
    }
}

std::optional<MPPCalendarRecord> MPPCalendarDataBlock::dayRecord(int32_t dayIndex) const {
    if (dayIndex < 0 || dayIndex >= kDaysInWeek) {
        return std::nullopt;
    }
    const int64_t offset = m_layout.weekDayWorkingTimesOffset + int64_t{kDayRecordSize} * dayIndex;
    if (offset < 0 || offset + kDayRecordSize > static_cast<int64_t>(m_bytes.size())) {
        return std::nullopt;
    }
    return MPPCalendarRecord(
        std::span<const uint8_t>(m_bytes).subspan(static_cast<size_t>(offset), kDayRecordSize));
}

std::optional<MPPCalendarRecord> MPPCalendarDataBlock::exceptionRecord(int32_t index) const {
    if (index < 0 || index >= listedExceptionsCount()) {
        return std::nullopt;
    }
    const auto exceptions = exceptionBytes();
    const auto position = static_cast<size_t>(index);
    const int64_t start = m_exceptionOffsets[position];
    const int64_t next = position + 1 < m_exceptionOffsets.size() ? m_exceptionOffsets[position + 1]
                                                                  : static_cast<int64_t>(exceptions.size());
    const int64_t end = std::min(next, static_cast<int64_t>(exceptions.size()));
    return MPPCalendarRecord(
        exceptions.subspan(static_cast<size_t>(start), static_cast<size_t>(end - start)));
}

std::optional<MPPCalendarDataBlock::ExceptionRecurrence>
MPPCalendarDataBlock::exceptionRecurrence(int32_t index) const {
    const auto record = exceptionRecord(index);
    if (!record) {
        return std::nullopt;
    }
    return ExceptionRecurrence{record->readShort(kRecurrenceTypeOffset),
                               record->readShort(kOccurrenceCountOffset), record->readDate(kFromDateOffset),
                               record->readDate(kToDateOffset)};
}

bool MPPCalendarDataBlock::exceptionRecurrenceParameters(int32_t index, int32_t type,
                                                         std::vector<int32_t>& value) const {
    const auto record = exceptionRecord(index);
    if (!record) {
        return false;
    }
    const auto byte1 = record->readUByte(kParameterOffset1);
    const auto byte2 = record->readUByte(kParameterOffset2);
    const auto byte3 = record->readUByte(kParameterOffset3);
    const auto word1 = record->readUShort(kParameterOffset1);
    const auto word3 = record->readUShort(kParameterOffset3);
    std::vector<std::optional<int32_t>> parameters;
    switch (type) {
    case kYearlyOnDate:
        parameters = {word3, byte1, byte2};
        break;
    case kYearlyOnWeekday:
        parameters = {byte1, byte2,
                      byte3 ? std::optional<int32_t>(*byte3 - kStoredWeekdayBase) : std::nullopt};
        break;
    case kMonthlyOnDay:
        parameters = {word3, word1};
        break;
    case kMonthlyOnWeekday:
        parameters = {word3, byte1,
                      byte2 ? std::optional<int32_t>(*byte2 - kStoredWeekdayBase) : std::nullopt};
        break;
    case kWeekly:
        parameters = {word3, byte1 ? std::optional<int32_t>(*byte1 & kWeekdayMaskBits) : std::nullopt};
        break;
    case kDaily:
        parameters = {word1};
        break;
    default:
        break;
    }
    for (const auto& parameter : parameters) {
        if (!parameter) {
            return false;
        }
    }
    for (const auto& parameter : parameters) {
        value.push_back(*parameter);
    }
    return true;
}

bool MPPCalendarDataBlock::exceptionWorkingTimes(int32_t index,
                                                 std::vector<MPPWorkingTimeRange>& value) const {
    const auto record = exceptionRecord(index);
    if (!record || !m_layout.rangeCountOffset || !m_layout.rangeStartsOffset ||
        !m_layout.rangeLengthsOffset) {
        return false;
    }
    return record->readWorkingRanges(*m_layout.rangeCountOffset, *m_layout.rangeStartsOffset,
                                     *m_layout.rangeLengthsOffset, value);
}

std::optional<int16_t> MPPCalendarDataBlock::dayStatus(const MPPCalendarRecord& day) {
    return day.readShort(kDayStatusOffset);
}

std::optional<bool> MPPCalendarDataBlock::dayHasWorkingRanges(const MPPCalendarRecord& day) {
    const auto count = day.readShort(kDayRangeCountOffset);
    if (!count) {
        return std::nullopt;
    }
    return *count > 0;
}

bool MPPCalendarDataBlock::dayWorkingTimes(const MPPCalendarRecord& day,
                                           std::vector<MPPWorkingTimeRange>& value) {
    return day.readWorkingRanges(kDayRangeCountOffset, kDayRangeStartsOffset, kDayRangeLengthsOffset, value);
}

void MPPCalendarDataBlock::encodeWorkingRanges(const std::vector<MPPWorkingTimeRange>& ranges,
                                               int64_t countOffset, int64_t startsOffset,
                                               int64_t lengthsOffset, std::span<uint8_t> record) {
    tvAssert(ranges.size() <= kMaxWorkingRanges, "A calendar record holds at most five working ranges.");
    const auto at = [record](int64_t offset, size_t size) {
        return record.subspan(static_cast<size_t>(offset), size);
    };
    encodeMPPNumber(static_cast<int16_t>(ranges.size()), at(countOffset, 2));
    TVTimeSpan total = 0;
    for (size_t i = 0; i < ranges.size(); ++i) {
        const TVTimeSpan length = std::max<TVTimeSpan>(ranges[i].to - ranges[i].from, 0);
        total += length;
        encodeMPPTime(ranges[i].from, at(startsOffset + 2 * static_cast<int64_t>(i), kMPPTimeSize));
        encodeMPPDuration(length, at(lengthsOffset + 4 * static_cast<int64_t>(i), kMPPDurationSize));
        // The application keeps the lengths a second time, summed up to each range.
        encodeMPPDuration(total, at(lengthsOffset + kRunningTotalsAfterLengths + 4 * static_cast<int64_t>(i),
                                    kMPPDurationSize));
    }
    encodeMPPDuration(total, at(countOffset + kRangeTotalAfterCount, kMPPDurationSize));
}

void MPPCalendarDataBlock::encodeDayRecord(const std::vector<MPPWorkingTimeRange>* ranges,
                                           std::span<uint8_t> record) {
    tvAssert(record.size() >= static_cast<size_t>(kDayRecordSize), "A day record is 60 bytes.");
    std::fill_n(record.begin(), kDayRecordSize, uint8_t{0});
    encodeMPPNumber(ranges != nullptr ? kDayHeldInRecord : kDayFollowsBase,
                    record.subspan(kDayStatusOffset, 2));
    if (ranges != nullptr) {
        encodeWorkingRanges(*ranges, kDayRangeCountOffset, kDayRangeStartsOffset, kDayRangeLengthsOffset,
                            record);
    }
}

void MPPCalendarDataBlock::appendSizedName(std::u16string_view name, std::vector<uint8_t>& bytes) {
    const size_t size = name.empty() ? 0 : 2 * (name.size() + 1);
    const size_t start = bytes.size();
    bytes.resize(start + 4 + size + size % 4, 0);
    const std::span<uint8_t> appended = std::span<uint8_t>(bytes).subspan(start);
    encodeMPPNumber(static_cast<uint32_t>(size), appended);
    if (size > 0) {
        encodeMPPText(name, appended.subspan(4, size));
    }
}

std::vector<uint8_t> MPPCalendarDataBlock::encodeSingleException(
    const Layout& layout, std::optional<TVDate> from, std::optional<TVDate> to,
    const std::vector<MPPWorkingTimeRange>& ranges, uint32_t number, std::u16string_view name) {
    tvAssert(layout.rangeCountOffset && layout.rangeStartsOffset && layout.rangeLengthsOffset &&
                 layout.exceptionExtraSizeOffset &&
                 layout.exceptionBlockSize == *layout.exceptionExtraSizeOffset + 4,
             "The layout has no sized exception records.");
    std::vector<uint8_t> bytes(static_cast<size_t>(*layout.exceptionExtraSizeOffset), 0);
    const std::span<uint8_t> record(bytes);
    const auto at = [record](int64_t offset, size_t size) {
        return record.subspan(static_cast<size_t>(offset), size);
    };
    encodeMPPDate(from, at(kFromDateOffset, kMPPDateSize));
    encodeMPPDate(to, at(kToDateOffset, kMPPDateSize));
    encodeMPPNumber(int16_t{1}, at(kOccurrenceCountOffset, 2));
    encodeMPPNumber(int16_t{1}, at(kExceptionWorkingMarkOffset, 2));
    encodeWorkingRanges(ranges, *layout.rangeCountOffset, *layout.rangeStartsOffset,
                        *layout.rangeLengthsOffset, record);
    encodeMPPNumber(kSingleException, at(kRecurrenceTypeOffset, 4));
    encodeMPPNumber(number, at(kExceptionNumberOffset, 4));
    encodeMPPNumber(kNoRecurrence, at(kExceptionNoRecurrenceOffset, 4));
    appendSizedName(name, bytes);
    return bytes;
}
