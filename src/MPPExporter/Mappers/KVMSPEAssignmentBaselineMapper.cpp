#include "MPPExporter/Mappers/KVMSPEAssignmentBaselineMapper.h"

#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPCommon/support/Log.h"
#include "MPPExporter/Mappers/KVMSPEBaseline.h"
#include "MPPExporter/Mappers/KVMSPETaskBaselineMapper.h"
#include "MPPExporter/Mappers/MSPETvnxReading.h"

#include <memory>

std::optional<KVMPPAssignmentBaseline>
KVMSPEAssignmentBaselineMapper::newBaselineFromTvnxAssignment(const KVMSPCXMLElement& tvnxAssignment) const {
    const auto task = std::dynamic_pointer_cast<KVMSPCXMLElement>(tvnxAssignment.parent());
    const std::string resourceId = tvnxread::attribute(tvnxAssignment, tvnx::attribute::kIdref).value_or("");
    const std::string taskId = task ? tvnxread::attribute(*task, tvnx::attribute::kId).value_or("") : "";
    const KVMSPEBaseline& saved = baseline();
    const auto assignment = saved.getAssignmentByTaskId(taskId, resourceId);
    if (!assignment) {
        return std::nullopt;
    }
    const auto savedTask = saved.getTaskById(taskId);
    const auto savedResource = saved.getResourceById(resourceId);
    KVMPPAssignmentBaseline result;
    result.number = static_cast<int64_t>(baselineNumber());
    result.name = stringWithFormat("Baseline%d-%s", static_cast<int>(baselineNumber()), resourceId.c_str());
    // The assignment's own dates, else its task's as the task's baseline takes them: an imported
    // baseline states a task's saved start as its leveled start or its lock, not as a start date.
    const auto date = [&assignment](const char* name) {
        return tvnxread::date(assignment->stringValueForXQuery(name, nullptr));
    };
    result.start = date(tvnx::element::kStartDate);
    result.finish = date(tvnx::element::kEndDate);
    if (savedTask && task) {
        result.start = result.start ? result.start : KVMSPETaskBaselineMapper::savedStart(*savedTask, *task);
        result.finish =
            result.finish ? result.finish : KVMSPETaskBaselineMapper::savedFinish(*savedTask, *task);
        // The task's work. Its text is read as the task's baseline reads it: a reading as a whole number
        // would refuse the fractions that work may hold, and end the export.
        if (const auto effort = savedTask->stringValueForXQuery(tvnx::element::kEffort, nullptr)) {
            result.work = tvnxread::doubleValue(*effort);
        }
    }
    if (savedResource) {
        result.cost = money(tvnxread::number(*savedResource, tvnx::element::kTotalCost, result.cost));
    }
    return result;
}
