#pragma once

#include "MPPExporter/writers/KVMPPData.h"
#include "MPPExporter/writers/KVMPPFixedData.h"

#include <cstdint>
#include <span>

// The meta stream of a fixed data stream: a header, then one entry per element of the data block,
// in element order. Each entry starts with a caller's word and the element's offset; the writer adds
// the rest. The data block must outlive the meta block.
class KVMPPFixedMeta : public KVMPPData {
public:
    // Where an entry's own bytes start, behind the caller's word and the offset.
    static constexpr size_t kEntryStart = 8;

    explicit KVMPPFixedMeta(const KVMPPFixedData& fixedData);

    // The header: magic number, 4, the element count and the size of the data block.
    void writeMetaHeader();
    // The next element's entry start: `value`, then the element's offset. One entry too many raises
    // kMPPDataRangeException.
    void writeNextElementStartWithInt(uint32_t value);
    // The next element's whole entry: `value`, the offset, then the bytes of `entry` from kEntryStart
    // (the bytes in front of it stand for the two words).
    void writeEntry(uint32_t value, std::span<const uint8_t> entry);
    uint64_t curElementIndex() const { return m_curElementIndex; }

private:
    const KVMPPFixedData& m_fixedData;
    uint64_t m_curElementIndex = 0;
};
