#include "MPPImporter/query/adapters/KVMSPIXQWeekDayAdapter.h"

namespace {
using WeekDay = KVMSPISingleWeekDayReader;
}

KVMSPIXQWeekDayAdapter::KVMSPIXQWeekDayAdapter(KVMSPIXQResponder& reader)
    : KVMSPIXQCalendarDayAdapter(reader, "MSPIXQWeekDayAdapter: Incorrect reader %s.", weekDayLeaves(),
                                 &WeekDay::weekDayTimePeriodFromDate, &WeekDay::weekDayTimePeriodToDate) {}

const KVMSPIXQWeekDayAdapter::Leaves& KVMSPIXQWeekDayAdapter::weekDayLeaves() {
    static const Leaves leaves{
        .integers = {{"DayType", integerLeaf(&WeekDay::dayType)}},
        .booleans = {{"DayWorking", booleanLeaf(&WeekDay::weekDayDayWorking)}},
    };
    return leaves;
}
