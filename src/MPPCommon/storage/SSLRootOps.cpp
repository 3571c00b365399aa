#include "MPPCommon/storage/SSLLayout.h"
#include "MPPCommon/storage/SSLLibrary.h"

#include <algorithm>
#include <cstring>

using namespace ssllayout;

namespace {

// Sector shifts beyond these make no file this library can read: too few directory entries per
// sector, or a cache that the file can't justify.
constexpr uint16_t kMinSectorShift = 7;
constexpr uint16_t kMaxSectorShift = 16;

std::unique_ptr<_Storage> newStorage(_RootStorage* root, int32_t index, _Storage* parent) {
    auto storage = std::make_unique<_Storage>();
    storage->root = root;
    storage->entryIndex = index;
    storage->parent = parent;
    storage->mode = root->mode;
    return storage;
}

// Reads the header block; unread bytes of the FAT list read as free sectors.
int32_t readHeader(_RootStorage* root, unsigned char* block) {
    std::optional<uint64_t> length = root->file->length();
    if (!length) {
        return SSL_ERROR_IO;
    }
    if (*length == 0) {
        return SSL_ERROR_EMPTY_FILE;
    }
    std::memset(block, 0xFF, kHeaderBlockSize);
    size_t got = root->file->readAt(0, block, kHeaderBlockSize);
    if (got < kHeaderSize || std::memcmp(block + kHeaderSignature, kSignature, sizeof kSignature) != 0) {
        return SSL_ERROR_NOT_COMPOUND_FILE;
    }
    headerDecode(block, &root->header);
    const _Header& header = root->header;
    if (header.byteOrder <= kLowestInvalidByteOrderMark || header.sectorShift < kMinSectorShift ||
        header.sectorShift > kMaxSectorShift || header.miniSectorShift > header.sectorShift) {
        return SSL_ERROR_NOT_COMPOUND_FILE;
    }
    // No table or chain may claim more sectors than the file holds.
    const uint64_t fileSectors = *length / root->sectorSize() + 1;
    root->fat.chainLimit = fileSectors;
    root->miniFat.chainLimit = *length / root->miniSectorSize() + 1;
    if (header.fatSectorCount > fileSectors || header.difatSectorCount > fileSectors) {
        return SSL_ERROR_BAD_CHAIN;
    }
    return SSL_OK;
}

// FAT sector numbers beyond the header's 109 come from the chain of DIFAT sectors.
int32_t readDifat(_RootStorage* root) {
    std::vector<uint32_t>& fatSectors = root->fat.tableSectors;
    const uint32_t perSector = root->sectorSize() / 4;
    uint32_t difatSector = root->header.firstDifatSector;
    for (size_t filled = kHeaderFatSlots; filled < fatSectors.size();) {
        const unsigned char* bytes = sectorFetch(root, difatSector);
        if (bytes == nullptr) {
            return root->lastCachedResult;
        }
        root->difat.push_back(difatSector);
        for (uint32_t j = 0; j + 1 < perSector && filled < fatSectors.size(); ++j) {
            fatSectors[filled++] = loadLE32(bytes + 4 * j);
        }
        difatSector = loadLE32(bytes + 4 * (perSector - 1));
    }
    return SSL_OK;
}

int32_t readMiniFat(_RootStorage* root) {
    if (root->header.miniFatSectorCount == 0) {
        return SSL_OK;
    }
    uint32_t count = root->header.miniFatSectorCount;
    int32_t result =
        fatWalkChain(root->fat, root->header.firstMiniFatSector, &count, &root->miniFat.tableSectors);
    if (result != SSL_OK) {
        return result;
    }
    root->header.miniFatSectorCount = count;
    return fatBuild(root, &root->miniFat);
}

int32_t openRoot(_RootStorage* root) {
    unsigned char block[kHeaderBlockSize];
    int32_t result = readHeader(root, block);
    if (result != SSL_OK) {
        return result;
    }
    root->directory.sectorSize = root->sectorSize();
    root->cache.assign(root->sectorSize(), 0);
    root->fat.tableSectors.assign(root->header.fatSectorCount, 0);
    const uint32_t inHeader = std::min(root->header.fatSectorCount, kHeaderFatSlots);
    for (uint32_t i = 0; i < inHeader; ++i) {
        root->fat.tableSectors[i] = loadLE32(block + kHeaderFatSlotsOffset + 4 * i);
    }
    if ((result = readDifat(root)) != SSL_OK || (result = fatBuild(root, &root->fat)) != SSL_OK ||
        (result = readMiniFat(root)) != SSL_OK) {
        return result;
    }
    uint32_t directorySectors = 0xFFFFFFFF;
    result =
        fatWalkChain(root->fat, root->header.firstDirectorySector, &directorySectors, &root->directoryChain);
    if (result != SSL_OK || (result = directoryParse(root)) != SSL_OK) {
        return result;
    }
    if (root->directory.entries.empty()) {
        return SSL_ERROR_NOT_FOUND;
    }
    uint8_t rootType = root->directory.entries[0].type;
    if (rootType != kEntryTypeStorage && rootType != kEntryTypeRoot) {
        return SSL_ERROR_NOT_STORAGE;
    }
    root->rootStorage = newStorage(root, 0, nullptr);
    return SSL_OK;
}

int32_t openWithFile(std::unique_ptr<SSLFileHandle> file, std::unique_ptr<_RootStorage>* out) {
    auto root = std::make_unique<_RootStorage>();
    root->file = std::move(file);
    root->mode = kSSLModeRead;
    root->header = defaultHeader();
    int32_t result = openRoot(root.get());
    if (result == SSL_OK) {
        *out = std::move(root);
    }
    return result;
}

} // namespace

