#pragma once

#include <nlohmann/json.hpp>

class KVMSPIMPPAbsCalendarReader;

// The "calendars" list of the dump: one object per calendar UID, with its fields, its seven week days
// (day type 1 for Sunday to 7) and its exceptions with their recurrence, period and working times.
// Working times are {"from", "to"} in microseconds after midnight.
class CalendarDump {
public:
    static nlohmann::ordered_json of(KVMSPIMPPAbsCalendarReader& reader);
};
