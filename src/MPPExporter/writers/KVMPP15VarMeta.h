#pragma once

#include "MPPExporter/writers/KVMPPData.h"
#include "MPPExporter/writers/KVMPPVar2Data.h"

// The meta stream of a Var2Data stream: a header, then a 12-byte entry per element (ID, offset, type,
// and an ending the writer gives). The data block must outlive the meta block.
class KVMPP15VarMeta : public KVMPPData {
public:
    KVMPP15VarMeta(const KVMPPVar2Data& var2Data, uint16_t descriptionEnding);

    void writeMetaHeader();
    // The entry of the element filed under (type, ID).
    void writeElementMetaWithType(uint32_t type, uint32_t id);
    // The entry of the element at the current index, for elements written without a (type, ID)
    // filing: the entries must come in exactly the order of the elements.
    void writeNextElementMetaWithID(uint32_t id, uint32_t type);
    uint64_t curElementIndex() const { return m_curElementIndex; }

private:
    // One entry too many raises kMPPDataRangeException.
    void checkRoom() const;
    void writeEntry(uint32_t id, uint64_t offset, uint32_t type);

    const KVMPPVar2Data& m_var2Data;
    uint64_t m_curElementIndex = 0;
    uint16_t m_descriptionEnding;
};
