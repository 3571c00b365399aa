#pragma once

#include "MPPCommon/xml/KVMSPCXMLElement.h"
#include "MPPExporter/MPPObjects/KVMPPCalendar.h"
#include "MPPExporter/Mappers/KVMSPEScheduleInfo.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// The calendars of an export. In a bundle every resource's schedule inherits day by day from its
// parent resource's, to any depth, and the top resource's schedule is the project's; a plan calendar
// is either a base calendar or derived from one base calendar, no deeper. The mapper works in two
// stages: it reads each resource's schedule (parents first, the top resource first of all), and then
// bends the tree into two levels, giving every schedule that has children and isn't a base calendar a
// flattened base copy, and makes one calendar for each schedule.
class KVMSPECalendarMapper {
public:
    using ElementPtr = KVMSPCXMLElement::ElementPtr;
    using Calendars = std::vector<std::shared_ptr<KVMPPCalendar>>;
    // Hands out the next calendar UID of the export: 1 first, never a value twice.
    using CalendarUIDSource = std::function<int64_t()>;

    explicit KVMSPECalendarMapper(CalendarUIDSource nextCalendarUID);

    // First stage: reads the schedule of a `resource` element; `parentResource` is its parent's element,
    // null for the top resource. Returns the UID of the resource's calendar.
    int64_t mapCalendarForResource(const ElementPtr& resource, const ElementPtr& parentResource);
    // Second stage, once after every resource: the calendars, in the order the schedules were read.
    void buildCalendarHierarchy();

    const Calendars& calendars() const { return _calendars; }
    const std::optional<std::string>& topScheduleKey() const { return _topScheduleKey; }
    void setTopScheduleKey(std::string topScheduleKey) { _topScheduleKey = std::move(topScheduleKey); }
    // The schedule read for a resource id, or null.
    const KVMSPEScheduleInfo* scheduleInfo(const std::string& key) const;

private:
    int64_t newCalendarFromTvnxResource(const ElementPtr& resource, const ElementPtr& parentResource);
    void readScheduleDays(KVMSPEScheduleInfo& info, KVMSPCXMLElement& schedule) const;
    void readScheduleExceptions(KVMSPEScheduleInfo& info, KVMSPCXMLElement& schedule) const;
    void fixCalendarHierarchy();
    std::unique_ptr<KVMSPEScheduleInfo> newFlatScheduleInfo(const KVMSPEScheduleInfo& info);
    // The parent schedule of an info that has a parent key: `missing` is the internal error when it
    // isn't known.
    KVMSPEScheduleInfo& parentInfo(const KVMSPEScheduleInfo& info, const std::string& missing) const;
    // The working times of a day that the info inherits: from the nearest ancestor that states the day.
    const std::optional<KVMSPEScheduleInfo::WorkingTimes>&
    inheritedWorkingTimes(const KVMSPEScheduleInfo& info, int64_t dayType) const;
    void mapScheduleInfo(KVMSPEScheduleInfo& info);
    static void mapScheduleInfo(const KVMSPEScheduleInfo& info, KVMPPCalendar& calendar);
    static void mapScheduleExceptions(const KVMSPEScheduleInfo::ExceptionsList& exceptions,
                                      KVMPPCalendar& calendar);
    static void mapTimeOffExceptionsBG(const KVMSPEScheduleInfo::ExceptionsList& exceptions,
                                       KVMPPCalendar& calendar);
    // A guard on walks up the parents, which can't be longer than the number of schedules.
    void checkAncestorSteps(size_t steps, const std::string& key) const;

    CalendarUIDSource _nextCalendarUID;
    Calendars _calendars;
    std::map<std::string, std::unique_ptr<KVMSPEScheduleInfo>> _scheduleInfoMap;
    std::vector<std::string> _scheduleInfoKeys;
    std::optional<std::string> _topScheduleKey;
};
