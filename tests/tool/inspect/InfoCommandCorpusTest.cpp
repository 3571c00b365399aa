#include "support/TestSupport.h"
#include "tool/inspect/InfoCommand.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace {

// The identification of one file as the corpus index records it.
struct IndexRow {
    std::string applicationName;
    int formatGuess = 0;
    std::string fileFormat;
};

std::vector<std::string> splitTabs(const std::string& line) {
    std::vector<std::string> fields;
    std::stringstream stream(line);
    std::string field;
    while (std::getline(stream, field, '\t')) {
        fields.push_back(field);
    }
    return fields;
}

std::map<std::string, IndexRow> readIndex() {
    std::ifstream in(testsupport::corpusDir() / "mpp" / "INDEX.tsv");
    std::string line;
    std::getline(in, line);
    const std::vector<std::string> header = splitTabs(line);
    auto column = [&header](const std::string& name) {
        return static_cast<size_t>(std::find(header.begin(), header.end(), name) - header.begin());
    };
    const size_t file = column("file");
    const size_t app = column("compobj_app_string");
    const size_t guess = column("format_guess");
    const size_t format = column("compobj_file_format");
    std::map<std::string, IndexRow> rows;
    while (std::getline(in, line)) {
        std::vector<std::string> fields = splitTabs(line);
        fields.resize(header.size());
        rows[fields[file]] = {fields[app], std::stoi(fields[guess]), fields[format]};
    }
    return rows;
}

// "Microsoft Project 9.0" and "Microsoft.Project 16.0" name the versions 9 and 16.
int applicationVersion(const std::string& applicationName) {
    return std::stoi(applicationName.substr(applicationName.rfind(' ') + 1));
}

void expectIdentified(const nlohmann::ordered_json& info, const IndexRow& row, bool accept) {
    const int format = row.formatGuess;
    const int application = applicationVersion(row.applicationName);
    // Applications 15 and 16 write format 14 as their own; other mismatches are downgrades.
    const bool ownFormat = application == format || (format == 14 && application > 14);
    if (format == 8) {
        ASSERT_TRUE(info.contains("error"));
        EXPECT_EQ(info["error"]["code"], 1);
        EXPECT_EQ(info["error"]["text"],
                  "UNSUPPORTED APPLICATION DETECTED: File was saved by '" + row.applicationName + "' app.");
    } else if (!ownFormat && !accept) {
        ASSERT_TRUE(info.contains("error"));
        EXPECT_EQ(info["error"]["domain"], "TVMSPFilter.GeneralErrorDomain");
        EXPECT_EQ(info["error"]["code"], 3);
        EXPECT_EQ(info["error"]["text"], "FORMAT DOWNGRADE: File in '" + row.fileFormat +
                                             "' format was saved by '" + row.applicationName + "' app.");
    } else {
        ASSERT_FALSE(info.contains("error")) << info.dump();
        EXPECT_EQ(info["formatVersion"], format);
        EXPECT_EQ(info["appVersion"], application);
        EXPECT_EQ(info["formatString"], row.fileFormat);
        EXPECT_EQ(info["applicationName"], row.applicationName);
        EXPECT_TRUE(info["codepage"].is_number());
    }
}

TEST(InfoCommandCorpusTest, EveryCorpusFileIsIdentifiedAsTheIndexSays) {
    TVMSP_REQUIRE_CORPUS();
    const std::map<std::string, IndexRow> index = readIndex();
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
