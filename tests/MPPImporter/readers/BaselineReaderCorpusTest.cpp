#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/readers/KVMSPIMPPProjectReader.h"
#include "MPPImporter/readers/KVMSPIMPPResourceReader.h"
#include "MPPImporter/readers/KVMSPIMPPTaskReader.h"
#include "ReaderCorpusSupport.h"
#include "support/TestSupport.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>

namespace {

using json = nlohmann::json;
using readercorpus::CorpusDifferences;
using readercorpus::OpenPlan;

constexpr int32_t kBaselineCount = 11;

std::string numbersText(const std::set<int32_t>& numbers) {
    std::string text;
    for (int32_t number : numbers) {
        text += (text.empty() ? "" : ",") + std::to_string(number);
    }
    return "[" + text + "]";
}

// A task's copy of a baseline holds data only with a start, a finish or a duration other than 0;
// the reference also lists copies that hold a cost or a work alone.
bool refHoldsBaselineData(const json& baseline) {
    const json duration = baseline.value("duration_min", json());
    return !baseline.value("start", json()).is_null() || !baseline.value("finish", json()).is_null() ||
           (duration.is_number() && duration.get<double>() != 0);
}

std::set<int32_t> refTaskBaselines(const json& task) {
    std::set<int32_t> numbers;
    const json baselines = task.value("baselines", json::object());
    for (const auto& [number, baseline] : baselines.items()) {
        if (refHoldsBaselineData(baseline)) {
            numbers.insert(std::stoi(number));
        }
    }
    return numbers;
}

std::set<int32_t> ourTaskBaselines(KVMSPIMPPTaskReader& tasks, int32_t uid) {
    std::set<int32_t> numbers;
    for (int32_t number = 0; number < kBaselineCount; ++number) {
        bool has = false;
        if (tasks.hasBaseline(uid, number, has) && has) {
            numbers.insert(number);
        }
    }
    return numbers;
}

// The baselines in which the plan's tasks hold data, as each task reports it and as the collection
// keeps them; the two must agree.
std::set<int32_t> ourPlanBaselines(KVMSPIMPPTaskReader& tasks) {
    std::set<int32_t> numbers;
    std::set<int32_t> reported;
    for (int32_t number = 0; number < kBaselineCount; ++number) {
        if (!tasks.readersForBaseline(number).empty()) {
            numbers.insert(number);
        }
    }
    for (int32_t uid : tasks.uniqueIDs()) {
        const std::set<int32_t> task = ourTaskBaselines(tasks, uid);
        reported.insert(task.begin(), task.end());
    }
    EXPECT_EQ(numbers, reported);
    return numbers;
}

// The baselines that some resource of the plan marks as set.
std::set<int32_t> ourResourceBaselines(KVMSPIMPPResourceReader& resources) {
    std::set<int32_t> numbers;
    for (int32_t number = 0; number < kBaselineCount; ++number) {
        for (int32_t uid : resources.uniqueIDs()) {
            bool marked = false;
            if (resources.hasBaseline(uid, number, marked) && marked) {
                numbers.insert(number);
            }
        }
    }
    return numbers;
}

TEST(BaselineReaderCorpusTest, CorpusBaselinesOfTasksMatchTheReference) {
    TVMSP_REQUIRE_CORPUS();
    tvSetLogSink([](const std::string&) {});
    CorpusDifferences differences("BaselineReaderCorpusTest.manifest");
    int plansWithBaselines = 0;
    for (const std::filesystem::path& path : testsupport::corpusMppFiles()) {
        const std::string file = path.filename().string();
        const json ref = readercorpus::readReference(path);
        if (ref.is_null() || !ref["tasks"].is_array()) {
            continue;
        }
        try {
            OpenPlan open(path);
            if (open.project() == nullptr || open.project()->taskReader() == nullptr) {
                continue;
            }
            auto& tasks = dynamic_cast<KVMSPIMPPTaskReader&>(*open.project()->taskReader());
            std::set<int32_t> refPlan;
            for (const json& task : ref["tasks"]) {
                const int32_t uid = task["uid"].get<int32_t>();
                const std::set<int32_t> refTask = refTaskBaselines(task);
                refPlan.insert(refTask.begin(), refTask.end());
                const std::set<int32_t> ourTask = ourTaskBaselines(tasks, uid);
                if (ourTask != refTask) {
                    differences.add(file, "task",
                                    stringWithFormat("task %d: ours=%s ref=%s", uid,
                                                     numbersText(ourTask).c_str(),
                                                     numbersText(refTask).c_str()));
                }
            }
            const std::set<int32_t> ourPlan = ourPlanBaselines(tasks);
            // A resource marks no baseline that the plan lacks; the reference lists a baseline in
            // which any task holds a value.
            if (auto* resources = dynamic_cast<KVMSPIMPPResourceReader*>(open.project()->resourceReader())) {
                const std::set<int32_t> marked = ourResourceBaselines(*resources);
                const json present = ref.value("baselines_present", json::array());
                const std::set<int32_t> refPresent(present.begin(), present.end());
                if (!std::includes(refPresent.begin(), refPresent.end(), marked.begin(), marked.end())) {
                    differences.add(file, "resource",
                                    "marked=" + numbersText(marked) + " ref=" + numbersText(refPresent));
                }
            }
            plansWithBaselines += ourPlan.empty() ? 0 : 1;
            if (ourPlan != refPlan) {
                differences.add(file, "plan",
                                "ours=" + numbersText(ourPlan) + " ref=" + numbersText(refPlan));
            }
        } catch (const TVException& exception) {
            differences.add(file, "open", exception.what());
        }
    }
    tvSetLogSink(nullptr);
    EXPECT_GT(plansWithBaselines, testsupport::corpusShare(30));
    const std::string report = differences.report();
    EXPECT_TRUE(report.empty()) << report;
}

} // namespace
