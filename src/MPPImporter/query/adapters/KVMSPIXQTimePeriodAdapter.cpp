#include "MPPImporter/query/adapters/KVMSPIXQTimePeriodAdapter.h"

#include "MPPCommon/date/DateExtensions.h"

namespace {
using TimePeriod = KVMSPISingleTimePeriodReader;
}

KVMSPIXQTimePeriodAdapter::KVMSPIXQTimePeriodAdapter(KVMSPIXQResponder& reader)
    : KVMSPIXQLeafAdapter(reader, "MSPIXQTimePeriodAdapter: Incorrect reader %s.", timePeriodLeaves()) {}

const KVMSPIXQTimePeriodAdapter::Leaves& KVMSPIXQTimePeriodAdapter::timePeriodLeaves() {
    static const Leaves leaves{
        .strings =
            {
                {"FromDate", stringLeaf(&TimePeriod::fromDate, initWithDateTime)},
                {"ToDate", stringLeaf(&TimePeriod::toDate, initWithDateTime)},
            },
    };
    return leaves;
}
