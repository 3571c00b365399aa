#include "MPPImporter/readers/KVMSPISingleExceptionReader.h"

#include "MPPImporter/readers/KVMSPISingleCalendarReader.h"

KVMSPISingleExceptionReader::KVMSPISingleExceptionReader(int32_t index,
                                                         KVMSPISingleCalendarReader& calendarReader)
    : KVMSPISimpleObjectReaderBase(calendarReader.reader()), m_calendarReader(calendarReader), _index(index) {
    std::optional<TVDate> fromDate;
    std::optional<TVDate> toDate;
    if (!m_calendarReader.calendarExceptionRecurrenceType(index, _freq, _occurrenceCount, fromDate, toDate)) {
        _freq = 1;
        _occurrenceCount = 0;
    }
    if (fromDate && toDate) {
        _timePeriodReader = std::make_unique<KVMSPISingleTimePeriodReader>(*fromDate, *toDate, *this);
    }
    std::vector<MPPWorkingTimeRange> ranges;
    m_calendarReader.calendarExceptionWorkingTimes(index, ranges);
    for (const MPPWorkingTimeRange& range : ranges) {
        _workingTimeReaders.push_back(
            std::make_unique<KVMSPISingleWorkingTimeReader>(range.from, range.to, *this));
    }
    _isDayWorking = !_workingTimeReaders.empty();
}

bool KVMSPISingleExceptionReader::exceptionDayWorking(bool& value, TVError*) const {
    value = _isDayWorking;
    return true;
}

bool KVMSPISingleExceptionReader::exceptionTimePeriodFromDate(TVDate& value, TVError*) const {
    if (!_timePeriodReader) {
        return false;
    }
    value = _timePeriodReader->fromDate();
    return true;
}

bool KVMSPISingleExceptionReader::exceptionTimePeriodToDate(TVDate& value, TVError*) const {
    if (!_timePeriodReader) {
        return false;
    }
    value = _timePeriodReader->toDate();
    return true;
}

bool KVMSPISingleExceptionReader::calendarExceptionRecurrenceParameter(std::vector<int32_t>& value,
                                                                       TVError* error) const {
    return m_calendarReader.calendarExceptionRecurrenceParameter(_index, _freq, value, error);
}
