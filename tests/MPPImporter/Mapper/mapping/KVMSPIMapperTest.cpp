#include "MPPImporter/Mapper/mapping/KVMSPIMapper.h"

#include "MPPCommon/support/TVException.h"
#include "MPPImporter/Mapper/mapping/KVMSPIIdMapper.h"

#include <gtest/gtest.h>

namespace {

TEST(KVMSPIMapperTest, CurrencySamplesPlaceTheSymbolAndTheDecimals) {
    const struct {
        const char* symbol;
        int64_t position, digits;
        const char* sample;
    } samples[] = {
        {"$", 0, 2, "$1,234.56"},    {"\xE2\x82\xAC", 1, 2, "1,234.56\xE2\x82\xAC"},
        {"kr", 2, 2, " kr1,234.56"}, {"kr", 3, 2, "1,234.56 kr"},
        {"$", 0, 0, "$1,234"},       {"$", 0, 1, "$1,234.5"},
        {"$", 0, 9, "$1,234.56789"}, {"$", 4, 3, "1,234.567"},
        {"$", 0, -1, "$1,234"},
    };
    for (const auto& sample : samples) {
        EXPECT_EQ(KVMSPIMapper::currencyFormatSample(sample.symbol, sample.position, sample.digits),
                  sample.sample)
            << sample.symbol << " " << sample.position << " " << sample.digits;
    }
}

TEST(KVMSPIMapperTest, HoursAreCutToWholeHoursAndUnreadValuesTakeTheDefaults) {
    const struct {
        int64_t minutesPerDay, minutesPerWeek, daysPerMonth;
        KVMSPIMapper::Hours hours;
    } cases[] = {
        {480, 2400, 20, {8, 40, 160, 1920}}, {450, 2250, 20, {7, 37, 140, 1680}},
        {-1, -1, -1, {8, 40, 160, 1920}},    {-1, 2400, 22, {8, 40, 176, 2112}},
        {600, -1, -1, {10, 40, 160, 1920}},  {0, 0, 0, {0, 0, 0, 0}},
    };
    for (const auto& c : cases) {
        const KVMSPIMapper::Hours hours =
            KVMSPIMapper::hoursFromMinutesPerDay(c.minutesPerDay, c.minutesPerWeek, c.daysPerMonth);
        EXPECT_EQ((std::array{hours.perDay, hours.perWeek, hours.perMonth, hours.perYear}),
                  (std::array{c.hours.perDay, c.hours.perWeek, c.hours.perMonth, c.hours.perYear}))
            << c.minutesPerDay << " " << c.minutesPerWeek << " " << c.daysPerMonth;
    }
}

TEST(KVMSPIMapperTest, IdsOfTasksAndResources) {
    const KVMSPIIdMapper ids;
    EXPECT_EQ(ids.taskIdFromMspdiUID("12"), "t12");
    EXPECT_EQ(ids.resourceIdFromMspdiUID("0"), "r0");
    EXPECT_EQ(ids.taskIdFromMspdiUID(""), "");
    try {
        ids.taskIdFromMspdiUID("-1");
        ADD_FAILURE() << "a negative task UID was taken";
    } catch (const TVException& exception) {
        EXPECT_EQ(exception.reason(), "Invalid format of MSPDI Task ID (can not be negative number): -1");
    }
    EXPECT_THROW(ids.resourceIdFromMspdiUID("-3"), TVException);
}

} // namespace
