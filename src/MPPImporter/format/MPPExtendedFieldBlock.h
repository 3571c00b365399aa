#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

// A block of extended field values, in which format 9 keeps a task's baselines 1 to 10 as one
// variable data item: a 32-bit size, a 32-bit count, then for each value a 32-bit field ID and the
// 32-bit offset of the value in the block. Every read is checked against the end of the block, and a
// count beyond it ends at the last whole entry.
class MPPExtendedFieldBlock {
public:
    explicit MPPExtendedFieldBlock(std::vector<uint8_t> bytes) : m_bytes(std::move(bytes)) {}

    // The `size` bytes of the field's value; none when the block doesn't hold them whole.
    std::optional<std::span<const uint8_t>> value(uint32_t fieldID, size_t size) const;

private:
    std::vector<uint8_t> m_bytes;
};
