#pragma once

#include "MPPImporter/file/KVMSPIMPPPropertyList.h"

// The layout that application 15 writes in format 14. A constraint's UID stands behind its first
// field.
class KVMSPIMPP15PropertyList : public KVMSPIMPPPropertyList {
public:
    static const KVMSPIMPP15PropertyList& shared();

    int32_t constraintUIDFromStream(SSLStream& stream, int32_t metaFirstField, int32_t dataItemOffset,
                                    int32_t dataItemSize, KVMPPDataReader& caller) const override;

protected:
    explicit KVMSPIMPP15PropertyList(const MPPVersionTables& tables);

private:
    KVMSPIMPP15PropertyList();
};
