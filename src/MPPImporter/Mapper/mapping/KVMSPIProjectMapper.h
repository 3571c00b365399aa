#pragma once

#include "MPPCommon/xml/KVMSPCXMLElement.h"
#include "MPPImporter/Mapper/mapping/KVMSPIObjectMapperBase.h"
#include "MPPImporter/Mapper/mapping/KVMSPIUserDataMapper.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

class KVMSPIMPPProjectReader;

// Builds the body of one scenario: the project dates, the top resource with the project calendar, the
// resources, the tasks with their assignments and splits, and the outline. The order of the steps
// matters: later steps find what earlier ones made.
class KVMSPIProjectMapper : public KVMSPIObjectMapperBase {
public:
    using ElementPtr = KVMSPCXMLElement::ElementPtr;
    using Objects = KVMSPIXQuery::Objects;
    // Task UID to the assignment readers of the task.
    using AssignmentMap = std::map<int64_t, Objects>;

    // The two maxima are the mapper's, raised as objects are mapped.
    KVMSPIProjectMapper(KVMSPIMapper& mapper, int64_t* mspTaskMaxId, int64_t* mspResourceMaxId,
                        MSPIUserDataTOCElements& userDataTOCElements);

    // The new `scenario` element.
    ElementPtr newScenarioFromMSPProject(KVMSPIMPPProjectReader& project);
    // "split-1", "split-2", ...: a temporary id for a piece of a split task.
    std::string getTempSplitTaskID();

    bool userDataChanged() const { return _userDataChanged; }
    const std::string& mspProjectName() const { return _mspProjectName; }
    // The project's start (scheduled from start) or finish (scheduled from end), MSPDI text.
    const std::optional<std::string>& mspStartDate() const { return _mspStartDate; }
    const std::optional<std::string>& mspFinishDate() const { return _mspFinishDate; }

    // Inserts a `child-task` reference into a group behind its head (`type`, `recalculate`,
    // `static-cost` and earlier references) and ahead of its note. Nothing happens without a group.
    static void addChildTaskRef(const ElementPtr& childTask, const ElementPtr& group);

private:
    std::string projectName(KVMSPIMPPProjectReader& project) const;
    void addProjectDates(KVMSPIMPPProjectReader& project, KVMSPCXMLElement& scenario);
    // The top resource with the project calendar; it also becomes the mapper's schedule calendar.
    ElementPtr addTopResourceToScenario(KVMSPIMPPProjectReader& project, KVMSPCXMLElement& scenario);
    // The base calendar named "Standard", else the project's default base calendar.
    std::shared_ptr<KVMSPIXQuery> projectCalendar(KVMSPIMPPProjectReader& project) const;
    void addMspResources(const Objects& resources, KVMSPCXMLElement& scenario,
                         KVMSPCXMLElement& topGroupResource);
    AssignmentMap newAssignmentMapWithMspAssignments(const Objects& assignments) const;
    void buildMspTasks(const Objects& tasks, const AssignmentMap& assignmentMap, const Objects& resources,
                       KVMSPCXMLElement& scenario, KVMSPCXMLElement& topGroupTask);
    // Makes a plain task a split task when its timephased data has gaps; the pieces are added to
    // `pieces`, each with the reference that its task holds. Answers whether the task was split.
    struct Piece {
        ElementPtr task;
        ElementPtr reference;
    };
    bool splitTask(KVMSPIXQuery& mspTask, KVMSPCXMLElement& task, std::vector<Piece>& pieces);
    void addRootTask(KVMSPCXMLElement& rootTask, KVMSPCXMLElement& topGroupTask) const;
    void addMspAssignmentsFromMap(const AssignmentMap& assignmentMap, KVMSPIXQuery& mspTask,
                                  KVMSPCXMLElement& task, const Objects& resources);
    void buildTaskGroupsWithTopGroupTask(const ElementPtr& topGroupTask);

    std::string _mspProjectName;
    int64_t* _mspTaskMaxId;
    int64_t* _mspResourceMaxId;
    MSPIUserDataTOCElements& _userDataTOCElements;
    bool _userDataChanged = false;
    bool _mspScheduleFromStart = true;
    std::optional<std::string> _mspStartDate;
    std::optional<std::string> _mspFinishDate;
    int64_t _splitTaskID = 0;
    std::vector<int64_t> _mspTaskUIDs;
    std::map<int64_t, ElementPtr> _mspTaskUIDToTvnxTaskMap;
};
