#include "MPPCommon/date/DateExtensions.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/readers/KVMSPIMPPProjectReader.h"
#include "MPPImporter/readers/KVMSPIMPPTaskReader.h"
#include "MPPImporter/readers/KVMSPISinglePredecessorLinkReader.h"
#include "MPPImporter/readers/KVMSPISingleTaskReader.h"
#include "ReaderCorpusSupport.h"
#include "support/TestSupport.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <regex>

namespace {

using json = nlohmann::json;
using namespace readercorpus;

constexpr double kMicrosecondsPerMinute = 60e6;

const char* const kConstraintTypes[] = {
    "AS_SOON_AS_POSSIBLE",   "AS_LATE_AS_POSSIBLE", "MUST_START_ON",          "MUST_FINISH_ON",
    "START_NO_EARLIER_THAN", "START_NO_LATER_THAN", "FINISH_NO_EARLIER_THAN", "FINISH_NO_LATER_THAN"};

// The project properties that the reference and we both have.
const char* const kProjectKeys[] = {"start",           "finish",           "currency_code",
                                    "currency_symbol", "currency_digits",  "days_per_month",
                                    "minutes_per_day", "minutes_per_week", "schedule_from"};

std::string flag(bool value) {
    return value ? "true" : "false";
}

// A link as "<predecessor UID>:<type>:<lag in minutes>"; the types are those of the interchange
// format, 0 to 3.
std::string linkText(int32_t preTaskUID, int32_t type, double lagMinutes) {
    return stringWithFormat("%d:%d:%s", preTaskUID, type, number(lagMinutes).c_str());
}

std::string joinedLinks(std::vector<std::string> links) {
    std::sort(links.begin(), links.end());
    std::string text;
    for (const std::string& link : links)
        text += link + " ";
    return text;
}

// Our reading of a plan, in the reference's keys and forms. Absent values are left out.
class PlanFields {
public:
    explicit PlanFields(KVMSPIMPPProjectReader& project) : m_project(project) {}

    Fields project() const {
        Fields fields;
        TVDate date;
        if (m_project.propStartDate(date))
            fields["start"] = initWithDateTime(date);
        if (m_project.propFinishDate(date))
            fields["finish"] = initWithDateTime(date);
        std::string text;
        fields["currency_code"] = m_project.propCurrencyCode(text) ? text : "null";
        text.clear();
        if (m_project.propCurrencySymbol(text))
            fields["currency_symbol"] = text;
        int16_t shortValue = 0;
        if (m_project.propCurrencyDigits(shortValue))
            fields["currency_digits"] = std::to_string(shortValue);
        if (m_project.propDaysPerMonth(shortValue))
            fields["days_per_month"] = std::to_string(shortValue);
        int32_t intValue = 0;
        if (m_project.propMinutesPerDay(intValue))
            fields["minutes_per_day"] = std::to_string(intValue);
        if (m_project.propMinutesPerWeek(intValue))
            fields["minutes_per_week"] = std::to_string(intValue);
        bool fromStart = false;
        if (m_project.propScheduleFromStart(fromStart))
            fields["schedule_from"] = fromStart ? "START" : "FINISH";
        return fields;
    }

    // The tasks that are neither deleted nor null, in ID order.
    std::vector<int32_t> taskUIDs() const {
        std::vector<int32_t> uids;
        KVMSPIMPPTaskReader& tasks = taskReader();
        for (int32_t uid : tasks.uniqueIDs()) {
            bool isNull = false;
            tasks.taskIsNull(uid, isNull);
            if (tasks.isValidUID(uid) && !isNull) {
                uids.push_back(uid);
            }
        }
        return uids;
    }

    Fields task(int32_t uid) const {
        KVMSPIMPPTaskReader& tasks = taskReader();
        Fields fields;
        int32_t intValue = 0;
        if (tasks.taskID(uid, intValue))
            fields["id"] = std::to_string(intValue);
        std::string text;
        fields["name"] = tasks.taskName(uid, text) ? text : "null";
        int16_t shortValue = 0;
        if (tasks.taskOutlineLevel(uid, shortValue))
            fields["outline_level"] = std::to_string(shortValue);
        const auto parent = tasks.parentTaskMap().find(uid);
        fields["parent_uid"] =
            parent != tasks.parentTaskMap().end() ? std::to_string(parent->second) : "null";
        if (tasks.taskPercentComplete(uid, shortValue))
            fields["percent_complete"] = std::to_string(shortValue);
        if (tasks.taskPriority(uid, shortValue))
            fields["priority"] = std::to_string(shortValue);
        if (tasks.taskConstraintType(uid, shortValue) && shortValue >= 0 && shortValue < 8) {
            fields["constraint_type"] = kConstraintTypes[shortValue];
        }
        TVDate date;
        fields["constraint_date"] = tasks.taskConstraintDate(uid, date) ? initWithDateTime(date) : "null";
        bool flagValue = false;
        if (tasks.taskMilestone(uid, flagValue))
            fields["milestone"] = flag(flagValue);
        if (tasks.taskSummary(uid, flagValue))
            fields["summary"] = flag(flagValue);
        if (tasks.taskEffortDriven(uid, flagValue))
            fields["effort_driven"] = flag(flagValue);
        TVTimeSpan actualWork = 0;
        if (tasks.taskActualWork(uid, actualWork))
            fields["actual_work"] = number(actualWork / kMicrosecondsPerMinute);
        addScheduleFields(tasks, uid, "", fields);
        if (m_project.constraintReader() != nullptr) {
            const KVMSPISingleTaskReader task(uid, tasks);
            std::vector<std::string> links;
            for (const auto& link : task.predecessorLinkReaders()) {
                links.push_back(linkText(link->preTaskUID(), link->relType(), link->lag() / 10.0));
            }
            fields["predecessors"] = joinedLinks(links);
        }
        return fields;
    }

