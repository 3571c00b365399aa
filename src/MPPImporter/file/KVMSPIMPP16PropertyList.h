#pragma once

#include "MPPImporter/file/KVMSPIMPP15PropertyList.h"

// The layout that application 16 writes in format 14: that of 15, except that resource items keep
// the UID before the object id.
class KVMSPIMPP16PropertyList : public KVMSPIMPP15PropertyList {
public:
    static const KVMSPIMPP16PropertyList& shared();

private:
    KVMSPIMPP16PropertyList();
};
