#pragma once

#include "MPPImporter/readers/KVMSPICustomFieldsReader.h"

// The custom fields of one task; the reader must be the task reader ("Unexpected Reader class."
// otherwise).
class KVMSPIMPPTaskCustomFieldReader : public KVMSPICustomFieldsReader {
public:
    KVMSPIMPPTaskCustomFieldReader(int32_t uid, KVMSPIMPPDataDirectoryReader& reader);
};
