#include "MPPExporter/Mappers/KVMSPEAssignmentMapper.h"

#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPExporter/Mappers/KVMSPEAssignmentBaselineMapper.h"
#include "MPPExporter/Mappers/KVMSPEIdMapper.h"
#include "MPPExporter/Mappers/KVMSPEMapper.h"
#include "MPPExporter/Mappers/KVMSPEProjectMapper.h"
#include "MPPExporter/Mappers/KVMSPEScheduledTaskInfo.h"
#include "MPPExporter/Mappers/MSPETvnxReading.h"
#include "MPPImporter/format/MPPFormatConstants.h"

namespace {

// Work of one unit of a material resource, in seconds.
constexpr double kMaterialUnitWork = 3600;

// The "units" of an assignment; a missing or empty attribute counts as one.
double units(const KVMSPCXMLElement& assignment) {
    const std::optional<std::string> text = tvnxread::attribute(assignment, tvnx::attribute::kUnits);
    return text && !text->empty() ? tvnxread::doubleValue(*text) : 1.0;
}

std::string resourceId(const KVMSPCXMLElement& assignment) {
    const std::string id = tvnxread::attribute(assignment, tvnx::attribute::kIdref).value_or("");
    tvAssert(!id.empty(), "No Resource ID is associated witgh the Assignment.");
    return id;
}

// The effort's share for units among all units of the type.
double share(double effort, double units, double typeUnits) {
    return typeUnits > 0 ? effort * (units / typeUnits) : effort;
}

} // namespace

KVMSPEAssignmentMapper::KVMSPEAssignmentMapper(KVMSPEMapper& mapper, KVMSPCXMLElement& tvnxTask,
                                               const std::vector<KVMSPCXMLElement::ElementPtr>& assignments)
    : KVMSPEObjectMapperBase(mapper),
      _tvnxTaskId(tvnxread::attribute(tvnxTask, tvnx::attribute::kId).value_or("")) {
    tvAssert(!_tvnxTaskId.empty(), "No Task ID is associated witgh the Assignment.");
    for (const auto& assignment : assignments) {
        const double assignmentUnits = units(*assignment);
        const std::string id = resourceId(*assignment);
        if (!mapper.projectMapper()->resourceElement(id)) {
            continue;
        }
        const std::optional<std::string> type = resourceType(id);
        tvAssert(type.has_value(), "No type specified for assigned resourse (id='" + id + "').");
        if (type == tvnx::value::kResourceTypeStaff) {
            _staffUnits += assignmentUnits;
        } else if (type == tvnx::value::kResourceTypeEquipment) {
            _equipmentUnits += assignmentUnits;
        } else if (type == tvnx::value::kResourceTypeMaterial) {
            _materialUnits += assignmentUnits;
        } else if (type == tvnx::value::kResourceTypeGroup) {
            _groupUnits += assignmentUnits;
        }
    }
}

std::shared_ptr<KVMPPAssignment>
KVMSPEAssignmentMapper::newAssignmentFromTVNXAssignment(KVMSPCXMLElement& tvnxAssignment) {
    auto assignment = std::make_shared<KVMPPAssignment>();
    _UID = KVMSPEMapper::nextAssignmentUID();
    assignment->ID = static_cast<uint64_t>(_UID);
    const KVMSPEIdMapper& ids = *mapper().idMapper();
    const std::string taskUID = ids.taskUIDFromTvnxId(_tvnxTaskId);
    assignment->task.setKey(taskUID);
    const std::string id = resourceId(tvnxAssignment);
    const std::string resourceUID = ids.resourceUIDFromTvnxResourceId(id);
    assignment->resource.setKey(resourceUID);
    tvLog(
        stringWithFormat("***  Mapping MSP Assignment UID='%lld' for Task UID='%s' and Resource UID='%s'...",
                         static_cast<long long>(_UID), taskUID.c_str(), resourceUID.c_str()));

    const KVMSPEScheduledTaskInfo& info = scheduledTask(mapper(), _tvnxTaskId);
    const double assignmentUnits = units(tvnxAssignment);
    assignment->assignmentUnits = assignmentUnits * 10000;
    const std::optional<std::string> type = resourceType(id);
    const double effort = info.effort();
    if (type == tvnx::value::kResourceTypeMaterial) {
        assignment->work = assignmentUnits * kMaterialUnitWork;
    } else if (type == tvnx::value::kResourceTypeStaff) {
        assignment->work = share(effort, assignmentUnits, _staffUnits);
    } else if (type == tvnx::value::kResourceTypeEquipment) {
        assignment->work = share(effort, assignmentUnits, _equipmentUnits);
    } else if (type == tvnx::value::kResourceTypeGroup) {
        assignment->work = share(effort, assignmentUnits, _groupUnits);
    } else {
        assignment->work = effort;
    }
    // The actual work is the task's whole work done, unshared.
    assignment->actualWork = info.effortDone();
    assignment->remainingWork = assignment->work - assignment->actualWork;
    assignment->startDate = info.startDate();
    assignment->finishDate = info.endDate();
    const size_t count = mapper().tvnxBaselines().size();
    for (size_t number = 0; number < count; ++number) {
        if (auto baseline = KVMSPEAssignmentBaselineMapper(number, mapper())
                                .newBaselineFromTvnxAssignment(tvnxAssignment)) {
            assignment->baselines.push_back(std::move(*baseline));
        }
    }
    return assignment;
}

std::shared_ptr<KVMPPAssignment>
KVMSPEAssignmentMapper::newDummyAssignmentForTaskId(const std::string& taskId, int64_t* assignmentUID,
                                                    KVMSPEMapper& mapper) {
    const KVMSPEScheduledTaskInfo& info = scheduledTask(mapper, taskId);
    auto assignment = std::make_shared<KVMPPAssignment>();
    assignment->task.setKey(mapper.idMapper()->taskUIDFromTvnxId(info.uid()));
    assignment->resource.setKey(std::to_string(kMPPUnassignedResourceUID));
    assignment->work = info.effort();
    assignment->actualWork = info.effortDone();
    assignment->remainingWork = assignment->work - assignment->actualWork;
    assignment->startDate = info.startDate();
    assignment->finishDate = info.endDate();
    const int64_t uid = KVMSPEMapper::nextAssignmentUID();
    assignment->ID = static_cast<uint64_t>(uid);
    if (assignmentUID) {
        *assignmentUID = uid;
    }
    return assignment;
}

const KVMSPEScheduledTaskInfo& KVMSPEAssignmentMapper::scheduledTask(KVMSPEMapper& mapper,
                                                                     const std::string& taskId) {
    const KVMSPEProjectMapper::ScheduledTasks* scheduledTasks = mapper.projectMapper()->scheduledTasks();
    tvAssert(scheduledTasks != nullptr, "Can not get scheduled tasks from project mapper.");
    const auto found = scheduledTasks->find(taskId);
    tvAssert(found != scheduledTasks->end(),
             "Can not get scheduled task with id='" + taskId + "' from the list of scheduled tasks.");
    return *found->second;
}

std::optional<std::string> KVMSPEAssignmentMapper::resourceType(const std::string& resourceId) const {
    const auto resource = mapper().projectMapper()->resourceElement(resourceId);
    return resource ? resource->stringValueForXQuery(tvnx::element::kType, nullptr) : std::nullopt;
}
