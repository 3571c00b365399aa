#include "MPPImporter/format/MPPFieldAliasLayout.h"

#include "MPPImporter/format/MPPValueCodecs.h"

namespace {

constexpr size_t kAliasSizesAt = 0;
constexpr size_t kAliasOffsetBase = 4; // sizes and offsets count from the second size
constexpr size_t kAliasCountAt = 8;
constexpr size_t kAliasEntriesAt = 12;
constexpr size_t kAliasEntrySize = 8;
constexpr size_t kAliasMarkAt = 2;
constexpr size_t kAliasNameOffsetAt = 4;
// Behind the names the application's files hold two empty blocks (each its two sizes 8 and a count 0)
// and an empty list of field definitions (its count and size), for tasks and resources alike.
constexpr uint32_t kAliasTrailer[] = {8, 8, 0, 8, 8, 0, 0, 0};

void putAliasWord(std::vector<uint8_t>& bytes, size_t at, uint32_t value) {
    encodeMPPNumber(value, std::span(bytes).subspan(at));
}

// The UTF-16 text at `at` up to its NUL; empty when the bytes end before it.
std::u16string aliasTextAt(std::span<const uint8_t> bytes, size_t at) {
    for (size_t end = at; end + 1 < bytes.size(); end += 2) {
        if (decodeMPPNumber<uint16_t>(bytes.subspan(end)) == 0) {
            return decodeMPPText(bytes.subspan(at, end - at));
        }
    }
    return {};
}

} // namespace

std::vector<uint8_t> encodeMPPFieldAliases(std::span<const MPPFieldAlias> aliases) {
    const size_t namesAt = kAliasEntriesAt + aliases.size() * kAliasEntrySize;
    size_t end = namesAt;
    for (const MPPFieldAlias& alias : aliases) {
        end += 2 * (alias.name.size() + 1);
    }
    std::vector<uint8_t> bytes(end + sizeof(kAliasTrailer));
    const auto size = static_cast<uint32_t>(end - kAliasOffsetBase);
    putAliasWord(bytes, kAliasSizesAt, size);
    putAliasWord(bytes, kAliasOffsetBase, size);
    putAliasWord(bytes, kAliasCountAt, static_cast<uint32_t>(aliases.size()));
    size_t entry = kAliasEntriesAt;
    size_t name = namesAt;
    for (const MPPFieldAlias& alias : aliases) {
        encodeMPPNumber(alias.property, std::span(bytes).subspan(entry));
        encodeMPPNumber(alias.mark, std::span(bytes).subspan(entry + kAliasMarkAt));
        putAliasWord(bytes, entry + kAliasNameOffsetAt, static_cast<uint32_t>(name - kAliasOffsetBase));
        encodeMPPText(alias.name, std::span(bytes).subspan(name));
        entry += kAliasEntrySize;
        name += 2 * (alias.name.size() + 1);
    }
    for (uint32_t word : kAliasTrailer) {
        putAliasWord(bytes, end, word);
        end += 4;
    }
    return bytes;
}

std::vector<MPPFieldAlias> decodeMPPFieldAliases(std::span<const uint8_t> payload) {
    std::vector<MPPFieldAlias> aliases;
    if (payload.size() < kAliasEntriesAt) {
        return aliases;
    }
    const uint64_t count = decodeMPPNumber<uint32_t>(payload.subspan(kAliasCountAt));
    for (uint64_t index = 0;
         index < count && kAliasEntriesAt + (index + 1) * kAliasEntrySize <= payload.size(); ++index) {
        const auto entry = payload.subspan(kAliasEntriesAt + index * kAliasEntrySize);
        const uint64_t name =
            kAliasOffsetBase + uint64_t{decodeMPPNumber<uint32_t>(entry.subspan(kAliasNameOffsetAt))};
        if (name >= payload.size()) {
            continue;
        }
        std::u16string text = aliasTextAt(payload, name);
        if (!text.empty()) {
            aliases.push_back({decodeMPPNumber<uint16_t>(entry),
                               decodeMPPNumber<uint16_t>(entry.subspan(kAliasMarkAt)), std::move(text)});
        }
    }
    return aliases;
}

std::vector<std::u16string> decodeMPPFieldNameList(std::span<const uint8_t> payload) {
    std::vector<std::u16string> names;
    size_t start = 0;
    for (size_t at = 0; at + 1 < payload.size(); at += 2) {
        if (decodeMPPNumber<uint16_t>(payload.subspan(at)) == 0) {
            names.push_back(decodeMPPText(payload.subspan(start, at - start)));
            start = at + 2;
        }
    }
    return names;
}
