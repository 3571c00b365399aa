#pragma once

#include "MPPImporter/readers/KVMSPICustomFieldsReader.h"

// The custom fields of one resource; the reader must be the resource reader ("Unexpected Reader
// class." otherwise).
class KVMSPIMPPResourceCustomFieldReader : public KVMSPICustomFieldsReader {
public:
    KVMSPIMPPResourceCustomFieldReader(int32_t uid, KVMSPIMPPDataDirectoryReader& reader);
};