int32_t rootOpen(const std::string& path, int32_t mode, std::unique_ptr<_RootStorage>* root) {
    if (path.empty() || root == nullptr || mode != kSSLModeRead) {
        return SSL_ERROR_BAD_ARGUMENT;
    }
    std::unique_ptr<SSLFileHandle> file = SSLFileHandle::openForReading(path);
    if (!file) {
        return SSL_ERROR_FILE_NOT_FOUND;
    }
    return openWithFile(std::move(file), root);
}

int32_t rootOpenBytes(std::vector<unsigned char> bytes, int32_t mode, std::unique_ptr<_RootStorage>* root) {
    if (root == nullptr || mode != kSSLModeRead) {
        return SSL_ERROR_BAD_ARGUMENT;
    }
    return openWithFile(SSLFileHandle::fromBytes(std::move(bytes)), root);
}

int32_t rootCreate(int32_t mode, std::unique_ptr<_RootStorage>* out) {
    if (out == nullptr || mode != kSSLModeWrite) {
        return SSL_ERROR_BAD_ARGUMENT;
    }
    auto root = std::make_unique<_RootStorage>();
    root->mode = mode;
    root->header = defaultHeader();
    root->cache.assign(root->sectorSize(), 0);
    root->directory.sectorSize = root->sectorSize();
    _DirEntry rootEntry;
    const std::u32string name = U"Root Entry";
    std::copy(name.begin(), name.end(), rootEntry.name.begin());
    rootEntry.nameLength = static_cast<uint16_t>((name.size() + 1) * 2);
    rootEntry.type = kEntryTypeRoot;
    rootEntry.colour = kColourBlack;
    rootEntry.parent = kNoEntry;
    root->directory.entries.push_back(std::move(rootEntry));
    root->rootStorage = newStorage(root.get(), 0, nullptr);
    *out = std::move(root);
    return SSL_OK;
}

int32_t rootAttachFile(const std::string& path, int32_t mode, _RootStorage* root) {
    if (path.empty() || root == nullptr || mode != kSSLModeWrite || root->mode != kSSLModeWrite) {
        return SSL_ERROR_BAD_ARGUMENT;
    }
    root->file = SSLFileHandle::createForWriting(path);
    if (!root->file) {
        return SSL_ERROR_IO;
    }
    unsigned char block[kHeaderBlockSize];
    std::memset(block, 0xFF, sizeof block);
    headerEncode(root->header, block);
    return fileWriteAt(root, 0, block, sizeof block);
}

int32_t rootGetStorage(_RootStorage* root, _Storage** storage) {
    if (root == nullptr || storage == nullptr) {
        return SSL_ERROR_BAD_ARGUMENT;
    }
    if (!root->rootStorage) {
        return SSL_ERROR_NOT_FOUND;
    }
    *storage = root->rootStorage.get();
    return SSL_OK;
}

int32_t rootGetSectorSize(const _RootStorage* root, uint32_t* size) {
    if (root == nullptr || size == nullptr) {
        return SSL_ERROR_BAD_ARGUMENT;
    }
    *size = root->sectorSize();
    return SSL_OK;
}

int32_t rootClose(std::unique_ptr<_RootStorage>* root) {
    if (root == nullptr || !*root) {
        return SSL_ERROR_BAD_ARGUMENT;
    }
    _RootStorage* record = root->get();
    if (record->mode == kSSLModeWrite && record->file) {
        // A failure leaves a partial file; closing still frees everything.
        if (storageClose(record->rootStorage.get()) == SSL_OK) {
            rootFinishFile(record);
        }
    }
    root->reset();
    return SSL_OK;
}
