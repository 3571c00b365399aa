#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

// The custom field names of one object kind: the payload of the property element kFieldAliasesProperty
// of the kind's "Props" stream. Two 32-bit sizes (both the byte count from the second size to the end of
// the names), a 32-bit count, per field its 16-bit property number, a 16-bit mark and the 32-bit offset
// of its name counted from the second size, then the names in UTF-16, each ending in a NUL and packed
// one behind the other, and a trailer of two empty blocks and an empty list of field definitions. The
// reader of the names and the writer of the element both go by this one description.

// The name that the user gave one custom field.
struct MPPFieldAlias {
    // The property number under which the field's values stand in the kind's variable data, as stored.
    uint16_t property = 0;
    // The kind's variable meta ending, which the application repeats in every entry.
    uint16_t mark = 0;
    std::u16string name;

    bool operator==(const MPPFieldAlias&) const = default;
};

// The payload that holds `aliases` in their order.
std::vector<uint8_t> encodeMPPFieldAliases(std::span<const MPPFieldAlias> aliases);

// The names of a payload. Every read is checked against the payload: a count beyond it ends at the last
// whole entry, and an entry whose name is empty or not whole within it gives no name.
std::vector<MPPFieldAlias> decodeMPPFieldAliases(std::span<const uint8_t> payload);

// Format 9's list of custom field names: UTF-16 names, each ending in a NUL, one after another, one for
// each place of the application's list of fields and empty where the user named none. A last name that
// the payload cuts off is left out.
std::vector<std::u16string> decodeMPPFieldNameList(std::span<const uint8_t> payload);
