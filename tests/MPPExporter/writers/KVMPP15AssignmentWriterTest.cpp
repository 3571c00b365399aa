#include "MPPExporter/writers/KVMPP15AssignmentWriter.h"

#include "MPPCommon/date/DateTestSupport.h"
#include "MPPExporter/MPPObjects/KVMPPProject.h"
#include "MPPExporter/writers/KVMPP15ProjectWriter.h"
#include "MPPImporter/file/KVMPPVarDataReader.h"
#include "MPPImporter/format/MPPValueCodecs.h"
#include "MPPImporter/readers/KVMSPIMPPAssignmentReader.h"
#include "MPPImporter/readers/KVMSPISingleAssignmentBaselineReader.h"
#include "MPPImporter/readers/KVMSPISingleTimephasedDataReader.h"
#include "WriterTestSupport.h"
#include "support/TestSupport.h"

#include <cmath>
#include <gtest/gtest.h>
#include <map>

namespace {

namespace fs = std::filesystem;

TVDate at(double day, double hour) {
    return TVDate::fromUnixSeconds(kMonday + day * kSecondsPerDay + hour * kSecondsPerHour);
}

// How many seconds each stretch of the split task starts later than the one before, beyond whole days.
constexpr uint32_t kStretchDelay = 21;

// Tasks under a root, a staff member and a material, and assignments listed out of ID order: a shared
// one with progress, a split task's unassigned one in three stretches a working day apart, a material
// one, and one without a task.
struct AssignmentPlan {
    KVMPPProject project;
    std::vector<std::shared_ptr<KVMPPTask>> tasks;
    std::vector<std::shared_ptr<KVMPPResource>> resources;

    AssignmentPlan() {
        for (const char* title : {"Plan", "Build", "Split", "Pour"}) {
            auto task = std::make_shared<KVMPPTask>();
            task->ID = tasks.size();
            task->title = title;
            task->parent = tasks.empty() ? nullptr : tasks.front().get();
            task->startDate = at(0, 8);
            task->endDate = at(2, 17);
            tasks.push_back(task);
            project.tasks.push_back(task);
        }
        tasks[2]->hasSplits = true;
        for (const char* name : {"Ann", "Concrete"}) {
            auto resource = std::make_shared<KVMPPResource>();
            resource->ID = resources.size() + 1;
            resource->name = name;
            resources.push_back(resource);
            project.resources.push_back(resource);
        }
        resources[1]->setResourceTypeMaterial();

        auto shared = add(7, tasks[1], resources[0]);
        shared->assignmentUnits = 5000;
        shared->work = 4 * kSecondsPerHour;
        shared->actualWork = kSecondsPerHour;
        shared->remainingWork = 3 * kSecondsPerHour;
        auto split = add(3, tasks[2], nullptr);
        split->work = 3 * 8 * kSecondsPerHour;
        split->remainingWork = split->work;
        // Stretches on every other day, the later ones starting some seconds late and ending at 17:00.
        for (uint32_t day = 0; day < 3; ++day) {
            KVMPPAssignmentPhase phase;
            constexpr uint32_t kWorkingDay = 8 * 3600;
            phase.startShift = day * 2 * kWorkingDay + day * kStretchDelay;
            phase.finishShift = (day * 2 + 1) * kWorkingDay;
            phase.work = phase.finishShift - phase.startShift;
            split->assignmentPhases.push_back(phase);
        }
        split->finishDate = at(4, 17);
        auto material = add(5, tasks[3], resources[1]);
        material->assignmentUnits = 20000;
        material->work = 2 * kSecondsPerHour;
        material->remainingWork = 2 * kSecondsPerHour;
        add(9, nullptr, resources[0]);
    }

