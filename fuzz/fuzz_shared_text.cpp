// Feeds arbitrary bytes to the text operations that the import and the export share: flag parsing,
// UTF-16 widths, truncation at character borders and the wide and narrow conversions. Each must end
// without a crash, and every result must hold the invariants below.
#include "MPPCommon/shared/MSPCBoolValue.h"
#include "MPPCommon/shared/MSPCUnicodeStrings.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 2) {
        return 0;
    }
    // The first two bytes choose the range to truncate; the rest is the text.
    const size_t start = data[0] % 64;
    const size_t maximum = data[1] % 64;
    const std::string text(reinterpret_cast<const char*>(data) + 2, size - 2);

    TVError error;
    if (boolValueFromString(text, &error) && !error.domain.empty()) {
        std::abort();
    }
    const std::string clean = charFromString(text);
    if (charFromString(clean) != clean ||
        stringFromWchar(wcharFromString(clean).c_str()).size() > clean.size()) {
        std::abort();
    }
    const size_t space = spaceAllocatedForUnicode(text);
    if (space % 4 != 0 || space < 4 || space > 2 * text.size() + 8) {
        std::abort();
    }
    const std::string part = truncateUnicodeString(text, start, maximum);
    // A part is well-formed and never longer than the whole.
    if (charFromString(part) != part || spaceAllocatedForUnicode(part) > space) {
        std::abort();
    }
    return 0;
}
