#include "MPPExporter/writers/KVMPP15TaskWriter.h"

#include "MPPCommon/date/DateTestSupport.h"
#include "MPPCommon/storage/SSLRoot.h"
#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPExporter/MPPObjects/KVMPPProject.h"
#include "MPPExporter/writers/KVMPP15ProjectWriter.h"
#include "MPPImporter/readers/KVMSPIMPPConstraintReader.h"
#include "MPPImporter/readers/KVMSPIMPPProjectReader.h"
#include "MPPImporter/readers/KVMSPIMPPTaskReader.h"
#include "MPPImporter/readers/KVMSPISingleExtendedAttribute.h"
#include "MPPImporter/readers/KVMSPISinglePredecessorLinkReader.h"
#include "MPPImporter/readers/KVMSPISingleTaskBaselineReader.h"
#include "WriterTestSupport.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;

// The instant whose wall clock in the system zone is the given UTC reading: the file keeps wall
// clocks, which the reader hands back as UTC instants.
TVDate wallClockDate(double unixSeconds) {
    const TVDate utc = TVDate::fromUnixSeconds(unixSeconds);
    return utc.addingSeconds(-TVTimeZone::systemTimeZone().secondsFromGMT(utc));
}

constexpr double kMondayMorning = 1700467200; // 2023-11-20 08:00 UTC

std::shared_ptr<KVMPPTask> addTask(KVMPPProject& project, uint64_t id, const std::string& title,
                                   KVMPPTask* parent, double startDay, double days) {
    auto task = std::make_shared<KVMPPTask>();
    task->ID = id;
    task->title = title;
    task->parent = parent;
    task->startDate = wallClockDate(kMondayMorning + startDay * kSecondsPerDay + 8 * kSecondsPerHour);
    task->endDate =
        wallClockDate(kMondayMorning + (startDay + days - 1) * kSecondsPerDay + 17 * kSecondsPerHour);
    task->duration = days * 8 * kSecondsPerHour;
    project.tasks.push_back(task);
    return task;
}

KVMPPTaskBaseline baseline(int64_t number, double startDay) {
    KVMPPTaskBaseline saved;
    saved.number = number;
    saved.start = wallClockDate(kMondayMorning + startDay * kSecondsPerDay + 8 * kSecondsPerHour);
    saved.finish = wallClockDate(kMondayMorning + startDay * kSecondsPerDay + 17 * kSecondsPerHour);
    saved.duration = 8 * kSecondsPerHour;
    saved.cost = 12.5;
    saved.work = 8 * kSecondsPerHour;
    return saved;
}

// A plan whose tasks carry what the task writer writes: an outline three deep under the document's
// root task (listed out of ID order), a milestone, notes, a custom text, a constraint, progress,
// baselines and a title too long for the file.
struct SamplePlan {
    KVMPPProject project;
    std::shared_ptr<KVMPPTask> root;

    SamplePlan() {
        project.customTaskFieldNames = std::vector<std::string>(12, "");
        (*project.customTaskFieldNames)[11] = "Owner";
        root = addTask(project, 0, "The plan", nullptr, 0, 10);
        auto phase = addTask(project, 1, "Phase", root.get(), 0, 5);
        auto design = addTask(project, 2, "Design", phase.get(), 0, 2);
        design->notes = "First line\nsecond line";
        design->constraintType = 4;
        design->constraintDate = design->startDate;
        design->priority = 700;
        design->percentComplete = 0.5;
        design->actualDuration = 8 * kSecondsPerHour;
        design->estimated = false;
        KVMPPExtendedAttribute owner;
        owner.alias = "Owner";
        owner.value = "Ann";
        design->customFieldValues.addAttribute(owner);
        auto review = addTask(project, 4, "Review", phase.get(), 4, 1);
        review->milestone = true;
        review->duration = 0;
        review->endDate = review->startDate;
        review->notes = "";
        auto build = addTask(project, 3, "Build", design.get(), 2, 2);
        build->baselines = {baseline(0, 2), baseline(3, 1), baseline(7, 3)};
        build->manual = true;
        addTask(project, 5, std::string(300, 'x'), root.get(), 6, 4);
        link(build, design, 1, false, 8 * kSecondsPerHour);
        link(review, build, 3, true, 50);
        for (const auto& task : project.tasks) {
            task->customFieldValues.resolve(*project.customTaskFieldNames);
        }
        project.startDate = root->startDate;
    }

