#include "MPPImporter/query/adapters/KVMSPIXQTaskAdapter.h"

#include "MPPCommon/date/DateExtensions.h"
#include "MPPCommon/date/StringExtensions.h"
#include "MPPImporter/query/frame/KVMSPIXQValue.h"
#include "MPPImporter/readers/KVMSPISingleExtendedAttribute.h"
#include "MPPImporter/readers/KVMSPISinglePredecessorLinkReader.h"

namespace {

using Task = KVMSPISingleTaskReader;
using Adapter = KVMSPIXQLeafAdapter<Task>;

// A text field that the file holds empty has nothing to give, so it answers none.
std::optional<std::string> nonEmptyText(const std::string& text) {
    return text.empty() ? std::nullopt : std::optional<std::string>(text);
}

Adapter::Leaf<std::optional<std::string>> textFieldLeaf(Adapter::Operation<std::string> operation) {
    return Adapter::stringLeaf(operation, nonEmptyText);
}

// A task is pinned when the file holds any of its pinned texts.
bool isPinned(const Task& task, TVError* error) {
    for (const Adapter::Operation<std::string> operation :
         {&Task::taskPinnedStart, &Task::taskPinnedFinish, &Task::taskPinnedDuration}) {
        std::string text;
        if ((task.*operation)(text, error) && !text.empty()) {
            return true;
        }
    }
    return false;
}

} // namespace

KVMSPIXQTaskAdapter::KVMSPIXQTaskAdapter(KVMSPIXQResponder& reader)
    : KVMSPIXQLeafAdapter(reader, "MSPIXQTaskAdapter: Incorrect reader %s.", taskLeaves()) {}

std::shared_ptr<KVMSPIXQuery> KVMSPIXQTaskAdapter::singleObjectForXQuery(const std::string& xquery,
                                                                         TVError* error) {
    if (xquery == "PreLeveledStart" || xquery == "PreLeveledFinish") {
        std::optional<std::string> date = stringValueForXQuery(xquery, error);
        return date ? std::make_shared<KVMSPIXQValue>(std::move(*date)) : nullptr;
    }
    return KVMSPIXQLeafAdapter::singleObjectForXQuery(xquery, error);
}

const KVMSPIXQTaskAdapter::Leaves& KVMSPIXQTaskAdapter::taskLeaves() {
    static const Leaves leaves{
        .strings =
            {
                {"Name", stringLeaf(&Task::taskName)},
                {"Notes", stringLeaf(&Task::taskNotes)},
                {"ManualDuration", textFieldLeaf(&Task::taskPinnedDuration)},
                {"PinnedDuration", textFieldLeaf(&Task::taskPinnedDuration)},
                {"ManualFinish", textFieldLeaf(&Task::taskPinnedFinish)},
                {"PinnedFinish", textFieldLeaf(&Task::taskPinnedFinish)},
                {"ManualStart", textFieldLeaf(&Task::taskPinnedStart)},
                {"PinnedStart", textFieldLeaf(&Task::taskPinnedStart)},
                {"ManualTaskStart", stringLeaf(&Task::taskManualStart, initWithDateTime)},
                {"ManualTaskFinish", stringLeaf(&Task::taskManualFinish, initWithDateTime)},
                {"ConstraintDate", stringLeaf(&Task::taskConstraintDate, initWithDateTime)},
                {"EarlyFinish", stringLeaf(&Task::taskEarlyFinish, initWithDateTime)},
                {"EarlyStart", stringLeaf(&Task::taskEarlyStart, initWithDateTime)},
                {"Finish", stringLeaf(&Task::taskFinish, initWithDateTime)},
                {"LateFinish", stringLeaf(&Task::taskLateFinish, initWithDateTime)},
                {"LateStart", stringLeaf(&Task::taskLateStart, initWithDateTime)},
                {"PreLeveledFinish", stringLeaf(&Task::taskPreLeveledFinish, initWithDateTime)},
                {"PreLeveledStart", stringLeaf(&Task::taskPreLeveledStart, initWithDateTime)},
                {"ActualFinish", stringLeaf(&Task::taskActualFinish, initWithDateTime)},
                {"ActualStart", stringLeaf(&Task::taskActualStart, initWithDateTime)},
                {"ScheduledFinish", stringLeaf(&Task::taskScheduledFinish, initWithDateTime)},
                {"ScheduledStart", stringLeaf(&Task::taskScheduledStart, initWithDateTime)},
                {"Start", stringLeaf(&Task::taskStart, initWithDateTime)},
                {"Duration", stringLeaf(&Task::taskDuration, initWithDurationTimeSpan)},
                {"Work", stringLeaf(&Task::taskWork, initWithDurationTimeSpan)},
                {"ActualWork", stringLeaf(&Task::taskActualWork, initWithDurationTimeSpan)},
                {"RemainingWork", stringLeaf(&Task::taskRemainingWork, initWithDurationTimeSpan)},
                {"ID", stringLeaf(&Task::taskID, decimalText)},
                {"PercentComplete", stringLeaf(&Task::taskPercentComplete, decimalText)},
                {"PercentWorkComplete", stringLeaf(&Task::taskPercentWorkComplete, decimalText)},
                {"Priority", stringLeaf(&Task::taskPriority, decimalText)},
                {"UID", stringLeaf(&Task::taskUID, decimalText)},
            },
        .integers =
            {
                {"ConstraintType", integerLeaf(&Task::taskConstraintType)},
                {"OutlineLevel", integerLeaf(&Task::taskOutlineLevel)},
                {"PercentComplete", integerLeaf(&Task::taskPercentComplete)},
                {"PercentWorkComplete", integerLeaf(&Task::taskPercentWorkComplete)},
                {"Priority", integerLeaf(&Task::taskPriority)},
                {"Type", integerLeaf(&Task::taskType)},
                {"UID", integerLeaf(&Task::taskUID)},
                {"FixedCostAccrual", integerLeaf(&Task::taskFixedCostAccrual)},
            },
        .doubles =
            {
                {"FixedCost", doubleLeaf(&Task::taskFixedCost)},
                {"Cost", doubleLeaf(&Task::taskCost)},
                {"TotalCost", doubleLeaf(&Task::taskTotalCost)},
                {"ActualCost", doubleLeaf(&Task::taskActualCost)},
                {"RemainingCost", doubleLeaf(&Task::taskRemainingCost)},
                {"PercentComplete", doubleLeaf(&Task::taskPercentComplete)},
                {"PercentWorkComplete", doubleLeaf(&Task::taskPercentWorkComplete)},
            },
        .booleans =
            {
                {"IsNull", booleanLeaf(&Task::taskIsNull)},
                {"Manual", booleanLeaf(&Task::taskManual)},
                {"Summary", booleanLeaf(&Task::taskSummary)},
                {"Estimated", booleanLeaf(&Task::taskEstimated)},
                {"EffortDriven", booleanLeaf(&Task::taskEffortDriven)},
                {"Milestone", booleanLeaf(&Task::taskMilestone)},
                {"Hammock", booleanLeaf(&Task::taskHammock)},
                {"PreHammock", booleanLeaf(&Task::taskPreHammock)},
                {"PostHammock", booleanLeaf(&Task::taskPostHammock)},
                {"Pinned", isPinned},
            },
        .collections =
            {
                {"PredecessorLink", collectionLeaf(&Task::predecessorLinkReaders)},
                {"ExtendedAttribute", collectionLeaf(&Task::taskCustomFields)},
            },
    };
    return leaves;
}
