#pragma once

#include "MPPExporter/writers/KVMPPOffsetMarkedData.h"

#include <unordered_map>

// The variable data stream ("Var2Data"): elements of a 4-byte payload length and the payload, each
// the value of one property (type) of one object (ID).
class KVMPPVar2Data : public KVMPPOffsetMarkedData {
public:
    // An element not filed under a (type, ID) pair: its meta entry must follow the element order.
    uint64_t startNewElement() override;
    // An element that the meta stream finds by its pair; the same pair again files the new element.
    uint64_t startNewElementWithType(uint32_t type, uint32_t id);
    // Writes the payload length into the element's first word.
    void closeCurrentElement() override;
    uint64_t offsetOfElementWithType(uint32_t type, uint32_t id) const;
    uint64_t numberOfElementsForID(uint32_t id) const;

private:
    static uint64_t key(uint32_t type, uint32_t id) { return (uint64_t{type} << 32) + id; }

    std::unordered_map<uint64_t, uint64_t> m_elemTypeAndID2Index;
    std::unordered_map<uint32_t, uint64_t> m_elemID2OccurenceNumber;
};
