#pragma once

#include <nlohmann/json.hpp>

class KVMSPIMPPAbsProjectReader;

// The "project" object of the dump: every property of the project reader that can be read.
class ProjectDump {
public:
    static nlohmann::ordered_json of(KVMSPIMPPAbsProjectReader& reader);
};
