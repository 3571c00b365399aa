#include "MPPImporter/readers/KVMSPISingleExceptionReader.h"

#include "MPPCommon/support/PosixRegex.h"
#include "MPPImporter/query/frame/KVMSPIXQAdapter.h"
#include "MPPImporter/query/frame/KVMSPIXQAdapterFactory.h"
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

KVMSPIXQPredicate KVMSPISingleExceptionReader::predicateWithString(const std::optional<std::string>& text) {
    if (!text) {
        return {};
    }
    static const PosixRegex workingAndType("DayWorking=([[:digit:]]+) and Type=([[:digit:]]+)", 3);
    if (const std::optional<std::vector<std::string>> groups = predicateGroups(workingAndType, 2, *text)) {
        const bool working = predicateIntValue((*groups)[0]) != 0;
        const int32_t freq = predicateIntValue((*groups)[1]);
        return [working, freq](KVMSPIXQuery& object) {
            const auto& exception = predicateObject<KVMSPISingleExceptionReader>(object);
            return exception.isDayWorking() == working && exception.freq() == freq;
        };
    }
    return KVMSPISimpleObjectReaderBase::predicateWithString(text);
}

std::unique_ptr<KVMSPIXQAdapter> KVMSPISingleExceptionReader::newXQAdapter() {
    return KVMSPIXQAdapterFactory::installed().newAdapter(*this);
}
