#pragma once

#include "MPPImporter/file/KVMPPFixedDataReader.h"
#include "MPPImporter/file/KVMSPIMPPDataDirectoryReader.h"
#include "MPPImporter/readers/KVMSPIMPPAbsConstraintReader.h"

#include <cstdint>
#include <vector>

// The links between tasks of the "TBkndCons" storage, read once at open into a map from the dependent
// task to its links, in the order of the store's UIDs. An item whose meta record is marked (a
// non-zero first word), that can't be read, or that lacks one of its two tasks is no link.
class KVMSPIMPPConstraintReader : public KVMSPIMPPDataDirectoryReader, public KVMSPIMPPAbsConstraintReader {
public:
    KVMSPIMPPConstraintReader(std::unique_ptr<SSLStorage> directory, std::string name,
                              KVMSPIParentReader* parentReader);
    ~KVMSPIMPPConstraintReader() override;

    const KVMSPITaskPredecessorMap& taskPredcessorMap() const override { return m_taskPredcessorMap; }

private:
    void readLinks(KVMPPFixedDataReader& fixed);
    // False when the item's meta record can be read and is marked.
    static bool isLiveLink(KVMPPFixedDataReader& fixed, const MPPDataItemInfo& info);
    void addLink(const std::vector<uint8_t>& item);

    KVMSPITaskPredecessorMap m_taskPredcessorMap;
};
