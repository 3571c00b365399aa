#pragma once

#include "MPPCommon/xml/KVMSPCXMLElement.h"

#include <map>
#include <optional>
#include <string>

// The `user-data` elements that the table of contents must declare, shared by all mappers of one
// scenario: under the tags "task-user-data-keys" and "resource-user-data-keys", and under the empty
// tag for data of the project itself.
using MSPIUserDataTOCElements = std::map<std::string, KVMSPCXMLElement::ElementPtr>;
// The tag of the project's own data.
inline constexpr const char* kMSPIProjectUserDataTag = "";

// Turns the custom fields of a task or resource (name to text) into `user-data`, and records the
// names that the table of contents declares.
class KVMSPIUserDataMapper {
public:
    using Fields = std::map<std::string, std::string>;

    explicit KVMSPIUserDataMapper(MSPIUserDataTOCElements& userDataTOCElements);

    // `key` and `string` pairs in the fields' order; none for no fields.
    KVMSPCXMLElement::ElementPtr newUserDataFromDictionary(const Fields& fields) const;
    // Stores a `user-data` of the field names under the tag. With a tag it declares them, each followed
    // by an empty `null`, behind the names declared there before that it doesn't repeat; without one it
    // replaces what stood there, each name followed by its value. False, with nothing stored, for no
    // fields.
    bool setUserDataTOCElementsForTag(const std::optional<std::string>& tag, const Fields& fields);

private:
    MSPIUserDataTOCElements& _userDataTOCElements;
};
