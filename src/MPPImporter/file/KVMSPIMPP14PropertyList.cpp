#include "MPPImporter/file/KVMSPIMPP14PropertyList.h"

#include "MPPImporter/format/MPPFormatConstants.h"

KVMSPIMPP14PropertyList::KVMSPIMPP14PropertyList()
    : KVMSPIMPPPropertyList(*mppVersionTables(kMSPDIVersion_2010)) {}

const KVMSPIMPP14PropertyList& KVMSPIMPP14PropertyList::shared() {
    static const KVMSPIMPP14PropertyList list;
    return list;
}
