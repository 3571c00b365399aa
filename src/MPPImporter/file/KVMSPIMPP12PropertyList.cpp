#include "MPPImporter/file/KVMSPIMPP12PropertyList.h"

#include "MPPImporter/format/MPPFormatConstants.h"

KVMSPIMPP12PropertyList::KVMSPIMPP12PropertyList()
    : KVMSPIMPPPropertyList(*mppVersionTables(kMSPDIVersion_2007)) {}

const KVMSPIMPP12PropertyList& KVMSPIMPP12PropertyList::shared() {
    static const KVMSPIMPP12PropertyList list;
    return list;
}
