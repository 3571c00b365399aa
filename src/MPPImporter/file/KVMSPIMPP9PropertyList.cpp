#include "MPPImporter/file/KVMSPIMPP9PropertyList.h"

#include "MPPImporter/format/MPPFormatConstants.h"

namespace {

// The low half marks a deleted task (2 or 6); the high half may hold anything then.
bool holdsNoMPP9TaskObject(int32_t metaFirstField) {
    const int32_t mark = metaFirstField & 0xFFFF;
    return mark == 2 || mark == 6;
}

} // namespace

KVMSPIMPP9PropertyList::KVMSPIMPP9PropertyList()
    : KVMSPIMPPPropertyList(*mppVersionTables(kMSPDIVersion_2003)) {}

const KVMSPIMPP9PropertyList& KVMSPIMPP9PropertyList::shared() {
    static const KVMSPIMPP9PropertyList list;
    return list;
}

KVMSPIMPPPropertyList::TaskUIDRules KVMSPIMPP9PropertyList::taskUIDRules() const {
    return {holdsNoMPP9TaskObject, 8, "MSPIMPP9PropertyList.taskUIDFromStream"};
}