    void link(const std::shared_ptr<KVMPPTask>& dependent, const std::shared_ptr<KVMPPTask>& prerequisite,
              int32_t type, bool percentage, double lag) {
        auto constraint = std::make_shared<KVMPPConstraint>();
        constraint->task1.setObject(dependent);
        constraint->task2.setObject(prerequisite);
        constraint->constraintType = type;
        constraint->isPercentage = percentage;
        constraint->lag = lag;
        project.constraints.push_back(constraint);
    }
};

std::string name(KVMSPIMPPTaskReader& reader, int32_t uid) {
    std::string value;
    EXPECT_TRUE(reader.taskName(uid, value));
    return value;
}

TEST(KVMPP15TaskWriter, TheReaderReadsBackTheOutlineFieldsAndLinksOfEveryTask) {
    for (const char* zone : {"UTC", "America/New_York"}) {
        SystemZoneScope scope(zone);
        testsupport::TempDir dir;
        SamplePlan plan;
        const fs::path output = dir.path() / "plan.mpp";
        ASSERT_TRUE(KVMPP15ProjectWriter::writeProject(plan.project, output.string(),
                                                       writertest::shippedTemplate().string()));
        writertest::WrittenPlan written(output);
        ASSERT_NE(written.tasks(), nullptr) << zone;
        KVMSPIMPPTaskReader& reader = *written.tasks();

        // The root became the project summary with UID and ID 0; the tasks are numbered in ID order.
        ASSERT_EQ(reader.uniqueIDs(), (std::vector<int32_t>{0, 1, 2, 3, 4, 5}));
        EXPECT_EQ(name(reader, 0), "The plan");
        const std::vector<std::string> titles = {"Phase", "Design", "Build", "Review", std::string(255, 'x')};
        const std::vector<int16_t> levels = {1, 2, 3, 2, 1};
        const std::vector<int32_t> parents = {0, 1, 2, 1, 0};
        for (int32_t uid = 1; uid <= 5; ++uid) {
            const KVMPPTask& task = *plan.project.tasks[static_cast<size_t>(uid - 1)];
            EXPECT_EQ(name(reader, uid), titles[static_cast<size_t>(uid - 1)]);
            int16_t level = 0;
            int32_t parent = 0;
            int32_t id = 0;
            EXPECT_TRUE(reader.taskOutlineLevel(uid, level) && reader.taskParentUID(uid, parent) &&
                        reader.taskID(uid, id));
            EXPECT_EQ(level, levels[static_cast<size_t>(uid - 1)]) << uid;
            EXPECT_EQ(parent, parents[static_cast<size_t>(uid - 1)]) << uid;
            EXPECT_EQ(reader.parentTaskMap().at(uid), parents[static_cast<size_t>(uid - 1)]) << uid;
            EXPECT_EQ(id, uid);
            // Dates come back as the wall clock they were written in.
            TVDate start;
            TVDate finish;
            TVTimeSpan duration = 0;
            EXPECT_TRUE(reader.taskManualStart(uid, start) && reader.taskManualFinish(uid, finish) &&
                        reader.taskScheduledStart(uid, start) && reader.taskDuration(uid, duration));
            EXPECT_EQ(start, KVMPPData::wallClock(*task.startDate)) << zone << " " << uid;
            EXPECT_EQ(finish, KVMPPData::wallClock(*task.endDate)) << zone << " " << uid;
            EXPECT_EQ(duration, static_cast<TVTimeSpan>(task.duration) * kMicrosecondsPerSecond);
            bool milestone = true;
            EXPECT_TRUE(reader.taskMilestone(uid, milestone));
            EXPECT_EQ(milestone, task.milestone) << uid;
            bool manual = uid != 3;
            EXPECT_TRUE(reader.taskManual(uid, manual));
            EXPECT_EQ(manual, uid == 3) << "only Build is scheduled by hand: " << uid;
        }

        const int32_t design = 2;
        std::string notes;
        EXPECT_TRUE(reader.taskNotes(design, notes));
        EXPECT_EQ(notes.substr(0, notes.find_last_not_of("\r\n ") + 1), "First line\nsecond line");
        EXPECT_FALSE(reader.taskNotes(4, notes)) << "empty notes write no element";
        int16_t value = 0;
        EXPECT_TRUE(reader.taskPriority(design, value));
        EXPECT_EQ(value, 700);
        EXPECT_TRUE(reader.taskConstraintType(design, value));
        EXPECT_EQ(value, 4);
        EXPECT_TRUE(reader.taskPercentComplete(design, value));
        EXPECT_EQ(value, 50);
        TVDate date;
        EXPECT_TRUE(reader.taskConstraintDate(design, date) && reader.taskActualStart(design, date));
        EXPECT_EQ(date, KVMPPData::wallClock(*plan.project.tasks[1]->startDate));
        EXPECT_FALSE(reader.taskActualStart(3, date)) << "no actual start without an actual duration";
        bool estimated = true;
        EXPECT_TRUE(reader.taskEstimated(design, estimated));
        EXPECT_FALSE(estimated);
        std::vector<std::unique_ptr<KVMSPISingleExtendedAttribute>> fields;
        EXPECT_TRUE(reader.taskCustomFields(design, fields));
        ASSERT_EQ(fields.size(), 1u);
        EXPECT_EQ(fields[0]->name(), "Owner") << "the field goes by the name written for it";
        EXPECT_EQ(fields[0]->string(), "Ann");

        // The first baseline of "Build" is its Baseline, the second stays baseline 3.
        const auto& baseline0 = reader.readersForBaseline(0);
        ASSERT_EQ(baseline0.count(3), 1u);
        EXPECT_EQ(baseline0.at(3)->taskStart(), KVMPPData::wallClock(*baseline(0, 2).start));
        EXPECT_EQ(baseline0.at(3)->taskCost(), 1250.0);
        EXPECT_EQ(baseline0.at(3)->taskDuration(), 4800);
        // Its own work, in thousandths of a minute; "Build" itself holds none.
        EXPECT_EQ(baseline0.at(3)->taskWork(), 480000.0);
        const auto& baseline3 = reader.readersForBaseline(3);
        ASSERT_EQ(baseline3.count(3), 1u);
        EXPECT_EQ(baseline3.at(3)->taskFinish(), KVMPPData::wallClock(*baseline(3, 1).finish));
        EXPECT_EQ(baseline3.at(3)->taskDuration(), 4800);
        // The baselines 6 to 10 lie further on in the layout than the step of 1 to 5 gives.
        const auto& baseline7 = reader.readersForBaseline(7);
        ASSERT_EQ(baseline7.count(3), 1u);
        EXPECT_EQ(baseline7.at(3)->taskStart(), KVMPPData::wallClock(*baseline(7, 3).start));
        EXPECT_EQ(baseline7.at(3)->taskFinish(), KVMPPData::wallClock(*baseline(7, 3).finish));
        EXPECT_EQ(baseline7.at(3)->taskCost(), 1250.0);
        EXPECT_EQ(baseline7.at(3)->taskWork(), 480000.0);
        EXPECT_TRUE(reader.readersForBaseline(1).empty());

        // Links by the tasks' new IDs: "Build" after "Design", "Review" after "Build".
        ASSERT_NE(written.links(), nullptr);
        std::vector<std::string> links;
        for (const auto& [task, predecessors] : written.links()->taskPredcessorMap()) {
            for (const auto& link : predecessors) {
                links.push_back(stringWithFormat("%d<-%d type %d lag %d format %d", link->taskUID(),
                                                 link->preTaskUID(), link->relType(), link->lag(),
                                                 link->lagFormat()));
            }
        }
        std::sort(links.begin(), links.end());
        EXPECT_EQ(links, (std::vector<std::string>{"3<-2 type 1 lag 4800 format 7",
                                                   "4<-3 type 3 lag 5000 format 19"}));
    }
}

