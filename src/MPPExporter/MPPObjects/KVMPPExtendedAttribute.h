#pragma once

#include <optional>
#include <string>

// One custom field value of a task or resource as mapped from the bundle's user data: the user data
// key in `alias` and its text in `value`. The other fields are carried for the writers.
class KVMPPExtendedAttribute {
public:
    bool isValidAttribute() const { return fieldID.has_value(); }
    bool isAttributeName() const { return alias.has_value(); }
    bool isAttributeValue() const { return value.has_value(); }

    std::optional<std::string> fieldID;
    std::optional<std::string> fieldName;
    std::optional<std::string> alias;
    std::optional<std::string> guid;
    std::optional<std::string> value;
};
