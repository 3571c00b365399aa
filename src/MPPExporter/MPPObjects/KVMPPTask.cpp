#include "MPPExporter/MPPObjects/KVMPPTask.h"

#include "MPPExporter/MPPObjects/KVMPPCalendar.h"

uint64_t KVMPPTask::getCalendarID() const {
    const KVMPPCalendar* resolved = calendar.object();
    return resolved ? resolved->ID : kNoID;
}
