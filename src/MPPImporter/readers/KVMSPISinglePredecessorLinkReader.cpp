#include "MPPImporter/readers/KVMSPISinglePredecessorLinkReader.h"

#include "MPPImporter/query/frame/KVMSPIXQAdapter.h"
#include "MPPImporter/query/frame/KVMSPIXQAdapterFactory.h"

std::unique_ptr<KVMSPIXQAdapter> KVMSPISinglePredecessorLinkReader::newXQAdapter() {
    return KVMSPIXQAdapterFactory::installed().newAdapter(*this);
}
