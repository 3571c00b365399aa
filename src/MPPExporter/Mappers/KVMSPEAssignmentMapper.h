#pragma once

#include "MPPCommon/xml/KVMSPCXMLElement.h"
#include "MPPExporter/MPPObjects/KVMPPAssignment.h"
#include "MPPExporter/Mappers/KVMSPEObjectMapperBase.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class KVMSPEScheduledTaskInfo;

// Makes the assignments of one task. The task's effort is shared among its assignments of one
// resource type in the ratio of their units; each type gets the whole effort.
class KVMSPEAssignmentMapper : public KVMSPEObjectMapperBase {
public:
    // Sums the units of `assignments`, the task's assignment elements, by resource type. A split
    // task's assignments stand in its first piece, not in the task element: summing the task element's
    // own would find none there and give every assignment the task's whole effort.
    KVMSPEAssignmentMapper(KVMSPEMapper& mapper, KVMSPCXMLElement& tvnxTask,
                           const std::vector<KVMSPCXMLElement::ElementPtr>& assignments);

    std::shared_ptr<KVMPPAssignment> newAssignmentFromTVNXAssignment(KVMSPCXMLElement& tvnxAssignment);
    // The assignment of a task without resources, on the unassigned resource. Its UID goes to
    // `assignmentUID` when that is given.
    static std::shared_ptr<KVMPPAssignment>
    newDummyAssignmentForTaskId(const std::string& taskId, int64_t* assignmentUID, KVMSPEMapper& mapper);

    // The UID of the last mapped assignment.
    int64_t UID() const { return _UID; }

private:
    static const KVMSPEScheduledTaskInfo& scheduledTask(KVMSPEMapper& mapper, const std::string& taskId);
    // The resource type of an assignment's resource, or none when the resource isn't in the scenario.
    std::optional<std::string> resourceType(const std::string& resourceId) const;

    int64_t _UID = 0;
    std::string _tvnxTaskId;
    double _staffUnits = 0;
    double _equipmentUnits = 0;
    double _materialUnits = 0;
    double _groupUnits = 0;
};
