#include "support/TestSupport.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <stdexcept>
#include <stdlib.h>

namespace testsupport {

std::filesystem::path corpusDir() {
    std::filesystem::path dir(TVMSP_CORPUS_DIR);
    std::error_code ec;
    return std::filesystem::is_directory(dir / "mpp", ec) ? dir : std::filesystem::path();
}

long corpusSampleStride() {
    const char* sample = std::getenv("TVMSP_CORPUS_SAMPLE");
    const long stride = sample != nullptr ? std::strtol(sample, nullptr, 10) : 1;
    return std::max(stride, 1L);
}

long corpusShare(long count) {
    return count / corpusSampleStride();
}

std::vector<std::filesystem::path> allCorpusMppFiles() {
    std::vector<std::filesystem::path> files;
    if (corpusDir().empty()) {
        return files;
    }
    for (const auto& entry : std::filesystem::directory_iterator(corpusDir() / "mpp")) {
        auto ext = entry.path().extension().string();
        std::transform(ext.begin(), ext.end(), ext.begin(), ::tolower);
        if (entry.is_regular_file() && (ext == ".mpp" || ext == ".mpt")) {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::vector<std::filesystem::path> corpusMppFiles() {
    const std::vector<std::filesystem::path> files = allCorpusMppFiles();
    std::vector<std::filesystem::path> sampled;
    for (size_t i = 0; i < files.size(); i += static_cast<size_t>(corpusSampleStride())) {
        sampled.push_back(files[i]);
    }
    return sampled;
}

namespace {

std::vector<std::string> tabSeparated(const std::string& line) {
    std::vector<std::string> columns;
    std::istringstream in(line);
    for (std::string column; std::getline(in, column, '\t');) {
        columns.push_back(column);
    }
    return columns;
}

} // namespace

std::map<std::string, CorpusIndexRow> corpusIndex() {
    std::ifstream in(corpusDir() / "mpp" / "INDEX.tsv");
    std::string line;
    std::getline(in, line);
    const std::vector<std::string> header = tabSeparated(line);
    std::map<std::string, CorpusIndexRow> rows;
    while (std::getline(in, line)) {
        const std::vector<std::string> values = tabSeparated(line);
        CorpusIndexRow row;
        for (size_t i = 0; i < header.size() && i < values.size(); ++i) {
            row[header[i]] = values[i];
        }
        rows[row["file"]] = row;
    }
    return rows;
}

TempDir::TempDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "tvmsp-test-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("mkdtemp failed");
    }
    m_path = pattern;
}

TempDir::~TempDir() {
    std::error_code ec;
    std::filesystem::remove_all(m_path, ec);
}

std::vector<unsigned char> readFileBytes(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::vector<unsigned char>(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void writeFileBytes(const std::filesystem::path& path, const std::vector<unsigned char>& bytes) {
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

std::string shellQuoted(const std::string& text) {
    std::string quoted = "'";
    for (char c : text) {
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return quoted + "'";
}

std::string commandOutput(const std::string& command) {
    std::string text;
    if (FILE* pipe = popen(command.c_str(), "r")) {
        char buffer[4096];
        for (size_t count = 0; (count = fread(buffer, 1, sizeof buffer, pipe)) > 0;) {
            text.append(buffer, count);
        }
        pclose(pipe);
    }
    return text;
}

} // namespace testsupport
