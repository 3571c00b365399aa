#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace testsupport {

// The folder of real plan files, or an empty path when it is absent on this machine.
std::filesystem::path corpusDir();

// Skips the running test with a clear message when the corpus folder is absent.
#define TVMSP_REQUIRE_CORPUS()                                                                               \
    do {                                                                                                     \
        if (testsupport::corpusDir().empty())                                                                \
            GTEST_SKIP() << "corpus folder " TVMSP_CORPUS_DIR " is absent; corpus test skipped";             \
    } while (0)

// All MPP files of the corpus, sorted by name.
std::vector<std::filesystem::path> allCorpusMppFiles();
// The MPP files that corpus tests read: all of them, or with TVMSP_CORPUS_SAMPLE=N in the environment
// every Nth only, so that a slow build (the sanitizer build) walks a spread of the corpus in less time.
std::vector<std::filesystem::path> corpusMppFiles();

// N of TVMSP_CORPUS_SAMPLE=N: corpus tests read every Nth file (1 when it is unset).
long corpusSampleStride();

// The share of `count` that the files of corpusMppFiles() reach: `count` itself over the whole corpus,
// a part of it when only every Nth file is read. Corpus tests state their coverage through it.
long corpusShare(long count);

// The rows of the corpus index (mpp/INDEX.tsv) by file name, each its values by column name.
using CorpusIndexRow = std::map<std::string, std::string>;
std::map<std::string, CorpusIndexRow> corpusIndex();

// A fresh temporary folder that is removed with the object.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    const std::filesystem::path& path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

std::vector<unsigned char> readFileBytes(const std::filesystem::path& path);

// A text in single quotes for the shell.
std::string shellQuoted(const std::string& text);
// What a shell command writes to its standard output.
std::string commandOutput(const std::string& command);
void writeFileBytes(const std::filesystem::path& path, const std::vector<unsigned char>& bytes);

} // namespace testsupport
