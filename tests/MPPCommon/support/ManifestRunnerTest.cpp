#include "support/CorpusComparison.h"
#include "support/TestSupport.h"

#include <fstream>
#include <gtest/gtest.h>

namespace {

using testsupport::CorpusComparison;

// Three copies of one plan and a plan of its own.
const CorpusComparison::Corpus kCorpus = {
    {"plan-project2010-mpp9.mpp", "plan-project2010-mpp14.mpp", "plan-project2013-mpp14.mpp", "other.mpp"},
    false};

class ManifestRunnerTest : public ::testing::Test {
protected:
    // A comparison with these manifest lines, of at least `minimum` values.
    CorpusComparison comparison(const std::string& lines, long minimum = 1,
                                CorpusComparison::Corpus corpus = kCorpus) {
        const auto path = m_dir.path() / "test.manifest";
        std::ofstream(path) << "# comment\n" << lines;
        return CorpusComparison(path.string(), minimum, std::move(corpus));
    }

private:
    testsupport::TempDir m_dir;
};

TEST_F(ManifestRunnerTest, AnEntryNamesAFileOrCopiesOfOnePlanAFieldAnObjectAndAReason) {
    const std::string failures = comparison("\tname\t*\treason\n"
                                            "other.mpp\tname\t*\n"
                                            "other.mpp\t*\t*\treason\n"
                                            "*.mpp\tname\t*\treason\n"
                                            "missing.mpp\tname\t*\treason\n")
                                     .failures();
    EXPECT_NE(failures.find("line 2: an entry names a file, a field, an object (or *) and its reason"),
              std::string::npos);
    EXPECT_NE(failures.find("line 3: an entry names a file, a field"), std::string::npos);
    EXPECT_NE(failures.find("line 4: an entry names one field"), std::string::npos);
    EXPECT_NE(failures.find("line 5: \"*.mpp\" matches files of 2 plans"), std::string::npos);
    EXPECT_NE(failures.find("line 6: \"missing.mpp\" names no corpus file"), std::string::npos);
}

TEST_F(ManifestRunnerTest, ListedDifferencesPassAndEveryOtherDifferenceOrUnusedEntryFails) {
    CorpusComparison listed = comparison("plan-project201[03]-mpp14.mpp\tname\t*\tcopies of one plan\n"
                                         "other.mpp\tname\ttask 2\tthis task only\n");
    listed.compare("plan-project2010-mpp14.mpp", "name", "task 1", "a", "b");
    listed.compare("plan-project2013-mpp14.mpp", "name", "task 1", "a", "b");
    listed.compare("other.mpp", "name", "task 2", "a", "b");
    listed.compare("other.mpp", "id", "task 2", "1", "1");
    EXPECT_EQ(listed.failures(), "");

    CorpusComparison unlisted = comparison("other.mpp\tname\ttask 2\tthis task only\n");
    unlisted.compare("other.mpp", "name", "task 3", "a", "b");
    unlisted.differ("plan-project2010-mpp9.mpp", "open", "", "refused");
    EXPECT_EQ(unlisted.failures(), "name: 1 differences not in the manifest\n"
                                   "    other.mpp\tname\ttask 3\tours a, theirs b\n"
                                   "open: 1 differences not in the manifest\n"
                                   "    plan-project2010-mpp9.mpp\topen\t\trefused\n"
                                   "manifest line 2 lists no difference: other.mpp name task 2\n");

    // A sampled run may leave an entry's files out.
    CorpusComparison sampled = comparison("other.mpp\tname\t*\treason\n", 1, {kCorpus.files, true});
    sampled.compare("other.mpp", "name", "task 1", "a", "a");
    EXPECT_EQ(sampled.failures(), "");
}

TEST_F(ManifestRunnerTest, AComparisonOfTooFewValuesFails) {
    CorpusComparison few = comparison("", 30);
    few.compare("other.mpp", "name", "task 1", "a", "a");
    EXPECT_NE(few.failures().find("1 values compared, fewer than"), std::string::npos);
}

TEST_F(ManifestRunnerTest, AFieldHeldToAShareFailsBelowItOrWithoutValues) {
    CorpusComparison floor = comparison("other.mpp\tname\ttask 9\tlisted differences count as agreeing\n");
    for (const char* field : {"name", "id", "start"}) {
        floor.requireShare(field, 0.75);
    }
    for (int task = 1; task <= 8; ++task) {
        const std::string object = "task " + std::to_string(task);
        floor.compare("other.mpp", "name", object, "a", task <= 2 ? "b" : "a");
        floor.compare("other.mpp", "id", object, "1", task <= 3 ? "2" : "1");
    }
    floor.compare("other.mpp", "name", "task 9", "a", "b");
    EXPECT_EQ(floor.failures(), "id: agrees on 62.50%, below 75.00%\nstart: no value compared\n");
    EXPECT_NE(
        floor.summary().find("name 6/9 66.67% (1 listed; 77.78% with them)\n    other.mpp\tname\ttask 1"),
        std::string::npos);
    EXPECT_EQ(floor.shareOf(""), "11/17 64.71% (1 listed; 70.59% with them)");
    EXPECT_EQ(floor.counts("id").agreed, 5);
}

} // namespace
