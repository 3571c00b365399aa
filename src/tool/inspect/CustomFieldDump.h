#pragma once

#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <vector>

class KVMSPISingleExtendedAttribute;

// The custom field values of a task or resource: a list of {"name", "type", "value"}, the value in the
// dump's form of its type.
class CustomFieldDump {
public:
    using Fields = std::vector<std::unique_ptr<KVMSPISingleExtendedAttribute>>;

    // `read` appends the object's values; what it appended is listed even when it answers false.
    static nlohmann::ordered_json of(const std::function<bool(Fields&)>& read);
};
