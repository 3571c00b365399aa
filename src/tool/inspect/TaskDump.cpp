#include "tool/inspect/TaskDump.h"

#include "MPPImporter/format/MPPFormatConstants.h"
#include "MPPImporter/readers/KVMSPIMPPAbsConstraintReader.h"
#include "MPPImporter/readers/KVMSPIMPPAbsTaskReader.h"
#include "MPPImporter/readers/KVMSPIMPPTaskReader.h"
#include "MPPImporter/readers/KVMSPISinglePredecessorLinkReader.h"
#include "MPPImporter/readers/KVMSPISingleTaskBaselineReader.h"
#include "tool/inspect/CustomFieldDump.h"
#include "tool/inspect/DumpValue.h"
#include "tool/inspect/ReaderFieldDump.h"

#include <string>

namespace {

using TaskReader = KVMSPIMPPAbsTaskReader;

constexpr int32_t kFlagCount = 20;

void addTaskFields(TaskReader& reader, int32_t uid, nlohmann::ordered_json& task) {
    ReaderFieldDump<TaskReader, int32_t>(reader, task, uid)
        .field("taskUID", &TaskReader::taskUID)
        .field("taskID", &TaskReader::taskID)
        .field("taskName", &TaskReader::taskName)
        .field("taskIsNull", &TaskReader::taskIsNull)
        .field("taskSummary", &TaskReader::taskSummary)
        .field("taskOutlineLevel", &TaskReader::taskOutlineLevel)
        .field("taskParentUID", &TaskReader::taskParentUID)
        .field("taskType", &TaskReader::taskType)
        .field("taskPriority", &TaskReader::taskPriority)
        .field("taskStart", &TaskReader::taskStart)
        .field("taskFinish", &TaskReader::taskFinish)
        .field("taskDuration", &TaskReader::taskDuration)
        .field("taskWork", &TaskReader::taskWork)
        .field("taskCost", &TaskReader::taskCost)
        .field("taskTotalCost", &TaskReader::taskTotalCost)
        .field("taskActualCost", &TaskReader::taskActualCost)
        .field("taskRemainingCost", &TaskReader::taskRemainingCost)
        .field("taskFixedCost", &TaskReader::taskFixedCost)
        .field("taskFixedCostAccrual", &TaskReader::taskFixedCostAccrual)
        .field("taskActualWork", &TaskReader::taskActualWork)
        .field("taskRemainingWork", &TaskReader::taskRemainingWork)
        .field("taskPercentComplete", &TaskReader::taskPercentComplete)
        .field("taskPercentWorkComplete", &TaskReader::taskPercentWorkComplete)
        .field("taskConstraintType", &TaskReader::taskConstraintType)
        .field("taskConstraintDate", &TaskReader::taskConstraintDate)
        .field("taskEarlyStart", &TaskReader::taskEarlyStart)
        .field("taskEarlyFinish", &TaskReader::taskEarlyFinish)
        .field("taskLateStart", &TaskReader::taskLateStart)
        .field("taskLateFinish", &TaskReader::taskLateFinish)
        .field("taskActualStart", &TaskReader::taskActualStart)
        .field("taskActualFinish", &TaskReader::taskActualFinish)
        .field("taskScheduledStart", &TaskReader::taskScheduledStart)
        .field("taskScheduledFinish", &TaskReader::taskScheduledFinish)
        .field("taskManualStart", &TaskReader::taskManualStart)
        .field("taskManualFinish", &TaskReader::taskManualFinish)
        .field("taskPreLeveledStart", &TaskReader::taskPreLeveledStart)
        .field("taskPreLeveledFinish", &TaskReader::taskPreLeveledFinish)
        .field("taskPinnedStart", &TaskReader::taskPinnedStart)
        .field("taskPinnedFinish", &TaskReader::taskPinnedFinish)
        .field("taskPinnedDuration", &TaskReader::taskPinnedDuration)
        .field("taskEstimated", &TaskReader::taskEstimated)
        .field("taskEffortDriven", &TaskReader::taskEffortDriven)
        .field("taskMilestone", &TaskReader::taskMilestone)
        .field("taskExpanded", &TaskReader::taskExpanded)
        .field("taskManual", &TaskReader::taskManual)
        .field("taskHammock", &TaskReader::taskHammock)
        .field("taskPreHammock", &TaskReader::taskPreHammock)
        .field("taskPostHammock", &TaskReader::taskPostHammock)
        .field("taskOleLink", &TaskReader::taskOleLink)
        .field("taskOleLinkMeta", &TaskReader::taskOleLinkMeta)
        .field("taskNotes", &TaskReader::taskNotes);
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

// The task's values in each baseline that holds it, in the file's units: duration in tenths and work
// in thousandths of a minute as time spans, cost in hundredths.
nlohmann::ordered_json taskBaselines(const KVMSPIMPPTaskReader* reader, int32_t uid) {
    nlohmann::ordered_json list = nlohmann::ordered_json::object();
    for (int32_t number = 0; reader != nullptr && number < kMPPBaselineCount; ++number) {
        const auto& readers = reader->readersForBaseline(number);
        const auto found = readers.find(uid);
        if (found == readers.end()) {
            continue;
        }
        const KVMSPISingleTaskBaselineReader& baseline = *found->second;
        nlohmann::ordered_json values = nlohmann::ordered_json::object();
        if (baseline.hasStart()) {
            values["start"] = DumpValue::of(baseline.taskStart());
        }
        if (baseline.hasFinish()) {
            values["finish"] = DumpValue::of(baseline.taskFinish());
        }
        if (baseline.hasDuration()) {
            values["duration"] = DumpValue::ofSeconds(baseline.taskDuration() * 6.0);
        }
        if (baseline.hasWork()) {
            values["work"] = DumpValue::ofSeconds(baseline.taskWork() * 0.06);
        }
        if (baseline.hasCost()) {
            values["cost"] = baseline.taskCost();
        }
        list[std::to_string(number)] = values;
    }
    return list;
}

} // namespace

nlohmann::ordered_json TaskDump::of(TaskReader& reader, const KVMSPIMPPAbsConstraintReader* constraints) {
    nlohmann::ordered_json tasks = nlohmann::ordered_json::array();
    const auto* baselines = dynamic_cast<const KVMSPIMPPTaskReader*>(&reader);
    for (int32_t uid : reader.uniqueIDs()) {
        tasks.push_back(dumpObject(uid, [&](nlohmann::ordered_json& task) {
            addTaskFields(reader, uid, task);
            task["taskFlag"] = numberedFlags(1, kFlagCount, [&](int32_t flag, bool& value) {
                return reader.taskFlag(flag, uid, value, nullptr);
            });
            task["hasBaseline"] = numberedFlags(0, kMPPBaselineCount - 1, [&](int32_t index, bool& value) {
                return reader.hasBaseline(uid, index, value, nullptr);
            });
            task["taskBaselines"] = taskBaselines(baselines, uid);
            task["taskCustomFields"] = CustomFieldDump::of(
                [&](auto& fields) { return reader.taskCustomFields(uid, fields, nullptr); });
            task["predecessors"] = predecessors(constraints, uid);
        }));
    }
    return tasks;
}
