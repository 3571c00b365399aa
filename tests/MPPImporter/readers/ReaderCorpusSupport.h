#pragma once

#include "MPPCommon/storage/SSLRoot.h"
#include "MPPImporter/file/KVMSPIMPPReader.h"

#include <filesystem>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <regex>
#include <string>
#include <vector>

class KVMSPIMPPProjectReader;

namespace readercorpus {

// One object's values in the reference's keys and text forms.
using Fields = std::map<std::string, std::string>;

// Two decimals, so that values read in different units compare.
std::string number(double value);
// A reference value in the text form that Fields holds.
std::string refText(const nlohmann::json& value);
// The reference reading of a corpus file; null when there is none.
nlohmann::json readReference(const std::filesystem::path& mppFile);

// One plan opened with the whole reader tree; no project reader when the file is refused.
class OpenPlan {
public:
    explicit OpenPlan(const std::filesystem::path& path);
    KVMSPIMPPProjectReader* project() const;

private:
    SSLRoot m_root;
    std::unique_ptr<KVMSPIMPPReader> m_reader;
};

// Differences between our values and the reference's, less the expected ones of a manifest whose
// lines are "<field>\t<regular expression on the file name>\t<reason>" ("*" for every field; "#"
// starts a comment).
class CorpusDifferences {
public:
    explicit CorpusDifferences(const std::string& manifestName);

    // Adds a difference for each reference key whose value ours doesn't match.
    void compare(const std::string& file, const std::string& where, const Fields& ours, const Fields& ref);
    void add(const std::string& file, const std::string& field, const std::string& text);
    // Counts and a few examples of the unexpected differences by field; empty when there are none.
    std::string report() const;

private:
    struct ManifestEntry {
        std::string field;
        std::regex files;
    };

    std::vector<ManifestEntry> m_manifest;
    std::map<std::string, std::vector<std::string>> m_examples;
    std::map<std::string, int> m_counts;
};

} // namespace readercorpus
