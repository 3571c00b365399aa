#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

// The name that the user gave one custom field, and the property number under which the field's
// values stand in the kind's variable data.
struct MPPFieldAlias {
    int32_t property = 0;
    std::string name;
};

// The custom field names of one object kind, from the payload of the property element 0x4400001 of
// the kind's "Props" stream: two 32-bit sizes, a 32-bit count, per field its 16-bit property number, a
// 16-bit mark and the 32-bit offset of its name counted from the second size, then the names in
// UTF-16, each ending in a NUL. Every read is checked against the payload: a count beyond it ends at
// the last whole entry, and an entry whose name is empty or not whole within it gives no name.
std::vector<MPPFieldAlias> mppFieldAliases(std::span<const uint8_t> payload);
