#include "MPPImporter/file/KVMSPIMPP16PropertyList.h"

#include "MPPImporter/format/MPPFormatConstants.h"

KVMSPIMPP16PropertyList::KVMSPIMPP16PropertyList()
    : KVMSPIMPP15PropertyList(*mppVersionTables(kMSPDIVersion_2016)) {}

const KVMSPIMPP16PropertyList& KVMSPIMPP16PropertyList::shared() {
    static const KVMSPIMPP16PropertyList list;
    return list;
}
