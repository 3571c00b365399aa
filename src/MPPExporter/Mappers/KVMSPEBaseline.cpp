#include "MPPExporter/Mappers/KVMSPEBaseline.h"

#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPExporter/Mappers/MSPETvnxReading.h"

KVMSPEBaseline::KVMSPEBaseline(KVMSPCXMLDocument::DocumentPtr xmlDoc) : _xmlDoc(std::move(xmlDoc)) {
    if (const auto root = _xmlDoc ? _xmlDoc->rootElement() : nullptr) {
        _tasks = tvnxread::elementsById(*root, tvnx::element::kTask, [](const std::string&) {});
        _resources = tvnxread::elementsById(*root, tvnx::element::kResource, [](const std::string&) {});
        for (const auto& [taskId, task] : _tasks) {
            for (const ElementPtr& assignment : task->elementsForName(tvnx::element::kAssignment)) {
                if (const auto resourceId = tvnxread::attribute(*assignment, tvnx::attribute::kIdref)) {
                    _assignments.emplace(std::pair(taskId, *resourceId), assignment);
                }
            }
        }
    }
}

KVMSPEBaseline::ElementPtr KVMSPEBaseline::getTaskById(const std::string& id) const {
    const auto found = _tasks.find(id);
    return found == _tasks.end() ? nullptr : found->second;
}

KVMSPEBaseline::ElementPtr KVMSPEBaseline::getResourceById(const std::string& id) const {
    const auto found = _resources.find(id);
    return found == _resources.end() ? nullptr : found->second;
}

KVMSPEBaseline::ElementPtr KVMSPEBaseline::getAssignmentByTaskId(const std::string& taskId,
                                                                 const std::string& resourceId) const {
    const auto found = _assignments.find(std::pair(taskId, resourceId));
    return found == _assignments.end() ? nullptr : found->second;
}
