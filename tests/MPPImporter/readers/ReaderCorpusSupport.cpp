#include "ReaderCorpusSupport.h"

#include "MPPCommon/support/Log.h"
#include "MPPImporter/file/KVMSPIMPPVersionReader.h"
#include "MPPImporter/readers/KVMSPIMPPProjectReader.h"
#include "support/TestSupport.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace readercorpus {

std::string number(double value) {
    return stringWithFormat("%.2f", value);
}

std::string refText(const nlohmann::json& value) {
    if (value.is_null()) {
        return "null";
    }
    if (value.is_string()) {
        return value.get<std::string>();
    }
    if (value.is_boolean()) {
        return value.get<bool>() ? "true" : "false";
    }
    if (value.is_number_integer()) {
        return std::to_string(value.get<int64_t>());
    }
    return number(value.get<double>());
}

nlohmann::json readReference(const std::filesystem::path& mppFile) {
    std::ifstream in(testsupport::corpusDir() / "ref" / (mppFile.filename().string() + ".json"));
    return in ? nlohmann::json::parse(in, nullptr, false) : nlohmann::json();
}

OpenPlan::OpenPlan(const std::filesystem::path& path) : m_root(path.string()) {
    if (m_root.lastError() == 0) {
        KVMSPIMPPVersionReader versionReader(path.string(), KVMSPIMPPProjectReader::projectReaderFactory());
        m_reader = versionReader.getMppReader(m_root, true, nullptr);
    }
}

KVMSPIMPPProjectReader* OpenPlan::project() const {
    return m_reader ? dynamic_cast<KVMSPIMPPProjectReader*>(m_reader->projectReader()) : nullptr;
}

CorpusDifferences::CorpusDifferences(const std::string& manifestName) {
    std::ifstream in(std::string(TVMSP_SOURCE_DIR) + "/tests/MPPImporter/readers/" + manifestName);
    for (std::string line; std::getline(in, line);) {
        std::istringstream parts(line);
        std::string field;
        std::string files;
        if (!line.empty() && line[0] != '#' && std::getline(parts, field, '\t') &&
            std::getline(parts, files, '\t')) {
            m_manifest.push_back({field, std::regex(files)});
        }
    }
}

void CorpusDifferences::compare(const std::string& file, const std::string& where, const Fields& ours,
                                const Fields& ref) {
    for (const auto& [key, refValue] : ref) {
        const auto found = ours.find(key);
        const std::string ourValue = found != ours.end() ? found->second : "(absent)";
        if (ourValue != refValue) {
            add(file, key, where + " " + key + ": ours=" + ourValue + " ref=" + refValue);
        }
    }
}

void CorpusDifferences::add(const std::string& file, const std::string& field, const std::string& text) {
    for (const ManifestEntry& entry : m_manifest) {
        if ((entry.field == field || entry.field == "*") && std::regex_search(file, entry.files)) {
            return;
        }
    }
    const size_t kExamplesPerField = std::getenv("TVMSP_CORPUS_EXAMPLES") ? SIZE_MAX : 4;
    std::vector<std::string>& examples = m_examples[field];
    if (examples.size() < kExamplesPerField) {
        examples.push_back(file + ": " + text);
    }
    ++m_counts[field];
}

std::string CorpusDifferences::report() const {
    std::string text;
    for (const auto& [field, count] : m_counts) {
        text += stringWithFormat("%s: %d unexpected differences\n", field.c_str(), count);
        for (const std::string& example : m_examples.at(field)) {
            text += "    " + example + "\n";
        }
    }
    return text;
}

} // namespace readercorpus
