#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPImporter/format/MPPCalendarRecord.h"
#include "MPPImporter/format/MPPWorkingTimeRange.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

struct MPPVersionTables;

// The calendar data block of one calendar, as its variable data holds it: seven day records of 60
// bytes (Sunday first), then the exception count and the exception records. Before format 12 the
// count is at the very start of the block and every exception has the same size; from format 12 on
// the count follows the week days and each exception tells how many extra bytes follow its fixed
// part. Records are found once, when the block is made; every read is bounds-checked, and a record
// or value that lies outside the block is absent.
class MPPCalendarDataBlock {
public:
    // Where the parts of a block lie in the file's format version.
    struct Layout {
        int32_t version = 0;
        // Size of the week day part; the exceptions follow it.
        int32_t weekDaysDataSize = 0;
        // Offset of Sunday's record.
        int32_t weekDayWorkingTimesOffset = 0;
        // Size of the fixed part of an exception.
        int64_t exceptionBlockSize = 0;
        // Offset in an exception of the 32-bit count of extra bytes (format 12 on).
        std::optional<uint32_t> exceptionExtraSizeOffset;
        // Whether the version knows the exception list at all (format 12 on).
        bool hasExceptionList = false;
        // Offsets in an exception of its range count, range starts and range lengths.
        std::optional<uint32_t> rangeCountOffset;
        std::optional<uint32_t> rangeStartsOffset;
        std::optional<uint32_t> rangeLengthsOffset;

        static Layout forVersion(const MPPVersionTables& tables);
    };

    // The head of an exception: its recurrence type, occurrence count and first and last dates, each
    // absent when it lies outside the record (the short records of format 9 end before the type).
    struct ExceptionRecurrence {
        std::optional<int32_t> type;
        std::optional<int32_t> occurrenceCount;
        std::optional<TVDate> fromDate;
        std::optional<TVDate> toDate;
    };

    static constexpr int32_t kDayRecordSize = 60;
    static constexpr int32_t kDaysInWeek = 7;
    // The most working ranges that a day or exception record holds.
    static constexpr size_t kMaxWorkingRanges = 5;

    MPPCalendarDataBlock(std::vector<uint8_t> bytes, const Layout& layout);

    // The stored exception count; 0 when the block ends at or before the end of the week day part.
    int32_t exceptionsCount() const;
    // How many exception records were found in the block.
    int32_t listedExceptionsCount() const { return static_cast<int32_t>(m_exceptionOffsets.size()); }

    // The record of day index 0 (Sunday) to 6 (Saturday); none when the block is too short.
    std::optional<MPPCalendarRecord> dayRecord(int32_t dayIndex) const;
    // The record of exception `index`: from its offset to the next one's, the last to the block's end.
    std::optional<MPPCalendarRecord> exceptionRecord(int32_t index) const;

    std::optional<ExceptionRecurrence> exceptionRecurrence(int32_t index) const;
    // Appends the recurrence parameters of exception `index` read as recurrence type `type`; types
    // outside 2 to 7 add nothing. False, appending nothing, when they can't be read.
    bool exceptionRecurrenceParameters(int32_t index, int32_t type, std::vector<int32_t>& value) const;
    bool exceptionWorkingTimes(int32_t index, std::vector<MPPWorkingTimeRange>& value) const;

    // A day record's status: 0 when the record holds the day, 1 when the day follows its base.
    static std::optional<int16_t> dayStatus(const MPPCalendarRecord& day);
    // Whether the day record has at least one working range.
    static std::optional<bool> dayHasWorkingRanges(const MPPCalendarRecord& day);
    static bool dayWorkingTimes(const MPPCalendarRecord& day, std::vector<MPPWorkingTimeRange>& value);

    // Writing, in the places that the reads above take (format 12 on; at most kMaxWorkingRanges
    // ranges, each ending after its start or where it starts).

    // A day record into `record` (kDayRecordSize bytes): the day held in the record with its ranges,
    // none making it a day off, or, without a list, a day that follows its base.
    static void encodeDayRecord(const std::vector<MPPWorkingTimeRange>* ranges, std::span<uint8_t> record);
    // A single exception from the day `from` to the day `to` (wall clock), working `ranges` or none,
    // with the running number the application gives each exception and its name, padded as the
    // exception list steps from one record to the next.
    static std::vector<uint8_t> encodeSingleException(const Layout& layout, std::optional<TVDate> from,
                                                      std::optional<TVDate> to,
                                                      const std::vector<MPPWorkingTimeRange>& ranges,
                                                      uint32_t number, std::u16string_view name);
    // A name as the calendar data holds it: its byte count with the terminator, the UTF-16 text and
    // as many zero bytes as that count's remainder by 4 (which the exception list steps over).
    static void appendSizedName(std::u16string_view name, std::vector<uint8_t>& bytes);

private:
    static void encodeWorkingRanges(const std::vector<MPPWorkingTimeRange>& ranges, int64_t countOffset,
                                    int64_t startsOffset, int64_t lengthsOffset, std::span<uint8_t> record);

    // The bytes after the week day part, where the exception offsets point.
    std::span<const uint8_t> exceptionBytes() const;
    void listExceptions();
    void listFixedSizeExceptions(int32_t count);
    void listSizedExceptions(int32_t count);

    std::vector<uint8_t> m_bytes;
    Layout m_layout;
    // Offsets of the exception records, relative to the end of the week day part, ascending and
    // inside the block.
    std::vector<int64_t> m_exceptionOffsets;
};
