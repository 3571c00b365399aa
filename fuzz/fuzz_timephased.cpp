// Decodes arbitrary bytes as an assignment's timephased work block from a fixed assignment start:
// decoding must end without a crash or a hang, and every phase it gives holds positive, finite work
// and doesn't end before it starts. (Offsets come in 0.75 seconds and the calendar snaps to whole
// seconds, so an end may lie up to a second before a start that has a fraction.)
#include "MPPImporter/readers/MPPTimephasedWorkDecoder.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // Monday 4 January 2016, 08:00 UTC.
    constexpr TVDate kAssignmentStart{1451894400.0};
    for (const MPPTimephasedPhase& phase : MPPTimephasedWorkDecoder(data, size).decode(kAssignmentStart)) {
        if (!(phase.seconds > 0.0) || !std::isfinite(phase.seconds) ||
            phase.end < phase.start.addingSeconds(-1.0)) {
            std::abort();
        }
    }
    return 0;
}
