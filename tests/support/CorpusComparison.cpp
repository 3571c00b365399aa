#include "support/CorpusComparison.h"

#include "support/TestSupport.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fnmatch.h>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>

namespace testsupport {

namespace {

constexpr size_t kExampleLength = 200;

// Five differences a field, or every one with TVMSP_CORPUS_EXAMPLES set (to write a manifest from).
size_t examplesPerField() {
    return std::getenv("TVMSP_CORPUS_EXAMPLES") != nullptr ? SIZE_MAX : 5;
}

// The plan of a corpus file: its name without the saving application ("project2013", "Project2013"),
// the format ("mpp9") and the downgrade mark ("-from14"), which tell its copies apart.
std::string planOf(const std::string& file) {
    static const std::regex kVersionMarks(R"(-?[Pp]roject\d+|-?mpp\d+|-from\d+|\.mp[pt]$)");
    return std::regex_replace(file, kVersionMarks, "");
}

bool matches(const std::string& pattern, const std::string& file) {
    return fnmatch(pattern.c_str(), file.c_str(), 0) == 0;
}

std::string shortened(const std::string& text) {
    return text.size() > kExampleLength ? text.substr(0, kExampleLength) + "..." : text;
}

std::string percent(long part, long whole) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f%%", whole > 0 ? 100.0 * static_cast<double>(part) / whole : 0.0);
    return text;
}

// Agreement counts only the values that agree; the listed differences are true differences of single
// files, told apart with the share that they would add.
std::string shareText(const CorpusComparison::Counts& counts) {
    std::string text = std::to_string(counts.agreed) + "/" + std::to_string(counts.compared) + " " +
                       percent(counts.agreed, counts.compared);
    if (counts.listed > 0) {
        text += " (" + std::to_string(counts.listed) + " listed; " +
                percent(counts.agreed + counts.listed, counts.compared) + " with them)";
    }
    return text;
}

} // namespace

CorpusComparison::Corpus CorpusComparison::Corpus::current() {
    Corpus corpus;
    for (const auto& path : allCorpusMppFiles()) {
        corpus.files.push_back(path.filename().string());
    }
    corpus.sampled = corpusSampleStride() > 1;
    return corpus;
}

CorpusComparison::CorpusComparison(const std::string& manifest, long minimumValues, Corpus corpus)
    : m_corpus(std::move(corpus)), m_minimumValues(minimumValues) {
    if (!manifest.empty()) {
        readManifest(std::filesystem::path(TVMSP_SOURCE_DIR) / "tests" / manifest);
    }
}

void CorpusComparison::readManifest(const std::filesystem::path& path) {
    std::ifstream in(path);
    if (!in) {
        m_manifestErrors.push_back(path.string() + " can't be read");
        return;
    }
    int number = 0;
    for (std::string line; std::getline(in, line);) {
        ++number;
        if (line.empty() || line[0] == '#') {
            continue;
        }
        Entry entry;
        entry.line = number;
        std::istringstream columns(line);
        std::getline(columns, entry.files, '\t');
        std::getline(columns, entry.field, '\t');
        std::getline(columns, entry.object, '\t');
        std::getline(columns, entry.reason);
        const std::string broken = ruleBroken(entry);
        if (broken.empty()) {
            m_entries.push_back(entry);
        } else {
            m_manifestErrors.push_back(path.filename().string() + " line " + std::to_string(number) + ": " +
                                       broken);
        }
    }
}

std::string CorpusComparison::ruleBroken(const Entry& entry) const {
    if (entry.files.empty() || entry.field.empty() || entry.object.empty() || entry.reason.empty()) {
        return "an entry names a file, a field, an object (or *) and its reason";
    }
    if (entry.field.find_first_of("*?") != std::string::npos) {
        return "an entry names one field";
    }
    std::set<std::string> plans;
    for (const std::string& file : m_corpus.files) {
        if (matches(entry.files, file)) {
            plans.insert(planOf(file));
        }
    }
    if (plans.empty()) {
        return "\"" + entry.files + "\" names no corpus file";
    }
    if (plans.size() > 1) {
        return "\"" + entry.files + "\" matches files of " + std::to_string(plans.size()) +
               " plans; an entry lists copies of one plan";
    }
    return "";
}

