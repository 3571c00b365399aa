// Working-time arithmetic of the standard calendar over long spans: advancing a date by weeks to
// years of work, forward and back, and measuring the working time between dates that far apart.
#include "MPPExporter/MPPObjects/KVMSPEScheduleCalendar.h"

#include <benchmark/benchmark.h>

namespace {

// Monday 2024-01-01 09:00 UTC.
constexpr TVDate kStart{1704099600.0};
// One week of the standard calendar: five days of eight hours.
constexpr double kWorkPerWeek = 5 * 8 * 3600.0;
constexpr double kSecondsPerWeek = 7 * 86400.0;

void BM_AdvanceForward(benchmark::State& state) {
    const auto& calendar = KVMSPEScheduleCalendar::standardCalendar();
    const double duration = static_cast<double>(state.range(0)) * kWorkPerWeek;
    for (auto _ : state) {
        benchmark::DoNotOptimize(calendar.date(kStart, duration, true, false));
    }
}
BENCHMARK(BM_AdvanceForward)->Arg(1)->Arg(52)->Arg(520);

void BM_AdvanceBackward(benchmark::State& state) {
    const auto& calendar = KVMSPEScheduleCalendar::standardCalendar();
    const double duration = static_cast<double>(state.range(0)) * kWorkPerWeek;
    const TVDate end = kStart.addingSeconds(static_cast<double>(state.range(0)) * kSecondsPerWeek);
    for (auto _ : state) {
        benchmark::DoNotOptimize(calendar.date(end, duration, false, false));
    }
}
BENCHMARK(BM_AdvanceBackward)->Arg(1)->Arg(52)->Arg(520);

void BM_WorkingTimeFromDate(benchmark::State& state) {
    const auto& calendar = KVMSPEScheduleCalendar::standardCalendar();
    const TVDate end = kStart.addingSeconds(static_cast<double>(state.range(0)) * kSecondsPerWeek + 3600.0);
    for (auto _ : state) {
        benchmark::DoNotOptimize(calendar.workingTimeFromDate(kStart, end));
    }
}
BENCHMARK(BM_WorkingTimeFromDate)->Arg(1)->Arg(52)->Arg(520);

void BM_SnapOntoWorkingTime(benchmark::State& state) {
    const auto& calendar = KVMSPEScheduleCalendar::standardCalendar();
    // Saturday 2024-01-06 10:00 UTC: the snap walks the weekend.
    const TVDate saturday{1704535200.0};
    TVDate snapped;
    for (auto _ : state) {
        benchmark::DoNotOptimize(calendar.startDate(&snapped, saturday, true));
    }
}
BENCHMARK(BM_SnapOntoWorkingTime);

} // namespace

BENCHMARK_MAIN();
