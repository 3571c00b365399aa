#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPExporter/MPPObjects/WorkingTimePeriod.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

class KVMSPCXMLElement;

// The working-time arithmetic of both directions: a week of working periods, with operations that
// move a date forward or back by an amount of working time, snap a date onto working time and
// measure the working time between two dates. It knows the weekly pattern only, no exceptions.
//
// Dates are read on a Gregorian calendar in the system zone. A day step adds exactly 86400 seconds,
// not a calendar day: after a change of daylight saving a stepped day starts an hour off midnight,
// and results built on it keep that hour.
//
// Weekdays run from 1 for Sunday to 7 for Saturday; a weekday outside them is an internal error
// ("Incorrect value of weekdey ...") wherever the operation has no answer of its own for it.
class KVMSPEScheduleCalendar {
public:
    struct WorkingDay {
        bool isWorkingDay = false;
        // None until a period is added; periods stay in the order they were added.
        std::optional<std::vector<WorkingTimePeriod>> timePeriods;
    };

    // The longest walk of an advance or a measure, in days: the span an MPP date can hold (its day
    // number has 16 bits). Longer walks, which only corrupt durations or dates can ask for, stop
    // there.
    static constexpr int64_t kMaxWalkDays = 65536;

    // Every day non-working.
    KVMSPEScheduleCalendar() = default;
    // The weekly pattern of a bundle's `schedule` element: its `schedule-day` children and their
    // `time-span` children. Days of unknown names and spans whose times aren't numbers are skipped;
    // a missing time counts as 0.
    explicit KVMSPEScheduleCalendar(const KVMSPCXMLElement& schedule);
    // Monday to Friday, 08:00 to 12:00 and 13:00 to 17:00.
    static KVMSPEScheduleCalendar initWithStandardCalendar();
    // The shared standard calendar, built on first use and kept until the process ends.
    static const KVMSPEScheduleCalendar& standardCalendar();

    // Appends a period to the day and makes it a working day. Periods are expected in ascending
    // order; nothing sorts them.
    void addWorkingTimePeriod(const WorkingTimePeriod& period, int64_t weekday);

    const WorkingDay& workingDay(int64_t weekday) const;
    bool isWorkingDayWeekday(int64_t weekday) const;
    // False as well for a date the calendar can't hold.
    bool isWorkingDay(TVDate date) const;
    int64_t timePeriodsInWeekday(int64_t weekday) const;
    // The periods of a working day; empty for a non-working one.
    const std::vector<WorkingTimePeriod>& workingPeriods(int64_t weekday) const;

    // The questions on one period answer -1.0 or false for a weekday outside 1 to 7, a day without
    // periods or an index outside them. Each output pointer may be null.
    double durationOfTimePeriod(int64_t timePeriod, int64_t weekday) const;
    bool startHour(int64_t* hour, int64_t* minute, int64_t* second, int64_t timePeriod,
                   int64_t weekday) const;
    bool endHour(int64_t* hour, int64_t* minute, int64_t* second, int64_t timePeriod, int64_t weekday) const;
    double startTimeForTimePeriod(int64_t timePeriod, int64_t weekday) const;
    double endTimeForTimePeriod(int64_t timePeriod, int64_t weekday) const;

    // `fromDate` moved by `duration` seconds of working time in the direction; none when the
    // calendar has no working time to move through. With `allowEdgeTime` the result may be the end
    // of a period (12:00); without, it is always a moment from which work can go on (13:00). A
    // duration under a second only snaps. A missing date or a negative duration is an internal error.
    std::optional<TVDate> date(std::optional<TVDate> fromDate, double duration, bool forward,
                               bool allowEdgeTime = true) const;

    // Snaps a date onto working time: forward to the next moment that has working time after it,
    // backward to the last one that has working time before it, looking up to a week ahead. Hands
    // out the snapped date, its seconds of the day and its period index (each pointer may be null);
    // false, with the outputs untouched, when the week has no working time.
    bool startDate(TVDate* startDate, TVDate forDate, bool forward) const;
    bool startDate(TVDate* startDate, double* startDuration, int64_t* startTimePeriod, TVDate forDate,
                   bool forward) const;

    // Seconds of working time from one date to a later one; 0.0 when the first isn't earlier.
    double workingTimeFromDate(TVDate fromDate, TVDate toDate) const;

private:
    // The period at an index, or null where the questions on one period have no answer.
    const WorkingTimePeriod* timePeriodAt(int64_t timePeriod, int64_t weekday) const;

    std::array<WorkingDay, 8> m_workingDays;
};
