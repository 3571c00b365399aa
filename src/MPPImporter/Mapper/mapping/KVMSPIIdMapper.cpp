#include "MPPImporter/Mapper/mapping/KVMSPIIdMapper.h"

#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"

namespace {

std::string idFromUID(const std::string& uid, const char* idFormat, const char* negativeFormat) {
    if (uid.empty()) {
        return std::string();
    }
    tvAssert(uid.front() != '-', stringWithFormat(negativeFormat, uid.c_str()));
    return stringWithFormat(idFormat, uid.c_str());
}

} // namespace

std::string KVMSPIIdMapper::taskIdFromMspdiUID(const std::string& uid) const {
    return idFromUID(uid, tvnx::value::kTaskIdFormat,
                     "Invalid format of MSPDI Task ID (can not be negative number): %s");
}

std::string KVMSPIIdMapper::resourceIdFromMspdiUID(const std::string& uid) const {
    return idFromUID(uid, tvnx::value::kResourceIdFormat,
                     "Invalid format of MSPDI Resource ID (can not be negative number): %s");
}
