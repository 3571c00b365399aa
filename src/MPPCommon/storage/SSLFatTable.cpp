#include "MPPCommon/storage/SSLLayout.h"
#include "MPPCommon/storage/SSLLibrary.h"

#include <algorithm>

using namespace ssllayout;

namespace {

constexpr uint32_t kUnknownCount = 0xFFFFFFFF;

// The free list's entries in ascending order.
std::vector<uint32_t> freeListIndexes(const _Fat& fat) {
    std::vector<uint32_t> indexes;
    for (uint32_t i = fat.freeHead; i < fat.entries.size() && indexes.size() < fat.entries.size();
         i = fat.entries[i]) {
        indexes.push_back(i);
    }
    return indexes;
}

void threadFreeList(_Fat* fat, const std::vector<uint32_t>& indexes) {
    fat->freeHead = indexes.empty() ? kEndOfChain : indexes.front();
    for (size_t i = 0; i < indexes.size(); ++i) {
        fat->entries[indexes[i]] = i + 1 < indexes.size() ? indexes[i + 1] : kEndOfChain;
    }
}

uint64_t chainLengthLimit(const _Fat& fat) {
    return std::min<uint64_t>(fat.entries.size(), fat.chainLimit);
}

int32_t measureChain(const _Fat& fat, uint32_t first, uint32_t* count) {
    const uint64_t entryCount = fat.entries.size();
    if (first > entryCount) {
        return SSL_ERROR_BAD_CHAIN;
    }
    uint64_t length = 1;
    for (uint32_t sector = first;;) {
        if (sector >= entryCount) {
            return SSL_ERROR_BAD_CHAIN;
        }
        uint32_t next = fat.entries[sector];
        if (next == kEndOfChain) {
            break;
        }
        // A chain longer than the table loops.
        if (next > entryCount || ++length > chainLengthLimit(fat)) {
            return SSL_ERROR_BAD_CHAIN;
        }
        sector = next;
    }
    *count = static_cast<uint32_t>(length);
    return SSL_OK;
}

} // namespace

int32_t fatBuild(_RootStorage* root, _Fat* fat) {
    const uint32_t perSector = root->sectorSize() / 4;
    const uint64_t entryCount = static_cast<uint64_t>(perSector) * fat->tableSectors.size();
    if (entryCount > kMaxTableEntries) {
        return SSL_ERROR_BAD_CHAIN;
    }
    fat->freeHead = kEndOfChain;
    if (fat->tableSectors.empty() || fat->tableSectors.front() == kEndOfChain) {
        fat->entries.clear();
        return SSL_OK;
    }
    fat->entries.assign(entryCount, 0);
    uint32_t largest = 0;
    int64_t lastUsed = -1;
    int64_t freeTail = -1;
    int64_t freeTailAtLastUsed = -1;
    for (size_t k = 0; k < fat->tableSectors.size(); ++k) {
        const unsigned char* bytes = sectorFetch(root, fat->tableSectors[k]);
        if (bytes == nullptr) {
            return lastUsed < static_cast<int64_t>(largest) ? SSL_ERROR_BAD_CHAIN : root->lastCachedResult;
        }
        for (uint32_t j = 0; j < perSector; ++j) {
            const uint32_t index = static_cast<uint32_t>(k * perSector + j);
            const uint32_t value = loadLE32(bytes + 4 * j);
            if (value < kFirstSpecialValue) {
                largest = std::max(largest, value);
            }
            if (value != kFreeSector) {
                fat->entries[index] = value;
                lastUsed = index;
                freeTailAtLastUsed = freeTail;
                continue;
            }
            if (freeTail < 0) {
                fat->freeHead = index;
            } else {
                fat->entries[freeTail] = index;
            }
            fat->entries[index] = kEndOfChain;
            freeTail = index;
        }
    }
    if (lastUsed < 0) {
        return SSL_OK;
    }
    // Trailing free entries leave the table, and the free list ends before them.
    fat->entries.resize(lastUsed + 1);
    if (freeTailAtLastUsed < 0) {
        fat->freeHead = kEndOfChain;
    } else {
        fat->entries[freeTailAtLastUsed] = kEndOfChain;
    }
    return SSL_OK;
}

int32_t fatWalkChain(const _Fat& fat, uint32_t first, uint32_t* count, std::vector<uint32_t>* chain) {
    if (*count == kUnknownCount) {
        int32_t result = measureChain(fat, first, count);
        if (result != SSL_OK) {
            return result;
        }
    }
    if (*count == 0) {
        chain->clear();
        return SSL_OK;
    }
    // Nothing longer than the table or than the file can hold is allocated.
    if (*count > chainLengthLimit(fat)) {
        return SSL_ERROR_BAD_CHAIN;
    }
    std::vector<uint32_t> sectors(*count, 0);
    sectors[0] = first;
    if (first != kEndOfChain) {
        if (first >= fat.entries.size()) {
            return SSL_ERROR_BAD_CHAIN;
        }
        uint32_t sector = first;
        for (uint32_t i = 1; i < *count; ++i) {
            uint32_t next = fat.entries[sector];
            if (next == kEndOfChain) {
                break;
            }
            if (next > kLastLinkValue || next >= fat.entries.size()) {
                return SSL_ERROR_BAD_CHAIN;
            }
            sectors[i] = next;
            sector = next;
        }
    }
    *chain = std::move(sectors);
    return SSL_OK;
}

void fatSetEntry(_Fat* fat, uint32_t index, uint32_t value) {
    if (index >= fat->entries.size()) {
        fat->entries.resize(static_cast<size_t>(index) + 1, kFreeSector);
    }
    fat->entries[index] = value;
}

int32_t fatAllocate(_Fat* fat, bool forDirectory, uint32_t* unit) {
    uint32_t index = fat->freeHead;
    bool fromFreeList = index < fat->entries.size();
    if (!fromFreeList) {
        index = static_cast<uint32_t>(fat->entries.size());
    }
    if (index > kMaxDataSector && !forDirectory) {
        return SSL_ERROR_NAME_EXISTS;
    }
    if (fromFreeList) {
        fat->freeHead = fat->entries[index];
    }
    fatSetEntry(fat, index, kEndOfChain);
    *unit = index;
    return SSL_OK;
}

void fatFreeChain(_Fat* fat, const std::vector<uint32_t>& chain) {
    std::vector<uint32_t> freed;
    for (uint32_t unit : chain) {
        if (unit < fat->entries.size()) {
            freed.push_back(unit);
        }
    }
    std::sort(freed.begin(), freed.end());
    std::vector<uint32_t> current = freeListIndexes(*fat);
    std::vector<uint32_t> merged;
    std::merge(current.begin(), current.end(), freed.begin(), freed.end(), std::back_inserter(merged));
    merged.erase(std::unique(merged.begin(), merged.end()), merged.end());
    threadFreeList(fat, merged);
}

void fatReleaseFreeList(_Fat* fat) {
    std::vector<uint32_t> freeIndexes = freeListIndexes(*fat);
    std::vector<bool> isFree(fat->entries.size(), false);
    for (uint32_t index : freeIndexes) {
        isFree[index] = true;
    }
    size_t count = fat->entries.size();
    while (count > 0 && isFree[count - 1]) {
        --count;
    }
    fat->entries.resize(count);
    for (uint32_t index : freeIndexes) {
        if (index < count) {
            fat->entries[index] = kFreeSector;
        }
    }
    fat->freeHead = kEndOfChain;
}
