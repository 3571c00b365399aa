#pragma once

// The corpus files that the benchmarks measure on.
#include <algorithm>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

// Which plan files of the corpus a benchmark takes: plans alone, or templates too.
enum class BenchFileKinds { plans, plansAndTemplates };

// Up to `count` plan files of the corpus, largest first, among those that `accepts` takes (all when
// it is empty); empty when the corpus is absent.
inline std::vector<std::filesystem::path>
largestCorpusFiles(size_t count, BenchFileKinds kinds = BenchFileKinds::plans,
                   const std::function<bool(const std::filesystem::path&)>& accepts = {}) {
    namespace fs = std::filesystem;
    std::vector<fs::path> found;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(fs::path(TVMSP_CORPUS_DIR) / "mpp", error)) {
        const std::string extension = entry.path().extension().string();
        if (entry.is_regular_file() &&
            (extension == ".mpp" || (kinds == BenchFileKinds::plansAndTemplates && extension == ".mpt"))) {
            found.push_back(entry.path());
        }
    }
    std::sort(found.begin(), found.end(),
              [](const fs::path& a, const fs::path& b) { return fs::file_size(a) > fs::file_size(b); });
    std::vector<fs::path> taken;
    for (const auto& path : found) {
        if (taken.size() == count) {
            break;
        }
        if (!accepts || accepts(path)) {
            taken.push_back(path);
        }
    }
    return taken;
}
