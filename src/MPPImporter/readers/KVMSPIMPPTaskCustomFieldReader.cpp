#include "MPPImporter/readers/KVMSPIMPPTaskCustomFieldReader.h"

#include "MPPCommon/support/TVException.h"
#include "MPPImporter/file/KVMSPIMPPPropertyList.h"
#include "MPPImporter/readers/KVMSPIMPPTaskReader.h"

namespace {

KVMSPIMPPDataDirectoryReader& requireTaskReader(KVMSPIMPPDataDirectoryReader& reader) {
    tvAssert(dynamic_cast<KVMSPIMPPTaskReader*>(&reader) != nullptr, "Unexpected Reader class.");
    return reader;
}

} // namespace

KVMSPIMPPTaskCustomFieldReader::KVMSPIMPPTaskCustomFieldReader(int32_t uid,
                                                               KVMSPIMPPDataDirectoryReader& reader)
    : KVMSPICustomFieldsReader(uid, requireTaskReader(reader),
                               {.cost = reader.MPPPropertyList().taskCostCustomFields(),
                                .date = reader.MPPPropertyList().taskDateCustomFields(),
                                .duration = reader.MPPPropertyList().taskDurationCustomFields(),
                                .finish = reader.MPPPropertyList().taskFinishCustomFields(),
                                .number = reader.MPPPropertyList().taskNumberCustomFields(),
                                .outlineCode = reader.MPPPropertyList().taskOutlineCodeCustomFields(),
                                .start = reader.MPPPropertyList().taskStartCustomFields(),
                                .text = reader.MPPPropertyList().taskTextCustomFields()}) {}
