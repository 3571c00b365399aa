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
#include "support/TestSupport.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <sstream>

namespace {

// One row of the corpus index: a file of a readable format and the tasks an independent reader
// sees in it.
struct CorpusEntry {
    std::string file;
    bool encrypted = false;
    int64_t tasks = 0;
};

std::vector<CorpusEntry> readableCorpusEntries() {
    std::ifstream index(testsupport::corpusDir() / "mpp" / "INDEX.tsv");
    std::string line;
    std::getline(index, line);
    const auto headerColumns = static_cast<size_t>(std::count(line.begin(), line.end(), '\t') + 1);
    std::vector<CorpusEntry> entries;
    while (std::getline(index, line)) {
        std::vector<std::string> columns;
        std::stringstream fields(line);
        for (std::string column; std::getline(fields, column, '\t');) {
            columns.push_back(column);
        }
        // A few rows name two top storages in two columns; the columns behind them move on by one.
        const size_t shift = columns.size() > headerColumns ? columns.size() - headerColumns : 0;
        columns.resize(headerColumns + shift);
        const std::string format = columns[3];
        if (format == "9" || format == "12" || format == "14") {
            entries.push_back(
                {columns[0], columns[8 + shift].starts_with("yes"), std::atoll(columns[5 + shift].c_str())});
        }
    }
    return entries;
}

// Case name to reason, from the manifest next to this test.
std::map<std::string, std::string> expectedFailures() {
    std::ifstream manifest(std::string(TVMSP_SOURCE_DIR) +
                           "/tests/MPPImporter/file/DataReaderCorpusFailures.txt");
    std::map<std::string, std::string> cases;
    for (std::string line; std::getline(manifest, line);) {
        if (!line.empty() && line[0] != '#') {
            auto tab = line.find('\t');
            cases[line.substr(0, tab)] = tab == std::string::npos ? "" : line.substr(tab + 1);
        }
    }
    return cases;
}

uint32_t streamSizeIn(SSLStorage& storage, const char* name) {
    auto stream = storage.childStreamWithName(name);
    return stream ? stream->bytesAvailable() : 0;
}

// Opens every object storage of a file with its readers, which logs any read error, and reads the
// meta item of every object of the first fixed pair; returns what went wrong, empty if nothing did.
// The task objects are counted without the project's summary task, UID 0. (Fixed2 items are not read:
// files of application 16 often have larger Fixed2 items than the version tables give, so their
// offsets are misread and a read would meet the offset consistency check.)
std::string checkFile(const CorpusEntry& entry, int64_t* taskObjects) {
    const std::string path = (testsupport::corpusDir() / "mpp" / entry.file).string();
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
        const int64_t fixedMetaSize = streamSizeIn(*storage, kFixedMetaStreamName);
        KVMSPIMPPDataDirectoryReader reader(std::move(storage), kind, fileReader.get());
        auto* fixed = reader.fixedDataReader();
        if (!fixed) {
            continue;
        }
        if (fixedMetaSize >= kFixedMetaHeaderSize + fixed->metaStreamItemSize() && fixed->itemCount() == 0) {
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

TEST(DataReaderCorpus, OpensEveryObjectStorageOfEveryReadableFileWithoutErrors) {
    TVMSP_REQUIRE_CORPUS();
    const auto expected = expectedFailures();
    size_t checked = 0;
    for (const auto& entry : readableCorpusEntries()) {
        if (entry.encrypted) {
            continue;
        }
        SCOPED_TRACE(entry.file);
        int64_t taskObjects = -1;
        std::string problems;
        EXPECT_NO_THROW(problems = checkFile(entry, &taskObjects));
        if (expected.contains(entry.file)) {
            // A listed case must still differ, and only in its count.
            EXPECT_EQ(problems, "");
            EXPECT_NE(taskObjects, entry.tasks) << "listed in the manifest, but the counts agree now";
        } else {
            EXPECT_EQ(problems, "");
            EXPECT_EQ(taskObjects, entry.tasks) << "task objects against the index";
        }
        ++checked;
    }
    EXPECT_GT(checked, 500u);
}

} // namespace
