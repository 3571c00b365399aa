#pragma once

#include <cstdint>
#include <string>

// One custom field of an object kind: the property number under which its value stands in the
// kind's variable data, and the field's name ("TASK_TEXT1").
struct MPPCustomFieldRecord {
    int64_t propertyNumber = 0;
    std::string fieldName;
};
