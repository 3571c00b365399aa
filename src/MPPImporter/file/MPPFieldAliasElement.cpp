#include "MPPImporter/file/MPPFieldAliasElement.h"

#include "MPPImporter/text/UnicodeText.h"

namespace {

constexpr size_t kOffsetBase = 4; // offsets count from the second size
constexpr size_t kCountAt = 8;
constexpr size_t kEntriesAt = 12;
constexpr size_t kEntrySize = 8;

uint32_t wordAt(std::span<const uint8_t> bytes, size_t at) {
    return bytes[at] | bytes[at + 1] << 8 | bytes[at + 2] << 16 | static_cast<uint32_t>(bytes[at + 3]) << 24;
}

// The UTF-16 text at `at` up to its NUL; empty when the bytes end before it.
std::string textAt(std::span<const uint8_t> bytes, size_t at) {
    std::u16string units;
    for (; at + 1 < bytes.size(); at += 2) {
        const auto unit = static_cast<char16_t>(bytes[at] | bytes[at + 1] << 8);
        if (unit == 0) {
            return utf8FromUTF16(units);
        }
        units.push_back(unit);
    }
    return {};
}

} // namespace

std::vector<MPPFieldAlias> mppFieldAliases(std::span<const uint8_t> payload) {
    std::vector<MPPFieldAlias> aliases;
    if (payload.size() < kEntriesAt) {
        return aliases;
    }
    const uint64_t count = wordAt(payload, kCountAt);
    for (uint64_t index = 0; index < count && kEntriesAt + (index + 1) * kEntrySize <= payload.size();
         ++index) {
        const size_t entry = kEntriesAt + index * kEntrySize;
        const uint64_t name = kOffsetBase + uint64_t{wordAt(payload, entry + 4)};
        if (name >= payload.size()) {
            continue;
        }
        std::string text = textAt(payload, name);
        if (!text.empty()) {
            aliases.push_back(
                {static_cast<int32_t>(payload[entry] | payload[entry + 1] << 8), std::move(text)});
        }
    }
    return aliases;
}
