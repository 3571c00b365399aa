// Loading, querying and serialising a scenario document of 10,000 tasks, generated here in the form
// that an import writes.
#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/xml/KVMSPCXMLDocument.h"

#include <benchmark/benchmark.h>

namespace {

constexpr int kTaskCount = 10000;
constexpr int kTasksPerGroup = 50;

std::string scenarioText() {
    std::string text =
        stringWithFormat("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<scenario id=\"hBench00000\">"
                         "<start-date>2024-01-01T08:00:00+00:00</start-date>"
                         "<top-resource idref=\"r-1\"/><resource id=\"r-1\"><name>Plan</name>"
                         "<type>Group</type><child-resource idref=\"r1\"/></resource>"
                         "<resource id=\"r1\"><name>Staff</name><type>Staff</type></resource>"
                         "<top-task idref=\"t-1\"/><task id=\"t-1\"><title>Plan</title><type>group</type>");
    for (int group = 1; group <= kTaskCount; group += kTasksPerGroup) {
        text += stringWithFormat("<child-task idref=\"t%d\"/>", group);
    }
    text += "</task>";
    for (int uid = 1; uid <= kTaskCount; ++uid) {
        const bool isGroup = uid % kTasksPerGroup == 1;
        text += stringWithFormat("<task id=\"t%d\"><title>Task %d &amp; more</title><type>%s</type>"
                                 "<priority>500</priority><effort>%d</effort><completion-percentage>0.25"
                                 "</completion-percentage>",
                                 uid, uid, isGroup ? "group" : "task", uid * 3600);
        if (isGroup) {
            for (int child = uid + 1; child < uid + kTasksPerGroup && child <= kTaskCount; ++child) {
                text += stringWithFormat("<child-task idref=\"t%d\"/>", child);
            }
        } else {
            text += stringWithFormat(
                "<prerequisite-task idref=\"t%d\" kind=\"FS\"><lead-time is-percentage=\"false\">"
                "0</lead-time></prerequisite-task><assignment idref=\"r1\" units=\"1.000000\"/>",
                uid - 1);
        }
        text += "</task>";
    }
    return text + "</scenario>";
}

const std::string& scenario() {
    static const std::string text = scenarioText();
    return text;
}

void BM_LoadScenario(benchmark::State& state) {
    for (auto _ : state) {
        auto document = KVMSPCXMLDocument::initWithXMLString(scenario(), 0, nullptr);
        benchmark::DoNotOptimize(document);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * scenario().size()));
}
BENCHMARK(BM_LoadScenario)->Unit(benchmark::kMillisecond);

void BM_QueryTasksById(benchmark::State& state) {
    auto document = KVMSPCXMLDocument::initWithXMLString(scenario(), 0, nullptr);
    auto root = document->rootElement();
    int uid = 0;
    for (auto _ : state) {
        uid = uid % kTaskCount + 97;
        std::string query = stringWithFormat(tvnx::query::kTaskById, stringWithFormat("t%d", uid).c_str());
        benchmark::DoNotOptimize(root->singleObjectForXQuery(query, nullptr));
    }
}
BENCHMARK(BM_QueryTasksById)->Unit(benchmark::kMicrosecond);

void BM_QueryAllPrerequisites(benchmark::State& state) {
    auto document = KVMSPCXMLDocument::initWithXMLString(scenario(), 0, nullptr);
    auto root = document->rootElement();
    for (auto _ : state) {
        auto prerequisites = root->objectsForXQuery(tvnx::query::kPrerequisites, nullptr);
        int64_t total = 0;
        for (const auto& prerequisite : prerequisites) {
            total += prerequisite->intValueForXQuery("lead-time", nullptr);
        }
        benchmark::DoNotOptimize(total);
    }
}
BENCHMARK(BM_QueryAllPrerequisites)->Unit(benchmark::kMillisecond);

void BM_SerialiseScenario(benchmark::State& state) {
    auto document = KVMSPCXMLDocument::initWithXMLString(scenario(), 0, nullptr);
    for (auto _ : state) {
        benchmark::DoNotOptimize(document->XMLDataWithOptions(kXMLNodePrettyPrint));
    }
}
BENCHMARK(BM_SerialiseScenario)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
