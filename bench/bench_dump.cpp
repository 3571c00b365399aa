// Dumping a whole plan through the object readers, on the largest files of the corpus.
#include "BenchCorpus.h"
#include "tool/inspect/DumpCommand.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <filesystem>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr size_t kFilesMeasured = 3;

// The largest MPP files of the corpus, largest first; empty when the corpus is absent.
const std::vector<fs::path>& measuredFiles() {
    static const std::vector<fs::path> files = largestCorpusFiles(kFilesMeasured);
    return files;
}

void BM_DumpPlan(benchmark::State& state) {
    const auto& files = measuredFiles();
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
