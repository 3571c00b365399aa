#include "MPPImporter/readers/KVMSPISingleWeekDayReader.h"

#include "MPPImporter/readers/KVMSPISingleCalendarReader.h"

KVMSPISingleWeekDayReader::KVMSPISingleWeekDayReader(int32_t dayType,
                                                     KVMSPISingleCalendarReader& calendarReader)
    : KVMSPISimpleObjectReaderBase(calendarReader.reader()), m_calendarReader(calendarReader),
      _dayType(dayType) {
    std::vector<MPPWorkingTimeRange> ranges;
    m_calendarReader.calendarWeekDayWorkingTimes(dayType, ranges);
    for (const MPPWorkingTimeRange& range : ranges) {
        _workingTimeReaders.push_back(
            std::make_unique<KVMSPISingleWorkingTimeReader>(range.from, range.to, *this));
    }
}

bool KVMSPISingleWeekDayReader::weekDayDayWorking(bool& value, TVError* error) const {
    if (!_workingTimeReaders.empty()) {
        value = true;
        return true;
    }
    return m_calendarReader.calendarWeekDayDayWorking(_dayType, value, error);
}

bool KVMSPISingleWeekDayReader::weekDayTimePeriodFromDate(TVDate& value, TVError* error) const {
    return m_calendarReader.calendarWeekDayTimePeriodFromDate(_dayType, value, error);
}

bool KVMSPISingleWeekDayReader::weekDayTimePeriodToDate(TVDate& value, TVError* error) const {
    return m_calendarReader.calendarWeekDayTimePeriodToDate(_dayType, value, error);
}
