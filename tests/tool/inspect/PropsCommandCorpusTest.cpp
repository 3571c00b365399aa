#include "support/TestSupport.h"
#include "tool/inspect/PropsCommand.h"

#include <fstream>
#include <gtest/gtest.h>

// Every file of a format that the tool reads gives its property sets with the code page that it
// declares, and both Props streams; files of older formats give the import's refusal.
TEST(PropsCommandCorpus, EveryReadableFileGivesItsProperties) {
    TVMSP_REQUIRE_CORPUS();
    for (const auto& file : testsupport::corpusMppFiles()) {
        std::ifstream refFile(testsupport::corpusDir() / "ref" / (file.filename().string() + ".json"));
        if (!refFile) {
            continue;
        }
        const auto project = nlohmann::json::parse(refFile)["project"];
        const auto properties = PropsCommand::propertiesOfFile(file.string());
        if (project["mpp_file_type"] == 8) {
            EXPECT_TRUE(properties.contains("error")) << file;
            continue;
        }
        EXPECT_EQ(properties["codepage"], properties["summaryInformation"]["1"]) << file;
        EXPECT_TRUE(properties.contains("documentSummaryInformation")) << file;
        EXPECT_FALSE(properties["docProps"]["properties"].empty()) << file;
        // Password-protected files obfuscate the project's Props stream; it is still listed.
        EXPECT_TRUE(properties.contains("projectProps")) << file;
    }
}
