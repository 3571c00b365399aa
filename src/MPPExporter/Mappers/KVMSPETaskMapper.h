#pragma once

#include "MPPCommon/xml/KVMSPCXMLElement.h"
#include "MPPExporter/MPPObjects/KVMPPTask.h"
#include "MPPExporter/Mappers/KVMSPEObjectMapperBase.h"

#include <memory>

class KVMSPEScheduledTaskInfo;

// Turns one task element of the bundle into one task of the plan: the planning application's
// schedule type, locks, limits and recalculation become constraint types and task types, and the
// numbers come from the task's scheduled information. Its links go to the driver with task UIDs as
// keys.
class KVMSPETaskMapper : public KVMSPEObjectMapperBase {
public:
    using ElementPtr = KVMSPCXMLElement::ElementPtr;

    explicit KVMSPETaskMapper(KVMSPEMapper& mapper) : KVMSPEObjectMapperBase(mapper) {}

    // The parent element is not consulted: post-processing builds the outline from levels. Internal
    // errors of the document raise the internal-inconsistency exception.
    std::shared_ptr<KVMPPTask> newTaskFromTVNXTask(const ElementPtr& tvnxTask, const ElementPtr& parentTask);

private:
    const KVMSPEScheduledTaskInfo& scheduledTask(const std::string& id) const;
    static void mapTaskType(KVMPPTask& task, const std::optional<std::string>& recalculate,
                            const KVMSPEScheduledTaskInfo& info);
    void mapProgress(KVMPPTask& task, KVMSPCXMLElement& element, const KVMSPEScheduledTaskInfo& info) const;
    void mapConstraint(KVMPPTask& task, const KVMSPEScheduledTaskInfo& info) const;
    void mapLinks(const KVMSPEScheduledTaskInfo& info) const;
    // The task's saved values in each baseline document of the driver, in their order.
    void mapBaselines(KVMPPTask& task, const KVMSPCXMLElement& element) const;
    // Dates and duration that the bundle leaves to the planning application to compute.
    void completeSchedule(KVMPPTask& task, KVMSPCXMLElement& element,
                          const KVMSPEScheduledTaskInfo& info) const;
};
