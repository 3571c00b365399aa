#include "AdapterCorpusPlan.h"
#include "MPPCommon/support/TVMSPErrors.h"
#include "MPPImporter/Mapper/utilities/KVMSPIUtilities.h"
#include "MPPImporter/readers/KVMSPIMPPAssignmentReader.h"
#include "MPPImporter/readers/KVMSPIMPPTaskReader.h"
#include "MPPImporter/readers/KVMSPISingleAssignmentReader.h"
#include "MPPImporter/readers/KVMSPISingleTaskReader.h"

#include <gtest/gtest.h>
#include <regex>

namespace {

using Object = std::shared_ptr<KVMSPIXQuery>;

int64_t seconds(const std::optional<std::string>& duration) {
    static const std::regex shape("PT[0-9]+H[0-9]+M[0-9]+S");
    EXPECT_TRUE(duration && std::regex_match(*duration, shape)) << duration.value_or("(none)");
    return duration ? KVMSPIUtilities::mspdiDurationInSecs(*duration) : -1;
}

// The readers of the valid objects of a collection, made for their UIDs as the project makes them.
template <typename Single, typename Collection>
std::vector<std::shared_ptr<Single>> readersOf(Collection* collection) {
    std::vector<std::shared_ptr<Single>> readers;
    for (const int32_t uid : collection->uniqueIDs()) {
        if (collection->isValidUID(uid)) {
            readers.push_back(std::make_shared<Single>(uid, *collection));
        }
    }
    EXPECT_FALSE(readers.empty());
    return readers;
}

} // namespace

TEST(TaskAdapterCorpusTest, TaskEdgesOfTheVocabulary) {
    TVMSP_REQUIRE_CORPUS();
    const auto plan = AdapterCorpusPlan::named("generated__task-text__task-text-project2010-mpp14.mpp");
    ASSERT_NE(plan.project(), nullptr);
    const auto tasks =
        readersOf<KVMSPISingleTaskReader>(dynamic_cast<KVMSPIMPPTaskReader*>(plan.project()->taskReader()));
    size_t fields = 0;
    for (const auto& task : tasks) {
        // Custom fields answer no queries: the mappers read them by their accessors.
        for (const Object& field : task->objectsForXQuery("ExtendedAttribute", nullptr)) {
            TVError error;
            EXPECT_EQ(field->stringValueForXQuery("Value", &error), std::nullopt);
            EXPECT_TRUE(error.domain.empty());
            ++fields;
        }
        // A mapper tests the pre-levelled dates for presence as single objects.
        const Object date = task->singleObjectForXQuery("PreLeveledStart", nullptr);
        const std::optional<std::string> text = task->stringValueForXQuery("PreLeveledStart", nullptr);
        EXPECT_EQ(date ? date->stringValueForXQuery(".", nullptr) : std::nullopt, text);
    }
    EXPECT_GT(fields, 0U);

    TVError error;
    EXPECT_EQ(tasks.back()->stringValueForXQuery("DurationFormat", &error), std::nullopt);
    EXPECT_EQ(error.code, kTVMSPNotPortedXQueryError);
    // A leaf of the vocabulary that this file doesn't hold fails as a read, not as a query.
    error = TVError();
    EXPECT_EQ(tasks.back()->stringValueForXQuery("ScheduledStart", &error), std::nullopt);
    EXPECT_NE(error.code, kTVMSPNotPortedXQueryError);
    EXPECT_THROW(tasks.back()->objectsForXQuery("PredecessorLink[PredecessorUID=1]", nullptr), TVException);
}

// Each phase of an assignment is a period, and together they hold the assignment's work.
TEST(TaskAdapterCorpusTest, AssignmentPhasesHoldTheirWork) {
    TVMSP_REQUIRE_CORPUS();
    for (const char* name : {"mpp9timephased.mpp", "mpp14timephased.mpp"}) {
        const auto plan = AdapterCorpusPlan::named(name);
        ASSERT_NE(plan.project(), nullptr) << name;
        size_t phases = 0;
        for (const auto& assignment : readersOf<KVMSPISingleAssignmentReader>(
                 dynamic_cast<KVMSPIMPPAssignmentReader*>(plan.project()->assignmentReader()))) {
            const KVMSPIXQuery::Objects ours = assignment->objectsForXQuery("TimephasedData", nullptr);
            if (ours.empty()) {
                continue;
            }
            int64_t work = 0;
            for (const Object& phase : ours) {
                EXPECT_LT(phase->stringValueForXQuery("Start", nullptr),
                          phase->stringValueForXQuery("Finish", nullptr));
                work += seconds(phase->stringValueForXQuery("Value", nullptr));
            }
            EXPECT_EQ(work, seconds(assignment->stringValueForXQuery("Work", nullptr)))
                << name << " assignment " << assignment->uid();
            phases += ours.size();
        }
        EXPECT_GT(phases, 0U) << name;
    }
}
