#include "MPPExporter/ExportBundleText.h"
#include "MPPExporter/Mappers/KVMSPEAssignmentBaselineMapper.h"
#include "MPPExporter/Mappers/KVMSPEMapper.h"
#include "MPPExporter/Mappers/KVMSPEResourceBaselineMapper.h"
#include "MPPExporter/Mappers/MSPETvnxReading.h"

#include <gtest/gtest.h>

namespace {

using exportbundle::parsedDocument;

// A baseline saved by the planning application, one that an import wrote, one without the assignment
// and one without the resource.
const char* const kSaved[] = {
    "<scenario><task id=\"t1\"><start-date>2026-02-02T08:00:00Z</start-date>"
    "<end-date>2026-02-03T17:00:00Z</end-date><effort>28800</effort>"
    "<assignment idref=\"r1\"><start-date>2026-02-02T13:00:00Z</start-date></assignment></task>"
    "<resource id=\"r1\"><total-cost>12.345</total-cost><total-hours>8</total-hours></resource></scenario>",
    "<scenario><task id=\"t1\"><leveled-start>2026-02-04T08:00:00Z</leveled-start><effort>nothing</effort>"
    "<assignment idref=\"r1\"/></task><resource id=\"r1\"/></scenario>",
    "<scenario><task id=\"t1\"/><resource id=\"r1\"/></scenario>",
    "<scenario><task id=\"t2\"/></scenario>",
};

struct Plan {
    KVMSPEMapper::DocumentPtr actual =
        parsedDocument("<scenario><task id=\"t1\"><assignment idref=\"r1\"/></task>"
                       "<resource id=\"r1\"/></scenario>");
    std::vector<KVMSPEMapper::DocumentPtr> baselines;
    std::unique_ptr<KVMSPEMapper> mapper;

    Plan() {
        for (const char* text : kSaved) {
            baselines.push_back(parsedDocument(text));
        }
        mapper = std::make_unique<KVMSPEMapper>(nullptr, nullptr, baselines, TVInfoDictionary{});
    }
    // The element of the actual plan, kept as long as its answer.
    KVMSPCXMLElement::ElementPtr resource() const {
        return actual->rootElement()->elementsForName("resource").front();
    }
};

// A resource's baseline holds its total cost and its hours as seconds of work, zero where the document
// states none; a document without the resource gives none.
TEST(KVMSPEResourceBaselineMapper, ReadsTheCostAndHoursOfTheResourceOfTheSameId) {
    Plan plan;
    const auto element = plan.resource();
    const KVMSPCXMLElement& resource = *element;
    const auto saved = KVMSPEResourceBaselineMapper(0, *plan.mapper).newBaselineFromTvnxResource(resource);
    ASSERT_TRUE(saved.has_value());
    EXPECT_EQ(saved->number, 0);
    EXPECT_EQ(saved->cost, 12.345);
    EXPECT_EQ(saved->work, 8 * 3600.0) << "hours of work as seconds";
    const auto imported = KVMSPEResourceBaselineMapper(1, *plan.mapper).newBaselineFromTvnxResource(resource);
    ASSERT_TRUE(imported.has_value());
    EXPECT_EQ(imported->number, 1);
    EXPECT_EQ(imported->cost, 0.0);
    EXPECT_EQ(imported->work, 0.0);
    EXPECT_FALSE(KVMSPEResourceBaselineMapper(3, *plan.mapper).newBaselineFromTvnxResource(resource));
}

// An assignment's baseline takes its own dates before its task's, the task's work and the resource's
// cost to two decimals; an imported baseline gives the task's leveled start as its start; a document
// without the assignment gives none, whatever else it holds.
TEST(KVMSPEAssignmentBaselineMapper, ReadsTheAssignmentItsTaskAndItsResource) {
    Plan plan;
    const auto assignment =
        plan.actual->rootElement()->elementsForName("task").front()->elementsForName("assignment");
    ASSERT_EQ(assignment.size(), 1u);
    const KVMSPCXMLElement& element = *assignment.front();
    const auto saved = KVMSPEAssignmentBaselineMapper(0, *plan.mapper).newBaselineFromTvnxAssignment(element);
    ASSERT_TRUE(saved.has_value());
    EXPECT_EQ(saved->number, 0);
    EXPECT_EQ(saved->name, "Baseline0-r1");
    EXPECT_EQ(saved->start, tvnxread::date("2026-02-02T13:00:00Z"));
    EXPECT_EQ(saved->finish, tvnxread::date("2026-02-03T17:00:00Z"));
    EXPECT_EQ(saved->work, 28800.0);
    EXPECT_EQ(saved->cost, 12.35) << "two decimals as printed";

    const auto imported =
        KVMSPEAssignmentBaselineMapper(1, *plan.mapper).newBaselineFromTvnxAssignment(element);
    ASSERT_TRUE(imported.has_value());
    EXPECT_EQ(imported->start, tvnxread::date("2026-02-04T08:00:00Z"));
    EXPECT_FALSE(imported->finish.has_value());
    EXPECT_EQ(imported->work, 0.0) << "an effort that is no number is no work";
    EXPECT_EQ(imported->cost, 0.0);

    EXPECT_FALSE(KVMSPEAssignmentBaselineMapper(2, *plan.mapper).newBaselineFromTvnxAssignment(element));
    EXPECT_FALSE(KVMSPEAssignmentBaselineMapper(3, *plan.mapper).newBaselineFromTvnxAssignment(element));
}

} // namespace
