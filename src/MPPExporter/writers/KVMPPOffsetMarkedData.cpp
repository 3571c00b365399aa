#include "MPPExporter/writers/KVMPPOffsetMarkedData.h"

#include "MPPCommon/support/TVException.h"

uint64_t KVMPPOffsetMarkedData::startNewElement() {
    if (m_writingElement) {
        throw TVException(kOffsetMarkedDataException,
                          "Attempt to create a new element while the current element is not closed");
    }
    m_curElementCumulativeOffset = cumulativeDataSize();
    m_curElementOffset = dataSize();
    m_writingElement = true;
    m_elemIndex2Offset.push_back(m_curElementCumulativeOffset);
    return m_elemIndex2Offset.size() - 1;
}

void KVMPPOffsetMarkedData::closeCurrentElement() {
    if (!m_writingElement) {
        throw TVException(kOffsetMarkedDataException, "Attempt to close an already closed element");
    }
    m_writingElement = false;
}

uint64_t KVMPPOffsetMarkedData::offsetOfElementAtIndex(uint64_t index) const {
    if (index >= elementsCount()) {
        throw TVException(kMPPDataRangeException, "Index out of bounds");
    }
    return m_elemIndex2Offset[index];
}

void KVMPPOffsetMarkedData::clearBuffer() {
    if (m_writingElement) {
        throw TVException(kOffsetMarkedDataException, "Attempt to clear buffer while element is not closed");
    }
    KVMPPData::clearBuffer();
}
