#include "MPPCommon/storage/SSLRoot.h"
#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/storage/SSLStream.h"
#include "MPPCommon/support/Log.h"
#include "MPPImporter/file/KVMPPFixedDataReader.h"
#include "MPPImporter/file/KVMSPIMPPDataDirectoryReader.h"
#include "MPPImporter/file/KVMSPIMPPPropertyList.h"
#include "MPPImporter/file/KVMSPIMPPVersionReader.h"
#include "MPPImporter/format/MPPFormatConstants.h"
#include "MPPImporter/format/MPPStreamLayout.h"
#include "StreamFileFixture.h"
#include "support/CorpusComparison.h"
#include "support/TestSupport.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace {

// The count of items in use that the fixed meta stream's header gives; 0 without a header.
int32_t itemsInUseIn(SSLStorage& storage) {
    auto stream = storage.childStreamWithName(kFixedMetaStreamName);
    if (!stream || stream->bytesAvailable() < static_cast<uint32_t>(kFixedMetaHeaderSize)) {
        return 0;
    }
    stream->seekFromStart(kFixedMetaElementCountOffset);
    return stream->readInt();
}

// Opens every object storage of a file with its readers, which logs any read error, and reads the
// meta item of every object of the first fixed pair; returns what went wrong, empty if nothing did.
// The task objects are counted without the project's summary task, UID 0. (Fixed2 items are not read:
// files of application 16 often have larger Fixed2 items than the version tables give, so their
// offsets are misread and a read would meet the offset consistency check.)
std::string checkFile(const std::string& path, int64_t* taskObjects) {
    LogCapture log;
    auto root = SSLRoot::rootWithFilename(path);
    TVError error;
    auto fileReader = KVMSPIMPPVersionReader(path).getMppReader(*root, true, &error);
    if (!fileReader) {
        return "not identified: " + error.localizedDescription();
    }
    auto dataDirectory =
        fileReader->rootStorage().childStorageWithName(fileReader->MPPPropertyList().ole2DataDirectoryName());
    if (!dataDirectory) {
        return "no data directory";
    }
    std::string problems;
    for (const char* kind : {kTaskStorageName, kResourceStorageName, kAssignmentStorageName,
                             kCalendarStorageName, kConstraintStorageName, kOutlCodeStorageName}) {
        auto storage = dataDirectory->childStorageWithName(kind);
        if (!storage) {
            continue;
        }
        const int32_t itemsInUse = itemsInUseIn(*storage);
        KVMSPIMPPDataDirectoryReader reader(std::move(storage), kind, fileReader.get());
        auto* fixed = reader.fixedDataReader();
        if (!fixed) {
            continue;
        }
        if (itemsInUse > 0 && fixed->itemCount() == 0) {
            problems += std::string(kind) + " fixed stream not opened; ";
        }
        for (int32_t uid : fixed->uniqueIDs()) {
            int32_t firstField = 0;
            if (!fixed->readMetaInt(firstField, uid, 0)) {
                problems += stringWithFormat("%s UID %d unreadable; ", kind, uid);
            }
        }
        if (kind == std::string(kTaskStorageName)) {
            *taskObjects =
                static_cast<int64_t>(fixed->uniqueIDs().size()) - (fixed->dataItemInfo(nullptr, 0) ? 1 : 0);
        }
    }
    for (const auto& line : log.lines()) {
        if (line.starts_with("ERROR")) {
            problems += line + "; ";
        }
    }
    return problems;
}

} // namespace

// The task objects are counted against the index's count of tasks, which an independent reader sees.
TEST(KVMPPDataReaderCorpus, OpensEveryObjectStorageOfEveryReadableFileWithoutErrors) {
    TVMSP_REQUIRE_CORPUS();
    testsupport::CorpusComparison comparison("MPPImporter/file/DataReaderCorpusTest.manifest", 1000);
    const auto index = testsupport::corpusIndex();
    for (const auto& path : testsupport::corpusMppFiles()) {
        const std::string file = path.filename().string();
        const testsupport::CorpusIndexRow& row = index.at(file);
        // Format 8 is refused; the streams of password-protected files are obfuscated.
        if (row.at("format_guess") == "8" || row.at("encrypted_streams").starts_with("yes")) {
            continue;
        }
        int64_t taskObjects = -1;
        std::string problems;
        EXPECT_NO_THROW(problems = checkFile(path.string(), &taskObjects)) << file;
        comparison.check(file, "problems", "", problems.empty(), problems);
        comparison.compare(file, "task objects", "", std::to_string(taskObjects), row.at("tasks"));
    }
    const std::string failures = comparison.failures();
    EXPECT_TRUE(failures.empty()) << failures;
}

// Two plans of application 14 whose users named custom fields: the task store gives each named field
// its name by the property number of its values (51 is the first text field, 89 the third number,
// 327 the 21st text field).
TEST(KVMPPDataReaderCorpus, TaskStoresNameTheFieldsTheirUsersNamed) {
    TVMSP_REQUIRE_CORPUS();
    const auto aliasOf = [](const char* file, int32_t property) -> std::string {
        const std::string path = (testsupport::corpusDir() / "mpp" / file).string();
        auto root = SSLRoot::rootWithFilename(path);
        TVError error;
        auto fileReader = KVMSPIMPPVersionReader(path).getMppReader(*root, true, &error);
        if (!fileReader) {
            return "not identified";
        }
        auto dataDirectory = fileReader->rootStorage().childStorageWithName(
            fileReader->MPPPropertyList().ole2DataDirectoryName());
        KVMSPIMPPDataDirectoryReader tasks(dataDirectory->childStorageWithName(kTaskStorageName),
                                           kTaskStorageName, fileReader.get());
        const std::string* alias = tasks.fieldAlias(property);
        return alias ? *alias : "none";
    };
    EXPECT_EQ(aliasOf("generated__task-baselines__sf259.mpp", 51), "Pk");
    EXPECT_EQ(aliasOf("generated__task-baselines__sf259.mpp", 89), "Situa\u00E7\u00E3o");
    EXPECT_EQ(aliasOf("generated__task-baselines__sf259.mpp", 69), "none");
    EXPECT_EQ(aliasOf("assignment__assignment-deletion__sf248.mpp", 327), "PTC.RISK_DESC");
}
