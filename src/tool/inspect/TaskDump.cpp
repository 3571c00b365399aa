#include "tool/inspect/TaskDump.h"

#include "MPPImporter/readers/KVMSPIMPPAbsConstraintReader.h"
#include "MPPImporter/readers/KVMSPIMPPAbsTaskReader.h"
#include "MPPImporter/readers/KVMSPISinglePredecessorLinkReader.h"
#include "tool/inspect/CustomFieldDump.h"
#include "tool/inspect/ReaderFieldDump.h"

#include <string>

namespace {

using R = KVMSPIMPPAbsTaskReader;

constexpr int32_t kFlagCount = 20;
constexpr int32_t kBaselineCount = 11;

void addFields(R& reader, int32_t uid, nlohmann::ordered_json& task) {
    ReaderFieldDump<R, int32_t>(reader, task, uid)
        .field("taskUID", &R::taskUID)
        .field("taskID", &R::taskID)
        .field("taskName", &R::taskName)
        .field("taskIsNull", &R::taskIsNull)
        .field("taskSummary", &R::taskSummary)
        .field("taskOutlineLevel", &R::taskOutlineLevel)
        .field("taskParentUID", &R::taskParentUID)
        .field("taskType", &R::taskType)
        .field("taskPriority", &R::taskPriority)
        .field("taskStart", &R::taskStart)
        .field("taskFinish", &R::taskFinish)
        .field("taskDuration", &R::taskDuration)
        .field("taskWork", &R::taskWork)
        .field("taskCost", &R::taskCost)
        .field("taskTotalCost", &R::taskTotalCost)
        .field("taskActualCost", &R::taskActualCost)
        .field("taskRemainingCost", &R::taskRemainingCost)
        .field("taskFixedCost", &R::taskFixedCost)
        .field("taskFixedCostAccrual", &R::taskFixedCostAccrual)
        .field("taskActualWork", &R::taskActualWork)
        .field("taskRemainingWork", &R::taskRemainingWork)
        .field("taskPercentComplete", &R::taskPercentComplete)
        .field("taskPercentWorkComplete", &R::taskPercentWorkComplete)
        .field("taskConstraintType", &R::taskConstraintType)
        .field("taskConstraintDate", &R::taskConstraintDate)
        .field("taskEarlyStart", &R::taskEarlyStart)
        .field("taskEarlyFinish", &R::taskEarlyFinish)
        .field("taskLateStart", &R::taskLateStart)
        .field("taskLateFinish", &R::taskLateFinish)
        .field("taskActualStart", &R::taskActualStart)
        .field("taskActualFinish", &R::taskActualFinish)
        .field("taskScheduledStart", &R::taskScheduledStart)
        .field("taskScheduledFinish", &R::taskScheduledFinish)
        .field("taskManualStart", &R::taskManualStart)
        .field("taskManualFinish", &R::taskManualFinish)
        .field("taskPreLeveledStart", &R::taskPreLeveledStart)
        .field("taskPreLeveledFinish", &R::taskPreLeveledFinish)
        .field("taskPinnedStart", &R::taskPinnedStart)
        .field("taskPinnedFinish", &R::taskPinnedFinish)
        .field("taskPinnedDuration", &R::taskPinnedDuration)
        .field("taskEstimated", &R::taskEstimated)
        .field("taskEffortDriven", &R::taskEffortDriven)
        .field("taskMilestone", &R::taskMilestone)
        .field("taskExpanded", &R::taskExpanded)
        .field("taskManual", &R::taskManual)
        .field("taskHammock", &R::taskHammock)
        .field("taskPreHammock", &R::taskPreHammock)
        .field("taskPostHammock", &R::taskPostHammock)
        .field("taskOleLink", &R::taskOleLink)
        .field("taskOleLinkMeta", &R::taskOleLinkMeta)
        .field("taskNotes", &R::taskNotes);
}

nlohmann::ordered_json predecessors(const KVMSPIMPPAbsConstraintReader* constraints, int32_t uid) {
    nlohmann::ordered_json links = nlohmann::ordered_json::array();
    if (!constraints) {
        return links;
    }
    const auto found = constraints->taskPredcessorMap().find(uid);
    if (found == constraints->taskPredcessorMap().end()) {
        return links;
    }
    for (const auto& link : found->second) {
        links.push_back({{"preTaskUID", link->preTaskUID()},
                         {"relType", link->relType()},
                         {"lag", link->lag()},
                         {"lagFormat", link->lagFormat()}});
    }
    return links;
}

} // namespace

nlohmann::ordered_json TaskDump::of(R& reader, const KVMSPIMPPAbsConstraintReader* constraints) {
    nlohmann::ordered_json tasks = nlohmann::ordered_json::array();
    for (int32_t uid : reader.uniqueIDs()) {
        tasks.push_back(dumpObject(uid, [&](nlohmann::ordered_json& task) {
            addFields(reader, uid, task);
            task["taskFlag"] = numberedFlags(1, kFlagCount, [&](int32_t flag, bool& value) {
                return reader.taskFlag(flag, uid, value, nullptr);
            });
            task["hasBaseline"] = numberedFlags(0, kBaselineCount - 1, [&](int32_t index, bool& value) {
                return reader.hasBaseline(uid, index, value, nullptr);
            });
            task["taskCustomFields"] = CustomFieldDump::of(
                [&](auto& fields) { return reader.taskCustomFields(uid, fields, nullptr); });
            task["predecessors"] = predecessors(constraints, uid);
        }));
    }
    return tasks;
}
