// Decodes arbitrary bytes as the custom field names of an object kind, in the element form of formats 12
// and 14 and in the list form of format 9. Decoding must end without a crash or a hang, no more entries
// than the payload holds and every name within it (entries may share one name), and what is decoded must
// encode and decode to the same names again.
#include "MPPImporter/format/MPPFieldAliasLayout.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <vector>

namespace {

// The smallest payload that holds one entry: two sizes, the count, then 8 bytes per entry.
constexpr size_t kEntriesAt = 12;
constexpr size_t kEntrySize = 8;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::span<const uint8_t> payload(data, size);
    const std::vector<MPPFieldAlias> aliases = decodeMPPFieldAliases(payload);
    const size_t entriesHeld = size > kEntriesAt ? (size - kEntriesAt) / kEntrySize : 0;
    if (aliases.size() > entriesHeld) {
        std::abort();
    }
    for (const MPPFieldAlias& alias : aliases) {
        if (2 * alias.name.size() > size) {
            std::abort();
        }
    }
    if (decodeMPPFieldAliases(encodeMPPFieldAliases(aliases)) != aliases) {
        std::abort();
    }
    size_t listUnits = 0;
    for (const std::u16string& name : decodeMPPFieldNameList(payload)) {
        listUnits += name.size() + 1;
    }
    if (2 * listUnits > size + 2) {
        std::abort();
    }
    return 0;
}
