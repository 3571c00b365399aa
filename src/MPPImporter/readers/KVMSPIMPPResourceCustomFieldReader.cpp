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
    : KVMSPICustomFieldsReader(
          uid, requireResourceReader(reader),
          {.cost = {reader.MPPPropertyList().resourceCostCustomFields(), MPPField::resourceCustomCost},
           .date = {reader.MPPPropertyList().resourceDateCustomFields(), MPPField::resourceCustomDate},
           .duration = {reader.MPPPropertyList().resourceDurationCustomFields(),
                        MPPField::resourceCustomDuration},
           .finish = {reader.MPPPropertyList().resourceFinishCustomFields(), MPPField::resourceCustomFinish},
           .number = {reader.MPPPropertyList().resourceNumberCustomFields(), MPPField::resourceCustomNumber},
           .outlineCode = reader.MPPPropertyList().resourceOutlineCodeCustomFields(),
           .start = {reader.MPPPropertyList().resourceStartCustomFields(), MPPField::resourceCustomStart},
           .text = {reader.MPPPropertyList().resourceTextCustomFields(), MPPField::resourceCustomText}}) {}
