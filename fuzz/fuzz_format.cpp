// Feeds arbitrary bytes as a whole compound file to format identification, with and without
// accepting downgraded formats, and opens the object storages of every file that is accepted.
// Malformed files may raise the internal-inconsistency exception; nothing else may happen.
#include "MPPCommon/storage/SSLRoot.h"
#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVError.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/file/KVMSPIMPPDataDirectoryReader.h"
#include "MPPImporter/file/KVMSPIMPPVersionReader.h"
#include "MPPImporter/format/MPPFormatConstants.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

void openObjectStorages(KVMSPOLE2DirectoryReader& project) {
    for (const char* kind : {kAssignmentStorageName, kCalendarStorageName, kConstraintStorageName,
                             kOutlCodeStorageName, kResourceStorageName, kTaskStorageName}) {
        auto storage = project.directory().childStorageWithName(kind);
        if (storage) {
            KVMSPIMPPDataDirectoryReader reader(std::move(storage), kind, &project);
            for (int32_t uid : reader.uniqueIDs()) {
                reader.objectIDforUniqueID(uid);
            }
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const bool quiet = (tvSetLogSink([](const std::string&) {}), true);
    (void)quiet;
    const KVMSPIMPPVersionReader versionReader(
        "fuzz.mpp",
        [](std::unique_ptr<SSLStorage> directory, const std::string& name, KVMSPIMPPReader& parent) {
            return std::make_unique<KVMSPOLE2DirectoryReader>(std::move(directory), name, &parent);
        });
    for (bool accept : {false, true}) {
        auto root = SSLRoot::rootWithBytes(std::vector<unsigned char>(data, data + size));
        if (root->lastError() != 0) {
            return 0;
        }
        try {
            TVError error;
            auto reader = versionReader.getMppReader(*root, accept, &error);
            if (reader && reader->projectReader()) {
                openObjectStorages(*reader->projectReader());
            }
        } catch (const TVException& e) {
            if (e.name() != kInternalInconsistencyException) {
                throw;
            }
        }
    }
    return 0;
}
