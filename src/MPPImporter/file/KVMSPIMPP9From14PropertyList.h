#pragma once

#include "MPPImporter/file/KVMSPIMPPPropertyList.h"

#include <array>
#include <vector>

// The task layout of format 9 files that application 14 saved with task items of its own: the task
// fields stand at the offsets of application 14's fixed and meta items, and the task variable data
// keeps the numbers of format 9 raised by 15, apart from the baseline 0 fields, which format 9 holds
// in the fixed item and which are numbered 7 to 15 here (work 14). Only the task store of such a file reads
// through it.
class KVMSPIMPP9From14PropertyList : public KVMSPIMPPPropertyList {
public:
    static const KVMSPIMPP9From14PropertyList& shared();

protected:
    CustomFields task(MPPCustomFieldType type) const override;

private:
    KVMSPIMPP9From14PropertyList();

    std::array<std::vector<MPPCustomFieldRecord>, 8> m_taskCustomFields;
};
