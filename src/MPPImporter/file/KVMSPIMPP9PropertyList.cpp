#include "MPPImporter/file/KVMSPIMPP9PropertyList.h"

#include "MPPImporter/format/MPPFormatConstants.h"

namespace {

bool holdsNoTaskObject(int32_t metaFirstField) {
    return metaFirstField == 2 || metaFirstField == 6;
}

} // namespace

KVMSPIMPP9PropertyList::KVMSPIMPP9PropertyList()
    : KVMSPIMPPPropertyList(*mppVersionTables(kMSPDIVersion_2003)) {}

const KVMSPIMPP9PropertyList& KVMSPIMPP9PropertyList::shared() {
    static const KVMSPIMPP9PropertyList list;
    return list;
}

KVMSPIMPPPropertyList::TaskUIDRules KVMSPIMPP9PropertyList::taskUIDRules() const {
    return {holdsNoTaskObject, 8, "MSPIMPP9PropertyList.taskUIDFromStream"};
}
