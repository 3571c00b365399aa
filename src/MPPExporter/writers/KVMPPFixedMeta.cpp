#include "MPPExporter/writers/KVMPPFixedMeta.h"

#include "MPPCommon/support/TVException.h"
#include "MPPImporter/format/MPPStreamLayout.h"

KVMPPFixedMeta::KVMPPFixedMeta(const KVMPPFixedData& fixedData) : m_fixedData(fixedData) {}

void KVMPPFixedMeta::writeMetaHeader() {
    writeInteger(kMPPMetaStreamMagicNumber);
    writeInteger(kFixedMetaHeaderFlag);
    writeInteger(static_cast<uint32_t>(m_fixedData.elementsCount()));
    writeInteger(static_cast<uint32_t>(m_fixedData.cumulativeDataSize()));
}

void KVMPPFixedMeta::writeNextElementStartWithInt(uint32_t value) {
    if (m_curElementIndex >= m_fixedData.elementsCount()) {
        throw TVException(kMPPDataRangeException, "Attempt to write too many elements into FixedMeta");
    }
    writeInteger(value);
    writeInteger(static_cast<uint32_t>(m_fixedData.offsetOfElementAtIndex(m_curElementIndex++)));
}

void KVMPPFixedMeta::writeEntry(uint32_t value, std::span<const uint8_t> entry) {
    writeNextElementStartWithInt(value);
    const std::span<const uint8_t> own = entry.subspan(kEntryStart);
    writeData(own.data(), own.size());
}
