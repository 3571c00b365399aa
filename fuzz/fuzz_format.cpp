// Feeds arbitrary bytes as a whole compound file to format identification, with and without
// accepting downgraded formats, and opens the object storages of every file that is accepted; then
// opens it with the whole reader tree and reads the fields that the catalogue places by per-version data
// (project properties, task flags, resource work and the cost-resource mark).
// Malformed files may raise the internal-inconsistency exception; nothing else may happen.
#include "MPPCommon/storage/SSLRoot.h"
#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVError.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/file/KVMSPIMPPDataDirectoryReader.h"
#include "MPPImporter/file/KVMSPIMPPVersionReader.h"
#include "MPPImporter/format/MPPFormatConstants.h"
#include "MPPImporter/readers/KVMSPIMPPAbsResourceReader.h"
#include "MPPImporter/readers/KVMSPIMPPAbsTaskReader.h"
#include "MPPImporter/readers/KVMSPIMPPProjectReader.h"

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

void readFields(KVMSPIMPPAbsProjectReader& project) {
    std::string text;
    int16_t word = 0;
    int32_t number = 0;
    TVDate date;
    bool flag = false;
    project.propCurrencyCode(text);
    project.propCurrencyDigits(word);
    project.propMinutesPerDay(number);
    project.propStartDate(date);
    project.propScheduleFromStart(flag);
    if (KVMSPIMPPAbsTaskReader* tasks = project.taskReader()) {
        for (int32_t uid : tasks->uniqueIDs()) {
            for (int32_t flagNumber = 0; flagNumber <= 21; ++flagNumber) {
                tasks->taskFlag(flagNumber, uid, flag);
            }
        }
    }
    if (KVMSPIMPPAbsResourceReader* resources = project.resourceReader()) {
        for (int32_t uid : resources->uniqueIDs()) {
            TVTimeSpan work = 0;
            uint8_t mark = 0;
            resources->resourceWork(uid, work);
            resources->resourceIsCostResource(uid, mark);
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
    const KVMSPIMPPVersionReader treeReader("fuzz.mpp", KVMSPIMPPProjectReader::projectReaderFactory());
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
            auto tree = treeReader.getMppReader(*root, accept, &error);
            if (auto* project =
                    tree ? dynamic_cast<KVMSPIMPPAbsProjectReader*>(tree->projectReader()) : nullptr) {
                readFields(*project);
            }
        } catch (const TVException& e) {
            if (e.name() != kInternalInconsistencyException) {
                throw;
            }
        }
    }
    return 0;
}
