#include "MPPCommon/storage/SSLLayout.h"
#include "MPPCommon/storage/SSLLibrary.h"

#include <ctime>

using namespace ssllayout;

namespace {

// Upper-case mapping of name units: ASCII and Latin-1 letters, which covers the names of MPP files.
char32_t upperCaseUnit(char32_t unit) {
    if ((unit >= U'a' && unit <= U'z') || (unit >= 0xE0 && unit <= 0xFE && unit != 0xF7)) {
        return unit - 0x20;
    }
    return unit == 0xFF ? 0x178 : unit;
}

int32_t loadLink(const unsigned char* p) {
    return static_cast<int32_t>(loadLE32(p));
}

void decodeEntry(const unsigned char* p, bool eightByteSizes, _DirEntry* entry) {
    for (size_t i = 0; i < kEntryNameUnits; ++i) {
        entry->name[i] = loadLE16(p + kEntryName + 2 * i);
    }
    entry->nameLength = loadLE16(p + kEntryNameLength);
    entry->type = p[kEntryType];
    entry->colour = p[kEntryColour];
    entry->left = loadLink(p + kEntryLeft);
    entry->right = loadLink(p + kEntryRight);
    entry->child = loadLink(p + kEntryChild);
    entry->classId.data1 = loadLE32(p + kEntryClassIdData1);
    entry->classId.data2 = loadLE16(p + kEntryClassIdData2);
    entry->classId.data3 = loadLE16(p + kEntryClassIdData3);
    std::copy(p + kEntryClassIdData4, p + kEntryClassIdData4 + 8, entry->classId.data4);
    entry->stateBits = loadLE32(p + kEntryStateBits);
    entry->creationTime = secondsFromTicks(loadLE64(p + kEntryCreationTime));
    entry->modificationTime = secondsFromTicks(loadLE64(p + kEntryModificationTime));
    entry->firstSector = loadLE32(p + kEntryFirstSector);
    entry->size = eightByteSizes ? loadLE64(p + kEntryStreamSize) : loadLE32(p + kEntryStreamSize);
}

void encodeBlankEntry(unsigned char* p) {
    std::fill(p, p + kEntrySize, 0);
    storeLE32(p + kEntryLeft, static_cast<uint32_t>(kNoEntry));
    storeLE32(p + kEntryRight, static_cast<uint32_t>(kNoEntry));
    storeLE32(p + kEntryChild, static_cast<uint32_t>(kNoEntry));
}

void encodeEntry(const _DirEntry& entry, unsigned char* p) {
    encodeBlankEntry(p);
    if (entry.type == kEntryTypeEmpty) {
        return;
    }
    for (size_t i = 0; i < kEntryNameUnits; ++i) {
        storeLE16(p + kEntryName + 2 * i, static_cast<uint16_t>(entry.name[i]));
    }
    storeLE16(p + kEntryNameLength, entry.nameLength);
    p[kEntryType] = entry.type;
    p[kEntryColour] = entry.colour;
    storeLE32(p + kEntryLeft, static_cast<uint32_t>(entry.left));
    storeLE32(p + kEntryRight, static_cast<uint32_t>(entry.right));
    storeLE32(p + kEntryChild, static_cast<uint32_t>(entry.child));
    storeLE32(p + kEntryClassIdData1, entry.classId.data1);
    storeLE16(p + kEntryClassIdData2, entry.classId.data2);
    storeLE16(p + kEntryClassIdData3, entry.classId.data3);
    std::copy(entry.classId.data4, entry.classId.data4 + 8, p + kEntryClassIdData4);
    storeLE32(p + kEntryStateBits, entry.stateBits);
    storeLE64(p + kEntryCreationTime, ticksFromSeconds(entry.creationTime));
    storeLE64(p + kEntryModificationTime, ticksFromSeconds(entry.modificationTime));
    storeLE32(p + kEntryFirstSector, entry.firstSector);
    storeLE64(p + kEntryStreamSize, entry.size);
}

// Checks that every entry reachable from entry 0 is reached once only, and records tree parents:
// -1 at the top of each sibling tree. Empty entries end a branch.
int32_t checkTreeAndSetParents(_Directory* directory) {
    std::vector<_DirEntry>& entries = directory->entries;
    std::vector<bool> visited(entries.size(), false);
    std::vector<int32_t> pending = {0};
    while (!pending.empty()) {
        int32_t index = pending.back();
        pending.pop_back();
        _DirEntry& entry = entries[index];
        if (entry.type == kEntryTypeEmpty) {
            continue;
        }
        if (visited[index]) {
            return SSL_ERROR_BAD_DIRECTORY;
        }
        visited[index] = true;
        const int32_t links[3][2] = {{entry.child, kNoEntry}, {entry.left, index}, {entry.right, index}};
        for (const auto& [link, parent] : links) {
            if (link != kNoEntry) {
                entries[link].parent = parent;
                pending.push_back(link);
            }
        }
    }
    return SSL_OK;
}

bool isStorageType(uint8_t type) {
    return type == kEntryTypeStorage || type == kEntryTypeRoot;
}

} // namespace

