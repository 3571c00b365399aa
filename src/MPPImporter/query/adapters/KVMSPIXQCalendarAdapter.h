#pragma once

#include "MPPImporter/query/adapters/KVMSPIXQLeafAdapter.h"
#include "MPPImporter/readers/KVMSPISingleCalendarReader.h"

#include <memory>
#include <string>
#include <vector>

// Answers the queries of one calendar: its leaves ("Name", "UID", "BaseCalendarUID",
// "IsBaseCalendar"), its collections "WeekDays/WeekDay", "Exceptions/Exception" and
// "WorkWeeks/WorkWeek" (filtered by a predicate on the second component, and asked the rest of the
// path when there is more), and "//FromDate" and "//ToDate": the period dates of all three, as text.
class KVMSPIXQCalendarAdapter : public KVMSPIXQLeafAdapter<KVMSPISingleCalendarReader> {
public:
    // The reader must be a KVMSPISingleCalendarReader.
    explicit KVMSPIXQCalendarAdapter(KVMSPIXQResponder& reader);

    using KVMSPIXQLeafAdapter::objectsForXQuery;
    Objects objectsForXQuery(const std::string& xquery, TVError* error) override;

private:
    static const Leaves& calendarLeaves();

    // The children that pass the predicate of the second component; with more components, what each
    // of them answers to the rest of the path, gathered in order.
    template <typename Child>
    Objects collectionAnswer(const MSPXQComponents& components,
                             const std::vector<std::unique_ptr<Child>>& children, TVError* error);
    // The "FromDate" or "ToDate" texts of the week days, the exceptions and the work weeks, in that
    // order.
    Objects periodDates(const std::string& dateName, TVError* error);
};
