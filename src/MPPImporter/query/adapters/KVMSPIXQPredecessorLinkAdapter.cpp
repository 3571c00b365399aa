#include "MPPImporter/query/adapters/KVMSPIXQPredecessorLinkAdapter.h"

namespace {

using Link = KVMSPISinglePredecessorLinkReader;

} // namespace

KVMSPIXQPredecessorLinkAdapter::KVMSPIXQPredecessorLinkAdapter(KVMSPIXQResponder& reader)
    : KVMSPIXQLeafAdapter(reader, "MSPIXQPredecessorLinkAdapter: Incorrect reader %s.", linkLeaves()) {}

const KVMSPIXQPredecessorLinkAdapter::Leaves& KVMSPIXQPredecessorLinkAdapter::linkLeaves() {
    static const Leaves leaves{
        .integers =
            {
                {"PredecessorUID", integerLeaf(&Link::preTaskUID)},
                {"Type", integerLeaf(&Link::relType)},
                {"LinkLag", integerLeaf(&Link::lag)},
                {"LagFormat", integerLeaf(&Link::lagFormat)},
            },
    };
    return leaves;
}
