// Feeds arbitrary text to the query path parser: it must end without a crash or a hang, and it gives
// at most one component for each piece of the path between "/" separators.
#include "MPPImporter/query/frame/MSPXQParser.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string xquery(reinterpret_cast<const char*>(data), size);
    MSPXQComponents components;
    MSPXQParser::sharedXQParser().parseXQuery(xquery, components);
    const auto separators = static_cast<size_t>(std::count(xquery.begin(), xquery.end(), '/'));
    if (components.size() > separators + 1) {
        std::abort();
    }
    return 0;
}
