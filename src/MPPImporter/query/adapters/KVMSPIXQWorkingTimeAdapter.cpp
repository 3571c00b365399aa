#include "MPPImporter/query/adapters/KVMSPIXQWorkingTimeAdapter.h"

#include "MPPCommon/date/StringExtensions.h"

namespace {
using WorkingTime = KVMSPISingleWorkingTimeReader;
}

KVMSPIXQWorkingTimeAdapter::KVMSPIXQWorkingTimeAdapter(KVMSPIXQResponder& reader)
    : KVMSPIXQLeafAdapter(reader, "MSPIXQWorkingTimeAdapter: Incorrect reader %s.", workingTimeLeaves()) {}

const KVMSPIXQWorkingTimeAdapter::Leaves& KVMSPIXQWorkingTimeAdapter::workingTimeLeaves() {
    static const Leaves leaves{
        .strings =
            {
                {"FromTime", stringLeaf(&WorkingTime::fromTimeSpan, initWithTimeSpan)},
                {"ToTime", stringLeaf(&WorkingTime::toTimeSpan, initWithTimeSpan)},
            },
    };
    return leaves;
}
