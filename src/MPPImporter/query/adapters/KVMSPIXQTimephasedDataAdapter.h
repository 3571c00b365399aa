#pragma once

#include "MPPImporter/query/adapters/KVMSPIXQLeafAdapter.h"
#include "MPPImporter/readers/KVMSPISingleTimephasedDataReader.h"

// Answers the string leaves of one phase of an assignment's work: "Start", "Finish" and "Value".
class KVMSPIXQTimephasedDataAdapter : public KVMSPIXQLeafAdapter<KVMSPISingleTimephasedDataReader> {
public:
    // The reader must be a KVMSPISingleTimephasedDataReader.
    explicit KVMSPIXQTimephasedDataAdapter(KVMSPIXQResponder& reader);

private:
    static const Leaves& phaseLeaves();
};
