#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPCommon/support/TVError.h"
#include "MPPImporter/format/MPPWorkingTimeRange.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// What the project reader, the resource reader and the query layer ask of the calendars of a plan.
// Every field operation answers false when the value is absent or unreadable, and then gives the
// stream reader's error; text operations append to `value`, list operations append to `value`.
// Exceptions are numbered from 0 in their calendar; day types run from 1 (Sunday) to 7 (Saturday),
// and any other day type is an assertion failure.
class KVMSPIMPPAbsCalendarReader {
public:
    virtual ~KVMSPIMPPAbsCalendarReader() = default;

    // The calendars' UIDs in fixed data order.
    virtual const std::vector<int32_t>& uniqueIDs() const = 0;
    virtual bool isValidUID(int32_t uid) const = 0;
    // The calendar's row number, -1 if unknown.
    virtual int64_t objectIDforUniqueID(int32_t uid) const = 0;

    // Whether the calendar has a data block of its own (week days and exceptions).
    virtual bool hasCalendarDataForUID(int32_t uid) = 0;

    virtual bool calendarUID(int32_t uid, int32_t& value, TVError* error = nullptr) = 0;
    // -1 for a base calendar.
    virtual bool calendarBaseCalendarUID(int32_t uid, int32_t& value, TVError* error = nullptr) = 0;
    virtual bool calendarIsBaseCalendar(int32_t uid, bool& value, TVError* error = nullptr) = 0;
    // -1 when no resource owns the calendar.
    virtual bool calendarResourceUID(int32_t uid, int32_t& value, TVError* error = nullptr) = 0;
    virtual bool calendarName(int32_t uid, std::string& value, TVError* error = nullptr) = 0;

    virtual bool calendarExceptionsCount(int32_t uid, int32_t& value, TVError* error = nullptr) = 0;
    // The recurrence type (1 single period, 2 to 7 recurring), the occurrence count and the first
    // and last dates, each date absent when it can't be read. The dates are given even when the type
    // or the count can't be read and the answer is false.
    virtual bool calendarExceptionRecurrenceType(int32_t uid, int32_t index, int32_t& type,
                                                 int32_t& occurrenceCount, std::optional<TVDate>& fromDate,
                                                 std::optional<TVDate>& toDate, TVError* error = nullptr) = 0;
    // Appends the recurrence parameters of an exception read as recurrence type `type`; types
    // outside 2 to 7 add nothing.
    virtual bool calendarExceptionRecurrenceParameter(int32_t uid, int32_t index, int32_t type,
                                                      std::vector<int32_t>& value,
                                                      TVError* error = nullptr) = 0;
    virtual bool calendarExceptionTimePeriodFromDate(int32_t uid, int32_t index, TVDate& value,
                                                     TVError* error = nullptr) = 0;
    virtual bool calendarExceptionTimePeriodToDate(int32_t uid, int32_t index, TVDate& value,
                                                   TVError* error = nullptr) = 0;
    virtual bool calendarExceptionWorkingTimes(int32_t uid, int32_t index,
                                               std::vector<MPPWorkingTimeRange>& value,
                                               TVError* error = nullptr) = 0;

    virtual bool calendarWeekDayDayWorking(int32_t uid, int32_t dayType, bool& value,
                                           TVError* error = nullptr) = 0;
    virtual bool calendarWeekDayWorkingTimes(int32_t uid, int32_t dayType,
                                             std::vector<MPPWorkingTimeRange>& value,
                                             TVError* error = nullptr) = 0;
    // Whether a derived calendar's day takes its working time from the base calendar: the calendar has
    // no data block, or the day's record says that it follows the base. False for a base calendar.
    virtual bool calendarWeekDayFollowsBase(int32_t uid, int32_t dayType, bool& value,
                                            TVError* error = nullptr) = 0;
    // Week days have no date period in an MPP file: both always answer false.
    virtual bool calendarWeekDayTimePeriodFromDate(int32_t uid, int32_t dayType, TVDate& value,
                                                   TVError* error = nullptr) = 0;
    virtual bool calendarWeekDayTimePeriodToDate(int32_t uid, int32_t dayType, TVDate& value,
                                                 TVError* error = nullptr) = 0;
};
