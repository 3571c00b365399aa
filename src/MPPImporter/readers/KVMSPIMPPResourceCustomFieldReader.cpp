#include "MPPImporter/readers/KVMSPIMPPResourceCustomFieldReader.h"

#include "MPPCommon/support/TVException.h"
#include "MPPImporter/file/KVMSPIMPPDataDirectoryReader.h"
#include "MPPImporter/file/KVMSPIMPPPropertyList.h"
#include "MPPImporter/readers/KVMSPIMPPAbsResourceReader.h"

namespace {

KVMSPIMPPDataDirectoryReader& requireResourceReader(KVMSPIMPPDataDirectoryReader& reader) {
    tvAssert(dynamic_cast<KVMSPIMPPAbsResourceReader*>(&reader) != nullptr, "Unexpected Reader class.");
    return reader;
}

} // namespace

KVMSPIMPPResourceCustomFieldReader::KVMSPIMPPResourceCustomFieldReader(int32_t uid,
                                                                       KVMSPIMPPDataDirectoryReader& reader)
    : KVMSPICustomFieldsReader(uid, requireResourceReader(reader),
                               {.cost = reader.MPPPropertyList().resourceCostCustomFields(),
                                .date = reader.MPPPropertyList().resourceDateCustomFields(),
                                .duration = reader.MPPPropertyList().resourceDurationCustomFields(),
                                .finish = reader.MPPPropertyList().resourceFinishCustomFields(),
                                .number = reader.MPPPropertyList().resourceNumberCustomFields(),
                                .outlineCode = reader.MPPPropertyList().resourceOutlineCodeCustomFields(),
                                .start = reader.MPPPropertyList().resourceStartCustomFields(),
                                .text = reader.MPPPropertyList().resourceTextCustomFields()}) {}
