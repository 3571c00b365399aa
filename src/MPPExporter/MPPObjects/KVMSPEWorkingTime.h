#pragma once

#include <string>

// The working hours of one day or one calendar exception as the export calendars pass them around:
// a start and an end, seconds of the day, fixed at creation.
class KVMSPEWorkingTime {
public:
    KVMSPEWorkingTime(double fromTime, double toTime) : m_fromTime(fromTime), m_toTime(toTime) {}

    double fromTime() const { return m_fromTime; }
    double toTime() const { return m_toTime; }

    bool operator==(const KVMSPEWorkingTime&) const = default;

    // Log text: "KVMSPEWorkingTime: [08:00:00-12:00:00] ".
    std::string description() const;

private:
    double m_fromTime;
    double m_toTime;
};
