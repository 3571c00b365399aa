#include "support/TestSupport.h"

#include <algorithm>
#include <cstdio>
#include <gtest/gtest.h>
#include <map>
#include <sstream>

namespace {

namespace fs = std::filesystem;

struct CommandResult {
    int status = -1;
    std::string out;
};

using testsupport::shellQuoted;

CommandResult runCommand(const std::string& command) {
    CommandResult result;
    FILE* pipe = popen((command + " 2>/dev/null").c_str(), "r");
    if (pipe == nullptr) {
        return result;
    }
    char buffer[65536];
    size_t count = 0;
    while ((count = fread(buffer, 1, sizeof buffer, pipe)) > 0) {
        result.out.append(buffer, count);
    }
    result.status = pclose(pipe);
    return result;
}

std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> result;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        result.push_back(line);
    }
    return result;
}

// Listing lines sorted by their path field, as the olefile helper prints them.
std::vector<std::string> sortedByPath(std::vector<std::string> listing) {
    auto path = [](const std::string& line) { return line.substr(line.rfind('\t') + 1); };
    std::sort(listing.begin(), listing.end(),
              [&](const auto& a, const auto& b) { return path(a) < path(b); });
    return listing;
}

// The olefile listing of every file, by path, from one run of the helper script.
std::map<std::string, std::vector<std::string>> olefileListings(const std::vector<fs::path>& files) {
    std::string command =
        "/usr/bin/python3 " + shellQuoted(TVMSP_SOURCE_DIR "/tests/tool/inspect/olefile_listing.py");
    for (const fs::path& file : files) {
        command += " " + shellQuoted(file.string());
    }
    std::map<std::string, std::vector<std::string>> listings;
    std::vector<std::string>* current = nullptr;
    for (const std::string& line : lines(runCommand(command).out)) {
        if (line.rfind("== ", 0) == 0) {
            current = &listings[line.substr(3)];
        } else if (current != nullptr) {
            current->push_back(line);
        }
    }
    return listings;
}

std::string describe(const std::vector<std::string>& listing) {
    std::string text;
    for (const std::string& line : listing) {
        text += "\n    " + line;
    }
    return text;
}

TEST(StorageCommandsCorpusTest, CorpusListingsAndCopiesAgreeWithOlefile) {
    TVMSP_REQUIRE_CORPUS();
    const std::vector<fs::path> files = testsupport::corpusMppFiles();
    ASSERT_FALSE(files.empty());
    testsupport::TempDir dir;
    std::vector<fs::path> copies;
    std::vector<std::string> mismatches;
    for (size_t i = 0; i < files.size(); ++i) {
        copies.push_back(dir.path() / (std::to_string(i) + ".mpp"));
        CommandResult copy =
            runCommand(std::string(MPPINSPECT_PATH) + " copy " + shellQuoted(files[i].string()) + " " +
                       shellQuoted(copies[i].string()));
        if (copy.status != 0) {
            mismatches.push_back(files[i].filename().string() + ": copy failed");
        }
    }
    const auto expected = olefileListings(files);
    const auto copied = olefileListings(copies);
    ASSERT_EQ(expected.size(), files.size()) << "olefile helper failed";
    for (size_t i = 0; i < files.size(); ++i) {
        const std::string name = files[i].filename().string();
        const std::vector<std::string>& reference = expected.at(files[i].string());
        CommandResult ls = runCommand(std::string(MPPINSPECT_PATH) + " ls " + shellQuoted(files[i].string()));
        std::vector<std::string> listed =
            ls.status == 0 ? sortedByPath(lines(ls.out)) : std::vector<std::string>{};
        if (ls.status != 0 || listed != reference) {
            mismatches.push_back(name + ": ls status " + std::to_string(ls.status) + describe(listed) +
                                 "\n  olefile:" + describe(reference));
        }
        auto copy = copied.find(copies[i].string());
        if (copy == copied.end() || copy->second != reference) {
            mismatches.push_back(name + ": copy reads back differently in olefile" +
                                 (copy == copied.end() ? std::string() : describe(copy->second)));
        }
    }
    EXPECT_TRUE(mismatches.empty()) << mismatches.size() << " mismatches:\n"
                                    << [&] {
                                           std::string text;
                                           for (const std::string& mismatch : mismatches) {
                                               text += mismatch + "\n";
                                           }
                                           return text;
                                       }();
}

} // namespace
