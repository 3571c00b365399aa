#include "MPPCommon/storage/SSLLayout.h"
#include "MPPCommon/storage/SSLLibrary.h"

#include <algorithm>
#include <cstring>

using namespace ssllayout;

namespace {

// Writes `entries` into whole sectors padded with free markers.
int32_t writeTableSector(_RootStorage* root, const std::vector<uint32_t>& entries, size_t first,
                         uint32_t sector) {
    const uint32_t perSector = root->sectorSize() / 4;
    std::vector<unsigned char> bytes(root->sectorSize(), 0xFF);
    for (uint32_t j = 0; j < perSector && first + j < entries.size(); ++j) {
        storeLE32(bytes.data() + 4 * j, entries[first + j]);
    }
    return sectorWrite(root, sector, bytes.data());
}

// The mini FAT goes at the end of the file, chained on the sector table.
int32_t writeMiniFat(_RootStorage* root) {
    const std::vector<uint32_t>& entries = root->miniFat.entries;
    const uint32_t perSector = root->sectorSize() / 4;
    const size_t sectorCount = (entries.size() + perSector - 1) / perSector;
    uint32_t previous = kEndOfChain;
    for (size_t s = 0; s < sectorCount; ++s) {
        uint32_t sector = 0;
        int32_t result = fatAllocate(&root->fat, false, &sector);
        if (result != SSL_OK || (result = writeTableSector(root, entries, s * perSector, sector)) != SSL_OK) {
            return result;
        }
        if (previous == kEndOfChain) {
            root->header.firstMiniFatSector = sector;
        } else {
            fatSetEntry(&root->fat, previous, sector);
        }
        previous = sector;
    }
    root->header.miniFatSectorCount = static_cast<uint32_t>(sectorCount);
    return SSL_OK;
}

// The sector table describes its own sectors and those of the DIFAT, so their counts are found by
// iteration.
void countTableSectors(uint64_t entryCount, uint32_t perSector, uint64_t* fatSectors,
                       uint64_t* difatSectors) {
    uint64_t fat = 0;
    uint64_t difat = 0;
    for (;;) {
        uint64_t total = entryCount + fat + difat;
        uint64_t nextFat = (total + perSector - 1) / perSector;
        uint64_t nextDifat =
            nextFat <= kHeaderFatSlots ? 0 : (nextFat - kHeaderFatSlots + perSector - 2) / (perSector - 1);
        if (nextFat == fat && nextDifat == difat) {
            break;
        }
        fat = nextFat;
        difat = nextDifat;
    }
    *fatSectors = fat;
    *difatSectors = difat;
}

int32_t writeFat(_RootStorage* root) {
    _Fat& fat = root->fat;
    const uint32_t perSector = root->sectorSize() / 4;
    const uint32_t first = static_cast<uint32_t>(fat.entries.size());
    uint64_t fatCount = 0;
    uint64_t difatCount = 0;
    countTableSectors(first, perSector, &fatCount, &difatCount);
    fat.tableSectors.clear();
    for (uint32_t i = 0; i < fatCount; ++i) {
        fat.tableSectors.push_back(first + i);
        fatSetEntry(&fat, first + i, kFatSector);
    }
    root->difat.clear();
    for (uint32_t i = 0; i < difatCount; ++i) {
        root->difat.push_back(static_cast<uint32_t>(first + fatCount + i));
        fatSetEntry(&fat, root->difat.back(), kDifatSector);
    }
    for (uint32_t i = 0; i < fatCount; ++i) {
        int32_t result = writeTableSector(root, fat.entries, static_cast<size_t>(i) * perSector, first + i);
        if (result != SSL_OK) {
            return result;
        }
    }
    // Each DIFAT sector ends with the number of the next one, the last one too: readers stop by count.
    std::vector<uint32_t> words(perSector);
    for (uint32_t i = 0; i < difatCount; ++i) {
        for (uint32_t j = 0; j + 1 < perSector; ++j) {
            size_t index = kHeaderFatSlots + static_cast<size_t>(i) * (perSector - 1) + j;
            words[j] = index < fat.tableSectors.size() ? fat.tableSectors[index] : kFreeSector;
        }
        words[perSector - 1] = root->difat[i] + 1;
        int32_t result = writeTableSector(root, words, 0, root->difat[i]);
        if (result != SSL_OK) {
            return result;
        }
    }
    root->header.fatSectorCount = static_cast<uint32_t>(fatCount);
    root->header.difatSectorCount = static_cast<uint32_t>(difatCount);
    root->header.firstDifatSector = difatCount == 0 ? kFreeSector : root->difat.front();
    return SSL_OK;
}

// The header, the first FAT sector numbers, free markers up to byte 512 and zeros up to sector 0.
int32_t writeHeaderBlock(_RootStorage* root) {
    std::vector<unsigned char> block(std::max<size_t>(kHeaderBlockSize, root->sectorSize()), 0);
    std::fill(block.begin() + kHeaderFatSlotsOffset, block.begin() + kHeaderBlockSize, 0xFF);
    headerEncode(root->header, block.data());
    const size_t inHeader = std::min<size_t>(root->fat.tableSectors.size(), kHeaderFatSlots);
    for (size_t i = 0; i < inHeader; ++i) {
        storeLE32(block.data() + kHeaderFatSlotsOffset + 4 * i, root->fat.tableSectors[i]);
    }
    return fileWriteAt(root, 0, block.data(), block.size());
}

} // namespace

int32_t rootFinishFile(_RootStorage* root) {
    int32_t result = directoryWrite(root);
    if (result != SSL_OK) {
        return result;
    }
    fatReleaseFreeList(&root->fat);
    fatReleaseFreeList(&root->miniFat);
    if ((result = writeMiniFat(root)) != SSL_OK || (result = writeFat(root)) != SSL_OK ||
        (result = writeHeaderBlock(root)) != SSL_OK) {
        return result;
    }
    return root->file->flush() ? SSL_OK : SSL_ERROR_IO;
}
