#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPExporter/writers/KVMPP15VarMeta.h"
#include "MPPExporter/writers/KVMPPVar2Data.h"
#include "MPPImporter/format/MPPFieldCatalog.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

// The elements of a variable data stream in the order written, so that its meta stream can name them
// all in the same order. An element is filed under its (type, ID) pair, or found by its place in the
// element order where the application writes it so.
class MPPVarElementList {
public:
    using Fill = std::function<void(KVMPPVar2Data&)>;

    // `layoutVersion` is the application whose layout places the catalogue's fields (15 or 16).
    MPPVarElementList(KVMPPVar2Data& data, int32_t layoutVersion)
        : m_data(data), m_layoutVersion(layoutVersion) {}

    // One element: `fill` writes its payload.
    void add(uint32_t id, uint32_t type, const Fill& fill);
    // One element that the meta stream names by its place in the element order.
    void addUnfiled(uint32_t id, uint32_t type, const Fill& fill);
    void addZeroes(uint32_t id, uint32_t type, size_t count);
    void addShort(uint32_t id, uint32_t type, uint16_t value);
    void addInteger(uint32_t id, uint32_t type, uint32_t value);
    void addDouble(uint32_t id, uint32_t type, double value);
    void addDate(uint32_t id, uint32_t type, std::optional<TVDate> date);
    // A catalogue field's element, or that of its copy `number`, under the property number of its row.
    void addField(uint32_t id, MPPField field, const MPPFieldValue& value, int64_t number = 0);
    // The same, named by its place in the element order.
    void addUnfiledField(uint32_t id, MPPField field, const MPPFieldValue& value, int64_t number = 0);
    // The meta entries of the elements, in element order.
    void writeMeta(KVMPP15VarMeta& meta) const;

private:
    struct Element {
        uint32_t id;
        uint32_t type;
        bool filed;
    };

    void addField(uint32_t id, MPPField field, const MPPFieldValue& value, int64_t number, bool filed);

    KVMPPVar2Data& m_data;
    int32_t m_layoutVersion;
    std::vector<Element> m_elements;
};
