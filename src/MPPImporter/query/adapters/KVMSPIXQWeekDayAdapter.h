#pragma once

#include "MPPImporter/query/adapters/KVMSPIXQCalendarDayAdapter.h"
#include "MPPImporter/readers/KVMSPISingleWeekDayReader.h"

// Answers the queries of one day of a calendar's week: "DayType" and "DayWorking", its working
// ranges ("WorkingTimes/WorkingTime") and the dates of its period ("TimePeriod/FromDate",
// "TimePeriod/ToDate"; the file gives week days none).
class KVMSPIXQWeekDayAdapter : public KVMSPIXQCalendarDayAdapter<KVMSPISingleWeekDayReader> {
public:
    // The reader must be a KVMSPISingleWeekDayReader.
    explicit KVMSPIXQWeekDayAdapter(KVMSPIXQResponder& reader);

private:
    static const Leaves& weekDayLeaves();
};
