#include "MPPImporter/file/KVMSPIMPP9From14PropertyList.h"

#include "MPPImporter/format/MPPFormatConstants.h"

namespace {

constexpr int kFormat9Column = 0;
constexpr int kApplication14Column = 2;
// How much higher than in format 9 the task variable data is numbered.
constexpr uint32_t kNumberShift = 15;
// The task keys: fields, and the block of extended fields; the baseline 0 keys (cost, duration, finish,
// start, work) with their numbers.
constexpr int32_t kFirstTaskFieldKey = 104;
constexpr int32_t kLastTaskFieldKey = 253;
constexpr int32_t kTaskExtendedFieldsKey = 256;
constexpr std::array<std::pair<int32_t, uint32_t>, 5> kBaseline0Numbers = {
    {{109, 15}, {111, 7}, {113, 10}, {115, 9}, {396, 14}}};

bool isTaskKey(int32_t key) {
    return (key >= kFirstTaskFieldKey && key <= kLastTaskFieldKey) || key == kTaskExtendedFieldsKey;
}

// Format 9's names and streams, with the flag bits of application 14; the bits of the task marks are
// those of the catalogue rows of format 9, which application 14 shares.
const MPPVersionTables& tables() {
    static const MPPVersionTables tables = [] {
        MPPVersionTables format9 = *mppVersionTables(kMSPDIVersion_2003);
        const MPPVersionTables& application14 = *mppVersionTables(kMSPDIVersion_2010);
        format9.taskFlagMask = application14.taskFlagMask;
        return format9;
    }();
    return tables;
}

MPPPropertyTable taskPropertyIDs() {
    MPPPropertyTable ids;
    for (const auto& [key, number] : mppPropertyIDTable(kFormat9Column)) {
        if (isTaskKey(key)) {
            ids.emplace(key, number + kNumberShift);
        }
    }
    for (const auto& [key, number] : kBaseline0Numbers) {
        ids.emplace(key, number);
    }
    return ids;
}

} // namespace

KVMSPIMPP9From14PropertyList::KVMSPIMPP9From14PropertyList()
    : KVMSPIMPPPropertyList(tables(), taskPropertyIDs(), mppPropertyOffsetTable(kApplication14Column)) {
    for (size_t type = 0; type < m_taskCustomFields.size(); ++type) {
        for (const MPPCustomFieldRecord& field :
             mppTaskCustomFields(static_cast<MPPCustomFieldType>(type), kMSPDIVersion_2003)) {
            m_taskCustomFields[type].push_back({field.propertyNumber + kNumberShift, field.fieldName});
        }
    }
}

const KVMSPIMPP9From14PropertyList& KVMSPIMPP9From14PropertyList::shared() {
    static const KVMSPIMPP9From14PropertyList list;
    return list;
}

KVMSPIMPPPropertyList::CustomFields KVMSPIMPP9From14PropertyList::task(MPPCustomFieldType type) const {
    return m_taskCustomFields.at(static_cast<size_t>(type));
}
