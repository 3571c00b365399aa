#pragma once

#include "MPPImporter/query/adapters/KVMSPIXQLeafAdapter.h"
#include "MPPImporter/readers/KVMSPISingleTaskReader.h"

// Answers the queries of one task: its leaves, its links ("PredecessorLink") and its custom fields
// ("ExtendedAttribute").
class KVMSPIXQTaskAdapter : public KVMSPIXQLeafAdapter<KVMSPISingleTaskReader> {
public:
    // The reader must be a KVMSPISingleTaskReader.
    explicit KVMSPIXQTaskAdapter(KVMSPIXQResponder& reader);

    using KVMSPIXQLeafAdapter::singleObjectForXQuery;
    // "PreLeveledStart" and "PreLeveledFinish" as a text object, or none when the task has no such
    // date, so that a mapper can test them for presence; anything else as the base answers it.
    std::shared_ptr<KVMSPIXQuery> singleObjectForXQuery(const std::string& xquery, TVError* error) override;

private:
    static const Leaves& taskLeaves();
};
