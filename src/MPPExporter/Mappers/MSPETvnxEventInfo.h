#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPCommon/xml/KVMSPCXMLElement.h"

#include <optional>
#include <string>

// One event of a bundle calendar after reading: the whole days it touches, from 00:00:00 of its first
// day to 23:59:59 of its last, and, with a time range, the hours that apply on each of those days.
class MSPETvnxEventInfo {
public:
    // An event with hours.
    MSPETvnxEventInfo(TVDate fromDate, TVDate toDate, double start, double end);
    // Whole days.
    MSPETvnxEventInfo(TVDate fromDate, TVDate toDate);

    // An `event` element; none when it lacks its start or its end. A recurrence rule is not read here:
    // this is the event from its first start to its end, which `KVMSPECalendarExceptions` repeats. An end
    // before the start within the day is an internal error, and so is an end equal to the start anywhere but
    // at midnight or less than a day after it.
    static std::optional<MSPETvnxEventInfo> initWithTvnxEvent(const KVMSPCXMLElement& event);

    bool hasTimeRange() const { return _hasTimeRange; }
    TVDate fromDate() const { return _fromDate; }
    TVDate toDate() const { return _toDate; }
    void setFromDate(TVDate fromDate) { _fromDate = fromDate; }
    void setToDate(TVDate toDate) { _toDate = toDate; }
    // Seconds of the day.
    double start() const { return _start; }
    double end() const { return _end; }

    // A date's day on a Gregorian calendar in the system zone: its first and last second (00:00:00 and
    // 23:59:59) and the date's time of day in seconds. None for a date the calendar can't hold.
    struct Day {
        TVDate first;
        TVDate last;
        double secondsOfDay;
    };
    static std::optional<Day> dayOf(TVDate date);

    std::string description() const;

private:
    bool _hasTimeRange;
    TVDate _fromDate;
    TVDate _toDate;
    double _start = 0;
    double _end = 0;
};
