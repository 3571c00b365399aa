#include "MPPExporter/writers/KVMPP15VarMeta.h"

#include "MPPCommon/support/TVException.h"
#include "MPPImporter/format/MPPStreamLayout.h"

KVMPP15VarMeta::KVMPP15VarMeta(const KVMPPVar2Data& var2Data, uint16_t descriptionEnding)
    : m_var2Data(var2Data), m_descriptionEnding(descriptionEnding) {}

void KVMPP15VarMeta::writeMetaHeader() {
    writeInteger(kMPPMetaStreamMagicNumber);
    writeInteger(kVarMetaHeaderFlag);
    writeInteger(static_cast<uint32_t>(m_var2Data.elementsCount()));
    writeInteger(0);
    writeInteger(0);
    writeInteger(static_cast<uint32_t>(m_var2Data.cumulativeDataSize()));
}

void KVMPP15VarMeta::checkRoom() const {
    if (m_curElementIndex >= m_var2Data.elementsCount()) {
        throw TVException(kMPPDataRangeException, "Attempt to write too many elements into VarMeta");
    }
}

void KVMPP15VarMeta::writeEntry(uint32_t id, uint64_t offset, uint32_t type) {
    writeInteger(id);
    writeInteger(static_cast<uint32_t>(offset));
    write2ByteInteger(static_cast<uint16_t>(type));
    write2ByteInteger(m_descriptionEnding);
    ++m_curElementIndex;
}

void KVMPP15VarMeta::writeElementMetaWithType(uint32_t type, uint32_t id) {
    checkRoom();
    writeEntry(id, m_var2Data.offsetOfElementWithType(type, id), type);
}

void KVMPP15VarMeta::writeNextElementMetaWithID(uint32_t id, uint32_t type) {
    checkRoom();
    writeEntry(id, m_var2Data.offsetOfElementAtIndex(m_curElementIndex), type);
}
