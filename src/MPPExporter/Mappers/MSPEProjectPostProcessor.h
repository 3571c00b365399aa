#pragma once

#include "MPPExporter/MPPObjects/KVMPPProject.h"

#include <map>
#include <string>

// The last stage of project mapping. While mapping, references between model objects are keys:
// calendar UIDs, task UIDs, resource UIDs. This stage resolves every key to its object, turns custom
// field values into one text per project field name, builds the parent links of the task outline,
// and verifies that no key survived. Every failure is an internal error: the first ends the export.
class MSPEProjectPostProcessor {
public:
    using UidToIdMap = std::map<std::string, std::string>;

    // The task and resource UID to ID maps that task and resource mapping filled.
    MSPEProjectPostProcessor(const UidToIdMap& taskUidToIdMap, const UidToIdMap& resourceUidToIdMap);

    // Resolves, builds the outline and verifies the project with its lists and the links that task
    // mapping gathered.
    void mppPostProcessProject(KVMPPProject& project, const KVMPPProject::List<KVMPPConstraint>& constraints);

    // Sets each task's parent from the outline levels of a list in depth-first order. A task more
    // than one level below the one before is an internal error.
    static void makeTaskTreeFromTasks(const KVMPPProject::List<KVMPPTask>& tasks);
    // Checks that no deferred field still holds a key and that every calendar is either a base
    // calendar or has one, not both.
    static void verifyFixedProject(const KVMPPProject& project,
                                   const KVMPPProject::List<KVMPPConstraint>& constraints);

private:
    template <class T>
    using Table = std::map<uint64_t, std::shared_ptr<T>>;

    std::shared_ptr<KVMPPTask> resolveTask(const MPPDeferred<KVMPPTask>& key) const;
    std::shared_ptr<KVMPPCalendar> resolveCalendar(const MPPDeferred<KVMPPCalendar>& key,
                                                   const char* notFoundFormat) const;
    std::shared_ptr<KVMPPResource> resolveResource(const MPPDeferred<KVMPPResource>& key) const;
    void resolveProjectCalendar(KVMPPProject& project) const;
    void resolveCalendars(const KVMPPProject& project) const;
    static void resolveCustomFields(KVMPPProject& project);

    const UidToIdMap& _taskUidToIdMap;
    const UidToIdMap& _resourceUidToIdMap;
    Table<KVMPPTask> _tasks;
    Table<KVMPPResource> _resources;
    Table<KVMPPCalendar> _calendars;
};
