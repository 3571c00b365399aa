#pragma once

#include "MPPCommon/xml/KVMSPCXMLElement.h"
#include "MPPExporter/MPPObjects/KVMPPCalendar.h"
#include "MPPExporter/MPPObjects/KVMSPEWorkingTime.h"
#include "MPPExporter/Mappers/KVMSPECalendarExceptions.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// The working time of one resource's schedule as the calendar export reads it, before the schedules
// are bent into base and derived calendars. Days are indexed by day type, 1 (Sunday) to 7 (Saturday):
// a day without a list inherits from the parent schedule, an empty list is a stated non-working day.
class KVMSPEScheduleInfo {
public:
    using ElementPtr = KVMSPCXMLElement::ElementPtr;
    using WorkingTimes = std::vector<KVMSPEWorkingTime>;
    // Exception lists are shared: a flat copy without exceptions of its own takes its ancestor's.
    using ExceptionsList = std::vector<std::shared_ptr<const KVMSPECalendarExceptions>>;

    // The top resource's schedule has no parent key and starts as a base calendar; a flat copy has
    // neither resource nor parent key.
    KVMSPEScheduleInfo(ElementPtr tvnxResource, std::optional<std::string> parentKey, int64_t calendarUID,
                       std::string calendarName);

    // A base calendar with the default week (Monday to Friday 08:00-12:00 and 13:00-17:00, the
    // weekend non-working) and no exceptions.
    void setProjetDefaults();
    // The default week for the days that have no list only.
    void ensureProjetDefaultWeekDays();

    // Any day with a list, empty or not.
    bool hasWeekDaysData() const;
    bool hasOvertimeData() const { return !_overtimeExceptions.empty(); }
    bool hasTimeOffData() const { return !_timeOffExceptions.empty(); }

    // Day types outside 0 to 7 are an internal error ("Incorrect value of argument dayType ...").

    // Replaces the day's list by an empty one and returns it.
    WorkingTimes& resetWorkingTimesForDayType(int64_t dayType);
    // Replaces the day's list by a copy of the given one, or by none.
    void addWorkingTimes(const std::optional<WorkingTimes>& workingTimes, int64_t dayType);
    const std::optional<WorkingTimes>& workingTimesForDayType(int64_t dayType) const;

    const ElementPtr& tvnxResource() const { return _tvnxResource; }
    const std::optional<std::string>& parentKey() const { return _parentKey; }
    const std::shared_ptr<KVMPPCalendar>& calendar() const { return _calendar; }
    void setCalendar(std::shared_ptr<KVMPPCalendar> calendar) { _calendar = std::move(calendar); }
    int64_t calendarUID() const { return _calendarUID; }
    const std::string& calendarName() const { return _calendarName; }
    bool isBaseCalendar() const { return _isBaseCalendar; }
    void setIsBaseCalendar(bool isBaseCalendar) { _isBaseCalendar = isBaseCalendar; }
    bool isParentSchedule() const { return _isParentSchedule; }
    void setIsParentSchedule(bool isParentSchedule) { _isParentSchedule = isParentSchedule; }
    KVMSPEScheduleInfo* flatCopy() const { return _flatCopy.get(); }
    void setFlatCopy(std::unique_ptr<KVMSPEScheduleInfo> flatCopy) { _flatCopy = std::move(flatCopy); }
    bool extendedFormat() const { return _extendedFormat; }
    void setExtendedFormat(bool extendedFormat) { _extendedFormat = extendedFormat; }
    const ExceptionsList& overtimeExceptions() const { return _overtimeExceptions; }
    ExceptionsList& overtimeExceptions() { return _overtimeExceptions; }
    const ExceptionsList& timeOffExceptions() const { return _timeOffExceptions; }
    ExceptionsList& timeOffExceptions() { return _timeOffExceptions; }

private:
    static size_t dayIndex(int64_t dayType);

    ElementPtr _tvnxResource;
    std::optional<std::string> _parentKey;
    std::shared_ptr<KVMPPCalendar> _calendar;
    int64_t _calendarUID;
    std::string _calendarName;
    bool _isBaseCalendar;
    bool _isParentSchedule = false;
    std::unique_ptr<KVMSPEScheduleInfo> _flatCopy;
    bool _extendedFormat = false;
    std::array<std::optional<WorkingTimes>, 8> _workingTimes;
    ExceptionsList _overtimeExceptions;
    ExceptionsList _timeOffExceptions;
};
