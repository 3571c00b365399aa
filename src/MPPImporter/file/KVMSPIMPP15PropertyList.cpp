#include "MPPImporter/file/KVMSPIMPP15PropertyList.h"

#include "MPPImporter/format/MPPFormatConstants.h"

KVMSPIMPP15PropertyList::KVMSPIMPP15PropertyList()
    : KVMSPIMPP15PropertyList(*mppVersionTables(kMSPDIVersion_2013)) {}

KVMSPIMPP15PropertyList::KVMSPIMPP15PropertyList(const MPPVersionTables& tables)
    : KVMSPIMPPPropertyList(tables) {}

const KVMSPIMPP15PropertyList& KVMSPIMPP15PropertyList::shared() {
    static const KVMSPIMPP15PropertyList list;
    return list;
}
