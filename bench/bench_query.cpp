// The path queries that an import asks of a plan, answered by the readers through the query layer, on
// the largest plans of the corpus that the import accepts.
#include "BenchCorpus.h"
#include "MPPCommon/xml/KVMSPIXQuery.h"
#include "tool/inspect/QueriedFile.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <filesystem>
#include <memory>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr size_t kFilesMeasured = 3;

// The largest MPP files of the corpus that open, largest first; empty when the corpus is absent.
const std::vector<fs::path>& largestPlans() {
    static const std::vector<fs::path> plans =
        largestCorpusFiles(kFilesMeasured, BenchFileKinds::plans, [](const fs::path& path) {
            return QueriedFile(path.string(), true, -1).project() != nullptr;
        });
    return plans;
}

// Leaves as the mappers ask them, each in the kind its mapping reads.
struct Leaves {
    std::vector<const char*> strings;
    std::vector<const char*> integers;
    std::vector<const char*> floats;
    std::vector<const char*> booleans;
};

const Leaves kTaskLeaves = {
    {"UID", "ID", "Name", "Notes", "Start", "Finish", "Duration", "Work", "ActualWork", "RemainingWork",
     "ConstraintDate", "ActualStart", "ActualFinish", "ManualStart", "ManualFinish", "ManualDuration"},
    {"OutlineLevel", "ConstraintType", "PercentComplete", "Priority", "Type", "FixedCostAccrual"},
    {"FixedCost", "Cost", "ActualCost"},
    {"Summary", "Milestone", "Manual", "Estimated", "EffortDriven", "Pinned"},
};
const Leaves kLinkLeaves = {{}, {"PredecessorUID", "Type", "LinkLag", "LagFormat"}, {}, {}};
const Leaves kResourceLeaves = {{"UID", "ID", "Name", "EmailAddress", "Notes", "StandardRate", "CostPerUse"},
                                {"CalendarUID", "Type"},
                                {"MaxUnits"},
                                {"IsCostResource"}};
const Leaves kAssignmentLeaves = {
    {"TaskUID", "ResourceUID", "Work", "ActualWork"}, {}, {"Units", "Cost"}, {}};
const Leaves kTimephasedLeaves = {{"Start", "Finish", "Value"}, {}, {}, {}};
const Leaves kCalendarLeaves = {{"UID", "Name", "BaseCalendarUID"}, {}, {}, {"IsBaseCalendar"}};
const Leaves kWeekDayLeaves = {{}, {"DayType"}, {}, {"DayWorking"}};
const Leaves kWorkingTimeLeaves = {{"FromTime", "ToTime"}, {}, {}, {}};

// Asks every leaf of `object`. Each ask function gives the count of the queries that it asked.
size_t askLeaves(KVMSPIXQuery& object, const Leaves& leaves) {
    for (const char* leaf : leaves.strings) {
        benchmark::DoNotOptimize(object.stringValueForXQuery(leaf, nullptr));
    }
    for (const char* leaf : leaves.integers) {
        benchmark::DoNotOptimize(object.intValueForXQuery(leaf, nullptr));
    }
    for (const char* leaf : leaves.floats) {
        benchmark::DoNotOptimize(object.floatValueForXQuery(leaf, nullptr));
    }
    for (const char* leaf : leaves.booleans) {
        benchmark::DoNotOptimize(object.boolValueForXQuery(leaf, nullptr));
    }
    return leaves.strings.size() + leaves.integers.size() + leaves.floats.size() + leaves.booleans.size();
}

// The objects of a query, counted as one query asked.
KVMSPIXQuery::Objects objectsOf(KVMSPIXQuery& parent, const char* query, size_t& asked) {
    ++asked;
    return parent.objectsForXQuery(query, nullptr);
}

size_t askTasks(KVMSPIXQuery& project) {
    size_t asked = 0;
    for (const auto& task : objectsOf(project, "Tasks/Task", asked)) {
        asked += askLeaves(*task, kTaskLeaves);
        for (const auto& link : objectsOf(*task, "PredecessorLink", asked)) {
            asked += askLeaves(*link, kLinkLeaves);
        }
    }
    return asked;
}

size_t askResources(KVMSPIXQuery& project) {
    size_t asked = 0;
    for (const auto& resource : objectsOf(project, "Resources/Resource", asked)) {
        asked += askLeaves(*resource, kResourceLeaves);
    }
    return asked;
}

size_t askAssignments(KVMSPIXQuery& project) {
    size_t asked = 0;
    for (const auto& assignment : objectsOf(project, "Assignments/Assignment", asked)) {
        asked += askLeaves(*assignment, kAssignmentLeaves);
        for (const auto& phase : objectsOf(*assignment, "TimephasedData", asked)) {
            asked += askLeaves(*phase, kTimephasedLeaves);
        }
    }
    return asked;
}

size_t askCalendars(KVMSPIXQuery& project) {
    size_t asked = 0;
    for (const auto& calendar : objectsOf(project, "Calendars/Calendar", asked)) {
        asked += askLeaves(*calendar, kCalendarLeaves);
        for (const auto& day : objectsOf(*calendar, "WeekDays/WeekDay[DayType>=1 and DayType<=7]", asked)) {
            asked += askLeaves(*day, kWeekDayLeaves);
            for (const auto& range : objectsOf(*day, "WorkingTimes/WorkingTime", asked)) {
                asked += askLeaves(*range, kWorkingTimeLeaves);
            }
        }
        for (const auto& exception : objectsOf(*calendar, "Exceptions/Exception", asked)) {
            benchmark::DoNotOptimize(objectsOf(*exception, "TimePeriod/FromDate", asked));
            benchmark::DoNotOptimize(objectsOf(*exception, "TimePeriod/ToDate", asked));
            for (const auto& range : objectsOf(*exception, "WorkingTimes/WorkingTime", asked)) {
                asked += askLeaves(*range, kWorkingTimeLeaves);
            }
        }
    }
    return asked;
}

// Opens the plan once and measures one family of queries on it; each query asked is an item.
void measure(benchmark::State& state, size_t (*ask)(KVMSPIXQuery&)) {
    const auto& plans = largestPlans();
    const auto index = static_cast<size_t>(state.range(0));
    if (index >= plans.size()) {
        state.SkipWithError("corpus folder " TVMSP_CORPUS_DIR "/mpp is absent or holds too few plans");
        return;
    }
    state.SetLabel(plans[index].filename().string());
    const QueriedFile plan(plans[index].string(), true, -1);
    size_t asked = 0;
    for (auto _ : state) {
        asked += ask(*plan.project());
    }
    state.SetItemsProcessed(static_cast<int64_t>(asked));
}

void BM_QueryTasks(benchmark::State& state) {
    measure(state, askTasks);
}
void BM_QueryResources(benchmark::State& state) {
    measure(state, askResources);
}
void BM_QueryAssignments(benchmark::State& state) {
    measure(state, askAssignments);
}
void BM_QueryCalendars(benchmark::State& state) {
    measure(state, askCalendars);
}

constexpr int kLastFile = static_cast<int>(kFilesMeasured) - 1;
BENCHMARK(BM_QueryTasks)->DenseRange(0, kLastFile)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_QueryResources)->DenseRange(0, kLastFile)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_QueryAssignments)->DenseRange(0, kLastFile)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_QueryCalendars)->DenseRange(0, kLastFile)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
