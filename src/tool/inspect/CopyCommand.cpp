#include "tool/inspect/CopyCommand.h"

#include "MPPCommon/storage/SSLTypes.h"
#include "tool/inspect/EntryPath.h"
#include "tool/inspect/InspectError.h"
#include "tool/inspect/InspectedFile.h"

void CopyCommand::runOnStorage(const std::vector<std::string>& arguments, std::ostream&) {
    InspectedFile in(arguments[0]);
    std::unique_ptr<SSLRoot> out = SSLRoot::forWritingToFile(arguments[1]);
    if (!out || out->lastError() != SSL_OK) {
        throw InspectError(out ? out->lastError() : SSL_ERROR_NO_MEMORY, "cannot create " + arguments[1]);
    }
    std::unique_ptr<SSLStorage> outRoot = out->rootStorage();
    if (!outRoot) {
        throw InspectError(out->lastError(), "cannot create " + arguments[1]);
    }
    copyStorage(in.rootStorage(), *outRoot, "");
    // Ending the root lays out the directory and tables and completes the file.
}

void CopyCommand::copyStorage(SSLStorage& from, SSLStorage& to, const std::string& path) {
    const int32_t count = InspectedFile::childCount(from, path);
    for (int32_t i = 0; i < count; ++i) {
        const std::string name = from.childNameByIndex(i);
        const std::string childPath = EntryPath::join(path, name);
        if (from.childTypeByIndex(i) == kSSLInfoTypeStorage) {
            std::unique_ptr<SSLStorage> source = InspectedFile::childStorage(from, name, childPath);
            std::unique_ptr<SSLStorage> target = to.createChildStorageWithName(name);
            if (!target) {
                throw InspectError(to.lastError(), "cannot create storage " + childPath);
            }
            copyStorage(*source, *target, childPath);
            continue;
        }
        std::unique_ptr<SSLStream> source = InspectedFile::childStream(from, name, childPath);
        std::unique_ptr<SSLStream> target = to.createChildStreamWithName(name);
        if (!target) {
            throw InspectError(to.lastError(), "cannot create stream " + childPath);
        }
        InspectedFile::readChunks(*source, childPath, [&](const unsigned char* bytes, size_t n) {
            target->writeBuffer(bytes, static_cast<int32_t>(n));
            if (target->lastError() != SSL_OK) {
                throw InspectError(target->lastError(), "cannot write stream " + childPath);
            }
        });
    }
}
