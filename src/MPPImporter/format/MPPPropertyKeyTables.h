#pragma once

#include <cstdint>
#include <optional>
#include <unordered_map>

// A version's table from the system's own property keys to the numbers or offsets of the file
// format. A key the version doesn't have is not in the table.
using MPPPropertyTable = std::unordered_map<int32_t, uint32_t>;

// The property numbers (variable data and Props) and the byte offsets (fixed data and meta items)
// of the version whose column in the key tables is `keyColumn`.
MPPPropertyTable mppPropertyIDTable(int keyColumn);
MPPPropertyTable mppPropertyOffsetTable(int keyColumn);

// The same for one key, without building a table; none where the version has no such key.
std::optional<uint32_t> mppPropertyID(int keyColumn, int32_t key);
std::optional<uint32_t> mppPropertyOffset(int keyColumn, int32_t key);
