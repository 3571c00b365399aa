#include "MPPExporter/MPPObjects/ScheduleDateExtensions.h"

#include "MPPCommon/support/Log.h"
#include "MPPExporter/MPPObjects/KVMSPEScheduleCalendar.h"

std::optional<TVDate> dateAdvancedByDuration(std::optional<TVDate> date, double duration, bool forward,
                                             bool allowEdgeTime, const KVMSPEScheduleCalendar* calendar) {
    if (calendar != nullptr) {
        tvLog("WARINING: Custom Calendars not supported to advance date by duration yet. Standard propject "
              "Calendar will be used instead.");
    }
    const std::optional<TVDate> advanced =
        KVMSPEScheduleCalendar::standardCalendar().date(date, duration, forward, allowEdgeTime);
    return advanced ? advanced : date;
}

TVDate dateAdvancedByDuration(TVDate date, double duration, bool forward, bool allowEdgeTime,
                              const KVMSPEScheduleCalendar* calendar) {
    return *dateAdvancedByDuration(std::optional<TVDate>(date), duration, forward, allowEdgeTime, calendar);
}

TVDate dateAdvancedByDuration(TVDate date, double duration, bool forward,
                              const KVMSPEScheduleCalendar* calendar) {
    return dateAdvancedByDuration(date, duration, forward, true, calendar);
}

bool isWorkingDayInCalendar(TVDate date, const KVMSPEScheduleCalendar* calendar) {
    if (calendar != nullptr) {
        tvLog("WARINING: Custom Calendars not supported to determine working days yet. Standard propject "
              "Calendar will be used instead.");
    }
    return KVMSPEScheduleCalendar::standardCalendar().isWorkingDay(date);
}
