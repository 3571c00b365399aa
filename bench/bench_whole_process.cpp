// The programs as a user runs them: `tvmspfilter` importing the largest corpus plans and a generated
// plan of 10,000 tasks, and exporting the bundles of those imports again, each run as a process of its
// own so that the figures hold start-up and the peak memory of that process alone. The export's
// mapping is measured apart (the model printout), beside the writers of bench_export_writers and the
// readers of bench_import.
#include "BenchCorpus.h"
#include "BenchGeneratedPlan.h"
#include "MPPCommon/support/Log.h"
#include "MPPExporter/writers/KVMPP15ProjectWriter.h"
#include "tool/inspect/ModelCommand.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <filesystem>
#include <spawn.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <vector>

extern char** environ;

namespace {

namespace fs = std::filesystem;

constexpr size_t kCorpusPlans = 3;
constexpr int64_t kGeneratedTasks = 10000;

const fs::path& workFolder() {
    static const fs::path folder = [] {
        const fs::path made = fs::temp_directory_path() / "bench_whole_process";
        fs::remove_all(made);
        fs::create_directories(made);
        return made;
    }();
    return folder;
}

struct ProcessRun {
    int status = -1;
    long peakKiB = 0;
    double cpuSeconds = 0;
};

// Runs the program with the arguments, its output to /dev/null; the exit status, the peak resident
// size and the processor time of that process (which a busy machine does not inflate as it does the
// wall time).
ProcessRun runProgram(const std::vector<std::string>& arguments) {
    std::vector<char*> argv;
    for (const std::string& argument : arguments) {
        argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    ProcessRun run;
    pid_t pid = 0;
    if (posix_spawn(&pid, argv.front(), &actions, nullptr, argv.data(), environ) == 0) {
        int status = 0;
        rusage usage{};
        if (wait4(pid, &status, 0, &usage) == pid && WIFEXITED(status)) {
            const auto seconds = [](const timeval& time) {
                return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
            };
            run = {WEXITSTATUS(status), usage.ru_maxrss, seconds(usage.ru_utime) + seconds(usage.ru_stime)};
        }
    }
    posix_spawn_file_actions_destroy(&actions);
    return run;
}

// Imports the plan into a fresh folder; the bundle written, or an empty path.
fs::path importedBundle(const fs::path& plan, const fs::path& folder) {
    fs::remove_all(folder);
    fs::create_directories(folder);
    runProgram({TVMSPFILTER_PATH, "--template-path", TVMSP_SOURCE_DIR "/templates/Template.tvnx",
                plan.string(), folder.string(), "-accept-downgraded"});
    for (const auto& entry : fs::directory_iterator(folder)) {
        if (entry.path().extension() == ".tvnx") {
            return entry.path();
        }
    }
    return {};
}

// The plans measured: the largest of the corpus, then the generated one, written once through the
// shipped template.
const std::vector<fs::path>& measuredPlans() {
    static const std::vector<fs::path> plans = [] {
        std::vector<fs::path> found = largestCorpusFiles(kCorpusPlans);
        const fs::path generated = workFolder() / "generated.mpp";
        if (KVMPP15ProjectWriter::writeProject(*generatedPlan(kGeneratedTasks), generated.string(),
                                               TVMSP_SOURCE_DIR "/templates/Template.mpp")) {
            found.push_back(generated);
        }
        return found;
    }();
    return plans;
}

// The bundle of each measured plan, imported once.
const std::vector<fs::path>& measuredBundles() {
    static const std::vector<fs::path> bundles = [] {
        std::vector<fs::path> found;
        for (size_t i = 0; i < measuredPlans().size(); ++i) {
            found.push_back(
                importedBundle(measuredPlans()[i], workFolder() / ("bundle" + std::to_string(i))));
        }
        return found;
    }();
    return bundles;
}

bool selectInput(benchmark::State& state, const std::vector<fs::path>& inputs, fs::path& input) {
    const auto index = static_cast<size_t>(state.range(0));
    if (index >= inputs.size() || inputs[index].empty()) {
        state.SkipWithError("no such plan: the corpus folder " TVMSP_CORPUS_DIR
                            "/mpp is absent or the import failed");
        return false;
    }
    input = inputs[index];
    state.SetLabel(measuredPlans()[index].filename().string());
    return true;
}

// The largest peak of the runs, and their mean processor time.
void reportProcess(benchmark::State& state, long peakKiB, double cpuSeconds) {
    state.counters["peak_MiB"] = static_cast<double>(peakKiB) / 1024;
    state.counters["process_cpu_s"] = benchmark::Counter(cpuSeconds, benchmark::Counter::kAvgIterations);
}

void BM_ImportProcess(benchmark::State& state) {
    fs::path plan;
    if (!selectInput(state, measuredPlans(), plan)) {
        return;
    }
    const fs::path folder = workFolder() / "import";
    long peak = 0;
    double cpu = 0;
    for (auto _ : state) {
        state.PauseTiming();
        fs::remove_all(folder);
        fs::create_directories(folder);
        state.ResumeTiming();
        const ProcessRun run =
            runProgram({TVMSPFILTER_PATH, "--template-path", TVMSP_SOURCE_DIR "/templates/Template.tvnx",
                        plan.string(), folder.string(), "-accept-downgraded"});
        if (run.status != 0) {
            state.SkipWithError("the import failed");
            return;
        }
        peak = std::max(peak, run.peakKiB);
        cpu += run.cpuSeconds;
    }
    reportProcess(state, peak, cpu);
}

void BM_ExportProcess(benchmark::State& state) {
    fs::path bundle;
    if (!selectInput(state, measuredBundles(), bundle)) {
        return;
    }
    const fs::path output = workFolder() / "export.mpp";
    long peak = 0;
    double cpu = 0;
    for (auto _ : state) {
        state.PauseTiming();
        fs::remove(output);
        state.ResumeTiming();
        const ProcessRun run =
            runProgram({TVMSPFILTER_PATH, "-export", "--template-path",
                        TVMSP_SOURCE_DIR "/templates/Template.mpp", bundle.string(), output.string()});
        if (run.status != 0) {
            state.SkipWithError("the export failed");
            return;
        }
        peak = std::max(peak, run.peakKiB);
        cpu += run.cpuSeconds;
    }
    reportProcess(state, peak, cpu);
}

// The export's mapping phase alone: bundle to verified object model.
void BM_MapBundle(benchmark::State& state) {
    fs::path bundle;
    if (!selectInput(state, measuredBundles(), bundle)) {
        return;
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(ModelCommand::modelOfBundle(bundle.string()));
    }
}

[[maybe_unused]] const bool kLogSilenced = (tvSetLogSink([](const std::string&) {}), true);

constexpr int kLastInput = static_cast<int>(kCorpusPlans);
BENCHMARK(BM_ImportProcess)->DenseRange(0, kLastInput)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ExportProcess)->DenseRange(0, kLastInput)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MapBundle)->DenseRange(0, kLastInput)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
