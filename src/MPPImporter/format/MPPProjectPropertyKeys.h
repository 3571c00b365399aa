#pragma once

#include <cstdint>

// The property keys of the project's properties, which the version's property list turns into property
// numbers of the project's Props stream.
enum MPPProjectPropertyKey : int32_t {
    kProjectCurrencyCodeKey = 35,
    kProjectCurrencyDigitsKey = 36,
    kProjectCurrencySymbolPositionKey = 37,
    kProjectCurrencySymbolKey = 38,
    kProjectDaysPerMonthKey = 39,
    kProjectDefaultCalendarNameKey = 41,
    kProjectDurationUnitsKey = 42,
    kProjectMinutesPerDayKey = 43,
    kProjectMinutesPerWeekKey = 44,
    kProjectFinishDateKey = 45,
    kProjectStartDateKey = 46,
    kProjectScheduleFromStartKey = 47,
    kProjectWeekStartDayKey = 48,
    kProjectWorkUnitsKey = 49,
};
