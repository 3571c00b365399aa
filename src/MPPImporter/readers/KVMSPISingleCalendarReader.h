#pragma once

#include "MPPImporter/readers/KVMSPIMPPCalendarReader.h"
#include "MPPImporter/readers/KVMSPISingleExceptionReader.h"
#include "MPPImporter/readers/KVMSPISingleObjectReaderBase.h"
#include "MPPImporter/readers/KVMSPISingleWeekDayReader.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// One calendar of the calendar reader, with its week days and exceptions. It answers the calendar
// reader's operations for its UID.
class KVMSPISingleCalendarReader : public KVMSPISingleObjectReaderBase {
public:
    using WeekDayReaders = std::vector<std::unique_ptr<KVMSPISingleWeekDayReader>>;
    using ExceptionReaders = std::vector<std::unique_ptr<KVMSPISingleExceptionReader>>;

    // Reads the calendar: its exceptions when it has data of its own, and its seven week days unless
    // it is a derived calendar without data, which has none. The calendar reader must outlive it.
    KVMSPISingleCalendarReader(int32_t uid, KVMSPIMPPCalendarReader& reader);
    // A reader that only keeps the UID and the calendar reader and reads nothing, for filters that
    // ask single fields.
    static std::unique_ptr<KVMSPISingleCalendarReader>
    initForFilterWithCalendarUID(int32_t uid, KVMSPIMPPCalendarReader& reader);

    bool isBaseCalendar() const { return _isBaseCalendar; }
    bool hasCalendarData() const { return _hasCalendarData; }
    const WeekDayReaders& weekDayReaders() const { return _weekDayReaders; }
    const ExceptionReaders& exceptionReaders() const { return _exceptionReaders; }
    // The work weeks of the calendar; the file's calendar block holds none, so it is always empty.
    const WeekDayReaders& workWeekReaders() const { return _workWeekReaders; }

    // `Name="text"` (letters, digits and blanks) or "ResourceUID=n", read from the first character: a
    // test that the calendar's name is the text, or that it belongs to resource n. Any other text as
    // the base reads it ("UID=n"); none for no text, or for an empty name or number.
    static KVMSPIXQPredicate predicateWithString(const std::optional<std::string>& text);

    bool calendarUID(int32_t& value, TVError* error = nullptr) const {
        return m_reader.calendarUID(uid(), value, error);
    }
    bool calendarBaseCalendarUID(int32_t& value, TVError* error = nullptr) const {
        return m_reader.calendarBaseCalendarUID(uid(), value, error);
    }
    bool calendarIsBaseCalendar(bool& value, TVError* error = nullptr) const {
        return m_reader.calendarIsBaseCalendar(uid(), value, error);
    }
    bool calendarResourceUID(int32_t& value, TVError* error = nullptr) const {
        return m_reader.calendarResourceUID(uid(), value, error);
    }
    bool calendarName(std::string& value, TVError* error = nullptr) const {
        return m_reader.calendarName(uid(), value, error);
    }
    bool calendarExceptionsCount(int32_t& value, TVError* error = nullptr) const {
        return m_reader.calendarExceptionsCount(uid(), value, error);
    }
    bool calendarExceptionRecurrenceType(int32_t index, int32_t& type, int32_t& occurrenceCount,
                                         std::optional<TVDate>& fromDate, std::optional<TVDate>& toDate,
                                         TVError* error = nullptr) const {
        return m_reader.calendarExceptionRecurrenceType(uid(), index, type, occurrenceCount, fromDate, toDate,
                                                        error);
    }
    bool calendarExceptionRecurrenceParameter(int32_t index, int32_t type, std::vector<int32_t>& value,
                                              TVError* error = nullptr) const {
        return m_reader.calendarExceptionRecurrenceParameter(uid(), index, type, value, error);
    }
    bool calendarExceptionTimePeriodFromDate(int32_t index, TVDate& value, TVError* error = nullptr) const {
        return m_reader.calendarExceptionTimePeriodFromDate(uid(), index, value, error);
    }
    bool calendarExceptionTimePeriodToDate(int32_t index, TVDate& value, TVError* error = nullptr) const {
        return m_reader.calendarExceptionTimePeriodToDate(uid(), index, value, error);
    }
    bool calendarExceptionWorkingTimes(int32_t index, std::vector<MPPWorkingTimeRange>& value,
                                       TVError* error = nullptr) const {
        return m_reader.calendarExceptionWorkingTimes(uid(), index, value, error);
    }
    bool calendarWeekDayDayWorking(int32_t dayType, bool& value, TVError* error = nullptr) const {
        return m_reader.calendarWeekDayDayWorking(uid(), dayType, value, error);
    }
    bool calendarWeekDayWorkingTimes(int32_t dayType, std::vector<MPPWorkingTimeRange>& value,
                                     TVError* error = nullptr) const {
        return m_reader.calendarWeekDayWorkingTimes(uid(), dayType, value, error);
    }
    bool calendarWeekDayTimePeriodFromDate(int32_t dayType, TVDate& value, TVError* error = nullptr) const {
        return m_reader.calendarWeekDayTimePeriodFromDate(uid(), dayType, value, error);
    }
    bool calendarWeekDayTimePeriodToDate(int32_t dayType, TVDate& value, TVError* error = nullptr) const {
        return m_reader.calendarWeekDayTimePeriodToDate(uid(), dayType, value, error);
    }

protected:
    std::unique_ptr<KVMSPIXQAdapter> newXQAdapter() override;

private:
    struct ForFilter {};
    KVMSPISingleCalendarReader(ForFilter, int32_t uid, KVMSPIMPPCalendarReader& reader);

    // Whether a calendar without data of its own shows the default week: a base calendar does, when
    // the file has a default week block.
    bool showsDefaultWeek() const;

    KVMSPIMPPCalendarReader& m_reader;
    bool _isBaseCalendar = false;
    bool _hasCalendarData = false;
    ExceptionReaders _exceptionReaders;
    WeekDayReaders _weekDayReaders;
    WeekDayReaders _workWeekReaders;
};
