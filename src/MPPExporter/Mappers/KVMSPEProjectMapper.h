#pragma once

#include "MPPCommon/xml/KVMSPCXMLElement.h"
#include "MPPExporter/MPPObjects/KVMPPProject.h"
#include "MPPExporter/Mappers/KVMSPEObjectMapperBase.h"
#include "MPPExporter/Mappers/KVMSPEScheduledTaskInfo.h"
#include "MPPExporter/Mappers/KVMSPETimephasedDataInfo.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// Turns a scenario of the bundle into the plan: the project's settings, the scheduled information of
// every task, the resource tree (which reads the schedules into calendars), the calendar hierarchy,
// the task outline with its assignments and links, and last the post-processing that resolves every
// reference. Both walks start at the top resource and top task that the scenario names; what no
// `child-resource` or `child-task` reaches is not exported.
class KVMSPEProjectMapper : public KVMSPEObjectMapperBase {
public:
    using ElementPtr = KVMSPCXMLElement::ElementPtr;
    using ScheduledTasks = std::map<std::string, std::unique_ptr<KVMSPEScheduledTaskInfo>>;
    using UidToIdMap = std::map<std::string, std::string>;

    explicit KVMSPEProjectMapper(KVMSPEMapper& mapper);
    ~KVMSPEProjectMapper() override;

    // The project, which the driver holds from the first step on. Internal errors of the document
    // raise the internal-inconsistency exception.
    std::shared_ptr<KVMPPProject> newProjectFromTVNXScenario(const ElementPtr& scenario);

    const ElementPtr& tvnxScenario() const { return _tvnxScenario; }
    bool scheduleFromStart() const { return _scheduleFromStart; }
    const std::optional<std::string>& tvnxProjectStartDate() const { return _tvnxProjectStartDate; }
    const std::optional<std::string>& tvnxProjectFinishDate() const { return _tvnxProjectFinishDate; }
    int64_t minTaskPriortiy() const { return _minTaskPriortiy; }
    int64_t maxTaskPriortiy() const { return _maxTaskPriortiy; }
    // The information of every task of the scenario by its id; null until the project mapping has
    // read them.
    const ScheduledTasks* scheduledTasks() const { return _scheduledTasks ? &*_scheduledTasks : nullptr; }
    void setScheduledTasks(ScheduledTasks scheduledTasks) { _scheduledTasks = std::move(scheduledTasks); }
    // Task and resource UIDs to the IDs of the model, filled by task and resource mapping.
    UidToIdMap& taskUidToIdMap() { return _taskUidToIdMap; }
    UidToIdMap& resourceUidToIdMap() { return _resourceUidToIdMap; }

    // The resource or task element of the scenario with an id, or null; what the query
    // "resource[@id='...']" or "task[@id='...']" finds, from an index built once.
    ElementPtr resourceElement(const std::string& id) const;
    ElementPtr taskElement(const std::string& id) const;

    // The custom field names of tasks and resources that the table of contents declares, 30 at most.
    void readCustomDataKeys(KVMSPCXMLElement& tocRoot, KVMPPProject& project) const;
    // Gives the assignment one phase per worked stretch of its split task, in working seconds from the
    // assignment's start, or else from `taskStart`.
    void mapSplitTaskTimePhases(KVMPPAssignment& assignment,
                                const std::vector<KVMSPETimephasedDataInfo>& timePhases,
                                std::optional<TVDate> taskStart) const;

private:
    struct ResourceVisit;
    struct TaskVisit;

    void readProjectSettings(KVMSPCXMLElement& scenario, KVMPPProject& project);
    void readScheduledTasks(KVMSPCXMLElement& scenario, KVMPPProject& project);
    void walkResources(KVMSPCXMLElement& scenario, KVMPPProject& project);
    void walkTasks(KVMPPProject& project);
    // Maps one resource and answers the visits of its members, in document order.
    std::vector<ResourceVisit> addTvnxResource(const ResourceVisit& visit, KVMPPProject& project);
    // Maps one task and answers the visits of its members, in document order.
    std::vector<TaskVisit> addTvnxTask(const TaskVisit& visit, KVMPPProject& project);
    static void rollUpGroupDates(const KVMPPProject& project);
    void addTvnxAssignments(const std::vector<ElementPtr>& assignments, KVMSPCXMLElement& task,
                            const std::optional<std::vector<KVMSPETimephasedDataInfo>>& timePhases,
                            std::optional<TVDate> taskStart, KVMPPProject& project);

    ElementPtr _tvnxScenario;
    bool _scheduleFromStart = true;
    std::optional<std::string> _tvnxProjectStartDate;
    std::optional<std::string> _tvnxProjectFinishDate;
    int64_t _minTaskPriortiy = 0;
    int64_t _maxTaskPriortiy = 0;
    std::optional<ScheduledTasks> _scheduledTasks;
    UidToIdMap _taskUidToIdMap;
    UidToIdMap _resourceUidToIdMap;
    int64_t _unnamedGroupsCount = 0;
    std::map<std::string, ElementPtr> _tasksById;
    std::map<std::string, ElementPtr> _resourcesById;
};
