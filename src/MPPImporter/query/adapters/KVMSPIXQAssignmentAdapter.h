#pragma once

#include "MPPImporter/query/adapters/KVMSPIXQLeafAdapter.h"
#include "MPPImporter/readers/KVMSPISingleAssignmentReader.h"

// Answers the queries of one assignment: its leaves and its phases of work ("TimephasedData").
class KVMSPIXQAssignmentAdapter : public KVMSPIXQLeafAdapter<KVMSPISingleAssignmentReader> {
public:
    // The reader must be a KVMSPISingleAssignmentReader.
    explicit KVMSPIXQAssignmentAdapter(KVMSPIXQResponder& reader);

private:
    static const Leaves& assignmentLeaves();
};
