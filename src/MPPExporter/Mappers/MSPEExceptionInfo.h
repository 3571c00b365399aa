#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPExporter/MPPObjects/KVMSPEWorkingTime.h"

#include <string>
#include <vector>

// One exception of a calendar as the export makes it: a stretch of whole days, from its first moment
// to its last, with the hours that apply on each of them (none for days off).
class MSPEExceptionInfo {
public:
    MSPEExceptionInfo(TVDate fromDate, TVDate toDate) : _fromDate(fromDate), _toDate(toDate) {}

    TVDate fromDate() const { return _fromDate; }
    TVDate toDate() const { return _toDate; }
    void setToDate(TVDate toDate) { _toDate = toDate; }
    const std::vector<KVMSPEWorkingTime>& workingTimes() const { return _workingTimes; }
    std::vector<KVMSPEWorkingTime>& workingTimes() { return _workingTimes; }

    std::string description() const;

private:
    TVDate _fromDate;
    TVDate _toDate;
    std::vector<KVMSPEWorkingTime> _workingTimes;
};
