#include "MPPImporter/query/frame/KVMSPIXQAdapterFactory.h"

#include "MPPCommon/support/TVException.h"

#include <atomic>

namespace {

std::atomic<const KVMSPIXQAdapterFactory*> installedFactory{nullptr};

} // namespace

void KVMSPIXQAdapterFactory::install(const KVMSPIXQAdapterFactory& factory) {
    installedFactory.store(&factory);
}

const KVMSPIXQAdapterFactory& KVMSPIXQAdapterFactory::installed() {
    const KVMSPIXQAdapterFactory* factory = installedFactory.load();
    tvAssert(factory != nullptr, "Query adapters must be installed.");
    return *factory;
}
