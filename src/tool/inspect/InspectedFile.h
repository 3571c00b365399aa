#pragma once

#include "MPPCommon/storage/SSLRoot.h"
#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/storage/SSLStream.h"

#include <functional>
#include <memory>
#include <string>

// A compound file opened for an inspector command, with helpers that turn every failure of the
// storage objects into an InspectError.
class InspectedFile {
public:
    explicit InspectedFile(const std::string& path);

    SSLStorage& rootStorage() { return *m_rootStorage; }

    // The storage or stream at a path as EntryPath prints it.
    std::unique_ptr<SSLStream> streamAtPath(const std::string& path);

    static std::unique_ptr<SSLStorage> childStorage(SSLStorage& parent, const std::string& name,
                                                    const std::string& path);
    static std::unique_ptr<SSLStream> childStream(SSLStorage& parent, const std::string& name,
                                                  const std::string& path);
    static int32_t childCount(SSLStorage& storage, const std::string& path);
    // Hands the stream's bytes from its position on to `consume`, a block at a time.
    static void readChunks(SSLStream& stream, const std::string& path,
                           const std::function<void(const unsigned char* bytes, size_t count)>& consume);

private:
    std::unique_ptr<SSLRoot> m_root;
    std::unique_ptr<SSLStorage> m_rootStorage;
};
