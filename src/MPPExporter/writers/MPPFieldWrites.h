#pragma once

#include "MPPImporter/format/MPPFieldCatalog.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

// Writing catalogue fields where the readers read them: each field by its row, in the layout of the
// template's application (`layoutVersion`, 15 or 16), which a file of that application also saves. A
// field with numbered copies (baselines 1 to 10, custom fields) is written by the row of copy `number`.

// Encodes `value` into `record`, a record of `block`, at the field's offset.
void putMPPField(int32_t layoutVersion, std::span<uint8_t> record, MPPFieldBlock block, MPPField field,
                 const MPPFieldValue& value);
// The property number under which the layout keeps a field, or its copy `number`, in the variable
// data or the project's Props; none where it keeps no such copy.
std::optional<uint32_t> findMPPFieldPropertyNumber(int32_t layoutVersion, MPPField field, int64_t number = 0);
// The same for a field that the layout is known to keep.
uint32_t mppFieldPropertyNumber(int32_t layoutVersion, MPPField field, int64_t number = 0);
// The payload of a field's element in the variable data or the Props: its encoded value, text with its
// NUL.
std::vector<uint8_t> encodeMPPFieldPayload(int32_t layoutVersion, MPPField field, const MPPFieldValue& value,
                                           int64_t number = 0);
