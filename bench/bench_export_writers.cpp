// Writing a generated plan of 10,000 tasks through the shipped template: the template walk, the task
// and link writers and the compound file's write side.
#include "BenchGeneratedPlan.h"
#include "MPPExporter/writers/KVMPP15ProjectWriter.h"

#include <benchmark/benchmark.h>
#include <filesystem>
#include <memory>

namespace {

namespace fs = std::filesystem;

void BM_WriteGeneratedPlan(benchmark::State& state) {
    const fs::path output = fs::temp_directory_path() / "bench_export_writers.mpp";
    const std::string templatePath = TVMSP_SOURCE_DIR "/templates/Template.mpp";
    for (auto _ : state) {
        state.PauseTiming();
        std::unique_ptr<KVMPPProject> project = generatedPlan(state.range(0));
        fs::remove(output);
        state.ResumeTiming();
        if (!KVMPP15ProjectWriter::writeProject(*project, output.string(), templatePath)) {
            state.SkipWithError("the export failed");
            break;
        }
    }
    state.counters["bytes"] = static_cast<double>(fs::exists(output) ? fs::file_size(output) : 0);
    fs::remove(output);
}
BENCHMARK(BM_WriteGeneratedPlan)->Arg(10000)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
