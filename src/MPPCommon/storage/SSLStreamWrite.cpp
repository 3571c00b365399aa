#include "MPPCommon/storage/SSLLayout.h"
#include "MPPCommon/storage/SSLLibrary.h"

#include <algorithm>
#include <cstring>
#include <ctime>

using namespace ssllayout;

namespace {

_DirEntry& entryOf(const _Stream* stream) {
    return stream->root->directory.entries[stream->entryIndex];
}

// Appends a sector holding `bytes` to the stream's chain.
int32_t appendSector(_Stream* stream, const unsigned char* bytes) {
    _RootStorage* root = stream->root;
    std::vector<uint32_t>& chain = stream->data->chain;
    uint32_t sector = 0;
    int32_t result = fatAllocate(&root->fat, false, &sector);
    if (result != SSL_OK) {
        return result;
    }
    if ((result = sectorWrite(root, sector, bytes)) != SSL_OK) {
        fatFreeChain(&root->fat, {sector});
        return result;
    }
    if (chain.empty()) {
        entryOf(stream).firstSector = sector;
    } else {
        fatSetEntry(&root->fat, chain.back(), sector);
    }
    chain.push_back(sector);
    return SSL_OK;
}

int32_t flushBuffer(_Stream* stream) {
    if (stream->bufferSector < 0) {
        return SSL_OK;
    }
    const std::vector<uint32_t>& chain = stream->data->chain;
    const auto index = static_cast<uint64_t>(stream->bufferSector);
    int32_t result = index < chain.size()
                         ? sectorWrite(stream->root, chain[index], stream->writeBuffer.data())
                         : appendSector(stream, stream->writeBuffer.data());
    stream->bufferSector = -1;
    return result;
}

// Loads sector `index` of the stream into the buffer so that a partial overwrite keeps the old bytes;
// a sector behind the chain starts as zeros.
int32_t loadBuffer(_Stream* stream, uint64_t index) {
    const std::vector<uint32_t>& chain = stream->data->chain;
    if (index < chain.size()) {
        const unsigned char* bytes = sectorFetch(stream->root, chain[index]);
        if (bytes == nullptr) {
            return stream->root->lastCachedResult;
        }
        std::memcpy(stream->writeBuffer.data(), bytes, stream->writeBuffer.size());
    } else {
        std::fill(stream->writeBuffer.begin(), stream->writeBuffer.end(), 0);
    }
    stream->bufferSector = static_cast<int64_t>(index);
    return SSL_OK;
}

void cutChain(_Stream* stream, size_t keep) {
    _RootStorage* root = stream->root;
    std::vector<uint32_t>& chain = stream->data->chain;
    if (keep >= chain.size()) {
        return;
    }
    std::vector<uint32_t> freed(chain.begin() + static_cast<ptrdiff_t>(keep), chain.end());
    chain.resize(keep);
    if (keep == 0) {
        entryOf(stream).firstSector = kFreeSector;
    } else {
        fatSetEntry(&root->fat, chain.back(), kEndOfChain);
    }
    fatFreeChain(&root->fat, freed);
}

// Grows with zero-filled sectors or shrinks to `size`; a failed growth takes its sectors back.
int32_t setSize(_Stream* stream, uint64_t size) {
    int32_t result = flushBuffer(stream);
    if (result != SSL_OK) {
        return result;
    }
    const uint64_t sectorSize = stream->root->sectorSize();
    std::vector<uint32_t>& chain = stream->data->chain;
    const size_t before = chain.size();
    const std::vector<unsigned char> zeros(sectorSize, 0);
    while (result == SSL_OK && chain.size() * sectorSize < size) {
        result = appendSector(stream, zeros.data());
    }
    if (result != SSL_OK) {
        cutChain(stream, before);
        return result;
    }
    cutChain(stream, static_cast<size_t>((size + sectorSize - 1) / sectorSize));
    stream->data->size = size;
    return SSL_OK;
}

// Puts one mini sector of data at its place in the mini stream, growing the mini stream by a regular
// sector when it lies behind its end.
int32_t writeMiniSector(_RootStorage* root, uint32_t miniSector, const unsigned char* bytes) {
    const uint64_t miniSize = root->miniSectorSize();
    const uint64_t offset = miniSector * miniSize;
    const uint64_t chainIndex = offset / root->sectorSize();
    _DirEntry& rootEntry = root->directory.entries[0];
    while (root->miniStreamChain.size() <= chainIndex) {
        uint32_t sector = 0;
        int32_t result = fatAllocate(&root->fat, false, &sector);
        if (result != SSL_OK) {
            return result;
        }
        if (root->miniStreamChain.empty()) {
            rootEntry.firstSector = sector;
        } else {
            fatSetEntry(&root->fat, root->miniStreamChain.back(), sector);
        }
        root->miniStreamChain.push_back(sector);
    }
    rootEntry.size = std::max(rootEntry.size, offset + miniSize);
    const uint64_t fileOffset =
        sectorFileOffset(root, root->miniStreamChain[chainIndex]) + offset % root->sectorSize();
    return fileWriteAt(root, fileOffset, bytes, miniSize);
}

// Moves a small stream's data from its regular sectors into the mini stream.
int32_t moveToMiniStream(_Stream* stream) {
    _RootStorage* root = stream->root;
    _StreamData* data = stream->data;
    const uint32_t miniSize = root->miniSectorSize();
    const uint32_t sectorSize = root->sectorSize();
    const uint64_t units = (data->size + miniSize - 1) / miniSize;
    std::vector<unsigned char> bytes(miniSize);
    std::vector<uint32_t> miniChain;
    for (uint64_t i = 0; i < units; ++i) {
        const uint64_t offset = i * miniSize;
        const unsigned char* sector = sectorFetch(root, data->chain[offset / sectorSize]);
        if (sector == nullptr) {
            return root->lastCachedResult;
        }
        std::memcpy(bytes.data(), sector + offset % sectorSize, miniSize);
        uint32_t miniSector = 0;
        int32_t result = fatAllocate(&root->miniFat, false, &miniSector);
        if (result != SSL_OK || (result = writeMiniSector(root, miniSector, bytes.data())) != SSL_OK) {
            return result;
        }
        if (miniChain.empty()) {
            entryOf(stream).firstSector = miniSector;
        } else {
            fatSetEntry(&root->miniFat, miniChain.back(), miniSector);
        }
        miniChain.push_back(miniSector);
    }
    fatFreeChain(&root->fat, data->chain);
    data->chain = std::move(miniChain);
    data->inMiniStream = true;
    return SSL_OK;
}

} // namespace

