#pragma once

#include "MPPImporter/file/KVMSPIMPPPropertyList.h"

// The layout of format 9. Its task items are told apart by their own rules.
class KVMSPIMPP9PropertyList : public KVMSPIMPPPropertyList {
public:
    static const KVMSPIMPP9PropertyList& shared();

protected:
    TaskUIDRules taskUIDRules() const override;

private:
    KVMSPIMPP9PropertyList();
};
