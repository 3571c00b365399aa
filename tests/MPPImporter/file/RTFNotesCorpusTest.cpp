#include "MPPCommon/storage/SSLRoot.h"
#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/support/TVError.h"
#include "MPPImporter/file/KVMPPFixedDataReader.h"
#include "MPPImporter/file/KVMPPVarDataReader.h"
#include "MPPImporter/file/KVMSPIClassFactory.h"
#include "MPPImporter/file/KVMSPIMPPDataDirectoryReader.h"
#include "MPPImporter/file/KVMSPIMPPPropertyList.h"
#include "MPPImporter/file/KVMSPIMPPVersionReader.h"
#include "MPPImporter/format/MPPFormatConstants.h"
#include "StreamFileFixture.h"
#include "support/TestSupport.h"

#include <fstream>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <set>

namespace {

// Property keys of the notes of tasks and resources.
constexpr int32_t kTaskNotesKey = 240;
constexpr int32_t kResourceNotesKey = 103;

struct NotesKind {
    const char* storageName;
    int32_t propertyKey;
    const char* refKey;
};

constexpr NotesKind kNotesKinds[] = {
    {kTaskStorageName, kTaskNotesKey, "tasks"},
    {kResourceStorageName, kResourceNotesKey, "resources"},
};

std::string withoutWhiteSpace(const std::string& text) {
    std::string result;
    for (char c : text) {
        if (c != ' ' && c != '\t' && c != '\n' && c != '\r') {
            result.push_back(c);
        }
    }
    return result;
}

// "file kind uid" of the notes that are known to differ from the reference.
std::set<std::string> expectedDifferences() {
    std::ifstream manifest(std::string(TVMSP_SOURCE_DIR) +
                           "/tests/MPPImporter/file/RTFNotesCorpusTest.manifest");
    std::set<std::string> cases;
    for (std::string line; std::getline(manifest, line);) {
        std::istringstream fields(line);
        std::string file;
        std::string kind;
        std::string uid;
        if (!line.starts_with('#') && fields >> file >> kind >> uid) {
            cases.insert(file + " " + kind + " " + uid);
        }
    }
    return cases;
}

} // namespace

// The notes of tasks and resources, decoded from their RTF blocks, against the reference reader's
// plain text; white space is left out of the comparison.
TEST(RTFNotesCorpus, NotesMatchTheReference) {
    TVMSP_REQUIRE_CORPUS();
    const auto expectedToDiffer = expectedDifferences();
    LogCapture quiet;
    int notesCompared = 0;
    for (const auto& file : testsupport::corpusMppFiles()) {
        std::ifstream refFile(testsupport::corpusDir() / "ref" / (file.filename().string() + ".json"));
        auto root = SSLRoot::rootWithFilename(file.string());
        TVError error;
        auto fileReader =
            refFile ? KVMSPIMPPVersionReader(file.string()).getMppReader(*root, true, &error) : nullptr;
        if (!fileReader) {
            continue;
        }
        const auto ref = nlohmann::json::parse(refFile);
        const KVMSPIMPPPropertyList& list = fileReader->MPPPropertyList();
        auto dataDirectory = fileReader->rootStorage().childStorageWithName(list.ole2DataDirectoryName());
        for (const auto& kind : kNotesKinds) {
            auto storage = dataDirectory ? dataDirectory->childStorageWithName(kind.storageName) : nullptr;
            if (!storage) {
                continue;
            }
            KVMSPIMPPDataDirectoryReader reader(std::move(storage), kind.storageName, fileReader.get());
            // Tasks are numbered by the layout of their items, which application 14 may have put into
            // an older format.
            MPPDataItemInfo summary;
            const bool tasks = kind.storageName == std::string(kTaskStorageName);
            const auto property =
                tasks && reader.fixedDataReader() && reader.fixedDataReader()->dataItemInfo(&summary, 0)
                    ? KVMSPIClassFactory::taskLayout(list, fileReader->appVersion(), summary.dataSize)
                          .propertyID(kind.propertyKey)
                    : list.propertyID(kind.propertyKey);
            if (!property) {
                continue;
            }
            for (const auto& object : ref[kind.refKey]) {
                std::string notes;
                if (reader.varDataReader() != nullptr) {
                    reader.varDataReader()->readDataUnicode(&notes, object["uid"].get<int32_t>(),
                                                            static_cast<int32_t>(*property), 0);
                }
                const std::string expected =
                    object["notes"].is_string() ? object["notes"].get<std::string>() : "";
                if (notes.empty() && expected.empty()) {
                    continue;
                }
                const std::string caseName = file.filename().string() + " " + kind.refKey + " " +
                                             std::to_string(object["uid"].get<int32_t>());
                if (expectedToDiffer.contains(caseName)) {
                    EXPECT_NE(withoutWhiteSpace(notes), withoutWhiteSpace(expected))
                        << caseName << " matches now: remove it from the manifest";
                } else {
                    EXPECT_EQ(withoutWhiteSpace(notes), withoutWhiteSpace(expected)) << caseName;
                }
                ++notesCompared;
            }
        }
    }
    EXPECT_GT(notesCompared, 0);
}
