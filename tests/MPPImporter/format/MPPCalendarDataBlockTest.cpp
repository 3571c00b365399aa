#include "MPPImporter/format/MPPCalendarDataBlock.h"

#include "MPPCommon/date/DateTestSupport.h"
#include "MPPCommon/support/TVDate.h"
#include "MPPImporter/format/MPPVersionTables.h"

#include <gtest/gtest.h>

namespace {

using Bytes = std::vector<uint8_t>;
using Ranges = std::vector<MPPWorkingTimeRange>;

// Times and lengths are stored in tenths of a minute.
constexpr int32_t kTenthsPerHour = 600;
constexpr int32_t kWeekDaysSize = 420;
// Format 14 exception layout: a fixed 92-byte head, extra size at 88, ranges at 14, 20 and 32.
constexpr int32_t kExceptionSize14 = 92;

void putShort(Bytes& bytes, size_t offset, int32_t value) {
    bytes.at(offset) = static_cast<uint8_t>(value & 0xFF);
    bytes.at(offset + 1) = static_cast<uint8_t>((value >> 8) & 0xFF);
}

void putInt(Bytes& bytes, size_t offset, int32_t value) {
    putShort(bytes, offset, value & 0xFFFF);
    putShort(bytes, offset + 2, (value >> 16) & 0xFFFF);
}

// Writes a day record at `offset`: status, then ranges given as (start hour, length in hours).
void putDay(Bytes& bytes, size_t offset, int32_t status,
            const std::vector<std::pair<double, double>>& ranges) {
    putShort(bytes, offset, status);
    putShort(bytes, offset + 2, static_cast<int32_t>(ranges.size()));
    for (size_t i = 0; i < ranges.size(); ++i) {
        putShort(bytes, offset + 8 + 2 * i, static_cast<int32_t>(ranges[i].first * kTenthsPerHour));
        putInt(bytes, offset + 20 + 4 * i, static_cast<int32_t>(ranges[i].second * kTenthsPerHour));
    }
}

TVDate mppDay(int32_t days) {
    return getMPPEpoch().addingSeconds(days * 86400.0);
}

MPPCalendarDataBlock::Layout layout14() {
    return MPPCalendarDataBlock::Layout::forVersion(*mppVersionTables(14));
}

MPPCalendarDataBlock::Layout layout9() {
    return MPPCalendarDataBlock::Layout::forVersion(*mppVersionTables(9));
}

// A format 14 block with the given exception records (each at least the fixed size) after the
// week days, each record's extra size word set from its length beyond the fixed part.
Bytes block14(const std::vector<Bytes>& exceptions) {
    Bytes bytes(kWeekDaysSize + 4);
    putShort(bytes, kWeekDaysSize, static_cast<int32_t>(exceptions.size()));
    for (const Bytes& exception : exceptions) {
        bytes.insert(bytes.end(), exception.begin(), exception.end());
    }
    return bytes;
}

Bytes exception14(int32_t fromDay, int32_t toDay, int32_t type, int32_t extraBytes = 0) {
    Bytes bytes(static_cast<size_t>(kExceptionSize14 + extraBytes));
    putShort(bytes, 0, fromDay);
    putShort(bytes, 2, toDay);
    putShort(bytes, 4, 1);
    putShort(bytes, 72, type);
    putInt(bytes, 88, extraBytes);
    return bytes;
}

TEST(MPPCalendarDataBlock, DayRecordsGiveStatusAndWorkingRanges) {
    Bytes bytes(kWeekDaysSize);
    putDay(bytes, 0, 1, {});
    putDay(bytes, 60, 0, {{8, 4}, {13, 4}});
    putDay(bytes, 120, 0, {});
    putDay(bytes, 360, 0, {{22, 8}});
    const MPPCalendarDataBlock block(bytes, layout14());

    EXPECT_EQ(MPPCalendarDataBlock::dayStatus(*block.dayRecord(0)), 1);
    const auto monday = block.dayRecord(1);
    ASSERT_TRUE(monday);
    EXPECT_EQ(MPPCalendarDataBlock::dayStatus(*monday), 0);
    EXPECT_EQ(MPPCalendarDataBlock::dayHasWorkingRanges(*monday), true);
    Ranges ranges;
    EXPECT_TRUE(MPPCalendarDataBlock::dayWorkingTimes(*monday, ranges));
    EXPECT_EQ(ranges, (Ranges{{8 * kHour, 12 * kHour}, {13 * kHour, 17 * kHour}}));

    // A held day without ranges is a day off; a range may run past midnight.
    EXPECT_EQ(MPPCalendarDataBlock::dayHasWorkingRanges(*block.dayRecord(2)), false);
    ranges.clear();
    EXPECT_TRUE(MPPCalendarDataBlock::dayWorkingTimes(*block.dayRecord(6), ranges));
    EXPECT_EQ(ranges, (Ranges{{22 * kHour, 30 * kHour}}));

    EXPECT_FALSE(block.dayRecord(7));
    EXPECT_FALSE(block.dayRecord(-1));
    // Without exceptions the block has none.
    EXPECT_EQ(block.exceptionsCount(), 0);
    EXPECT_EQ(block.listedExceptionsCount(), 0);
}

TEST(MPPCalendarDataBlock, ShortBlockAndOverlongRangeCountAreRefused) {
    Bytes bytes(kWeekDaysSize);
    putDay(bytes, 60, 0, {});
    putShort(bytes, 62, 11); // eleven ranges would run past the record's 60 bytes
    const MPPCalendarDataBlock block(bytes, layout14());
    Ranges ranges = {{1, 2}};
    EXPECT_FALSE(MPPCalendarDataBlock::dayWorkingTimes(*block.dayRecord(1), ranges));
    EXPECT_EQ(ranges.size(), 1U) << "a refused record appends nothing";

    const MPPCalendarDataBlock shortBlock(Bytes(5 * 60 + 59), layout14());
    EXPECT_TRUE(shortBlock.dayRecord(4));
    EXPECT_FALSE(shortBlock.dayRecord(5));
}

TEST(MPPCalendarDataBlock, ExceptionsOfFormat14AreFoundBySizeWithTheirPadding) {
    // Extra sizes of 5 and 0: the first record is 97 bytes and is followed by 1 byte of padding (the
    // remainder itself), so the second starts at 4 + 97 + 1.
    Bytes first = exception14(100, 102, 1, 5);
    putShort(first, 14, 1);
    putShort(first, 20, 9 * kTenthsPerHour);
    putInt(first, 32, 2 * kTenthsPerHour);
    first.push_back(0);
    const Bytes second = exception14(200, 200, 7);
    const MPPCalendarDataBlock block(block14({first, second}), layout14());

    EXPECT_EQ(block.exceptionsCount(), 2);
    ASSERT_EQ(block.listedExceptionsCount(), 2);
    EXPECT_EQ(block.exceptionRecord(0)->size(), 98);
    EXPECT_EQ(block.exceptionRecord(1)->size(), kExceptionSize14);

    const auto recurrence = block.exceptionRecurrence(0);
    ASSERT_TRUE(recurrence);
    EXPECT_EQ(recurrence->type, 1);
    EXPECT_EQ(recurrence->occurrenceCount, 1);
    EXPECT_EQ(recurrence->fromDate, mppDay(100));
    EXPECT_EQ(recurrence->toDate, mppDay(102));
    Ranges ranges;
    EXPECT_TRUE(block.exceptionWorkingTimes(0, ranges));
    EXPECT_EQ(ranges, (Ranges{{9 * kHour, 11 * kHour}}));

    EXPECT_EQ(block.exceptionRecurrence(1)->type, 7);
    EXPECT_EQ(block.exceptionRecurrence(1)->fromDate, mppDay(200));
    ranges.clear();
    EXPECT_TRUE(block.exceptionWorkingTimes(1, ranges));
    EXPECT_TRUE(ranges.empty());
    EXPECT_FALSE(block.exceptionRecord(2));
}

TEST(MPPCalendarDataBlock, LastExceptionRunsToTheEndAndCorruptListsStop) {
    // The stored count promises three, but the second record claims more bytes than the block has:
    // it is the last one found and runs to the end of the block.
    const Bytes first = exception14(1, 1, 1);
    Bytes second = exception14(2, 2, 1);
    putInt(second, 88, 4000);
    Bytes bytes = block14({first, second});
    putShort(bytes, kWeekDaysSize, 3);
    const MPPCalendarDataBlock block(bytes, layout14());
    EXPECT_EQ(block.exceptionsCount(), 3);
    ASSERT_EQ(block.listedExceptionsCount(), 2);
    EXPECT_EQ(block.exceptionRecord(1)->size(), kExceptionSize14);
    EXPECT_FALSE(block.exceptionRecurrence(2));

    // A negative size ends the list instead of walking backwards.
    Bytes looping = exception14(1, 1, 1);
    putInt(looping, 88, -kExceptionSize14 - 4);
    Bytes loopingBlock = block14({looping, exception14(2, 2, 1)});
    EXPECT_EQ(MPPCalendarDataBlock(loopingBlock, layout14()).listedExceptionsCount(), 1);

    // A block that ends with its week days has no exceptions, whatever its bytes say.
    Bytes weekOnly(kWeekDaysSize);
    putShort(weekOnly, 0, 5);
    EXPECT_EQ(MPPCalendarDataBlock(weekOnly, layout9()).exceptionsCount(), 0);
}

TEST(MPPCalendarDataBlock, ExceptionWithNullDatesHasNoDates) {
    const MPPCalendarDataBlock block(block14({exception14(-1, -1, 1)}), layout14());
    const auto recurrence = block.exceptionRecurrence(0);
    ASSERT_TRUE(recurrence);
    EXPECT_FALSE(recurrence->fromDate);
    EXPECT_FALSE(recurrence->toDate);
    EXPECT_EQ(recurrence->type, 1);
}

TEST(MPPCalendarDataBlock, RecurrenceParametersOfEachType) {
    // Byte 76, byte 77 and the word at 78 hold the parameters; their meaning depends on the type.
    auto parameters = [](int32_t type, uint8_t at76, uint8_t at77, int32_t at78) {
        Bytes exception = exception14(1, 1, type);
        exception[76] = at76;
        exception[77] = at77;
        putShort(exception, 78, at78);
        std::vector<int32_t> value;
        EXPECT_TRUE(MPPCalendarDataBlock(block14({exception}), layout14())
                        .exceptionRecurrenceParameters(0, type, value));
        return value;
    };
    // Yearly on 14 March, every year.
    EXPECT_EQ(parameters(2, 2, 14, 1), (std::vector<int32_t>{1, 2, 14}));
    // Yearly on the last Friday (stored 3 + 5) of November.
    EXPECT_EQ(parameters(3, 10, 4, 8), (std::vector<int32_t>{10, 4, 5}));
    // Every 2 months on day 300 of a 16-bit day word (bytes 76 and 77 together).
    EXPECT_EQ(parameters(4, 0x2C, 0x01, 2), (std::vector<int32_t>{2, 300}));
    // Every 3 months on the last Sunday (stored 3).
    EXPECT_EQ(parameters(5, 4, 3, 3), (std::vector<int32_t>{3, 4, 0}));
    // Every 2 weeks on Monday and Friday; the mask is the seven low bits at 76, whatever else the
    // files keep beside them (0x58 in byte 77).
    EXPECT_EQ(parameters(6, 0b0100010, 0, 2), (std::vector<int32_t>{2, 0b0100010}));
    EXPECT_EQ(parameters(6, 0b10000001, 0x58, 1), (std::vector<int32_t>{1, 0b0000001}));
    // Every 5 days.
    EXPECT_EQ(parameters(7, 5, 0, 9), (std::vector<int32_t>{5}));
    // A single period and unknown types add nothing.
    EXPECT_TRUE(parameters(1, 1, 2, 3).empty());
    EXPECT_TRUE(parameters(8, 1, 2, 3).empty());
}

TEST(MPPCalendarDataBlock, ExceptionsOfFormat9HaveFixedSizeAndCountAtTheStart) {
    // Format 9: count at offset 0, Sunday at 4, exceptions of 64 bytes from 4 after the week days,
    // ranges at 6, 12 and 24, and no recurrence type inside a record's 64 bytes.
    Bytes bytes(kWeekDaysSize + 4 + 2 * 64);
    putShort(bytes, 0, 2);
    putDay(bytes, 4 + 60, 0, {{7, 1}});
    const size_t second = kWeekDaysSize + 4 + 64;
    putShort(bytes, second, 10);
    putShort(bytes, second + 2, 11);
    putShort(bytes, second + 6, 1);
    putShort(bytes, second + 12, 10 * kTenthsPerHour);
    putInt(bytes, second + 24, 3 * kTenthsPerHour);
    const MPPCalendarDataBlock block(bytes, layout9());

    Ranges ranges;
    EXPECT_TRUE(MPPCalendarDataBlock::dayWorkingTimes(*block.dayRecord(1), ranges));
    EXPECT_EQ(ranges, (Ranges{{7 * kHour, 8 * kHour}}));

    EXPECT_EQ(block.exceptionsCount(), 2);
    ASSERT_EQ(block.listedExceptionsCount(), 2);
    const auto recurrence = block.exceptionRecurrence(1);
    ASSERT_TRUE(recurrence);
    EXPECT_EQ(recurrence->fromDate, mppDay(10));
    EXPECT_EQ(recurrence->toDate, mppDay(11));
    EXPECT_FALSE(recurrence->type);
    ranges.clear();
    EXPECT_TRUE(block.exceptionWorkingTimes(1, ranges));
    EXPECT_EQ(ranges, (Ranges{{10 * kHour, 13 * kHour}}));
}

} // namespace
