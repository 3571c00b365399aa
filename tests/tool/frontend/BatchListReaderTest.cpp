#include "tool/frontend/BatchListReader.h"

#include "FrontendTestSupport.h"
#include "MPPCommon/support/TVException.h"

using namespace frontendtest;
using Lines = std::vector<std::string>;

namespace {

Lines pieces(std::string_view text) {
    Lines lines;
    BatchListReader::forEachPiece(text, [&lines](std::string_view piece) { lines.emplace_back(piece); });
    return lines;
}

TEST(BatchListSplit, EveryLineEndSplitsOnce) {
    EXPECT_EQ(pieces("a\nb\rc\vd\fe\xC2\x85"
                     "f\xE2\x80\xA8g\xE2\x80\xA9h"),
              (Lines{"a", "b", "c", "d", "e", "f", "g", "h"}));
    EXPECT_EQ(pieces("a\r\nb\n"), (Lines{"a", "", "b", ""}));
    // Neighbours of the multi-byte line ends stay inside the line.
    EXPECT_EQ(pieces("\xC2\x84\xE2\x80\xA7\xC3\xA9"), Lines{"\xC2\x84\xE2\x80\xA7\xC3\xA9"});
}

class BatchListReaderTest : public FrontendTest {
protected:
    void expectUnreadable(const std::string& listPath, const std::string& reason) {
        try {
            BatchListReader::readInputList(listPath);
            ADD_FAILURE() << "no exception for " << listPath;
        } catch (const TVException& exception) {
            EXPECT_EQ(exception.name() + ": " + exception.reason(), "FileNotFoundException: " + reason);
        }
    }
};

TEST_F(BatchListReaderTest, KeepsPathsAsTheyStandAndSkipsCommentsAndBlanks) {
    std::string list = makeFile(
        "list.txt", "\xEF\xBB\xBF"
                    "first.mpp\r\n:: note\r\n  spaced name.mpp \r\n\r\n\xE2\x80\xA8x/../y.mpp\n::\n:z\n");
    EXPECT_EQ(BatchListReader::readInputList(list),
              (Lines{"first.mpp", "  spaced name.mpp ", "x/../y.mpp", ":z"}));
    EXPECT_EQ(logLines.front(), "### Import files from the list:");
    EXPECT_TRUE(logged("    \"  spaced name.mpp \""));
}

TEST_F(BatchListReaderTest, RefusesMissingFoldersEmptyAndUndecodableLists) {
    expectUnreadable(path("none.txt"), "Input list not found or it is a directory: " + path("none.txt"));
    expectUnreadable(makeFolder("dir.txt") + "/",
                     "Input list not found or it is a directory: " + path("dir.txt"));
    expectUnreadable(makeFile("empty.txt", ""),
                     "Input list could not be built or empty: " + path("empty.txt"));
    for (const char* bad : {"a\xFF.mpp", "\xC0\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "tail\xE2\x80"}) {
        expectUnreadable(makeFile("bad.txt", bad),
                         "Input list file could not be read or empty: " + path("bad.txt"));
    }
}

} // namespace
