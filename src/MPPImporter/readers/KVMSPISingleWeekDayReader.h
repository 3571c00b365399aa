#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPCommon/support/TVError.h"
#include "MPPImporter/readers/KVMSPISimpleObjectReaderBase.h"
#include "MPPImporter/readers/KVMSPISingleWorkingTimeReader.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class KVMSPISingleCalendarReader;

// One day of a calendar's week, day type 1 (Sunday) to 7 (Saturday), with its working ranges, read
// when the reader is made.
class KVMSPISingleWeekDayReader : public KVMSPISimpleObjectReaderBase {
public:
    using WorkingTimeReaders = std::vector<std::unique_ptr<KVMSPISingleWorkingTimeReader>>;

    // The calendar reader must outlive this one.
    KVMSPISingleWeekDayReader(int32_t dayType, KVMSPISingleCalendarReader& calendarReader);

    int32_t dayType() const { return _dayType; }
    const WorkingTimeReaders& workingTimeReaders() const { return _workingTimeReaders; }

    // True with a working range; otherwise as the calendar (or its base) tells.
    bool weekDayDayWorking(bool& value, TVError* error = nullptr) const;
    bool weekDayTimePeriodFromDate(TVDate& value, TVError* error = nullptr) const;
    bool weekDayTimePeriodToDate(TVDate& value, TVError* error = nullptr) const;

    // "DayType>=a and DayType<=b" (the day type lies between a and b) or "DayType=a and DayWorking=w"
    // (the day type is a, and whether the day works is w non-zero), read from the first character;
    // none for any other text.
    static KVMSPIXQPredicate predicateWithString(const std::optional<std::string>& text);

protected:
    std::unique_ptr<KVMSPIXQAdapter> newXQAdapter() override;

private:
    KVMSPISingleCalendarReader& m_calendarReader;
    int32_t _dayType;
    WorkingTimeReaders _workingTimeReaders;
};
