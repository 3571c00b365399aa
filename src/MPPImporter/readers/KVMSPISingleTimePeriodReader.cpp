#include "MPPImporter/readers/KVMSPISingleTimePeriodReader.h"

#include "MPPImporter/query/frame/KVMSPIXQAdapter.h"
#include "MPPImporter/query/frame/KVMSPIXQAdapterFactory.h"

std::unique_ptr<KVMSPIXQAdapter> KVMSPISingleTimePeriodReader::newXQAdapter() {
    return KVMSPIXQAdapterFactory::installed().newAdapter(*this);
}
