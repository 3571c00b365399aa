#include "support/TestSupport.h"
#include "tool/inspect/InfoCommand.h"

#include <gtest/gtest.h>
#include <map>
#include <string>

namespace {

// "Microsoft Project 9.0" and "Microsoft.Project 16.0" name the versions 9 and 16.
int applicationVersion(const std::string& applicationName) {
    return std::stoi(applicationName.substr(applicationName.rfind(' ') + 1));
}

void expectIdentified(const nlohmann::ordered_json& info, const testsupport::CorpusIndexRow& row,
                      bool accept) {
    const int format = std::stoi(row.at("format_guess"));
    const std::string& applicationName = row.at("compobj_app_string");
    const std::string& fileFormat = row.at("compobj_file_format");
    const int application = applicationVersion(applicationName);
    // Applications 15 and 16 write format 14 as their own; other mismatches are downgrades.
    const bool ownFormat = application == format || (format == 14 && application > 14);
    if (format == 8) {
        ASSERT_TRUE(info.contains("error"));
        EXPECT_EQ(info["error"]["code"], 1);
        EXPECT_EQ(info["error"]["text"],
                  "UNSUPPORTED APPLICATION DETECTED: File was saved by '" + applicationName + "' app.");
    } else if (!ownFormat && !accept) {
        ASSERT_TRUE(info.contains("error"));
        EXPECT_EQ(info["error"]["domain"], "TVMSPFilter.GeneralErrorDomain");
        EXPECT_EQ(info["error"]["code"], 3);
        EXPECT_EQ(info["error"]["text"], "FORMAT DOWNGRADE: File in '" + fileFormat +
                                             "' format was saved by '" + applicationName + "' app.");
    } else {
        ASSERT_FALSE(info.contains("error")) << info.dump();
        EXPECT_EQ(info["formatVersion"], format);
        EXPECT_EQ(info["appVersion"], application);
        EXPECT_EQ(info["formatString"], fileFormat);
        EXPECT_EQ(info["applicationName"], applicationName);
        EXPECT_TRUE(info["codepage"].is_number());
    }
}

TEST(InfoCommandCorpusTest, EveryCorpusFileIsIdentifiedAsTheIndexSays) {
    TVMSP_REQUIRE_CORPUS();
    const auto index = testsupport::corpusIndex();
    const std::vector<std::filesystem::path> files = testsupport::corpusMppFiles();
    // Every file is in the index (below), and the files cover the whole index or its sampled share.
    ASSERT_GE(static_cast<long>(files.size()), testsupport::corpusShare(static_cast<long>(index.size())));
    for (const std::filesystem::path& file : files) {
        const auto row = index.find(file.filename().string());
        ASSERT_NE(row, index.end()) << file;
        for (bool accept : {false, true}) {
            SCOPED_TRACE(file.filename().string() + (accept ? " accepting downgrades" : ""));
            expectIdentified(InfoCommand::infoOfFile(file.string(), accept), row->second, accept);
        }
    }
}

} // namespace