int64_t secondsFromTicks(uint64_t ticks) {
    if (ticks == 0) {
        return 0;
    }
    return static_cast<int64_t>(ticks / kTicksPerSecond) - kSecondsFrom1601To1970;
}

uint64_t ticksFromSeconds(int64_t seconds) {
    return static_cast<uint64_t>(seconds + kSecondsFrom1601To1970) * kTicksPerSecond;
}

size_t entryNameLength(const _DirEntry& entry) {
    size_t length = 0;
    while (length < entry.name.size() && entry.name[length] != 0) {
        ++length;
    }
    return length;
}

int compareEntryNames(const char32_t* a, size_t aLength, const char32_t* b, size_t bLength) {
    if (aLength != bLength) {
        return aLength < bLength ? -1 : 1;
    }
    for (size_t i = 0; i < aLength; ++i) {
        char32_t ua = upperCaseUnit(a[i]);
        char32_t ub = upperCaseUnit(b[i]);
        if (ua != ub) {
            return ua < ub ? -1 : 1;
        }
    }
    return 0;
}

int32_t directoryParse(_RootStorage* root) {
    _Directory& directory = root->directory;
    const uint32_t perSector = directory.sectorSize / kEntrySize;
    const uint64_t count = static_cast<uint64_t>(root->directoryChain.size()) * perSector;
    if (count > static_cast<uint64_t>(INT32_MAX)) {
        return SSL_ERROR_BAD_CHAIN;
    }
    directory.entries.clear();
    directory.entries.resize(count);
    const bool eightByteSizes = root->header.majorVersion >= kLargeMajorVersion;
    for (uint32_t i = 0; i < count; ++i) {
        _DirEntry& entry = directory.entries[i];
        entry.index = static_cast<int32_t>(i);
        const unsigned char* sector = sectorFetch(root, root->directoryChain[i / perSector]);
        if (sector == nullptr) {
            if (root->lastCachedResult == SSL_OK) {
                continue;
            }
            directory.entries.clear();
            return root->lastCachedResult;
        }
        decodeEntry(sector + (i % perSector) * kEntrySize, eightByteSizes, &entry);
        for (int32_t link : {entry.left, entry.right, entry.child}) {
            if (link < kNoEntry || link >= static_cast<int64_t>(count)) {
                directory.entries.clear();
                return SSL_ERROR_BAD_DIRECTORY;
            }
        }
    }
    if (count == 0) {
        return SSL_OK;
    }
    int32_t result = checkTreeAndSetParents(&directory);
    if (result != SSL_OK) {
        directory.entries.clear();
    }
    return result;
}

int32_t directoryFindChild(const _Directory& directory, int32_t parent, const std::u32string& name,
                           int32_t* found) {
    if (!directory.contains(parent) || !isStorageType(directory.entries[parent].type)) {
        return SSL_ERROR_BAD_ARGUMENT;
    }
    int32_t node = directory.entries[parent].child;
    // The bound keeps a search through unchecked links of empty entries finite.
    for (size_t steps = 0; directory.contains(node) && steps < directory.entries.size(); ++steps) {
        const _DirEntry& entry = directory.entries[node];
        int order = compareEntryNames(entry.name.data(), entryNameLength(entry), name.data(), name.size());
        if (order == 0) {
            *found = node;
            return SSL_OK;
        }
        node = order < 0 ? entry.right : entry.left;
    }
    return SSL_ERROR_NOT_FOUND;
}

