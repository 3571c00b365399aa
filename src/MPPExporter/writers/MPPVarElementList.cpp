#include "MPPExporter/writers/MPPVarElementList.h"

#include "MPPExporter/writers/MPPFieldWrites.h"

void MPPVarElementList::add(uint32_t id, uint32_t type, const Fill& fill) {
    m_data.startNewElementWithType(type, id);
    fill(m_data);
    m_data.closeCurrentElement();
    m_elements.push_back({id, type, true});
}

void MPPVarElementList::addUnfiled(uint32_t id, uint32_t type, const Fill& fill) {
    m_data.startNewElement();
    fill(m_data);
    m_data.closeCurrentElement();
    m_elements.push_back({id, type, false});
}

void MPPVarElementList::addZeroes(uint32_t id, uint32_t type, size_t count) {
    add(id, type, [count](KVMPPVar2Data& data) { data.writeZeroesBlockOfSize(count); });
}

void MPPVarElementList::addShort(uint32_t id, uint32_t type, uint16_t value) {
    add(id, type, [value](KVMPPVar2Data& data) { data.write2ByteInteger(value); });
}

void MPPVarElementList::addInteger(uint32_t id, uint32_t type, uint32_t value) {
    add(id, type, [value](KVMPPVar2Data& data) { data.writeInteger(value); });
}

void MPPVarElementList::addDouble(uint32_t id, uint32_t type, double value) {
    add(id, type, [value](KVMPPVar2Data& data) { data.writeDouble(value); });
}

void MPPVarElementList::addDate(uint32_t id, uint32_t type, std::optional<TVDate> date) {
    add(id, type, [date](KVMPPVar2Data& data) { data.writeDate(date); });
}

void MPPVarElementList::addField(uint32_t id, MPPField field, const MPPFieldValue& value, int64_t number) {
    addField(id, field, value, number, true);
}

void MPPVarElementList::addUnfiledField(uint32_t id, MPPField field, const MPPFieldValue& value,
                                        int64_t number) {
    addField(id, field, value, number, false);
}

void MPPVarElementList::addField(uint32_t id, MPPField field, const MPPFieldValue& value, int64_t number,
                                 bool filed) {
    const std::vector<uint8_t> bytes = encodeMPPFieldPayload(m_layoutVersion, field, value, number);
    const Fill fill = [&bytes](KVMPPVar2Data& data) { data.writeData(bytes.data(), bytes.size()); };
    const uint32_t type = mppFieldPropertyNumber(m_layoutVersion, field, number);
    filed ? add(id, type, fill) : addUnfiled(id, type, fill);
}

void MPPVarElementList::writeMeta(KVMPP15VarMeta& meta) const {
    meta.writeMetaHeader();
    for (const Element& element : m_elements) {
        if (element.filed) {
            meta.writeElementMetaWithType(element.type, element.id);
        } else {
            meta.writeNextElementMetaWithID(element.id, element.type);
        }
    }
}