    // The values of the task in baseline `number`, none if it has none there.
    Fields baseline(int32_t uid, int32_t number) const {
        KVMSPIMPPTaskReader& tasks = taskReader();
        Fields fields;
        m_project.setBaselineNumber(number);
        addScheduleFields(tasks, uid, "baseline.", fields);
        m_project.setBaselineNumber(-1);
        return fields;
    }

private:
    KVMSPIMPPTaskReader& taskReader() const {
        return dynamic_cast<KVMSPIMPPTaskReader&>(*m_project.taskReader());
    }

    static void addScheduleFields(KVMSPIMPPTaskReader& tasks, int32_t uid, const std::string& prefix,
                                  Fields& fields) {
        TVDate date;
        if (tasks.taskStart(uid, date))
            fields[prefix + "start"] = initWithDateTime(date);
        if (tasks.taskFinish(uid, date))
            fields[prefix + "finish"] = initWithDateTime(date);
        TVTimeSpan span = 0;
        if (tasks.taskDuration(uid, span))
            fields[prefix + "duration"] = number(span / kMicrosecondsPerMinute);
        if (tasks.taskWork(uid, span))
            fields[prefix + "work"] = number(span / kMicrosecondsPerMinute);
        double cost = 0;
        if (tasks.taskCost(uid, cost))
            fields[prefix + "cost"] = number(cost);
    }

