// Decodes arbitrary bytes as a resource's availability table: decoding must end without a crash or
// a hang, and it may give no more periods than the table's rows, each beginning where its row says.
#include "MPPImporter/format/MPPResourceAvailabilityTable.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    constexpr size_t kFirstRowOffset = 12;
    constexpr size_t kRowSize = 20;
    std::vector<MPPResourceAvailabilityPeriod> periods;
    MPPResourceAvailabilityTable(data, size).appendPeriods(periods);
    const size_t rowsHeld = size > kFirstRowOffset ? (size - kFirstRowOffset) / kRowSize : 0;
    if (periods.size() > rowsHeld) {
        std::abort();
    }
    return 0;
}
