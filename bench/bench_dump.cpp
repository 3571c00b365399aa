// Dumping a whole plan through the object readers, on the largest files of the corpus.
#include "tool/inspect/DumpCommand.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <filesystem>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr size_t kFilesMeasured = 3;

// The largest MPP files of the corpus, largest first; empty when the corpus is absent.
const std::vector<fs::path>& largestCorpusFiles() {
    static const std::vector<fs::path> files = [] {
        std::vector<fs::path> found;
        std::error_code error;
        for (const auto& entry : fs::directory_iterator(fs::path(TVMSP_CORPUS_DIR) / "mpp", error)) {
            if (entry.is_regular_file() && entry.path().extension() == ".mpp") {
                found.push_back(entry.path());
            }
        }
        std::sort(found.begin(), found.end(),
                  [](const fs::path& a, const fs::path& b) { return fs::file_size(a) > fs::file_size(b); });
        found.resize(std::min(found.size(), kFilesMeasured));
        return found;
    }();
    return files;
}

void BM_DumpPlan(benchmark::State& state) {
    const auto& files = largestCorpusFiles();
    const auto index = static_cast<size_t>(state.range(0));
    if (index >= files.size()) {
        state.SkipWithError("corpus folder " TVMSP_CORPUS_DIR "/mpp is absent or holds too few files");
        return;
    }
    state.SetLabel(files[index].filename().string());
    size_t tasks = 0;
    for (auto _ : state) {
        const auto dump = DumpCommand::dumpOfFile(files[index].string(), true);
        if (dump.contains("error")) {
            state.SkipWithError("the plan is refused");
            return;
        }
        tasks += dump["tasks"].size();
    }
    state.SetItemsProcessed(static_cast<int64_t>(tasks));
}

BENCHMARK(BM_DumpPlan)->DenseRange(0, static_cast<int>(kFilesMeasured) - 1)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
