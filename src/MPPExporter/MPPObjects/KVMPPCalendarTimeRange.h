#pragma once

#include "MPPExporter/MPPObjects/MPPCalendarTime.h"

// One working range of a day: a start and an end time.
class KVMPPCalendarTimeRange {
public:
    // From seconds since midnight.
    static KVMPPCalendarTimeRange initWithStartTime(double start, double end);
    // From time spans since midnight, in microseconds.
    static KVMPPCalendarTimeRange initWithStartTimeSpan(TVTimeSpan start, TVTimeSpan end);
    static KVMPPCalendarTimeRange initWithStartTotalMinutes(int32_t start, int32_t end);

    const MPPCalendarTime& start() const { return _start; }
    const MPPCalendarTime& end() const { return _end; }
    // Replace one end from seconds since midnight.
    void setStartFromTime(double seconds) { _start = MPPCalendarTime::initWithTime(seconds); }
    void setEndTimeFromTime(double seconds) { _end = MPPCalendarTime::initWithTime(seconds); }

private:
    KVMPPCalendarTimeRange(MPPCalendarTime start, MPPCalendarTime end) : _start(start), _end(end) {}

    MPPCalendarTime _start;
    MPPCalendarTime _end;
};
