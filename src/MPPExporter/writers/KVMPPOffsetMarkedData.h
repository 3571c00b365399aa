#pragma once

#include "MPPExporter/writers/KVMPPData.h"

#include <vector>

// Name of the exception of misuse of the elements of a block.
inline constexpr const char* kOffsetMarkedDataException = "OffsetMarkedDataException";

// A block made of elements whose offsets it remembers. Offsets are counted over everything ever
// written to the block, so that a meta stream can be built after its data stream was flushed.
class KVMPPOffsetMarkedData : public KVMPPData {
public:
    // Opens an element at the current end and answers its index.
    virtual uint64_t startNewElement();
    virtual void closeCurrentElement();
    uint64_t offsetOfElementAtIndex(uint64_t index) const;
    // Refused while an element is open.
    void clearBuffer() override;
    uint64_t elementsCount() const { return m_elemIndex2Offset.size(); }

protected:
    bool writingElement() const { return m_writingElement; }
    // Where the open element starts in the current buffer.
    uint64_t curElementOffset() const { return m_curElementOffset; }

private:
    // The cumulative offset of each element, by index.
    std::vector<uint64_t> m_elemIndex2Offset;
    uint64_t m_curElementCumulativeOffset = 0;
    uint64_t m_curElementOffset = 0;
    bool m_writingElement = false;
};
