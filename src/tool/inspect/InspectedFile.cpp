#include "tool/inspect/InspectedFile.h"

#include "MPPCommon/storage/SSLTypes.h"
#include "tool/inspect/EntryPath.h"
#include "tool/inspect/InspectError.h"

#include <vector>

namespace {

constexpr uint32_t kChunkSize = 64 * 1024;

} // namespace

InspectedFile::InspectedFile(const std::string& path) : m_root(SSLRoot::rootWithFilename(path)) {
    if (m_root->lastError() == SSL_OK) {
        m_rootStorage = m_root->rootStorage();
    }
    if (!m_rootStorage) {
        throw InspectError(m_root->lastError(), "cannot open compound file " + path);
    }
}

std::unique_ptr<SSLStream> InspectedFile::streamAtPath(const std::string& path) {
    std::vector<std::string> names = EntryPath::split(path);
    std::unique_ptr<SSLStorage> storage;
    SSLStorage* parent = m_rootStorage.get();
    for (size_t i = 0; i + 1 < names.size(); ++i) {
        storage = childStorage(*parent, names[i], path);
        parent = storage.get();
    }
    return childStream(*parent, names.back(), path);
}

std::unique_ptr<SSLStorage> InspectedFile::childStorage(SSLStorage& parent, const std::string& name,
                                                        const std::string& path) {
    std::unique_ptr<SSLStorage> child = parent.childStorageWithName(name);
    if (!child) {
        throw InspectError(parent.lastError(), "cannot open storage " + path);
    }
    return child;
}

std::unique_ptr<SSLStream> InspectedFile::childStream(SSLStorage& parent, const std::string& name,
                                                      const std::string& path) {
    std::unique_ptr<SSLStream> child = parent.childStreamWithName(name);
    if (!child) {
        throw InspectError(parent.lastError(), "cannot open stream " + path);
    }
    return child;
}

int32_t InspectedFile::childCount(SSLStorage& storage, const std::string& path) {
    int32_t count = storage.childCount();
    if (count < 0) {
        throw InspectError(storage.lastError(), "cannot list storage " + (path.empty() ? "/" : path));
    }
    return count;
}

void InspectedFile::readChunks(SSLStream& stream, const std::string& path,
                               const std::function<void(const unsigned char*, size_t)>& consume) {
    std::vector<unsigned char> chunk(kChunkSize);
    while (stream.bytesAvailable() > 0) {
        int32_t count = stream.readBytes(kChunkSize, chunk.data());
        if (count <= 0) {
            throw InspectError(stream.lastError(), "cannot read stream " + path);
        }
        consume(chunk.data(), static_cast<size_t>(count));
    }
}
