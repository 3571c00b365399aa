#include "MPPExporter/writers/KVMPPVar2Data.h"

#include "MPPCommon/support/TVException.h"
#include "MPPImporter/format/MPPStreamLayout.h"

uint64_t KVMPPVar2Data::startNewElement() {
    const uint64_t index = KVMPPOffsetMarkedData::startNewElement();
    writeInteger(0);
    return index;
}

uint64_t KVMPPVar2Data::startNewElementWithType(uint32_t type, uint32_t id) {
    const uint64_t index = startNewElement();
    m_elemTypeAndID2Index[key(type, id)] = index;
    ++m_elemID2OccurenceNumber[id];
    return index;
}

void KVMPPVar2Data::closeCurrentElement() {
    if (writingElement()) {
        const uint64_t payload = dataSize() - kVarDataBlockHeaderSize - curElementOffset();
        writeInteger(static_cast<uint32_t>(payload), curElementOffset());
    }
    KVMPPOffsetMarkedData::closeCurrentElement();
}

uint64_t KVMPPVar2Data::offsetOfElementWithType(uint32_t type, uint32_t id) const {
    const auto found = m_elemTypeAndID2Index.find(key(type, id));
    if (found == m_elemTypeAndID2Index.end()) {
        throw TVException(kMPPDataRangeException, "No data in Var2Data for (type, id) pair specified");
    }
    return offsetOfElementAtIndex(found->second);
}

uint64_t KVMPPVar2Data::numberOfElementsForID(uint32_t id) const {
    const auto found = m_elemID2OccurenceNumber.find(id);
    return found != m_elemID2OccurenceNumber.end() ? found->second : 0;
}
