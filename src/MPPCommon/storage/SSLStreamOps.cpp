#include "MPPCommon/storage/SSLLayout.h"
#include "MPPCommon/storage/SSLLibrary.h"

#include <algorithm>
#include <cstring>

using namespace ssllayout;

namespace {

// Decides once where a stream's data lie and finds their chain.
int32_t locateData(_RootStorage* root, int32_t index, _StreamData* data) {
    const _DirEntry& entry = root->directory.entries[index];
    data->inMiniStream = data->size < root->header.miniStreamCutoff && index != 0;
    const uint64_t unit = data->inMiniStream ? root->miniSectorSize() : root->sectorSize();
    const uint64_t units = data->size / unit + (data->size % unit != 0 ? 1 : 0);
    if (units >= 0xFFFFFFFF) {
        return SSL_ERROR_BAD_CHAIN;
    }
    uint32_t count = static_cast<uint32_t>(units);
    int32_t result =
        fatWalkChain(data->inMiniStream ? root->miniFat : root->fat, entry.firstSector, &count, &data->chain);
    data->placeDecided = result == SSL_OK;
    return result;
}

} // namespace

int32_t streamOpenEntry(_Storage* parent, _RootStorage* root, int32_t index, std::unique_ptr<_Stream>* out) {
    _DirEntry& entry = root->directory.entries[index];
    if (!entry.streamData) {
        entry.streamData = std::make_unique<_StreamData>();
        entry.streamData->size = entry.size;
    }
    _StreamData* data = entry.streamData.get();
    int32_t result = SSL_OK;
    if (root->mode == kSSLModeRead) {
        if (!data->placeDecided) {
            result = locateData(root, index, data);
        }
        if (result == SSL_OK && data->inMiniStream && !data->miniStream) {
            result = streamOpenEntry(nullptr, root, 0, &data->miniStream);
        }
    }
    if (result != SSL_OK) {
        if (data->refCount == 0) {
            entry.streamData.reset();
        }
        return result;
    }
    auto stream = std::make_unique<_Stream>();
    stream->root = root;
    stream->entryIndex = index;
    stream->parent = parent;
    stream->mode = root->mode;
    stream->data = data;
    if (root->mode != kSSLModeRead) {
        stream->writeBuffer.assign(root->sectorSize(), 0);
    }
    ++data->refCount;
    *out = std::move(stream);
    return SSL_OK;
}

void streamRelease(_Stream* stream) {
    _StreamData* data = stream->data;
    stream->data = nullptr;
    if (data == nullptr || --data->refCount > 0) {
        return;
    }
    if (data->miniStream) {
        streamRelease(data->miniStream.get());
    }
    stream->root->directory.entries[stream->entryIndex].streamData.reset();
}

int32_t streamClose(_Stream* stream) {
    if (stream == nullptr || stream->data == nullptr) {
        return SSL_ERROR_BAD_ARGUMENT;
    }
    int32_t result = stream->mode == kSSLModeRead ? SSL_OK : streamFinishWriting(stream);
    streamRelease(stream);
    return result;
}

int32_t streamGetInfo(const _Stream* stream, _StgInfo* info) {
    if (stream == nullptr || info == nullptr || stream->data == nullptr) {
        return SSL_ERROR_BAD_ARGUMENT;
    }
    int32_t result = entryInfo(*stream->root, stream->entryIndex, info);
    if (result == SSL_OK) {
        info->size = stream->data->size;
    }
    return result;
}

int32_t streamRead(_Stream* stream, void* destination, uint32_t* count) {
    if (stream == nullptr || count == nullptr || stream->root == nullptr || stream->data == nullptr ||
        (destination == nullptr && *count != 0)) {
        return SSL_ERROR_BAD_ARGUMENT;
    }
    if (*count == 0) {
        return SSL_OK;
    }
    _StreamData* data = stream->data;
    _RootStorage* root = stream->root;
    if (stream->position >= data->size) {
        *count = 0;
        return SSL_ERROR_END_OF_STREAM;
    }
    const uint64_t wanted = std::min<uint64_t>(*count, data->size - stream->position);
    _Stream* mini = data->miniStream.get();
    const uint32_t unit = mini != nullptr ? root->miniSectorSize() : root->sectorSize();
    uint64_t chainIndex = stream->position / unit;
    if (chainIndex >= data->chain.size()) {
        *count = 0;
        return SSL_ERROR_END_OF_STREAM;
    }
    auto* out = static_cast<unsigned char*>(destination);
    std::vector<unsigned char> miniUnit(mini != nullptr ? unit : 0);
    uint32_t offset = static_cast<uint32_t>(stream->position % unit);
    uint64_t copied = 0;
    int32_t result = SSL_OK;
    for (; copied < wanted && chainIndex < data->chain.size(); ++chainIndex, offset = 0) {
        const uint32_t sector = data->chain[chainIndex];
        const unsigned char* bytes = nullptr;
        if (mini != nullptr) {
            // Mini sectors are read from the mini stream by their offset in it.
            std::fill(miniUnit.begin(), miniUnit.end(), 0);
            mini->position = static_cast<uint64_t>(sector) * unit;
            uint32_t got = unit;
            result = streamRead(mini, miniUnit.data(), &got);
            bytes = result == SSL_OK ? miniUnit.data() : nullptr;
        } else {
            bytes = sectorFetch(root, sector);
            result = root->lastCachedResult;
        }
        if (bytes == nullptr) {
            break;
        }
        const uint64_t take = std::min<uint64_t>(unit - offset, wanted - copied);
        std::memcpy(out + copied, bytes + offset, take);
        copied += take;
    }
    stream->position += copied;
    *count = static_cast<uint32_t>(copied);
    return result;
}

int32_t streamSeek(_Stream* stream, int32_t offset, int32_t origin) {
    if (stream == nullptr || stream->data == nullptr) {
        return SSL_ERROR_BAD_ARGUMENT;
    }
    int64_t base = 0;
    switch (origin) {
    case 0:
        if (offset < 0) {
            return SSL_ERROR_BAD_ARGUMENT;
        }
        break;
    case 1:
        base = static_cast<int64_t>(stream->position);
        break;
    case 2:
        base = static_cast<int64_t>(stream->data->size);
        break;
    default:
        return SSL_ERROR_BAD_ARGUMENT;
    }
    if (base + offset < 0) {
        return SSL_ERROR_BAD_ARGUMENT;
    }
    stream->position = static_cast<uint64_t>(base + offset);
    return SSL_OK;
}

int32_t streamTell(const _Stream* stream, uint64_t* position) {
    if (stream == nullptr || position == nullptr) {
        return SSL_ERROR_BAD_ARGUMENT;
    }
    *position = stream->position;
    return SSL_OK;
}

int32_t streamBytesLeft(const _Stream* stream, uint32_t* left) {
    if (stream == nullptr || left == nullptr || stream->data == nullptr) {
        return SSL_ERROR_BAD_ARGUMENT;
    }
    const uint64_t size = stream->data->size;
    *left = size > stream->position
                ? static_cast<uint32_t>(std::min<uint64_t>(size - stream->position, UINT32_MAX))
                : 0;
    return SSL_OK;
}
