#pragma once

#include "MPPCommon/support/TVDate.h"

#include <cstddef>
#include <cstdint>
#include <vector>

// One phase of an assignment's timephased work: a period of working time and the work done in it.
struct MPPTimephasedPhase {
    TVDate start;
    TVDate end;
    // Work of the phase, in seconds.
    double seconds = 0;
};

// Decodes an assignment's timephased work block (MPPTimephasedWorkBlock): each record whose
// cumulative work grows becomes a phase that starts at its working-time offset from the assignment's
// start and lasts for the work it adds; both are laid on the standard calendar's working time, on the
// wall clock of the assignment's start (MPPWallClockWorkingTime), whatever the machine's zone.
class MPPTimephasedWorkDecoder {
public:
    MPPTimephasedWorkDecoder(const uint8_t* bytes, size_t size) : m_bytes(bytes), m_size(size) {}

    // The phases of the whole records the block holds, in record order. Decoding stops at a record
    // whose offset is negative, and before the phases would walk far more working time than those of
    // one assignment can, which only a corrupt block asks for.
    std::vector<MPPTimephasedPhase> decode(TVDate assignmentStart) const;

private:
    const uint8_t* m_bytes;
    size_t m_size;
};
