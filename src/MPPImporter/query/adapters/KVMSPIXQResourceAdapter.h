#pragma once

#include "MPPImporter/query/adapters/KVMSPIXQLeafAdapter.h"
#include "MPPImporter/readers/KVMSPISingleResourceReader.h"

// Answers the queries of one resource: its leaves and its custom fields ("ExtendedAttribute").
class KVMSPIXQResourceAdapter : public KVMSPIXQLeafAdapter<KVMSPISingleResourceReader> {
public:
    // The reader must be a KVMSPISingleResourceReader.
    explicit KVMSPIXQResourceAdapter(KVMSPIXQResponder& reader);

private:
    static const Leaves& resourceLeaves();
};