// The project's settings replace the template's in both property streams; the importer takes the
// project's start from them, and a template's start left in place would put every task before it.
TEST(KVMPP15TaskWriter, TheProjectPropertiesReadBackAsTheProjectsSettings) {
    for (const char* zone : {"UTC", "America/New_York"}) {
        SystemZoneScope scope(zone);
        testsupport::TempDir dir;
        SamplePlan plan;
        KVMPPProject& project = plan.project;
        project.endDate = plan.project.tasks.back()->endDate;
        project.scheduleFromStart = false;
        project.currencyCode = "EUR";
        project.currencySymbol = "€";
        project.currencyDigits = 3;
        project.minutesPerDay = 420;
        project.minutesPerWeek = 2100;
        project.weekStartDay = 3;
        project.durationFormat = 5;
        const fs::path output = dir.path() / "plan.mpp";
        ASSERT_TRUE(KVMPP15ProjectWriter::writeProject(project, output.string(),
                                                       writertest::shippedTemplate().string()));
        writertest::WrittenPlan written(output);
        ASSERT_NE(written.project(), nullptr) << zone;
        KVMSPIMPPProjectReader& reader = *written.project();
        TVDate date;
        ASSERT_TRUE(reader.propStartDate(date)) << zone;
        EXPECT_EQ(date, KVMPPData::wallClock(*project.startDate)) << zone;
        ASSERT_TRUE(reader.propFinishDate(date)) << zone;
        EXPECT_EQ(date, KVMPPData::wallClock(*project.endDate)) << zone;
        bool fromStart = true;
        EXPECT_TRUE(reader.propScheduleFromStart(fromStart) && !fromStart) << zone;
        std::string code;
        std::string symbol;
        std::string calendar;
        EXPECT_TRUE(reader.propCurrencyCode(code) && reader.propCurrencySymbol(symbol) &&
                    reader.propDefaultCalendarName(calendar));
        EXPECT_EQ(code + " " + symbol + " " + calendar, "EUR € Standard");
        int16_t shortValue = 0;
        EXPECT_TRUE(reader.propCurrencyDigits(shortValue) && shortValue == 3) << shortValue;
        EXPECT_TRUE(reader.propWeekStartDay(shortValue) && shortValue == 3) << shortValue;
        int32_t minutes = 0;
        EXPECT_TRUE(reader.propMinutesPerDay(minutes) && minutes == 420) << minutes;
        EXPECT_TRUE(reader.propMinutesPerWeek(minutes) && minutes == 2100) << minutes;
    }
}

