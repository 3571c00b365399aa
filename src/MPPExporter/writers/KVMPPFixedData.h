#pragma once

#include "MPPExporter/writers/KVMPPOffsetMarkedData.h"

#include <cstdint>
#include <span>

// A fixed data stream ("FixedData", "Fixed2Data"): records end to end, one element each.
class KVMPPFixedData : public KVMPPOffsetMarkedData {
public:
    // One record as its element.
    void writeRecord(std::span<const uint8_t> record) {
        startNewElement();
        writeData(record.data(), record.size());
        closeCurrentElement();
    }
};
