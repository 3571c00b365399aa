#include "MPPExporter/Mappers/KVMSPETaskBaselineMapper.h"

#include "MPPCommon/support/TVException.h"
#include "MPPExporter/ExportBundleText.h"
#include "MPPExporter/Mappers/KVMSPEMapper.h"
#include "MPPExporter/Mappers/MSPETvnxReading.h"

#include <gtest/gtest.h>

namespace {

using exportbundle::parsedDocument;

// A baseline saved by the planning application, two that an import wrote, and one without the task.
const char* const kBaselines[] = {
    "<scenario><task id=\"t1\"><start-date>2026-02-02T08:00:00Z</start-date>"
    "<end-date>2026-02-03T17:00:00Z</end-date><duration>57600</duration><effort>115200</effort>"
    "<total-cost>12.345</total-cost><static-cost>3.5</static-cost></task></scenario>",
    "<scenario><task id=\"t1\"><locked-start-date>2026-02-09T08:00:00Z</locked-start-date>"
    "<locked-end-date>2026-02-11T17:00:00Z</locked-end-date>"
    "<leveled-start>2026-02-04T08:00:00Z</leveled-start><effort>nothing</effort></task></scenario>",
    "<scenario><task id=\"t1\"><locked-start-date>2026-02-09T08:00:00Z</locked-start-date></task></scenario>",
    "<scenario><task id=\"t2\"/></scenario>",
};

TEST(KVMSPETaskBaselineMapper, ReadsEachBaselineDocumentsTaskOfTheSameId) {
    std::vector<KVMSPEMapper::DocumentPtr> baselines;
    for (const char* text : kBaselines) {
        baselines.push_back(parsedDocument(text));
    }
    KVMSPEMapper mapper(nullptr, nullptr, baselines, {});
    const auto actual = parsedDocument("<scenario><task id=\"t1\"><locked-start-date>2026-02-09T08:00:00Z"
                                       "</locked-start-date></task></scenario>");
    const auto element = actual->rootElement()->elementsForName("task").front();
    const KVMSPCXMLElement& task = *element;

    const auto saved = KVMSPETaskBaselineMapper(0, mapper).newBaselineFromTvnxTask(task);
    ASSERT_TRUE(saved.has_value());
    EXPECT_EQ(saved->number, 0);
    EXPECT_EQ(saved->name, "Baseline0");
    EXPECT_EQ(saved->start, tvnxread::date("2026-02-02T08:00:00Z"));
    EXPECT_EQ(saved->finish, tvnxread::date("2026-02-03T17:00:00Z"));
    EXPECT_EQ(saved->duration, 57600.0);
    EXPECT_EQ(saved->work, 115200.0);
    EXPECT_EQ(saved->cost, 12.35) << "two decimals as printed";
    EXPECT_EQ(saved->fixedCost, 3.5);

    // An imported baseline states the saved start as the leveled start, and a saved date as a lock
    // where the actual plan states another.
    const auto imported = KVMSPETaskBaselineMapper(1, mapper).newBaselineFromTvnxTask(task);
    ASSERT_TRUE(imported.has_value());
    EXPECT_EQ(imported->number, 1);
    EXPECT_EQ(imported->start, tvnxread::date("2026-02-04T08:00:00Z"));
    EXPECT_EQ(imported->finish, tvnxread::date("2026-02-11T17:00:00Z"));
    EXPECT_EQ(imported->work, 0.0);
    EXPECT_EQ(imported->cost, 0.0);

    const auto unsaved = KVMSPETaskBaselineMapper(2, mapper).newBaselineFromTvnxTask(task);
    ASSERT_TRUE(unsaved.has_value());
    EXPECT_FALSE(unsaved->start.has_value()) << "the actual plan's lock";

    EXPECT_FALSE(KVMSPETaskBaselineMapper(3, mapper).newBaselineFromTvnxTask(task).has_value());
    try {
        KVMSPETaskBaselineMapper(4, mapper);
        ADD_FAILURE() << "baseline 4 of four";
    } catch (const TVException& exception) {
        EXPECT_EQ(exception.reason(), "Incorrect argument baselineNumber=4. Must be from 0 to 3.");
    }
}

} // namespace
