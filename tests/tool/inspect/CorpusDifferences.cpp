#include "CorpusDifferences.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace {

constexpr size_t kExampleLength = 240;

// Three examples a field, or every one when TVMSP_CORPUS_EXAMPLES is set (for working through a list).
size_t examplesPerField() {
    return std::getenv("TVMSP_CORPUS_EXAMPLES") ? SIZE_MAX : 3;
}

} // namespace

CorpusDifferences::CorpusDifferences(const std::string& manifestName) {
    std::ifstream in(std::string(TVMSP_SOURCE_DIR) + "/tests/tool/inspect/" + manifestName);
    for (std::string line; std::getline(in, line);) {
        std::istringstream parts(line);
        std::string field;
        std::string files;
        if (line.empty() || line[0] == '#' || !std::getline(parts, field, '\t') ||
            !std::getline(parts, files, '\t')) {
            continue;
        }
        m_expected.push_back({field, std::regex(files)});
    }
}

void CorpusDifferences::add(const std::string& file, const std::string& field, const std::string& text) {
    for (const auto& expected : m_expected) {
        if (expected.first == field && std::regex_search(file, expected.second)) {
            return;
        }
    }
    if (m_examples[field].size() < examplesPerField()) {
        m_examples[field].push_back(file + ": " + text.substr(0, kExampleLength));
    }
    ++m_counts[field];
}

std::string CorpusDifferences::report() const {
    std::string text;
    for (const auto& [field, count] : m_counts) {
        text += field + ": " + std::to_string(count) + "\n";
        for (const auto& example : m_examples.at(field)) {
            text += "    " + example + "\n";
        }
    }
    return text;
}
