#pragma once

#include "MPPExporter/writers/KVMPPOffsetMarkedData.h"

// A property stream ("Props"): a 16-byte header with the sizes, a magic number and the element
// count, then elements of a 12-byte header (payload size, type, an ending) and the payload.
class KVMPPProps : public KVMPPOffsetMarkedData {
public:
    static constexpr uint32_t kDefaultMagicInt = 92532;

    explicit KVMPPProps(uint32_t magicInt = kDefaultMagicInt);

    // Starts the stream with a header of zero sizes.
    void open();
    // Fills the header's sizes and element count.
    void close();
    // Does nothing while the stream is open: the header is written over at close.
    void clearBuffer() override;
    void startNewElementForType(uint32_t type, uint32_t headerEnding);
    // Writes the payload size into the element's header, and once more in place of the ending when
    // writeSizeTwice is set.
    void closeCurrentElement() override;
    bool writeSizeTwice() const { return m_writeSizeTwice; }
    void setWriteSizeTwice(bool twice) { m_writeSizeTwice = twice; }

private:
    bool m_closed = true;
    uint32_t m_magicInt;
    bool m_writeSizeTwice = false;
};