void CorpusComparison::compare(const std::string& file, const std::string& field, const std::string& object,
                               const std::string& ours, const std::string& theirs) {
    check(file, field, object, ours == theirs, "ours " + shortened(ours) + ", theirs " + shortened(theirs));
}

void CorpusComparison::differ(const std::string& file, const std::string& field, const std::string& object,
                              const std::string& text) {
    check(file, field, object, false, shortened(text));
}

void CorpusComparison::requireShare(const std::string& field, double share) {
    m_shares[field] = share;
    m_fields[field];
}

void CorpusComparison::check(const std::string& file, const std::string& field, const std::string& object,
                             bool agrees, const std::string& text) {
    Field& counts = m_fields[field];
    ++counts.compared;
    if (agrees) {
        ++counts.agreed;
    } else if (listed(file, field, object)) {
        ++counts.listed;
    } else {
        counts.differences.push_back(file + "\t" + field + "\t" + object + "\t" + text);
    }
}

bool CorpusComparison::listed(const std::string& file, const std::string& field, const std::string& object) {
    for (Entry& entry : m_entries) {
        if (entry.field == field && (entry.object == "*" || entry.object == object) &&
            matches(entry.files, file)) {
            entry.used = true;
            return true;
        }
    }
    return false;
}

std::string CorpusComparison::examples(const Field& field) {
    std::string text;
    const size_t shown = std::min(field.differences.size(), examplesPerField());
    for (size_t i = 0; i < shown; ++i) {
        text += "    " + field.differences[i] + "\n";
    }
    return text;
}

std::string CorpusComparison::fieldFailure(const std::string& name, const Field& field) const {
    const auto share = m_shares.find(name);
    if (share == m_shares.end()) {
        return field.differences.empty() ? ""
                                         : name + ": " + std::to_string(field.differences.size()) +
                                               " differences not in the manifest\n" + examples(field);
    }
    if (field.compared == 0) {
        return name + ": no value compared\n";
    }
    const long agreed = field.agreed + field.listed;
    if (agreed < share->second * static_cast<double>(field.compared)) {
        return name + ": agrees on " + percent(agreed, field.compared) + ", below " +
               percent(std::lround(share->second * 1e4), 10000) + "\n";
    }
    return "";
}

std::string CorpusComparison::failures() const {
    std::string text;
    for (const std::string& error : m_manifestErrors) {
        text += error + "\n";
    }
    long compared = 0;
    for (const auto& [name, field] : m_fields) {
        compared += field.compared;
        text += fieldFailure(name, field);
    }
    for (const Entry& entry : m_entries) {
        if (!entry.used && !m_corpus.sampled) {
            text += "manifest line " + std::to_string(entry.line) + " lists no difference: " + entry.files +
                    " " + entry.field + " " + entry.object + "\n";
        }
    }
    if (compared < corpusShare(m_minimumValues)) {
        text += std::to_string(compared) + " values compared, fewer than " +
                std::to_string(corpusShare(m_minimumValues)) + "\n";
    }
    return text;
}

CorpusComparison::Counts CorpusComparison::counts(const std::string& fieldPrefix) const {
    Counts total;
    for (const auto& [name, field] : m_fields) {
        if (name.starts_with(fieldPrefix)) {
            total.compared += field.compared;
            total.agreed += field.agreed;
            total.listed += field.listed;
        }
    }
    return total;
}

std::string CorpusComparison::shareOf(const std::string& fieldPrefix) const {
    return shareText(counts(fieldPrefix));
}

std::string CorpusComparison::summary() const {
    std::string text;
    for (const auto& [name, field] : m_fields) {
        text += name + " " + shareText(Counts{field.compared, field.agreed, field.listed}) + "\n";
        if (m_shares.contains(name)) {
            text += examples(field);
        }
    }
    return text;
}

} // namespace testsupport
