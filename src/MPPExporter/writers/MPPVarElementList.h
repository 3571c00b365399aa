#pragma once

#include "MPPExporter/writers/KVMPP15VarMeta.h"
#include "MPPExporter/writers/KVMPPVar2Data.h"

#include <functional>
#include <vector>

// The elements of a variable data stream in the order written, each filed under its (type, ID) pair,
// so that its meta stream can name them all in the same order.
class MPPVarElementList {
public:
    explicit MPPVarElementList(KVMPPVar2Data& data) : m_data(data) {}

    // One element: `fill` writes its payload.
    void add(uint32_t id, uint32_t type, const std::function<void(KVMPPVar2Data&)>& fill);
    void addZeroes(uint32_t id, uint32_t type, size_t count);
    void addInteger(uint32_t id, uint32_t type, uint32_t value);
    void addDouble(uint32_t id, uint32_t type, double value);
    // The meta entries of the elements, in element order.
    void writeMeta(KVMPP15VarMeta& meta) const;

private:
    KVMPPVar2Data& m_data;
    std::vector<std::pair<uint32_t, uint32_t>> m_elements;
};
