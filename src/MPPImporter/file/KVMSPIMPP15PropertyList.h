#pragma once

#include "MPPImporter/file/KVMSPIMPPPropertyList.h"

// The layout that application 15 writes in format 14.
class KVMSPIMPP15PropertyList : public KVMSPIMPPPropertyList {
public:
    static const KVMSPIMPP15PropertyList& shared();

protected:
    explicit KVMSPIMPP15PropertyList(const MPPVersionTables& tables);

private:
    KVMSPIMPP15PropertyList();
};
