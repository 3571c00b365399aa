#include "MPPExporter/Mappers/MSPEExceptionInfo.h"

#include "MPPCommon/date/KVMSPCDateTimeConverter.h"
#include "MPPCommon/date/StringExtensions.h"
#include "MPPCommon/support/Log.h"

std::string MSPEExceptionInfo::description() const {
    std::string text = stringWithFormat("MSPEExceptionInfo  fromDate='%s' toDate='%s' workingTimes=%ld:",
                                        KVMSPCDateTimeConverter::tvnxFromMppDateTime(_fromDate).c_str(),
                                        KVMSPCDateTimeConverter::tvnxFromMppDateTime(_toDate).c_str(),
                                        static_cast<long>(_workingTimes.size()));
    for (const KVMSPEWorkingTime& workingTime : _workingTimes) {
        text += stringWithFormat("  {fromTime=%s toTime=%s}",
                                 hourMinSecFromDuration(workingTime.fromTime()).c_str(),
                                 hourMinSecFromDuration(workingTime.toTime()).c_str());
    }
    return text;
}
