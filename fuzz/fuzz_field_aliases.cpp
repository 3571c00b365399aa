// Decodes arbitrary bytes as the custom field names of an object kind, in the element form of formats 12
// and 14 and in the list form of format 9. Decoding must end without a crash or a hang, every name must
// lie within the payload, and what is decoded must encode and decode to the same names again.
#include "MPPImporter/format/MPPFieldAliasLayout.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <vector>

namespace {

size_t totalNameUnits(const std::vector<MPPFieldAlias>& aliases) {
    size_t units = 0;
    for (const MPPFieldAlias& alias : aliases) {
        units += alias.name.size();
    }
    return units;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::span<const uint8_t> payload(data, size);
    const std::vector<MPPFieldAlias> aliases = decodeMPPFieldAliases(payload);
    if (2 * totalNameUnits(aliases) > size) {
        std::abort();
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
