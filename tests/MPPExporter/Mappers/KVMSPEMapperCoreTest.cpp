#include "MPPCommon/support/TVException.h"
#include "MPPExporter/Mappers/KVMSPEIdMapper.h"
#include "MPPExporter/Mappers/KVMSPEMapper.h"

#include <functional>
#include <gtest/gtest.h>

namespace {

std::string failure(const std::function<void()>& action) {
    try {
        action();
    } catch (const TVException& exception) {
        return exception.reason();
    }
    return "";
}

} // namespace

TEST(KVMSPEMapperCoreTest, IdsTranslateToUIDs) {
    const KVMSPEIdMapper ids("r-1", "t-1");
    EXPECT_EQ(ids.taskUIDFromTvnxId("t-1"), "0");
    EXPECT_EQ(ids.taskUIDFromTvnxId("t12"), "12");
    EXPECT_EQ(ids.taskUIDFromTvnxId("t007"), "007");
    EXPECT_EQ(ids.taskUIDFromTvnxId("t"), "");
    EXPECT_EQ(ids.taskUIDFromTvnxId("t0"), "");
    EXPECT_EQ(ids.taskUIDFromTvnxId("tx"), "");
    EXPECT_EQ(ids.resourceUIDFromTvnxResourceId(""), "");
    EXPECT_EQ(ids.resourceUIDFromTvnxResourceId("r-1"), "0");
    EXPECT_EQ(ids.resourceUIDFromTvnxResourceId("r3"), "3");
    // The top id gives 0 whatever its digits.
    EXPECT_EQ(KVMSPEIdMapper("r9", "t9").taskUIDFromTvnxId("t9"), "0");

    EXPECT_EQ(failure([&] { ids.taskUIDFromTvnxId("x5"); }),
              "Invalid format of TVNX Task ID (must begin with 't'): x5");
    EXPECT_EQ(failure([&] { ids.resourceUIDFromTvnxResourceId("t5"); }),
              "Invalid format of TVNX Resource ID (must begin with 'r'): t5");
    EXPECT_EQ(failure([] { KVMSPEIdMapper("x", "t-1"); }),
              "Invalid format of TVNX top Resource ID (must begin with 'r'): x");
    EXPECT_EQ(failure([] { KVMSPEIdMapper("r-1", ""); }),
              "Invalid format of TVNX top Task ID (must begin with 't'): ");
}

TEST(KVMSPEMapperCoreTest, CountersRestartForEachExport) {
    for (int run = 0; run < 2; ++run) {
        KVMSPEMapper::initialize();
        EXPECT_EQ(KVMSPEMapper::nextTaskID(), 0);
        EXPECT_EQ(KVMSPEMapper::nextTaskID(), 1);
        EXPECT_EQ(KVMSPEMapper::nextResourceID(), 0);
        EXPECT_EQ(KVMSPEMapper::nextAssignmentUID(), 1);
        EXPECT_EQ(KVMSPEMapper::nextCalendarUID(), 1);
        EXPECT_EQ(KVMSPEMapper::nextCalendarUID(), 2);
    }
}
