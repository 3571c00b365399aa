#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPCommon/xml/KVMSPCXMLElement.h"
#include "MPPImporter/Mapper/mapping/KVMSPIObjectMapperBase.h"
#include "MPPImporter/Mapper/mapping/KVMSPIUserDataMapper.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

// Turns one task of the plan into one `task` element. Constraint types, manual scheduling and
// leveling become the bundle's schedule type, locks and date limits; links become dependencies.
class KVMSPITaskMapper : public KVMSPIObjectMapperBase {
public:
    using ElementPtr = KVMSPCXMLElement::ElementPtr;

    KVMSPITaskMapper(KVMSPIMapper& mapper, bool scheduleFromStart,
                     MSPIUserDataTOCElements& userDataTOCElements, int64_t* mspTaskMaxId);

    // The new element, or none for a task whose type the bundle doesn't know.
    ElementPtr newTaskFromMSPTask(KVMSPIXQuery& mspTask);
    int64_t mspTaskUID() const { return _mspTaskUID; }
    bool userDataChanged() const { return _userDataChanged; }

    // The decision tables of the mapping, as plain functions of their inputs.

    // "group" for a summary, "milestone" for no duration or the flag, "hammock", else "task".
    static const char* taskType(bool summary, int64_t durationSeconds, bool milestone, bool hammock);
    // The locks of an automatically scheduled task from its constraint (type and date), its dates and
    // the project's bound: Must Start On and Must Finish On pin their date, and a task that starts
    // ahead of a project scheduled from its start, or ends behind one scheduled from its end, is
    // pinned where it stands; both reasons together take the outer date.
    struct AutomaticDates {
        int64_t constraintType = -1;
        std::optional<TVDate> constraintDate, start, finish, projectStart, projectFinish;
        bool scheduleFromStart = true;
        bool summary = false;
    };
    struct Locks {
        std::optional<TVDate> start, end;
    };
    static Locks automaticTaskLocks(const AutomaticDates& dates);
    // The element that a constraint date becomes, none for a type without one; Must Start On and
    // Must Finish On only when their lock wasn't written.
    static const char* constraintDateElement(int64_t constraintType, bool lockedStartWritten,
                                             bool lockedEndWritten);
    // The lead time of a link lag in tenths of a minute: seconds, or a fraction for the percentage
    // formats. The text and whether it is a percentage.
    static std::pair<std::string, bool> leadTime(int64_t linkLag, std::optional<int64_t> lagFormat);
    // The `kind` of a link type, none for a type outside 0 to 3.
    static const char* dependencyKind(int64_t linkType);

private:
    // The dates of the task as MSPDI text and as TVNX text.
    struct TaskDates {
        std::optional<std::string> start, finish;
        std::optional<std::string> tvnxStart, tvnxFinish;
    };
    bool addLeveledStart(KVMSPIXQuery& mspTask, KVMSPCXMLElement& task, bool manual) const;
    // Adds `effort` and answers its seconds.
    int64_t addEffort(KVMSPIXQuery& mspTask, KVMSPCXMLElement& task, int64_t durationSeconds) const;
    void addCompletion(KVMSPIXQuery& mspTask, KVMSPCXMLElement& task, int64_t effortSeconds) const;
    void addManualTaskLocks(KVMSPIXQuery& mspTask, KVMSPCXMLElement& task, const TaskDates& dates) const;
    void addAutomaticTaskLocks(KVMSPIXQuery& mspTask, KVMSPCXMLElement& task, const TaskDates& dates,
                               int64_t constraintType,
                               const std::optional<std::string>& constraintDate) const;
    // False for a task type the bundle has no counterpart for.
    bool addRecalculate(KVMSPIXQuery& mspTask, KVMSPCXMLElement& task) const;
    void addUserData(KVMSPIXQuery& mspTask, KVMSPCXMLElement& task);
    void addDependencies(KVMSPIXQuery& mspTask, KVMSPCXMLElement& task) const;
    void addConstraintDate(KVMSPCXMLElement& task, int64_t constraintType,
                           const std::optional<std::string>& constraintDate) const;
    void addHammockLinks(KVMSPIXQuery& mspTask, const ElementPtr& task) const;

    int64_t _mspTaskUID = -1;
    MSPIUserDataTOCElements& _userDataTOCElements;
    bool _mspScheduleFromStart;
    int64_t* _mspTaskMaxId;
    bool _userDataChanged = false;
};