    KVMSPIMPPProjectReader& m_project;
};

// A number of the reference in our two-decimal form, "null" when it has none.
std::string refNumber(const json& object, const char* key) {
    const json value = object.value(key, json());
    return value.is_number() ? number(value.get<double>()) : "null";
}

Fields refTask(const json& task) {
    Fields fields;
    for (const char* key :
         {"id", "name", "outline_level", "parent_uid", "percent_complete", "priority", "constraint_type",
          "constraint_date", "milestone", "summary", "effort_driven", "start", "finish"}) {
        fields[key] = refText(task.value(key, json()));
    }
    fields["actual_work"] = refNumber(task, "actual_work_min");
    fields["duration"] = refNumber(task, "duration_min");
    fields["work"] = refNumber(task, "work_min");
    fields["cost"] = refNumber(task, "cost");
    static const std::map<std::string, int32_t> kLinkTypes = {{"FF", 0}, {"FS", 1}, {"SF", 2}, {"SS", 3}};
    std::vector<std::string> links;
    for (const json& link : task.value("predecessors", json::array())) {
        const auto type = kLinkTypes.find(link.value("type", ""));
        links.push_back(linkText(link["uid"].get<int32_t>(), type != kLinkTypes.end() ? type->second : -1,
                                 link.value("lag_min", 0.0)));
    }
    fields["predecessors"] = joinedLinks(links);
    return fields;
}

Fields refBaseline(const json& baseline) {
    Fields fields;
    for (const char* key : {"start", "finish"}) {
        if (!baseline.value(key, json()).is_null())
            fields[std::string("baseline.") + key] = refText(baseline[key]);
    }
    fields["baseline.duration"] = refNumber(baseline, "duration_min");
    fields["baseline.work"] = refNumber(baseline, "work_min");
    fields["baseline.cost"] = refNumber(baseline, "cost");
    return fields;
}

// The UIDs of the reference's tasks that aren't null tasks, in ascending order.
std::vector<int32_t> refTaskUIDs(const json& ref) {
    std::vector<int32_t> uids;
    for (const json& task : ref["tasks"]) {
        if (!task.value("null", false))
            uids.push_back(task["uid"].get<int32_t>());
    }
    std::sort(uids.begin(), uids.end());
    return uids;
}

std::string joined(const std::vector<int32_t>& uids) {
    std::string text;
    for (int32_t uid : uids)
        text += std::to_string(uid) + " ";
    return text;
}

void compareTasks(const std::string& file, const json& ref, const PlanFields& plan,
                  CorpusDifferences& differences) {
    std::vector<int32_t> ours = plan.taskUIDs();
    std::sort(ours.begin(), ours.end());
    if (ours != refTaskUIDs(ref))
        differences.add(file, "task_uids", "ours=" + joined(ours) + " ref=" + joined(refTaskUIDs(ref)));
    for (const json& task : ref["tasks"]) {
        const int32_t uid = task["uid"].get<int32_t>();
        if (!std::binary_search(ours.begin(), ours.end(), uid))
            continue;
        const std::string where = "task " + std::to_string(uid);
        differences.compare(file, where, plan.task(uid), refTask(task));
        for (int32_t number = 0; number <= 10; ++number) {
            const json baseline = task["baselines"].value(std::to_string(number), json());
            const Fields ourBaseline = plan.baseline(uid, number);
            if (baseline.is_null() && !ourBaseline.empty()) {
                differences.add(file, "baseline.present",
                                where + stringWithFormat(" baseline %d only in ours", number));
            } else if (!baseline.is_null()) {
                differences.compare(file, where + stringWithFormat(" baseline %d", number), ourBaseline,
                                    refBaseline(baseline));
            }
        }
    }
}

TEST(TaskReaderCorpusTest, CorpusProjectAndTasksMatchTheReference) {
    TVMSP_REQUIRE_CORPUS();
    tvSetLogSink([](const std::string&) {});
    CorpusDifferences differences("TaskReaderCorpusTest.manifest");
    int planCount = 0;
    for (const std::filesystem::path& path : testsupport::corpusMppFiles()) {
        const std::string file = path.filename().string();
        const json ref = readReference(path);
        if (ref.is_null())
            continue;
        try {
            OpenPlan open(path);
            if (open.project() == nullptr || open.project()->taskReader() == nullptr)
                continue;
            ++planCount;
            PlanFields plan(*open.project());
            Fields refProject;
            for (const char* key : kProjectKeys)
                refProject[key] = refText(ref["project"].value(key, json()));
            differences.compare(file, "project", plan.project(), refProject);
            compareTasks(file, ref, plan, differences);
        } catch (const TVException& exception) {
            differences.add(file, "open", exception.what());
        }
    }
    tvSetLogSink(nullptr);
    EXPECT_GT(planCount, testsupport::corpusShare(300));
    const std::string report = differences.report();
    EXPECT_TRUE(report.empty()) << report;
}

// The fields that every format holds alike, of each task of a plan: milestones and costs exist only
// in some formats, dates of manually scheduled tasks differ by format, and whether a new task is
// effort driven is the saving application's default.
std::map<int32_t, Fields> portableTaskFields(const PlanFields& plan) {
    std::map<int32_t, Fields> tasks;
    for (int32_t uid : plan.taskUIDs()) {
        Fields fields = plan.task(uid);
        for (const char* key : {"milestone", "cost", "start", "finish", "constraint_date", "effort_driven"})
            fields.erase(key);
        // The plan's summary task carries the file's title.
        if (uid == 0)
            fields.erase("name");
        tasks[uid] = fields;
    }
    return tasks;
}

TEST(TaskReaderCorpusTest, CorpusCopiesOfOnePlanReadTheSameInEveryVersion) {
    TVMSP_REQUIRE_CORPUS();
    tvSetLogSink([](const std::string&) {});
    CorpusDifferences differences("TaskReaderCorpusCopiesTest.manifest");
    const std::regex copyName("^generated__([^_]+)__.*-mpp(9|12|14)\\.mpp$");
    std::map<std::string, std::pair<std::string, std::map<int32_t, Fields>>> firstCopies;
    int comparedCopies = 0;
    for (const std::filesystem::path& path : testsupport::corpusMppFiles()) {
        const std::string file = path.filename().string();
        std::smatch match;
        if (!std::regex_match(file, match, copyName))
            continue;
        try {
            OpenPlan open(path);
            if (open.project() == nullptr || open.project()->taskReader() == nullptr)
                continue;
            std::map<int32_t, Fields> tasks = portableTaskFields(PlanFields(*open.project()));
            const auto [first, inserted] = firstCopies.try_emplace(match[1].str(), file, tasks);
            if (inserted)
                continue;
            ++comparedCopies;
            for (const auto& [uid, fields] : first->second.second) {
                const auto found = tasks.find(uid);
                differences.compare(file, "copy of " + first->second.first + " task " + std::to_string(uid),
                                    found != tasks.end() ? found->second : Fields{}, fields);
            }
        } catch (const TVException& exception) {
            differences.add(file, "open", exception.what());
        }
    }
    tvSetLogSink(nullptr);
    EXPECT_GT(comparedCopies, testsupport::corpusShare(100));
    const std::string report = differences.report();
    EXPECT_TRUE(report.empty()) << report;
}

} // namespace
