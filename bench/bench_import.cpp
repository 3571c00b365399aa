// Importing plans into bundles, beside reading them alone (the dump through the object readers): the
// largest files of the corpus one by one, and the whole corpus as one batch list.
#include "BenchCorpus.h"
#include "MPPCommon/support/Log.h"
#include "MPPImporter/Mapper/mapping/KVMSPIMapper.h"
#include "tool/frontend/ImportDriver.h"
#include "tool/inspect/DumpCommand.h"

#include <benchmark/benchmark.h>
#include <filesystem>
#include <fstream>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr size_t kFilesMeasured = 3;

const std::vector<fs::path>& largestFiles() {
    static const std::vector<fs::path> files = largestCorpusFiles(kFilesMeasured);
    return files;
}

// A folder for the bundles, emptied before each import.
fs::path outputFolder() {
    static const fs::path folder = fs::temp_directory_path() / "bench_import";
    fs::remove_all(folder);
    fs::create_directories(folder);
    return folder;
}

// Imports the inputs (one file, or a batch list) as the program does; the status of the last input.
int importInputs(const std::vector<std::string>& inputs) {
    static const ImporterFactory makeImporter = [mapperFactory =
                                                     KVMSPIMapper::factory()](const TVInfoDictionary& info) {
        return std::make_unique<KVMSPIMPPImporter>(info, mapperFactory);
    };
    const fs::path folder = outputFolder();
    const ImportDriver driver(makeImporter, PreferencesStore((folder / "config").string()));
    std::vector<std::string> arguments = {"bench_import", "--template-path",
                                          TVMSP_SOURCE_DIR "/templates/Template.tvnx"};
    if (inputs.size() == 1) {
        arguments.push_back(inputs.front());
    } else {
        std::ofstream list(folder / "inputs.txt");
        for (const std::string& input : inputs) {
            list << input << "\n";
        }
        arguments.insert(arguments.end(), {"--input-list", (folder / "inputs.txt").string()});
    }
    arguments.insert(arguments.end(), {folder.string(), "-accept-downgraded"});
    return driver.run(arguments, "bench_import");
}

bool selectFile(benchmark::State& state, fs::path& file) {
    const auto index = static_cast<size_t>(state.range(0));
    if (index >= largestFiles().size()) {
        state.SkipWithError("corpus folder " TVMSP_CORPUS_DIR "/mpp is absent or holds too few files");
        return false;
    }
    file = largestFiles()[index];
    state.SetLabel(file.filename().string());
    return true;
}

void BM_ReadPlan(benchmark::State& state) {
    fs::path file;
    if (!selectFile(state, file)) {
        return;
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(DumpCommand::dumpOfFile(file.string(), true));
    }
}

void BM_ImportPlan(benchmark::State& state) {
    fs::path file;
    if (!selectFile(state, file)) {
        return;
    }
    for (auto _ : state) {
        if (importInputs({file.string()}) != 0) {
            state.SkipWithError("the plan is refused");
            return;
        }
    }
}

void BM_ImportCorpusAsOneBatch(benchmark::State& state) {
    std::vector<std::string> plans;
    for (const fs::path& file : largestCorpusFiles(SIZE_MAX)) {
        plans.push_back(file.string());
    }
    if (plans.empty()) {
        state.SkipWithError("corpus folder " TVMSP_CORPUS_DIR "/mpp is absent");
        return;
    }
    for (auto _ : state) {
        importInputs(plans);
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * plans.size()));
}

// The import and the readers log every step; the measure leaves the log out.
[[maybe_unused]] const bool kLogSilenced = (tvSetLogSink([](const std::string&) {}), true);

BENCHMARK(BM_ReadPlan)->DenseRange(0, static_cast<int>(kFilesMeasured) - 1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ImportPlan)->DenseRange(0, static_cast<int>(kFilesMeasured) - 1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ImportCorpusAsOneBatch)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
