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
    : KVMSPICustomFieldsReader(
          uid, requireTaskReader(reader),
          {.cost = {reader.MPPPropertyList().taskCostCustomFields(), MPPField::taskCustomCost},
           .date = {reader.MPPPropertyList().taskDateCustomFields(), MPPField::taskCustomDate},
           .duration = {reader.MPPPropertyList().taskDurationCustomFields(), MPPField::taskCustomDuration},
           .finish = {reader.MPPPropertyList().taskFinishCustomFields(), MPPField::taskCustomFinish},
           .number = {reader.MPPPropertyList().taskNumberCustomFields(), MPPField::taskCustomNumber},
           .outlineCode = reader.MPPPropertyList().taskOutlineCodeCustomFields(),
           .start = {reader.MPPPropertyList().taskStartCustomFields(), MPPField::taskCustomStart},
           .text = {reader.MPPPropertyList().taskTextCustomFields(), MPPField::taskCustomText}}) {}
