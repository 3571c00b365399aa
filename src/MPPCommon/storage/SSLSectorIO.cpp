#include "MPPCommon/storage/SSLLayout.h"
#include "MPPCommon/storage/SSLLibrary.h"

#include <algorithm>

using namespace ssllayout;

uint64_t sectorFileOffset(const _RootStorage* root, uint32_t sector) {
    return (static_cast<uint64_t>(sector) + 1) << root->header.sectorShift;
}

const unsigned char* sectorFetch(_RootStorage* root, uint32_t sector) {
    if (root->cachedSector == static_cast<int64_t>(sector)) {
        root->lastCachedResult = SSL_OK;
        return root->cache.data();
    }
    root->cachedSector = -1;
    if (!root->file) {
        root->lastCachedResult = SSL_ERROR_IO;
        return nullptr;
    }
    size_t got = root->file->readAt(sectorFileOffset(root, sector), root->cache.data(), root->cache.size());
    if (got == 0) {
        root->lastCachedResult = SSL_ERROR_IO;
        return nullptr;
    }
    // A sector cut off by the end of the file reads as far as it goes and is fetched again next time.
    if (got == root->cache.size()) {
        root->cachedSector = sector;
    }
    root->lastCachedResult = SSL_OK;
    return root->cache.data();
}

int32_t fileWriteAt(_RootStorage* root, uint64_t offset, const void* bytes, size_t count) {
    if (!root->file) {
        return SSL_ERROR_IO;
    }
    uint64_t sectorSize = root->sectorSize();
    // Bytes in the cached sector change under the cache.
    if (root->cachedSector >= 0) {
        uint64_t cachedStart = sectorFileOffset(root, static_cast<uint32_t>(root->cachedSector));
        if (offset < cachedStart + sectorSize && offset + count > cachedStart) {
            root->cachedSector = -1;
        }
    }
    if (offset >= kLargeFileOffset) {
        root->header.majorVersion = std::max(root->header.majorVersion, kLargeMajorVersion);
    }
    return root->file->writeAt(offset, bytes, count) ? SSL_OK : SSL_ERROR_IO;
}

int32_t sectorWrite(_RootStorage* root, uint32_t sector, const unsigned char* bytes) {
    return fileWriteAt(root, sectorFileOffset(root, sector), bytes, root->sectorSize());
}
