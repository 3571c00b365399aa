#include "MPPCommon/support/Log.h"
#include "support/TestSupport.h"
#include "tool/inspect/DumpCommand.h"

#include <algorithm>
#include <cstdio>
#include <gtest/gtest.h>
#include <map>

namespace {

// Plans of each format and of the applications that save them, downgraded copies and derived
// calendars among them: their default weeks, layouts and calendar data differ.
const std::vector<std::string> kPlans = {
    "DurationTest9.mpp",
    "generated__calendar-calendars__calendar-calendars-project2003-mpp9.mpp",
    "generated__calendar-calendars__calendar-calendars-project2013-mpp9.mpp",
    "generated__calendar-calendars__calendar-calendars-project2007-mpp12.mpp",
    "generated__resource-misc__resource-misc-project2019-mpp12.mpp",
    "generated__calendar-calendars__calendar-calendars-project2010-mpp14.mpp",
    "generated__calendar-calendars__calendar-calendars-project2013-mpp14.mpp",
    "generated__calendar-calendars__calendar-calendars-project2019-mpp14.mpp",
    "legacy__caltest.mpp",
};

// The dump of a plan by a process of its own, which reads nothing else; discarded when unreadable.
nlohmann::ordered_json dumpAlone(const std::filesystem::path& plan) {
    const std::string command =
        std::string(MPPINSPECT_PATH) + " dump --accept-downgraded '" + plan.string() + "' 2>/dev/null";
    FILE* pipe = popen(command.c_str(), "r");
    std::string out;
    char buffer[65536];
    for (size_t count = 0; pipe != nullptr && (count = fread(buffer, 1, sizeof buffer, pipe)) > 0;) {
        out.append(buffer, count);
    }
    if (pipe != nullptr) {
        pclose(pipe);
    }
    return nlohmann::ordered_json::parse(out, nullptr, false);
}

} // namespace

// Reading a list of plans in one process gives each plan the answers that reading it alone gives, in
// either order of the list: nothing that one plan reads is kept for the next.
TEST(BatchIndependenceCorpus, EachPlanOfABatchAnswersAsWhenReadAlone) {
    TVMSP_REQUIRE_CORPUS();
    std::map<std::string, std::string> alone;
    for (const std::string& plan : kPlans) {
        const nlohmann::ordered_json dump = dumpAlone(testsupport::corpusDir() / "mpp" / plan);
        ASSERT_TRUE(dump.is_object() && dump.contains("calendars")) << plan;
        alone[plan] = dump.dump();
    }
    tvSetLogSink([](const std::string&) {});
    std::vector<std::string> batch = kPlans;
    for (int order = 0; order < 2; ++order) {
        for (const std::string& plan : batch) {
            const auto path = testsupport::corpusDir() / "mpp" / plan;
            EXPECT_EQ(DumpCommand::dumpOfFile(path.string(), true).dump(), alone[plan]) << plan;
        }
        std::reverse(batch.begin(), batch.end());
    }
    tvSetLogSink({});
}