TEST(KVMPP15TaskWriter, PreprocessingMakesTheRootTheProjectSummary) {
    SamplePlan plan;
    plan.root->cost = 42;
    auto link = std::make_shared<KVMPPConstraint>();
    link->task1.setObject(plan.project.tasks[1]);
    link->task2.setObject(plan.root);
    plan.project.constraints.push_back(link);
    KVMPP15TaskWriter::preprocessProject(plan.project);
    EXPECT_EQ(plan.project.tasks.size(), 5u);
    EXPECT_EQ(plan.project.cost, 42);
    EXPECT_EQ(link->task2.object(), &plan.project);
    EXPECT_EQ(link->task1.object(), plan.project.tasks[0].get());
    std::vector<std::string> order;
    for (const auto& task : plan.project.tasks) {
        order.push_back(*task->title + "=" + std::to_string(task->ID));
    }
    EXPECT_EQ(order, (std::vector<std::string>{"Phase=1", "Design=2", "Build=3", "Review=4",
                                               std::string(300, 'x') + "=5"}));
    EXPECT_EQ(plan.project.tasks[0]->parent, &plan.project);
    ASSERT_TRUE(plan.project.tasks[2]->baseline0.has_value());
    EXPECT_EQ(plan.project.tasks[2]->baselines.size(), 2u);

    // Two tasks without a parent: there is no root, and both hang under the project. A task that the
    // first baseline doesn't hold has no Baseline: its baseline 2 stays baseline 2.
    KVMPPProject flat;
    addTask(flat, 7, "B", nullptr, 0, 1)->baselines = {baseline(2, 1)};
    addTask(flat, 3, "A", nullptr, 0, 1);
    KVMPP15TaskWriter::preprocessProject(flat);
    ASSERT_EQ(flat.tasks.size(), 2u);
    EXPECT_EQ(*flat.tasks[0]->title, "A");
    EXPECT_FALSE(flat.tasks[1]->baseline0.has_value());
    ASSERT_EQ(flat.tasks[1]->baselines.size(), 1u);
    EXPECT_EQ(flat.tasks[1]->baselines.front().number, 2);
    EXPECT_EQ(flat.tasks[1]->parent, &flat);
}

