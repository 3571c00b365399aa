#include "MPPImporter/Mapper/mapping/KVMSPITaskMapper.h"

#include <gtest/gtest.h>

namespace {

using TaskMapper = KVMSPITaskMapper;

TEST(KVMSPITaskMapperTest, TaskTypesInTheOrderOfTheirRows) {
    const struct {
        bool summary;
        int64_t duration;
        bool milestone, hammock;
        std::string type;
    } rows[] = {
        {true, 0, true, true, "group"},       {false, 0, false, false, "milestone"},
        {false, 60, true, true, "milestone"}, {false, 60, false, true, "hammock"},
        {false, 60, false, false, "task"},    {false, -1, false, false, "task"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(TaskMapper::taskType(row.summary, row.duration, row.milestone, row.hammock), row.type)
            << row.summary << row.duration << row.milestone << row.hammock;
    }
}

TEST(KVMSPITaskMapperTest, AutomaticTasksArePinnedByTheirConstraintAndTheProjectBound) {
    const TVDate early{1000}, project{2000}, constraint{3000}, late{4000};
    const std::optional<TVDate> none;
    const struct {
        const char* what;
        TaskMapper::AutomaticDates dates;
        std::optional<TVDate> start, end;
    } rows[] = {
        {"as soon as possible, inside the project",
         {0, none, project, late, early, none, true, false},
         none,
         none},
        {"starts ahead of the project", {0, none, early, late, project, none, true, false}, early, none},
        {"a summary ahead of the project", {0, none, early, late, project, none, true, true}, none, none},
        {"must start on", {2, constraint, project, late, early, none, true, false}, constraint, none},
        {"must start on, the start ahead of the project",
         {2, constraint, early, late, project, none, true, false},
         early,
         none},
        {"must start on without a date", {2, none, project, late, early, none, true, false}, none, none},
        {"must finish on", {3, constraint, project, late, early, none, true, false}, none, constraint},
        {"ends behind a project scheduled from its end",
         {0, none, early, late, none, constraint, false, false},
         none,
         late},
        {"must finish on, the end behind the project",
         {3, project, early, late, none, constraint, false, false},
         none,
         late},
        {"start no earlier than pins nothing",
         {4, constraint, project, late, early, none, true, false},
         none,
         none},
    };
    for (const auto& row : rows) {
        const TaskMapper::Locks locks = TaskMapper::automaticTaskLocks(row.dates);
        EXPECT_EQ(locks.start, row.start) << row.what;
        EXPECT_EQ(locks.end, row.end) << row.what;
    }
}

TEST(KVMSPITaskMapperTest, ConstraintDatesAndLinks) {
    const auto element = [](int64_t type, bool startLocked, bool endLocked) {
        const char* name = TaskMapper::constraintDateElement(type, startLocked, endLocked);
        return std::string(name ? name : "-");
    };
    EXPECT_EQ(element(0, false, false), "-");
    EXPECT_EQ(element(1, false, false), "-");
    EXPECT_EQ(element(2, false, false), "locked-start-date");
    EXPECT_EQ(element(2, true, false), "-");
    EXPECT_EQ(element(3, false, false), "locked-end-date");
    EXPECT_EQ(element(3, false, true), "-");
    EXPECT_EQ(element(4, true, true), "start-no-earlier-than");
    EXPECT_EQ(element(5, true, true), "start-no-later-than");
    EXPECT_EQ(element(6, true, true), "end-no-earlier-than");
    EXPECT_EQ(element(7, true, true), "end-no-later-than");
    EXPECT_EQ(element(8, false, false), "-");

    const auto kind = [](int64_t type) {
        const char* text = TaskMapper::dependencyKind(type);
        return std::string(text ? text : "-");
    };
    EXPECT_EQ(kind(0) + kind(1) + kind(2) + kind(3) + kind(4) + kind(-1), "FFFSSFSS--");
}

TEST(KVMSPITaskMapperTest, LagsInSecondsOrAsAFraction) {
    const struct {
        int64_t lag;
        std::optional<int64_t> format;
        std::string text;
        bool isPercentage;
    } rows[] = {
        {4800, 5, "28800", false},     {-600, 7, "-3600", false},   {4800, std::nullopt, "28800", false},
        {5000, 19, "50.000000", true}, {250, 20, "2.500000", true}, {19, 3, "114", false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(TaskMapper::leadTime(row.lag, row.format), std::make_pair(row.text, row.isPercentage))
            << row.lag;
    }
}

} // namespace
