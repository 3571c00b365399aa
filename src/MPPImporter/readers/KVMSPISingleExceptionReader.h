#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPCommon/support/TVError.h"
#include "MPPImporter/readers/KVMSPISimpleObjectReaderBase.h"
#include "MPPImporter/readers/KVMSPISingleTimePeriodReader.h"
#include "MPPImporter/readers/KVMSPISingleWorkingTimeReader.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class KVMSPISingleCalendarReader;

// One exception of a calendar, numbered from 0: its recurrence, its date period and its working
// ranges, read when the reader is made. An exception that can't be read is a single period
// (recurrence type 1) with no occurrences, no dates and no working time.
class KVMSPISingleExceptionReader : public KVMSPISimpleObjectReaderBase {
public:
    using WorkingTimeReaders = std::vector<std::unique_ptr<KVMSPISingleWorkingTimeReader>>;

    // The calendar reader must outlive this one.
    KVMSPISingleExceptionReader(int32_t index, KVMSPISingleCalendarReader& calendarReader);

    int32_t index() const { return _index; }
    int32_t freq() const { return _freq; }
    int32_t occurrenceCount() const { return _occurrenceCount; }
    bool isDayWorking() const { return _isDayWorking; }
    // None when either date can't be read.
    KVMSPISingleTimePeriodReader* timePeriodReader() const { return _timePeriodReader.get(); }
    const WorkingTimeReaders& workingTimeReaders() const { return _workingTimeReaders; }

    bool exceptionDayWorking(bool& value, TVError* error = nullptr) const;
    bool exceptionTimePeriodFromDate(TVDate& value, TVError* error = nullptr) const;
    bool exceptionTimePeriodToDate(TVDate& value, TVError* error = nullptr) const;
    // Appends the recurrence parameters of the exception's recurrence type.
    bool calendarExceptionRecurrenceParameter(std::vector<int32_t>& value, TVError* error = nullptr) const;

    // "DayWorking=w and Type=t", read from the first character: a test that whether the exception
    // works is w non-zero and that its recurrence type is t; none for any other text.
    static KVMSPIXQPredicate predicateWithString(const std::optional<std::string>& text);

protected:
    std::unique_ptr<KVMSPIXQAdapter> newXQAdapter() override;

private:
    KVMSPISingleCalendarReader& m_calendarReader;
    int32_t _index;
    int32_t _freq = 1;
    int32_t _occurrenceCount = 0;
    bool _isDayWorking = false;
    std::unique_ptr<KVMSPISingleTimePeriodReader> _timePeriodReader;
    WorkingTimeReaders _workingTimeReaders;
};