int32_t directoryInsertChild(_Directory* directory, int32_t parent, const std::u32string& name, uint8_t type,
                             int32_t* created) {
    std::vector<_DirEntry>& entries = directory->entries;
    // Find the leaf under which the name belongs; the tree is not rebalanced.
    enum class Side { child, left, right } side = Side::child;
    int32_t attachTo = parent;
    for (int32_t node = entries[parent].child; node != kNoEntry;) {
        attachTo = node;
        const _DirEntry& entry = entries[node];
        int order = compareEntryNames(entry.name.data(), entryNameLength(entry), name.data(), name.size());
        if (order == 0) {
            return SSL_ERROR_NAME_EXISTS;
        }
        side = order < 0 ? Side::right : Side::left;
        node = order < 0 ? entry.right : entry.left;
    }
    size_t index = 1;
    while (index < entries.size() && entries[index].type != kEntryTypeEmpty) {
        ++index;
    }
    if (index == entries.size()) {
        entries.emplace_back();
    }
    _DirEntry& entry = entries[index];
    entry = _DirEntry{};
    entry.index = static_cast<int32_t>(index);
    std::copy(name.begin(), name.end(), entry.name.begin());
    entry.nameLength = static_cast<uint16_t>((name.size() + 1) * 2);
    entry.type = type;
    entry.colour = side == Side::child ? kColourBlack : kColourRed;
    entry.parent = side == Side::child ? kNoEntry : attachTo;
    entry.creationTime = static_cast<int64_t>(std::time(nullptr));
    _DirEntry& above = entries[attachTo];
    (side == Side::child ? above.child : side == Side::left ? above.left : above.right) = entry.index;
    *created = entry.index;
    return SSL_OK;
}

int32_t directoryWrite(_RootStorage* root) {
    const uint32_t sectorSize = root->sectorSize();
    const uint32_t perSector = sectorSize / kEntrySize;
    const std::vector<_DirEntry>& entries = root->directory.entries;
    const size_t sectorCount = (entries.size() + perSector - 1) / perSector;
    std::vector<unsigned char> bytes(sectorSize);
    uint32_t previous = kEndOfChain;
    for (size_t s = 0; s < sectorCount; ++s) {
        for (uint32_t slot = 0; slot < perSector; ++slot) {
            size_t index = s * perSector + slot;
            unsigned char* p = bytes.data() + slot * kEntrySize;
            if (index < entries.size()) {
                encodeEntry(entries[index], p);
            } else {
                encodeBlankEntry(p);
            }
        }
        uint32_t sector = 0;
        int32_t result = fatAllocate(&root->fat, true, &sector);
        if (result == SSL_OK) {
            result = sectorWrite(root, sector, bytes.data());
        }
        if (result != SSL_OK) {
            return result;
        }
        if (previous == kEndOfChain) {
            root->header.firstDirectorySector = sector;
        } else {
            fatSetEntry(&root->fat, previous, sector);
        }
        previous = sector;
    }
    root->header.directorySectorCount =
        sectorSize == kHeaderBlockSize ? 0 : static_cast<uint32_t>(sectorCount);
    return SSL_OK;
}

int32_t entryInfo(const _RootStorage& root, int32_t index, _StgInfo* info) {
    const _DirEntry& entry = root.directory.entries[index];
    _StgInfo filled;
    switch (entry.type) {
    case kEntryTypeEmpty:
    case kEntryTypeStream:
        filled.type = kSSLInfoTypeStream;
        break;
    case kEntryTypeStorage:
    case kEntryTypeRoot:
        filled.type = kSSLInfoTypeStorage;
        break;
    default:
        return SSL_ERROR_BAD_ARGUMENT;
    }
    filled.name.assign(entry.name.data(), entryNameLength(entry));
    filled.stateBits = entry.stateBits;
    filled.size = entry.size;
    filled.creationTime = entry.creationTime;
    filled.modificationTime = entry.modificationTime;
    filled.mode = root.mode;
    filled.classId = entry.classId;
    *info = std::move(filled);
    return SSL_OK;
}