TEST(KVMPP15TaskWriter, RefusesTooManyBaselinesUnknownTextFieldsAndASecondRun) {
    testsupport::TempDir dir;
    SamplePlan plan;
    std::vector<KVMPPTaskBaseline> twelve;
    for (int64_t number = 0; number <= 11; ++number) {
        twelve.push_back(baseline(number, 1));
    }
    plan.project.tasks[3]->baselines = twelve;
    EXPECT_FALSE(KVMPP15ProjectWriter::writeProject(plan.project, (dir.path() / "a.mpp").string(),
                                                    writertest::shippedTemplate().string()));
    EXPECT_FALSE(fs::exists(dir.path() / "a.mpp")) << "a file cut short stays";
    twelve.pop_back();
    SamplePlan eleven;
    eleven.project.tasks[3]->baselines = twelve;
    EXPECT_TRUE(KVMPP15ProjectWriter::writeProject(eleven.project, (dir.path() / "b.mpp").string(),
                                                   writertest::shippedTemplate().string()));

    try {
        KVMPP15TaskWriter::getTextFieldTypeForIndex(31);
        ADD_FAILURE() << "position 31 has a type";
    } catch (const TVException& exception) {
        EXPECT_EQ(exception.name() + ": " + exception.reason(),
                  "UnknownTextFieldException: Text field type is unknown for index 31");
    }
    EXPECT_EQ(KVMPP15TaskWriter::getTextFieldTypeForIndex(12), 0x13Eu);

    // Each regenerating writer writes once.
    std::unique_ptr<SSLRoot> root = SSLRoot::forWritingToFile((dir.path() / "c.mpp").string());
    auto storage = root->rootStorage();
    auto writer = std::make_unique<KVMPPFormatWriter>(std::move(storage), "TBkndTask", "   114");
    SSLRoot templateRoot(writertest::shippedTemplate().string());
    auto source = std::make_unique<KVMPPFormatReader>(
        templateRoot.rootStorage()->childStorageWithName("   114")->childStorageWithName("TBkndTask"),
        "   114");
    KVMPP15TaskWriter taskWriter(std::move(writer), std::move(source), 16);
    KVMPPProject empty;
    EXPECT_FALSE(taskWriter.writeDataForProject(nullptr));
    EXPECT_TRUE(taskWriter.writeDataForProject(&empty));
    EXPECT_FALSE(taskWriter.writeDataForProject(&empty));
}

} // namespace
