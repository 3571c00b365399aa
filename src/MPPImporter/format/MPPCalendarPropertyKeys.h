#pragma once

#include <cstdint>

// The property keys of calendar fields: offsets in the calendar's fixed item, and property numbers of
// its variable data and of the project's Props data.
enum MPPCalendarPropertyKey : int32_t {
    kCalendarBaseUIDKey = 13,
    kCalendarDataKey = 22,
    kCalendarNameKey = 23,
    kCalendarResourceUIDKey = 24,
    kCalendarUIDKey = 25,
    // The Props entry that holds the default week block.
    kCalendarDefaultWeekBlockKey = 40,
};
