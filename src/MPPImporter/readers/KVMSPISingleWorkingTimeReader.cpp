#include "MPPImporter/readers/KVMSPISingleWorkingTimeReader.h"

#include "MPPImporter/query/frame/KVMSPIXQAdapter.h"
#include "MPPImporter/query/frame/KVMSPIXQAdapterFactory.h"

std::unique_ptr<KVMSPIXQAdapter> KVMSPISingleWorkingTimeReader::newXQAdapter() {
    return KVMSPIXQAdapterFactory::installed().newAdapter(*this);
}