    std::shared_ptr<KVMPPAssignment> add(uint64_t id, const std::shared_ptr<KVMPPTask>& task,
                                         const std::shared_ptr<KVMPPResource>& resource) {
        auto assignment = std::make_shared<KVMPPAssignment>();
        assignment->ID = id;
        if (task) {
            assignment->task.setObject(task);
        }
        if (resource) {
            assignment->resource.setObject(resource);
        }
        project.assignments.push_back(assignment);
        return assignment;
    }
};

// The assignments are numbered from 1 in ID order, the one without a task dropped; each reads back
// with its task, resource, units, work and dates, and the split task's stretches read back as its
// timephased data.
TEST(KVMPP15AssignmentWriter, TheReaderReadsBackEveryAssignmentAndTheStretchesOfASplitTask) {
    SystemZoneScope scope("UTC");
    testsupport::TempDir dir;
    AssignmentPlan plan;
    const fs::path output = dir.path() / "plan.mpp";
    ASSERT_TRUE(KVMPP15ProjectWriter::writeProject(plan.project, output.string(),
                                                   writertest::shippedTemplate().string()));
    writertest::WrittenPlan written(output);
    ASSERT_NE(written.assignments(), nullptr);
    KVMSPIMPPAssignmentReader& reader = *written.assignments();
    std::vector<int32_t> uids = reader.uniqueIDs();
    std::sort(uids.begin(), uids.end());
    ASSERT_EQ(uids, (std::vector<int32_t>{1, 2, 3}));

    struct Expected {
        int32_t task;
        int32_t resource;
        double units;
        double work;
        double actualWork;
        double remainingWork;
        TVDate finish;
    };
    // Tasks are numbered from 1 below the project; the split task's assignment has no resource.
    const Expected expected[] = {
        {2, -65535, 100, 24 * kSecondsPerHour, 0, 24 * kSecondsPerHour, at(4, 17)},
        {3, 2, 200, 2 * kSecondsPerHour, 0, 2 * kSecondsPerHour, at(2, 17)},
        {1, 1, 50, 4 * kSecondsPerHour, kSecondsPerHour, 3 * kSecondsPerHour, at(2, 17)}};
    for (int32_t uid = 1; uid <= 3; ++uid) {
        const Expected& want = expected[uid - 1];
        int32_t task = 0;
        int32_t resource = 0;
        double units = 0;
        double work = 0;
        double actual = -1;
        double remaining = 0;
        TVDate start;
        TVDate finish;
        EXPECT_TRUE(reader.assignmentTaskUID(uid, task) && reader.assignmentResourceUID(uid, resource) &&
                    reader.assignmentUnits(uid, units) && reader.assignmentWork(uid, work) &&
                    reader.assignmentActualWork(uid, actual) &&
                    reader.assignmentRemainingWork(uid, remaining) && reader.assignmentStart(uid, start) &&
                    reader.assignmentFinish(uid, finish));
        EXPECT_EQ(task, want.task) << uid;
        EXPECT_EQ(resource, want.resource) << uid;
        EXPECT_DOUBLE_EQ(units, want.units) << uid;
        EXPECT_DOUBLE_EQ(work, want.work) << uid;
        EXPECT_DOUBLE_EQ(actual, want.actualWork) << uid;
        EXPECT_DOUBLE_EQ(remaining, want.remainingWork) << uid;
        EXPECT_EQ(start, at(0, 8)) << "the task's start stands in for the assignment's own";
        EXPECT_EQ(finish, want.finish) << uid;
    }

    const auto& phases = reader.assignmentTimephasedDataMap();
    EXPECT_EQ(phases.count(2) + phases.count(3), 0u) << "only the split task has stretches";
    ASSERT_EQ(phases.count(1), 1u);
    const auto& stretches = phases.at(1);
    ASSERT_EQ(stretches.size(), 3u);
    for (size_t day = 0; day < 3; ++day) {
        const double delay = static_cast<double>(day * kStretchDelay);
        EXPECT_EQ(stretches[day]->startDate(), at(2.0 * static_cast<double>(day), 8).addingSeconds(delay))
            << day;
        EXPECT_EQ(stretches[day]->endDate(), at(2.0 * static_cast<double>(day), 17)) << day;
        EXPECT_DOUBLE_EQ(stretches[day]->duration(), 8 * kSecondsPerHour - delay) << day;
    }
    // 110-byte records, and a 34-byte meta entry each whose mark tells the split assignment.
    EXPECT_EQ(written.stream("TBkndAssn", "FixedData").size(), 3 * 110u);
    const std::vector<uint8_t> meta = written.stream("TBkndAssn", "FixedMeta");
    ASSERT_EQ(meta.size(), 16 + 3 * 34u);
    EXPECT_EQ(meta[16 + 10], 0x27);
    EXPECT_EQ(meta[16 + 34 + 10], 0x23);
}

// Without assignments the fixed streams are empty and the variable data holds the two header elements
// of ID 0; an assignment with eleven baselines besides its Baseline fails the export.
TEST(KVMPP15AssignmentWriter, HeaderElementsWithoutAssignmentsAndTooManyBaselines) {
    testsupport::TempDir dir;
    AssignmentPlan plan;
    plan.project.assignments.clear();
    const fs::path output = dir.path() / "plan.mpp";
    ASSERT_TRUE(KVMPP15ProjectWriter::writeProject(plan.project, output.string(),
                                                   writertest::shippedTemplate().string()));
    writertest::WrittenPlan written(output);
    ASSERT_NE(written.assignments(), nullptr);
    EXPECT_TRUE(written.assignments()->uniqueIDs().empty());
    EXPECT_TRUE(written.stream("TBkndAssn", "FixedData").empty());
    EXPECT_TRUE(written.stream("TBkndAssn", "Fixed2Data").empty());
    const KVMPPVarDataReader* data = written.assignments()->varDataReader();
    ASSERT_NE(data, nullptr);
    EXPECT_EQ(data->uidArray(), (std::vector<int32_t>{0}));
    EXPECT_TRUE(data->hasDataForObjectUID(0, 0x31) && data->hasDataForObjectUID(0, 0x27A));

    const auto numbered = [](AssignmentPlan& plan, int64_t count) {
        auto& baselines = plan.project.assignments.front()->baselines;
        baselines.resize(static_cast<size_t>(count));
        for (int64_t number = 0; number < count; ++number) {
            baselines[static_cast<size_t>(number)].number = number;
        }
    };
    AssignmentPlan saved;
    numbered(saved, 12);
    const fs::path refused = dir.path() / "refused.mpp";
    EXPECT_FALSE(KVMPP15ProjectWriter::writeProject(saved.project, refused.string(),
                                                    writertest::shippedTemplate().string()));
    EXPECT_FALSE(fs::exists(refused));
    AssignmentPlan ten;
    numbered(ten, 11);
    EXPECT_TRUE(KVMPP15ProjectWriter::writeProject(ten.project, refused.string(),
                                                   writertest::shippedTemplate().string()));
}

// An assignment's Baseline and its numbered baselines read back under their numbers with their dates,
// work and cost, a gap in the numbers left empty; a first baseline of another number than 0 is no
// Baseline.
TEST(KVMPP15AssignmentWriter, BaselinesReadBackUnderTheirNumbers) {
    SystemZoneScope scope("UTC");
    testsupport::TempDir dir;
    AssignmentPlan plan;
    const auto baseline = [](int64_t number, double day) {
        KVMPPAssignmentBaseline saved;
        saved.number = number;
        saved.start = at(day, 8);
        saved.finish = at(day + 1, 17);
        saved.work = (static_cast<double>(number) + 1) * kHour;
        saved.cost = 12.5 * static_cast<double>(number);
        return saved;
    };
    // The shared assignment becomes UID 3, the split task's UID 1, which holds baseline 2 alone.
    plan.project.assignments[0]->baselines = {baseline(0, 1), baseline(3, 2), baseline(10, 3)};
    plan.project.assignments[1]->baselines = {baseline(2, 4)};
    const fs::path output = dir.path() / "plan.mpp";
    ASSERT_TRUE(KVMPP15ProjectWriter::writeProject(plan.project, output.string(),
                                                   writertest::shippedTemplate().string()));
    writertest::WrittenPlan written(output);
    ASSERT_NE(written.assignments(), nullptr);
    const KVMSPIMPPAssignmentReader& reader = *written.assignments();
    const std::map<std::pair<int32_t, int32_t>, double> expected = {
        {{3, 0}, 1}, {{3, 3}, 2}, {{3, 10}, 3}, {{1, 2}, 4}};
    for (int32_t uid = 1; uid <= 3; ++uid) {
        for (int32_t number = 0; number <= 10; ++number) {
            const KVMSPISingleAssignmentBaselineReader* read = reader.assignmentBaseline(uid, number);
            const auto found = expected.find({uid, number});
            if (found == expected.end()) {
                EXPECT_EQ(read, nullptr) << uid << " " << number;
                continue;
            }
            ASSERT_NE(read, nullptr) << uid << " " << number;
            EXPECT_TRUE(read->hasStart() && read->hasFinish() && read->hasWork() && read->hasCost());
            EXPECT_EQ(read->start(), at(found->second, 8)) << number;
            EXPECT_EQ(read->finish(), at(found->second + 1, 17)) << number;
            EXPECT_DOUBLE_EQ(read->work() * 0.06, (number + 1) * kHour) << number;
            EXPECT_DOUBLE_EQ(read->cost(), 1250.0 * number) << number;
        }
    }
}

// The figures where the arithmetic has no answer of its own: a material assignment without work has
// done none of it, and working time beyond the block's word is cut to its largest value.
TEST(KVMPP15AssignmentWriter, FiguresWithoutWorkAndBlocksWithoutStretchesAreDefined) {
    SystemZoneScope scope("UTC");
    auto material = std::make_shared<KVMPPResource>();
    material->setResourceTypeMaterial();
    KVMPPAssignment assignment;
    assignment.resource.setObject(material);
    assignment.assignmentUnits = 30000;
    const std::array<double, 5> figures = KVMPP15AssignmentWriter::workFigures(assignment);
    EXPECT_EQ(figures, (std::array<double, 5>{30000, 180000, 0, 180000, 180000}));

    // A block without stretches: no records, its rate, the remaining work in thousandths of a minute and
    // the span in 80ths of a working minute, here a working day.
    assignment.remainingWork = kSecondsPerHour;
    assignment.startDate = at(0, 8);
    assignment.finishDate = at(0, 17);
    const std::vector<uint8_t> block = KVMPP15AssignmentWriter::plannedWork(assignment);
    ASSERT_EQ(block.size(), 72u);
    const std::vector<uint8_t> head(block.begin(), block.begin() + 8);
    EXPECT_EQ(head, (std::vector<uint8_t>{0, 0, 0x20, 0, 0x2C, 0, 0, 0}));
    EXPECT_EQ(decodeMPPNumber<double>(std::span(block).subspan(8, 8)), 160000.0);
    EXPECT_EQ(decodeMPPNumber<double>(std::span(block).subspan(16, 8)), 60000.0);
    EXPECT_EQ(decodeMPPNumber<uint32_t>(std::span(block).subspan(24, 4)), 480u * 80);

    KVMPPAssignmentPhase far;
    far.startShift = 0xFFFFFFFF;
    far.work = std::nan("");
    assignment.assignmentPhases = {KVMPPAssignmentPhase{}, far};
    const std::vector<uint8_t> split = KVMPP15AssignmentWriter::plannedWork(assignment);
    EXPECT_EQ(decodeMPPNumber<uint16_t>(std::span(split).subspan(0, 2)), 3u)
        << "two stretches, three records";
    EXPECT_EQ(decodeMPPNumber<uint32_t>(std::span(split).subspan(40 + 2 * 28, 4)), 0xFFFFFFFFu);
}

} // namespace
