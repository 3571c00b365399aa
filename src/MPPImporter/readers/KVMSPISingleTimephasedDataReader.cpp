#include "MPPImporter/readers/KVMSPISingleTimephasedDataReader.h"

#include "MPPImporter/query/frame/KVMSPIXQAdapter.h"
#include "MPPImporter/query/frame/KVMSPIXQAdapterFactory.h"

std::unique_ptr<KVMSPIXQAdapter> KVMSPISingleTimephasedDataReader::newXQAdapter() {
    return KVMSPIXQAdapterFactory::installed().newAdapter(*this);
}
