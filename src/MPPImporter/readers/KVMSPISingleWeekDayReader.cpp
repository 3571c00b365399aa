#include "MPPImporter/readers/KVMSPISingleWeekDayReader.h"

#include "MPPCommon/support/PosixRegex.h"
#include "MPPImporter/query/frame/KVMSPIXQAdapter.h"
#include "MPPImporter/query/frame/KVMSPIXQAdapterFactory.h"
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

KVMSPIXQPredicate KVMSPISingleWeekDayReader::predicateWithString(const std::optional<std::string>& text) {
    if (!text) {
        return {};
    }
    static const PosixRegex dayTypeRange("DayType>=([[:digit:]]+) and DayType<=([[:digit:]]+)", 3);
    static const PosixRegex dayTypeWorking("DayType=([[:digit:]]+) and DayWorking=([[:digit:]]+)", 3);
    if (const std::optional<std::vector<std::string>> groups = predicateGroups(dayTypeRange, 2, *text)) {
        const int32_t first = predicateIntValue((*groups)[0]);
        const int32_t last = predicateIntValue((*groups)[1]);
        return [first, last](KVMSPIXQuery& object) {
            const int32_t dayType = predicateObject<KVMSPISingleWeekDayReader>(object).dayType();
            return first <= dayType && dayType <= last;
        };
    }
    if (const std::optional<std::vector<std::string>> groups = predicateGroups(dayTypeWorking, 2, *text)) {
        const int32_t dayType = predicateIntValue((*groups)[0]);
        const bool working = predicateIntValue((*groups)[1]) != 0;
        return [dayType, working](KVMSPIXQuery& object) {
            const auto& day = predicateObject<KVMSPISingleWeekDayReader>(object);
            bool dayWorking = false;
            return day.dayType() == dayType && day.weekDayDayWorking(dayWorking) && dayWorking == working;
        };
    }
    return KVMSPISimpleObjectReaderBase::predicateWithString(text);
}

std::unique_ptr<KVMSPIXQAdapter> KVMSPISingleWeekDayReader::newXQAdapter() {
    return KVMSPIXQAdapterFactory::installed().newAdapter(*this);
}
