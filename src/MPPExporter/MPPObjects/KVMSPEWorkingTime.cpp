#include "MPPExporter/MPPObjects/KVMSPEWorkingTime.h"

#include "MPPCommon/date/StringExtensions.h"
#include "MPPCommon/support/Log.h"

std::string KVMSPEWorkingTime::description() const {
    return stringWithFormat("%s: [%s-%s] ", "KVMSPEWorkingTime", hourMinSecFromDuration(m_fromTime).c_str(),
                            hourMinSecFromDuration(m_toTime).c_str());
}
