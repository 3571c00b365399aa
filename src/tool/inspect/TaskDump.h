#pragma once

#include <nlohmann/json.hpp>

class KVMSPIMPPAbsConstraintReader;
class KVMSPIMPPAbsTaskReader;

// The "tasks" list of the dump: one object per task UID in ID order, with its fields, flags, marked
// baselines, the values of the baselines that hold it, custom fields and the links to its predecessors.
class TaskDump {
public:
    // `constraints` may be absent: the tasks then have no predecessors.
    static nlohmann::ordered_json of(KVMSPIMPPAbsTaskReader& reader,
                                     const KVMSPIMPPAbsConstraintReader* constraints);
};
