#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

class KVMSPISinglePredecessorLinkReader;

// Task UID to the links that make it depend on its predecessors. The link objects are shared: task
// readers keep the same objects, not copies.
using KVMSPITaskPredecessorMap =
    std::unordered_map<int32_t, std::vector<std::shared_ptr<KVMSPISinglePredecessorLinkReader>>>;

// What the task readers ask of the links between tasks.
class KVMSPIMPPAbsConstraintReader {
public:
    virtual ~KVMSPIMPPAbsConstraintReader() = default;

    virtual const KVMSPITaskPredecessorMap& taskPredcessorMap() const = 0;
};
