#pragma once

#include "MPPImporter/file/KVMSPIMPPDataDirectoryReader.h"
#include "MPPImporter/format/MPPCalendarDataBlock.h"
#include "MPPImporter/readers/KVMSPIMPPAbsCalendarReader.h"
#include "MPPImporter/readers/MPPDefaultCalendarWeek.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

// The reader of the "TBkndCal" storage: each calendar's fixed item (base calendar, resource), its
// name, and its calendar data block (week days and exceptions). Each calendar's block is read and its
// exceptions found once, when the reader opens. A day without a record of its own follows the base
// calendar, then the plan's default week, which the reader reads from its own plan's Props stream.
class KVMSPIMPPCalendarReader : public KVMSPIMPPDataDirectoryReader, public KVMSPIMPPAbsCalendarReader {
public:
    KVMSPIMPPCalendarReader(std::unique_ptr<SSLStorage> directory, std::string name,
                            KVMSPIParentReader* parentReader);
    ~KVMSPIMPPCalendarReader() override;

    const std::vector<int32_t>& uniqueIDs() const override {
        return KVMSPIMPPDataDirectoryReader::uniqueIDs();
    }
    bool isValidUID(int32_t uid) const override { return KVMSPIMPPDataDirectoryReader::isValidUID(uid); }
    int64_t objectIDforUniqueID(int32_t uid) const override {
        return KVMSPIMPPDataDirectoryReader::objectIDforUniqueID(uid);
    }

    bool hasCalendarDataForUID(int32_t uid) override;

    bool calendarUID(int32_t uid, int32_t& value, TVError* error = nullptr) override;
    bool calendarBaseCalendarUID(int32_t uid, int32_t& value, TVError* error = nullptr) override;
    bool calendarIsBaseCalendar(int32_t uid, bool& value, TVError* error = nullptr) override;
    bool calendarResourceUID(int32_t uid, int32_t& value, TVError* error = nullptr) override;
    bool calendarName(int32_t uid, std::string& value, TVError* error = nullptr) override;

    bool calendarExceptionsCount(int32_t uid, int32_t& value, TVError* error = nullptr) override;
    bool calendarExceptionRecurrenceType(int32_t uid, int32_t index, int32_t& type, int32_t& occurrenceCount,
                                         std::optional<TVDate>& fromDate, std::optional<TVDate>& toDate,
                                         TVError* error = nullptr) override;
    bool calendarExceptionRecurrenceParameter(int32_t uid, int32_t index, int32_t type,
                                              std::vector<int32_t>& value, TVError* error = nullptr) override;
    bool calendarExceptionTimePeriodFromDate(int32_t uid, int32_t index, TVDate& value,
                                             TVError* error = nullptr) override;
    bool calendarExceptionTimePeriodToDate(int32_t uid, int32_t index, TVDate& value,
                                           TVError* error = nullptr) override;
    bool calendarExceptionWorkingTimes(int32_t uid, int32_t index, std::vector<MPPWorkingTimeRange>& value,
                                       TVError* error = nullptr) override;

    bool calendarWeekDayDayWorking(int32_t uid, int32_t dayType, bool& value,
                                   TVError* error = nullptr) override;
    bool calendarWeekDayWorkingTimes(int32_t uid, int32_t dayType, std::vector<MPPWorkingTimeRange>& value,
                                     TVError* error = nullptr) override;
    bool calendarWeekDayFollowsBase(int32_t uid, int32_t dayType, bool& value,
                                    TVError* error = nullptr) override;
    bool calendarWeekDayTimePeriodFromDate(int32_t uid, int32_t dayType, TVDate& value,
                                           TVError* error = nullptr) override;
    bool calendarWeekDayTimePeriodToDate(int32_t uid, int32_t dayType, TVDate& value,
                                         TVError* error = nullptr) override;

    const MPPDefaultCalendarWeek& defaultWeek() const { return _defaultWeek; }

private:
    MPPDefaultCalendarWeek readDefaultWeek(KVMSPIParentReader* parentReader) const;
    void readCalendarBlocks();
    // The calendar's block; none without calendar data, or when it couldn't be read.
    const MPPCalendarDataBlock* block(int32_t uid) const;
    // The block of a calendar with exceptions; false, with the stream reader's error, without one.
    const MPPCalendarDataBlock* exceptionBlock(int32_t uid, TVError* error) const;
    // The day record of the calendar's block, or of the default week for a calendar without data.
    std::optional<MPPCalendarRecord> readWeekDayDataByteArray(int32_t uid, int32_t dayIndex) const;
    // Day index 0 to 6 of a day type 1 to 7; any other day type is an assertion failure.
    static int32_t dayIndexOfDayType(int32_t dayType);
    // `calendarWeekDayDayWorking` that follows at most `depth` more base calendars.
    bool weekDayDayWorking(int32_t uid, int32_t dayIndex, int32_t depth);
    void takeVarDataError(TVError* error) const;

    int32_t _propCalendarData = -1;
    MPPCalendarDataBlock::Layout _layout;
    MPPDefaultCalendarWeek _defaultWeek;
    std::unordered_map<int32_t, std::optional<MPPCalendarDataBlock>> _blocks;
};
