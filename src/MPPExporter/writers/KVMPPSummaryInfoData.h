#pragma once

#include "MPPExporter/writers/KVMPPOffsetMarkedData.h"

// An OLE property set stream of one section: the set's header, then at offset 48 the section's size
// and property count, which close() fills.
class KVMPPSummaryInfoData : public KVMPPOffsetMarkedData {
public:
    // The header of the summary information set, or of the document summary information set.
    void open();
    void openDoc();
    void close(uint16_t propertyCount);
    bool closed() const { return m_closed; }

private:
    void writeHeader(std::span<const uint8_t> formatID);

    bool m_closed = true;
};
