#pragma once

#include "MPPImporter/file/KVMSPIMPPPropertyList.h"

// The layout of format 14.
class KVMSPIMPP14PropertyList : public KVMSPIMPPPropertyList {
public:
    static const KVMSPIMPP14PropertyList& shared();

private:
    KVMSPIMPP14PropertyList();
};
