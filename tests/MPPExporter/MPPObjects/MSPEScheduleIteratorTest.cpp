#include "MPPExporter/MPPObjects/MSPEScheduleIterator.h"

#include "MPPCommon/date/DateTestSupport.h"

#include <gtest/gtest.h>
#include <vector>

namespace {

struct Step {
    double start;
    int64_t index;
    TVDate day;
    uint64_t flag;
    bool operator==(const Step&) const = default;
};

std::vector<Step> walk(const KVMSPEScheduleCalendar& calendar, TVDate date, bool forward, size_t steps) {
    MSPEScheduleIterator iterator(calendar, date, forward);
    std::vector<Step> result;
    const WorkingTimePeriod* period = nullptr;
    Step step{};
    while (result.size() < steps && iterator.nextTimePeriod(&period, &step.index, &step.day, &step.flag)) {
        step.start = workingTimePeriodStart(*period);
        result.push_back(step);
    }
    return result;
}

using ScheduleIteratorZoneTest = ZoneTest;

TEST_P(ScheduleIteratorZoneTest, WalksForwardFromAWeekend) {
    const TVDate monday = localInstant(2026, 2, 9);
    const TVDate tuesday = localInstant(2026, 2, 10);
    const std::vector<Step> expected = {
        {8 * 3600.0, 0, monday, 1}, {13 * 3600.0, 1, monday, 0}, {8 * 3600.0, 0, tuesday, 1}};
    EXPECT_EQ(walk(KVMSPEScheduleCalendar::standardCalendar(), localInstant(2026, 2, 7, 15), true, 3),
              expected);
}

TEST_P(ScheduleIteratorZoneTest, WalksBackwardFromTheMiddleOfADay) {
    const TVDate monday = localInstant(2026, 2, 9);
    const TVDate friday = localInstant(2026, 2, 6);
    const std::vector<Step> expected = {
        {13 * 3600.0, 1, monday, 0}, {8 * 3600.0, 0, monday, 0}, {13 * 3600.0, 1, friday, 1}};
    EXPECT_EQ(walk(KVMSPEScheduleCalendar::standardCalendar(), localInstant(2026, 2, 9, 10), false, 3),
              expected);
}

INSTANTIATE_TEST_SUITE_P(Zones, ScheduleIteratorZoneTest, ::testing::ValuesIn(kTestZones));

TEST(ScheduleIteratorTest, EndsAtOnceWithoutWorkingDays) {
    EXPECT_TRUE(walk(KVMSPEScheduleCalendar(), TVDate{1770000000}, true, 1).empty());
    EXPECT_TRUE(walk(KVMSPEScheduleCalendar(), TVDate{1770000000}, false, 1).empty());
}

} // namespace
