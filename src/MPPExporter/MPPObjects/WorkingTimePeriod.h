#pragma once

#include <cstdint>

// One working period of a day, from a time of day to a later one, each as hour, minute and second.
struct WorkingTimePeriod {
    int64_t fromHour = 0;
    int64_t fromMinute = 0;
    int64_t fromSecond = 0;
    int64_t toHour = 0;
    int64_t toMinute = 0;
    int64_t toSecond = 0;

    bool operator==(const WorkingTimePeriod&) const = default;
};

// Seconds of the day at which a period starts and ends. The sums are taken in doubles so that no
// field value, however read, can overflow them.
inline double workingTimePeriodStart(const WorkingTimePeriod& period) {
    return (static_cast<double>(period.fromHour) * 60.0 + static_cast<double>(period.fromMinute)) * 60.0 +
           static_cast<double>(period.fromSecond);
}

inline double workingTimePeriodEnd(const WorkingTimePeriod& period) {
    return (static_cast<double>(period.toHour) * 60.0 + static_cast<double>(period.toMinute)) * 60.0 +
           static_cast<double>(period.toSecond);
}

// The period between two whole counts of seconds of the day, split into hours, minutes and seconds.
inline WorkingTimePeriod workingTimePeriodWithSeconds(int64_t startSeconds, int64_t endSeconds) {
    return WorkingTimePeriod{startSeconds / 3600, startSeconds % 3600 / 60, startSeconds % 60,
                             endSeconds / 3600,   endSeconds % 3600 / 60,   endSeconds % 60};
}
