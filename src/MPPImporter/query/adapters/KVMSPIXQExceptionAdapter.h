#pragma once

#include "MPPImporter/query/adapters/KVMSPIXQCalendarDayAdapter.h"
#include "MPPImporter/readers/KVMSPISingleExceptionReader.h"

// Answers the paths of one calendar exception: "TimePeriod" (its period object, if it has one),
// "TimePeriod/FromDate" and "TimePeriod/ToDate" (the period's dates as text) and
// "WorkingTimes/WorkingTime" (its working ranges). It answers no leaves: the mappers read the
// exception's recurrence through the reader's accessors.
class KVMSPIXQExceptionAdapter : public KVMSPIXQCalendarDayAdapter<KVMSPISingleExceptionReader> {
public:
    // The reader must be a KVMSPISingleExceptionReader.
    explicit KVMSPIXQExceptionAdapter(KVMSPIXQResponder& reader);

protected:
    Objects timePeriodObjects(const std::string& xquery, TVError* error) override;
};
