#pragma once

#include "MPPImporter/query/adapters/KVMSPIXQLeafAdapter.h"
#include "MPPImporter/readers/KVMSPISingleWorkingTimeReader.h"

// Answers "FromTime" and "ToTime" of a working range, as times of day ("08:00:00").
class KVMSPIXQWorkingTimeAdapter : public KVMSPIXQLeafAdapter<KVMSPISingleWorkingTimeReader> {
public:
    // The reader must be a KVMSPISingleWorkingTimeReader.
    explicit KVMSPIXQWorkingTimeAdapter(KVMSPIXQResponder& reader);

private:
    static const Leaves& workingTimeLeaves();
};
