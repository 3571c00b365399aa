#pragma once

#include "MPPCommon/support/TVDate.h"

#include <cstdint>
#include <optional>
#include <vector>

// A block of extended field values, in which format 9 keeps a task's baselines 1 to 10 as one
// variable data item: a 32-bit size, a 32-bit count, then for each value a 32-bit field ID and the
// 32-bit offset of the value in the block. Every read is checked against the end of the block, and a
// count beyond it ends at the last whole entry.
class MPPExtendedFieldBlock {
public:
    explicit MPPExtendedFieldBlock(std::vector<uint8_t> bytes) : m_bytes(std::move(bytes)) {}

    // The value of the field; none when the block doesn't hold it whole. A null date is none too.
    std::optional<int32_t> intValue(uint32_t fieldID) const;
    std::optional<double> doubleValue(uint32_t fieldID) const;
    std::optional<TVDate> timestampValue(uint32_t fieldID) const;

private:
    // Where the field's value of `size` bytes starts in the block.
    std::optional<int32_t> valueOffset(uint32_t fieldID, uint32_t size) const;

    std::vector<uint8_t> m_bytes;
};
