#pragma once

#include "MPPExporter/MPPObjects/KVMPPAssignment.h"
#include "MPPExporter/MPPObjects/KVMPPCalendar.h"
#include "MPPExporter/MPPObjects/KVMPPConstraint.h"
#include "MPPExporter/MPPObjects/KVMPPResource.h"
#include "MPPExporter/MPPObjects/KVMPPSummaryInformation.h"
#include "MPPExporter/MPPObjects/KVMPPTask.h"

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

// The plan as the writers lay it out. It is its own summary task, so that the writers lay out the
// summary by the task code; its lists own the tasks, resources, assignments, calendars and links.
// The default resource exists in every project and stands in no list.
class KVMPPProject : public KVMPPTask {
public:
    template <class T>
    using List = std::vector<std::shared_ptr<T>>;

    // The name of the project calendar, the one calendar that may bear it.
    static constexpr const char* kStandardCalendarName = "Standard";

    // Fixed units, the default resource with its calendar, and a standard calendar with ID 0.
    KVMPPProject();

    bool getEffortDriven() const override { return false; }

    const KVMPPResource& defaultResource() const { return *_defaultResource; }
    // Every assignment ID, and the assignments by ID, as `assignments` holds them at the first
    // request; the writers ask once the model is complete.
    const std::set<uint64_t>& assignmentIDsSet() const;
    const std::map<uint64_t, KVMPPAssignment*>& idToAssignmentMap() const;

    bool scheduleFromStart = true;
    bool honorConstraints = true;
    int32_t currencySymbolPosition = 0;
    // The MPP duration unit code.
    int32_t durationFormat = 7;
    int32_t weekStartDay = 1;
    int32_t workFormat = 2;
    // In outline order.
    List<KVMPPTask> tasks;
    List<KVMPPResource> resources;
    List<KVMPPAssignment> assignments;
    List<KVMPPCalendar> baseCalendars;
    List<KVMPPConstraint> constraints;
    // At most 30 names each.
    std::optional<std::vector<std::string>> customTaskFieldNames;
    std::optional<std::vector<std::string>> customResourceFieldNames;
    // Replaced by the mapped project calendar in post-processing.
    std::shared_ptr<KVMPPCalendar> standardCalendar;
    KVMPPSummaryInformation summaryInfo;
    std::optional<TVDate> baseline0SaveDate;
    std::vector<TVDate> baselineSaveDates;
    std::string currencySymbol = "$";
    std::string currencyCode = "USD";
    uint64_t currencyDigits = 2;
    uint64_t daysPerMonth = 20;
    uint64_t minutesPerWeek = 2400;
    uint64_t minutesPerDay = 480;

private:
    // The GUID of the default resource and its calendar, in file order.
    static const MPPGuid kDefaultResourceGuid;

    std::shared_ptr<KVMPPResource> _defaultResource;
    mutable std::optional<std::set<uint64_t>> _assignmentIDs;
    mutable std::optional<std::map<uint64_t, KVMPPAssignment*>> _assignmentsByID;
};
