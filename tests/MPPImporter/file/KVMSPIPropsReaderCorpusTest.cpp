#include "MPPCommon/storage/SSLRoot.h"
#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/storage/SSLStream.h"
#include "MPPImporter/file/KVMSPIPropsReader.h"
#include "MPPImporter/format/MPPFormatConstants.h"
#include "MPPImporter/text/WindowsCodePage.h"
#include "support/TestSupport.h"

#include <fstream>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

namespace {

// Property set strings and the keys under which the reference reader reports them. The category
// (document summary property 2) is left out: the user-defined section's property 2 replaces it in
// the reader's index.
struct TextProperty {
    int32_t number;
    bool customProp;
    const char* refKey;
};

constexpr TextProperty kTextProperties[] = {
    {2, false, "title"},    {3, false, "subject"}, {4, false, "author"},  {5, false, "keywords"},
    {6, false, "comments"}, {14, true, "manager"}, {15, true, "company"},
};

std::unique_ptr<KVMSPIPropsReader> readerOf(SSLStorage& root, const char* name) {
    auto stream = root.childStreamWithName(name);
    return stream ? std::make_unique<KVMSPIPropsReader>(std::move(stream)) : nullptr;
}

// "file key" of the cases that are known to differ from the reference.
std::set<std::string> expectedDifferences() {
    std::ifstream manifest(std::string(TVMSP_SOURCE_DIR) +
                           "/tests/MPPImporter/file/KVMSPIPropsReaderCorpusTest.manifest");
    std::set<std::string> cases;
    std::string line;
    while (std::getline(manifest, line)) {
        std::istringstream fields(line);
        std::string file;
        std::string key;
        if (!line.starts_with('#') && fields >> file >> key) {
            cases.insert(file + " " + key);
        }
    }
    return cases;
}

} // namespace

TEST(PropsReaderCorpus, SummaryTextsMatchTheReference) {
    TVMSP_REQUIRE_CORPUS();
    const auto expectedToDiffer = expectedDifferences();
    ASSERT_FALSE(expectedToDiffer.empty());
    int compared = 0;
    for (const auto& file : testsupport::corpusMppFiles()) {
        std::ifstream refFile(testsupport::corpusDir() / "ref" / (file.filename().string() + ".json"));
        if (!refFile) {
            continue;
        }
        const auto project = nlohmann::json::parse(refFile)["project"];
        SSLRoot root(file.string());
        auto storage = root.rootStorage();
        ASSERT_TRUE(storage) << file;
        auto summary = readerOf(*storage, kSummaryInfoFileName);
        auto docSummary = readerOf(*storage, kDocSummaryInfoFileName);
        int16_t codepage = static_cast<int16_t>(kCodePageUTF8);
        if (summary) {
            summary->readPropertyShort(codepage, 1, false);
        }
        for (const auto& property : kTextProperties) {
            KVMSPIPropsReader* reader = property.customProp ? docSummary.get() : summary.get();
            std::string text;
            if (reader != nullptr) {
                reader->readPropertyLPSTR(text, property.number, property.customProp, codepage);
            }
            const auto& ref = project[property.refKey];
            const std::string expected = ref.is_string() ? ref.get<std::string>() : "";
            const std::string caseName = file.filename().string() + " " + property.refKey;
            if (expectedToDiffer.contains(caseName)) {
                EXPECT_NE(text, expected) << caseName << " matches now: remove it from the manifest";
            } else {
                EXPECT_EQ(text, expected) << caseName << ", code page " << static_cast<uint16_t>(codepage);
            }
            ++compared;
        }
    }
    EXPECT_GT(compared, 0);
}
