// Writing a generated plan of 10,000 tasks through the shipped template: the template walk, the task
// and link writers and the compound file's write side.
#include "MPPExporter/MPPObjects/KVMPPProject.h"
#include "MPPExporter/writers/KVMPP15ProjectWriter.h"

#include <benchmark/benchmark.h>
#include <filesystem>
#include <memory>

namespace {

namespace fs = std::filesystem;

constexpr double kDay = 86400;

// A plan of groups of ten tasks under a root, each task linked to the one before it.
std::unique_ptr<KVMPPProject> generatedPlan(int64_t taskCount) {
    auto project = std::make_unique<KVMPPProject>();
    auto root = std::make_shared<KVMPPTask>();
    root->title = "Generated";
    project->tasks.push_back(root);
    std::shared_ptr<KVMPPTask> group;
    std::shared_ptr<KVMPPTask> previous;
    for (int64_t i = 1; i <= taskCount; ++i) {
        auto task = std::make_shared<KVMPPTask>();
        task->ID = static_cast<uint64_t>(i);
        task->title = "Task " + std::to_string(i);
        task->startDate = TVDate::fromUnixSeconds(1700467200 + static_cast<double>(i) * kDay);
        task->endDate = task->startDate->addingSeconds(9 * 3600);
        task->duration = 8 * 3600;
        task->notes = i % 100 == 0 ? std::optional<std::string>("A note\nof two lines") : std::nullopt;
        if (i % 10 == 1) {
            task->parent = root.get();
            group = task;
        } else {
            task->parent = group.get();
            if (previous && previous->parent == task->parent) {
                auto link = std::make_shared<KVMPPConstraint>();
                link->task1.setObject(task);
                link->task2.setObject(previous);
                link->constraintType = 1;
                project->constraints.push_back(link);
            }
        }
        previous = task;
        project->tasks.push_back(task);
    }
    return project;
}

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
