#pragma once

#include "MPPExporter/MPPObjects/KVMPPExtendedAttribute.h"

#include <optional>
#include <string>
#include <vector>

// The custom field values of a task or resource. While mapping they are extended attributes in the
// order the user data gave them; post-processing turns them into one text per custom field name of
// the project, so that a value's position is its field number less one.
class MPPCustomFields {
public:
    void addAttribute(KVMPPExtendedAttribute attribute) { _attributes.push_back(std::move(attribute)); }
    const std::vector<KVMPPExtendedAttribute>& attributes() const { return _attributes; }

    // One text per name, in the order of `names`: the value of the first attribute whose alias is
    // the name, or the empty string. Attributes of other names are dropped.
    void resolve(const std::vector<std::string>& names);
    bool isResolved() const { return _values.has_value(); }
    // The texts after `resolve`; empty before.
    const std::vector<std::string>& values() const;

    // Whether the field at a 1-based position has a text of non-zero length; false before `resolve`.
    bool hasText(size_t position) const;

private:
    std::vector<KVMPPExtendedAttribute> _attributes;
    std::optional<std::vector<std::string>> _values;
};
