#include "MPPExporter/MPPObjects/KVMPPCalendarTimeRange.h"

KVMPPCalendarTimeRange KVMPPCalendarTimeRange::initWithStartTime(double start, double end) {
    return KVMPPCalendarTimeRange(MPPCalendarTime::initWithTime(start), MPPCalendarTime::initWithTime(end));
}

KVMPPCalendarTimeRange KVMPPCalendarTimeRange::initWithStartTimeSpan(TVTimeSpan start, TVTimeSpan end) {
    return KVMPPCalendarTimeRange(MPPCalendarTime::initWithTimeSpan(start),
                                  MPPCalendarTime::initWithTimeSpan(end));
}

KVMPPCalendarTimeRange KVMPPCalendarTimeRange::initWithStartTotalMinutes(int32_t start, int32_t end) {
    return KVMPPCalendarTimeRange(MPPCalendarTime::initWithTotalMinutes(start),
                                  MPPCalendarTime::initWithTotalMinutes(end));
}
