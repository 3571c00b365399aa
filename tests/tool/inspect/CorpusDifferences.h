#pragma once

#include <map>
#include <regex>
#include <string>
#include <utility>
#include <vector>

// Differences found by a corpus comparison, counted by field with a few examples each. Differences
// that are expected come from a manifest next to the test: "<field>\t<regular expression on the file
// name>\t<reason>" per line, "#" starting a comment.
class CorpusDifferences {
public:
    // `manifestName` is a file name in this folder of the sources.
    explicit CorpusDifferences(const std::string& manifestName);

    void add(const std::string& file, const std::string& field, const std::string& text);
    // Every field with its count and examples, or the empty string when all differences were expected.
    std::string report() const;

private:
    std::vector<std::pair<std::string, std::regex>> m_expected;
    std::map<std::string, std::vector<std::string>> m_examples;
    std::map<std::string, int> m_counts;
};
