#include "MPPExporter/writers/KVMPP15SequentialPropsReader.h"

#include <algorithm>

namespace {
constexpr uint64_t kStreamHeaderSize = 16;
constexpr uint64_t kMagicOffset = 8;
constexpr uint64_t kCountOffset = 12;
constexpr uint64_t kPropertyHeaderSize = 12;
// The one property type whose header gives its size in the ending word.
constexpr uint32_t kSizeInEndingType = 0x3540000B;
} // namespace

KVMPP15SequentialPropsReader::KVMPP15SequentialPropsReader(KVMPPFormatReader& reader) {
    if (reader.isDirectory() || !reader.getData(m_allData)) {
        m_allData.clear();
    }
    if (m_allData.size() >= kStreamHeaderSize) {
        m_magicHeaderInt = wordAt(kMagicOffset);
        m_propsCount = wordAt(kCountOffset);
    }
}

uint32_t KVMPP15SequentialPropsReader::wordAt(uint64_t offset) const {
    return static_cast<uint32_t>(m_allData[offset]) | static_cast<uint32_t>(m_allData[offset + 1]) << 8 |
           static_cast<uint32_t>(m_allData[offset + 2]) << 16 |
           static_cast<uint32_t>(m_allData[offset + 3]) << 24;
}

bool KVMPP15SequentialPropsReader::readNextProperty() {
    const uint64_t start = m_nextPropertyStartOffset;
    if (start + kPropertyHeaderSize > m_allData.size() || m_nextPropertyIndex >= m_propsCount) {
        return false;
    }
    std::copy_n(m_allData.begin() + static_cast<std::ptrdiff_t>(start), kPropertyHeaderSize,
                m_curPropertyHeader.begin());
    m_curPropertyType = wordAt(start + 4);
    const uint64_t size = wordAt(m_curPropertyType == kSizeInEndingType ? start + 8 : start);
    const uint64_t dataStart = start + kPropertyHeaderSize;
    if (size > m_allData.size() - dataStart) {
        return false;
    }
    m_curPropertyData.assign(m_allData.begin() + static_cast<std::ptrdiff_t>(dataStart),
                             m_allData.begin() + static_cast<std::ptrdiff_t>(dataStart + size));
    m_nextPropertyStartOffset = dataStart + size + (size % 2);
    ++m_nextPropertyIndex;
    return true;
}
