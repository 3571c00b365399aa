#pragma once

#include "MPPImporter/file/KVMSPIMPPPropertyList.h"

// The layout of format 12.
class KVMSPIMPP12PropertyList : public KVMSPIMPPPropertyList {
public:
    static const KVMSPIMPP12PropertyList& shared();

private:
    KVMSPIMPP12PropertyList();
};
