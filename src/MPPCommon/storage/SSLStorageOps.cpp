#include "MPPCommon/storage/SSLLayout.h"
#include "MPPCommon/storage/SSLLibrary.h"

using namespace ssllayout;

namespace {

_Storage* addStorage(_Storage* parent, int32_t index) {
    auto child = std::make_unique<_Storage>();
    child->root = parent->root;
    child->entryIndex = index;
    child->parent = parent;
    child->mode = parent->mode;
    _Storage* result = child.get();
    parent->openChildren.push_back(_OpenChild{std::move(child), nullptr});
    return result;
}

_Stream* addStream(_Storage* parent, std::unique_ptr<_Stream> stream) {
    _Stream* result = stream.get();
    parent->openChildren.push_back(_OpenChild{nullptr, std::move(stream)});
    return result;
}

// Opens the stream of entry `index` and hands it out as an open child of `storage`.
int32_t openChildStream(_Storage* storage, int32_t index, _Stream** child) {
    std::unique_ptr<_Stream> stream;
    const int32_t result = streamOpenEntry(storage, storage->root, index, &stream);
    if (result == SSL_OK) {
        *child = addStream(storage, std::move(stream));
    }
    return result;
}

int32_t findChild(_Storage* storage, const std::u32string& name, int32_t* index) {
    if (!isValidEntryName(name)) {
        return SSL_ERROR_BAD_ARGUMENT;
    }
    return directoryFindChild(storage->root->directory, storage->entryIndex, name, index);
}

// Finds the child entry `name` and checks its type: `type`, or the root entry, which serves as both a
// storage and a stream. An entry of another type answers `wrongTypeResult`.
int32_t findChildOfType(_Storage* storage, const std::u32string& name, uint8_t type, int32_t wrongTypeResult,
                        int32_t* index) {
    const int32_t result = findChild(storage, name, index);
    if (result != SSL_OK) {
        return result;
    }
    const uint8_t found = storage->root->directory.entries[*index].type;
    return found == type || found == kEntryTypeRoot ? SSL_OK : wrongTypeResult;
}

int32_t createChild(_Storage* storage, const std::u32string& name, uint8_t type, int32_t* index) {
    if (storage->mode == kSSLModeRead || !isValidEntryName(name)) {
        return SSL_ERROR_BAD_ARGUMENT;
    }
    return directoryInsertChild(&storage->root->directory, storage->entryIndex, name, type, index);
}

} // namespace

bool isValidEntryName(const std::u32string& name) {
    return !name.empty() && name.size() < kEntryNameUnits && name.find(U'\0') == std::u32string::npos;
}

int32_t storageOpenStorage(_Storage* storage, const std::u32string& name, _Storage** child) {
    if (storage == nullptr || child == nullptr) {
        return SSL_ERROR_BAD_ARGUMENT;
    }
    int32_t index = 0;
    const int32_t result = findChildOfType(storage, name, kEntryTypeStorage, SSL_ERROR_NOT_STORAGE, &index);
    if (result == SSL_OK) {
        *child = addStorage(storage, index);
    }
    return result;
}

int32_t storageOpenStream(_Storage* storage, const std::u32string& name, _Stream** child) {
    if (storage == nullptr || child == nullptr) {
        return SSL_ERROR_BAD_ARGUMENT;
    }
    int32_t index = 0;
    const int32_t result = findChildOfType(storage, name, kEntryTypeStream, SSL_ERROR_NOT_STREAM, &index);
    return result == SSL_OK ? openChildStream(storage, index, child) : result;
}

int32_t storageCreateStorage(_Storage* storage, const std::u32string& name, _Storage** child) {
    if (storage == nullptr || child == nullptr) {
        return SSL_ERROR_BAD_ARGUMENT;
    }
    int32_t index = 0;
    const int32_t result = createChild(storage, name, kEntryTypeStorage, &index);
    if (result == SSL_OK) {
        *child = addStorage(storage, index);
    }
    return result;
}

int32_t storageCreateStream(_Storage* storage, const std::u32string& name, _Stream** child) {
    if (storage == nullptr || child == nullptr) {
        return SSL_ERROR_BAD_ARGUMENT;
    }
    int32_t index = 0;
    const int32_t result = createChild(storage, name, kEntryTypeStream, &index);
    return result == SSL_OK ? openChildStream(storage, index, child) : result;
}

int32_t storageGetInfo(const _Storage* storage, _StgInfo* info) {
    if (storage == nullptr || info == nullptr) {
        return SSL_ERROR_BAD_ARGUMENT;
    }
    return entryInfo(*storage->root, storage->entryIndex, info);
}

int32_t storageGetChildren(const _Storage* storage, std::vector<_StgInfo>* children) {
    if (storage == nullptr || children == nullptr) {
        return SSL_ERROR_BAD_ARGUMENT;
    }
    const _Directory& directory = storage->root->directory;
    std::vector<_StgInfo> listed;
    // Pre-order: the node, its left subtree, its right subtree. Empty entries end a branch, as in the
    // check of the tree when the file was opened.
    std::vector<int32_t> pending = {directory.entries[storage->entryIndex].child};
    while (!pending.empty() && listed.size() <= directory.entries.size()) {
        int32_t index = pending.back();
        pending.pop_back();
        if (!directory.contains(index)) {
            continue;
        }
        _StgInfo info;
        int32_t result = entryInfo(*storage->root, index, &info);
        if (result != SSL_OK) {
            return result;
        }
        listed.push_back(std::move(info));
        const _DirEntry& entry = directory.entries[index];
        if (entry.type != kEntryTypeEmpty) {
            pending.push_back(entry.right);
            pending.push_back(entry.left);
        }
    }
    *children = std::move(listed);
    return SSL_OK;
}

int32_t storageClose(_Storage* storage) {
    if (storage == nullptr) {
        return SSL_ERROR_BAD_ARGUMENT;
    }
    int32_t result = SSL_OK;
    for (auto child = storage->openChildren.rbegin(); child != storage->openChildren.rend(); ++child) {
        int32_t closed =
            child->storage ? storageClose(child->storage.get()) : streamClose(child->stream.get());
        if (result == SSL_OK) {
            result = closed;
        }
    }
    storage->openChildren.clear();
    return result;
}