int32_t streamWrite(_Stream* stream, const void* source, uint32_t* count) {
    if (stream == nullptr || count == nullptr || stream->data == nullptr ||
        (source == nullptr && *count != 0) || stream->mode == kSSLModeRead) {
        return SSL_ERROR_BAD_ARGUMENT;
    }
    _StreamData* data = stream->data;
    // Data in the mini stream are never overwritten.
    if (data->miniStream && stream->position < data->size) {
        return SSL_ERROR_BAD_ARGUMENT;
    }
    const uint32_t wanted = *count;
    *count = 0;
    int32_t result = stream->position > data->size ? setSize(stream, stream->position) : SSL_OK;
    const uint64_t sectorSize = stream->root->sectorSize();
    const auto* in = static_cast<const unsigned char*>(source);
    uint32_t done = 0;
    while (result == SSL_OK && done < wanted) {
        const uint64_t index = stream->position / sectorSize;
        const uint64_t offset = stream->position % sectorSize;
        if (stream->bufferSector != static_cast<int64_t>(index) &&
            ((result = flushBuffer(stream)) != SSL_OK || (result = loadBuffer(stream, index)) != SSL_OK)) {
            break;
        }
        const uint64_t take = std::min<uint64_t>(sectorSize - offset, wanted - done);
        std::memcpy(stream->writeBuffer.data() + offset, in + done, take);
        done += static_cast<uint32_t>(take);
        stream->position += take;
        data->size = std::max(data->size, stream->position);
        if (offset + take == sectorSize) {
            result = flushBuffer(stream);
        }
    }
    *count = done;
    return result;
}

int32_t streamFinishWriting(_Stream* stream) {
    _RootStorage* root = stream->root;
    _StreamData* data = stream->data;
    // The position at close decides the size: a writer that moved back truncates the stream there.
    int32_t result = setSize(stream, stream->position);
    if (result != SSL_OK) {
        return result;
    }
    _DirEntry& entry = entryOf(stream);
    entry.size = data->size;
    entry.creationTime = static_cast<int64_t>(std::time(nullptr));
    const bool belongsInMiniStream = data->size < root->header.miniStreamCutoff && stream->entryIndex != 0;
    if (belongsInMiniStream && data->refCount == 1 && data->size > 0 && !data->inMiniStream) {
        result = moveToMiniStream(stream);
    }
    return result;
}
