#pragma once

#include "MPPCommon/support/TVDate.h"

#include <optional>

class KVMSPEScheduleCalendar;

// Working-time questions asked of a date. Only the standard calendar is supported: a calendar passed
// in is reported in the log and ignored.

// `date` moved by `duration` seconds of working time in the direction; `date` itself when the
// standard calendar has no working time to move through. No date is an internal error, as is a
// negative duration.
std::optional<TVDate> dateAdvancedByDuration(std::optional<TVDate> date, double duration, bool forward,
                                             bool allowEdgeTime, const KVMSPEScheduleCalendar* calendar);
TVDate dateAdvancedByDuration(TVDate date, double duration, bool forward, bool allowEdgeTime,
                              const KVMSPEScheduleCalendar* calendar);
// The same, with the end of a working period allowed as the result.
TVDate dateAdvancedByDuration(TVDate date, double duration, bool forward,
                              const KVMSPEScheduleCalendar* calendar);

// Whether the standard calendar works on the date's weekday.
bool isWorkingDayInCalendar(TVDate date, const KVMSPEScheduleCalendar* calendar);
