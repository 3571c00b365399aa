#include "MPPImporter/format/MPPExtendedFieldBlock.h"

#include "MPPImporter/format/MPPMemRead.h"

#include <algorithm>

namespace {

constexpr uint32_t kCountOffset = 4;
constexpr uint32_t kFirstEntryOffset = 8;
constexpr uint32_t kEntrySize = 8;
constexpr int32_t kEntryValueOffset = 4;

} // namespace

std::optional<std::span<const uint8_t>> MPPExtendedFieldBlock::value(uint32_t fieldID, size_t size) const {
    // Blocks come from a variable data stream, so their size fits a signed 32-bit offset.
    const auto blockSize = static_cast<uint32_t>(std::min<size_t>(m_bytes.size(), INT32_MAX));
    if (blockSize < kFirstEntryOffset) {
        return std::nullopt;
    }
    const uint32_t entries =
        std::min(memReadUInt(m_bytes.data(), kCountOffset), (blockSize - kFirstEntryOffset) / kEntrySize);
    for (uint32_t index = 0; index < entries; ++index) {
        const auto entry = static_cast<int32_t>(kFirstEntryOffset + index * kEntrySize);
        if (memReadUInt(m_bytes.data(), entry) != fieldID) {
            continue;
        }
        const uint32_t offset = memReadUInt(m_bytes.data(), entry + kEntryValueOffset);
        if (offset > blockSize || size > blockSize - offset) {
            return std::nullopt;
        }
        return std::span(m_bytes).subspan(offset, size);
    }
    return std::nullopt;
}
