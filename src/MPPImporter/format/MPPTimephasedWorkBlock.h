#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

// One record of an assignment's timephased work block, as stored: the working-time offset of its
// period from the assignment's start and the work done up to and including it.
struct MPPTimephasedWorkRecord {
    // 80 units to the minute.
    int32_t offset = 0;
    // 1000 units to the minute.
    double cumulativeWork = 0;

    // The same in seconds.
    static double offsetSeconds(double offset) { return offset * 60.0 / 80.0; }
    static double workSeconds(double work) { return work * 60.0 / 1000.0; }
};

// An assignment's timephased work block: a signed 16-bit record count, then records of 28 bytes from
// offset 40, each with its offset at record offset 0 and its cumulative work (a double) at 4.
class MPPTimephasedWorkBlock {
public:
    MPPTimephasedWorkBlock(const uint8_t* bytes, size_t size) : m_bytes(bytes), m_size(size) {}

    // The counted records that the block holds whole, in order, up to the first with a negative offset.
    std::vector<MPPTimephasedWorkRecord> records() const;

private:
    const uint8_t* m_bytes;
    size_t m_size;
};
