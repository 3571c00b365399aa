#include "MPPExporter/writers/MPPVarElementList.h"

void MPPVarElementList::add(uint32_t id, uint32_t type, const std::function<void(KVMPPVar2Data&)>& fill) {
    m_data.startNewElementWithType(type, id);
    fill(m_data);
    m_data.closeCurrentElement();
    m_elements.emplace_back(id, type);
}

void MPPVarElementList::addZeroes(uint32_t id, uint32_t type, size_t count) {
    add(id, type, [count](KVMPPVar2Data& data) { data.writeZeroesBlockOfSize(count); });
}

void MPPVarElementList::addInteger(uint32_t id, uint32_t type, uint32_t value) {
    add(id, type, [value](KVMPPVar2Data& data) { data.writeInteger(value); });
}

void MPPVarElementList::addDouble(uint32_t id, uint32_t type, double value) {
    add(id, type, [value](KVMPPVar2Data& data) { data.writeDouble(value); });
}

void MPPVarElementList::writeMeta(KVMPP15VarMeta& meta) const {
    meta.writeMetaHeader();
    for (const auto& [id, type] : m_elements) {
        meta.writeElementMetaWithType(type, id);
    }
}
