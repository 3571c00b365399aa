#pragma once

#include <nlohmann/json.hpp>

class KVMSPIMPPAbsResourceReader;

// The "resources" list of the dump: one object per resource UID in ID order, with its fields, its
// availability table, marked baselines and custom fields.
class ResourceDump {
public:
    static nlohmann::ordered_json of(KVMSPIMPPAbsResourceReader& reader);
};
