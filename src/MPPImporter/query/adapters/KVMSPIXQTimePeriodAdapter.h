#pragma once

#include "MPPImporter/query/adapters/KVMSPIXQLeafAdapter.h"
#include "MPPImporter/readers/KVMSPISingleTimePeriodReader.h"

// Answers "FromDate" and "ToDate" of an exception's period, as date texts in the interchange form.
class KVMSPIXQTimePeriodAdapter : public KVMSPIXQLeafAdapter<KVMSPISingleTimePeriodReader> {
public:
    // The reader must be a KVMSPISingleTimePeriodReader.
    explicit KVMSPIXQTimePeriodAdapter(KVMSPIXQResponder& reader);

private:
    static const Leaves& timePeriodLeaves();
};
