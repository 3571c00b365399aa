#pragma once

#include <nlohmann/json.hpp>

class KVMSPIMPPAbsAssignmentReader;

// The "assignments" list of the dump: one object per assignment UID, with its fields and the phases of
// its timephased work. Work is given in whole microseconds like every time span of the dump.
class AssignmentDump {
public:
    static nlohmann::ordered_json of(KVMSPIMPPAbsAssignmentReader& reader);
};
