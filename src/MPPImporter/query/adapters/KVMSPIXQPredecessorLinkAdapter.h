#pragma once

#include "MPPImporter/query/adapters/KVMSPIXQLeafAdapter.h"
#include "MPPImporter/readers/KVMSPISinglePredecessorLinkReader.h"

// Answers the integer leaves of one link to a predecessor: "PredecessorUID", "Type", "LinkLag" and
// "LagFormat", as the file holds them.
class KVMSPIXQPredecessorLinkAdapter : public KVMSPIXQLeafAdapter<KVMSPISinglePredecessorLinkReader> {
public:
    // The reader must be a KVMSPISinglePredecessorLinkReader.
    explicit KVMSPIXQPredecessorLinkAdapter(KVMSPIXQResponder& reader);

private:
    static const Leaves& linkLeaves();
};
