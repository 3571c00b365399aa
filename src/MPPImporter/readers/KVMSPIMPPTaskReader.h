#pragma once

#include "MPPImporter/file/KVMSPIMPPDataDirectoryReader.h"
#include "MPPImporter/format/MPPFormatConstants.h"
#include "MPPImporter/readers/KVMSPIMPPAbsTaskReader.h"
#include "MPPImporter/readers/MPPObjectFieldReads.h"

#include <array>
#include <map>
#include <memory>
#include <optional>
#include <unordered_map>
#include <unordered_set>

class KVMSPISingleTaskBaselineReader;

// The tasks of the "TBkndTask" storage, answered field by field by UID. At open it sorts the UIDs by
// task ID, reads each task's copy of every baseline, and builds the map from each task to its parent: from
// the parent field, or in format 9, which has none, from the outline levels in row order (a corrupted outline
// there is an assertion failure).
class KVMSPIMPPTaskReader : public KVMSPIMPPDataDirectoryReader, public KVMSPIMPPAbsTaskReader {
public:
    using BaselineReaders = std::map<int32_t, std::unique_ptr<KVMSPISingleTaskBaselineReader>>;

    KVMSPIMPPTaskReader(std::unique_ptr<SSLStorage> directory, std::string name,
                        KVMSPIParentReader* parentReader);
    ~KVMSPIMPPTaskReader() override;

    int32_t baselineNumber() const override { return m_baselineNumber; }
    void setBaselineNumber(int32_t baselineNumber) override { m_baselineNumber = baselineNumber; }
    // The baseline readers of the tasks that hold data in baseline `baselineNumber`; a number outside
    // 0 to 10 is an assertion failure.
    const BaselineReaders& readersForBaseline(int32_t baselineNumber) const;
    const std::unordered_map<int32_t, int32_t>& parentTaskMap() const { return m_parentTaskMap; }

    // The layout the tasks are read by: the file's list, or the task layout that the application put
    // into a file of an older format (KVMSPIClassFactory::taskLayout).
    const KVMSPIMPPPropertyList& MPPPropertyList() const override { return m_layout; }

    const std::vector<int32_t>& uniqueIDs() const override { return m_uniqueIDs; }
    bool isValidUID(int32_t uid) const override;
    int64_t objectIDforUniqueID(int32_t uid) const override;
    const MPPObjectFieldReads& fieldReads() const { return m_reads; }

    // Logs the dates of every task in every baseline.
    void dbgPrint();

    bool taskTotalCost(int32_t uid, double& value, TVError* error = nullptr) override;
    bool taskActualCost(int32_t uid, double& value, TVError* error = nullptr) override;
    bool taskRemainingCost(int32_t uid, double& value, TVError* error = nullptr) override;
    bool taskActualWork(int32_t uid, TVTimeSpan& value, TVError* error = nullptr) override;
    bool taskRemainingWork(int32_t uid, TVTimeSpan& value, TVError* error = nullptr) override;
    bool taskConstraintDate(int32_t uid, TVDate& value, TVError* error = nullptr) override;
    bool taskConstraintType(int32_t uid, int16_t& value, TVError* error = nullptr) override;
    bool taskEarlyFinish(int32_t uid, TVDate& value, TVError* error = nullptr) override;
    bool taskEarlyStart(int32_t uid, TVDate& value, TVError* error = nullptr) override;
    bool taskLateStart(int32_t uid, TVDate& value, TVError* error = nullptr) override;
    bool taskLateFinish(int32_t uid, TVDate& value, TVError* error = nullptr) override;
    bool taskActualStart(int32_t uid, TVDate& value, TVError* error = nullptr) override;
    bool taskActualFinish(int32_t uid, TVDate& value, TVError* error = nullptr) override;
    bool taskScheduledStart(int32_t uid, TVDate& value, TVError* error = nullptr) override;
    bool taskScheduledFinish(int32_t uid, TVDate& value, TVError* error = nullptr) override;
    bool taskEstimated(int32_t uid, bool& value, TVError* error = nullptr) override;
    bool taskFixedCost(int32_t uid, double& value, TVError* error = nullptr) override;
    bool taskFixedCostAccrual(int32_t uid, int16_t& value, TVError* error = nullptr) override;
    bool taskID(int32_t uid, int32_t& value, TVError* error = nullptr) override;
    bool taskOleLink(int32_t uid, uint8_t& value, TVError* error = nullptr) override;
    bool taskOutlineLevel(int32_t uid, int16_t& value, TVError* error = nullptr) override;
    bool taskParentUID(int32_t uid, int32_t& value, TVError* error = nullptr) override;
    bool taskPercentComplete(int32_t uid, int16_t& value, TVError* error = nullptr) override;
    bool taskPercentWorkComplete(int32_t uid, int16_t& value, TVError* error = nullptr) override;
    bool taskPriority(int32_t uid, int16_t& value, TVError* error = nullptr) override;
    bool taskType(int32_t uid, int16_t& value, TVError* error = nullptr) override;
    bool taskManualStart(int32_t uid, TVDate& value, TVError* error = nullptr) override;
    bool taskManualFinish(int32_t uid, TVDate& value, TVError* error = nullptr) override;

    bool taskName(int32_t uid, std::string& value, TVError* error = nullptr) override;
    bool taskNotes(int32_t uid, std::string& value, TVError* error = nullptr) override;
    bool taskPinnedDuration(int32_t uid, std::string& value, TVError* error = nullptr) override;
    bool taskPinnedFinish(int32_t uid, std::string& value, TVError* error = nullptr) override;
    bool taskPinnedStart(int32_t uid, std::string& value, TVError* error = nullptr) override;
    bool taskPreLeveledFinish(int32_t uid, TVDate& value, TVError* error = nullptr) override;
    bool taskPreLeveledStart(int32_t uid, TVDate& value, TVError* error = nullptr) override;

    bool taskCost(int32_t uid, double& value, TVError* error = nullptr) override;
    bool taskDuration(int32_t uid, TVTimeSpan& value, TVError* error = nullptr) override;
    bool taskStart(int32_t uid, TVDate& value, TVError* error = nullptr) override;
    bool taskFinish(int32_t uid, TVDate& value, TVError* error = nullptr) override;
    bool taskWork(int32_t uid, TVTimeSpan& value, TVError* error = nullptr) override;

    bool taskEffortDriven(int32_t uid, bool& value, TVError* error = nullptr) override;
    bool taskMilestone(int32_t uid, bool& value, TVError* error = nullptr) override;
    bool taskExpanded(int32_t uid, bool& value, TVError* error = nullptr) override;
    bool taskFlag(int32_t flagNumber, int32_t uid, bool& value, TVError* error = nullptr) override;
    bool taskOleLinkMeta(int32_t uid, uint8_t& value, TVError* error = nullptr) override;
    bool taskHammock(int32_t uid, bool& value, TVError* error = nullptr) override;
    bool taskPreHammock(int32_t uid, bool& value, TVError* error = nullptr) override;
    bool taskPostHammock(int32_t uid, bool& value, TVError* error = nullptr) override;
    bool taskManual(int32_t uid, bool& value, TVError* error = nullptr) override;
    bool hasBaseline(int32_t uid, int32_t index, bool& value, TVError* error = nullptr) override;

    bool taskIsNull(int32_t uid, bool& value, TVError* error = nullptr) override;
    bool taskSummary(int32_t uid, bool& value, TVError* error = nullptr) override;
    bool taskUID(int32_t uid, int32_t& value, TVError* error = nullptr) override;
    bool taskCustomFields(int32_t uid, std::vector<std::unique_ptr<KVMSPISingleExtendedAttribute>>& value,
                          TVError* error = nullptr) override;

private:
    // The baseline reader of the task in the selected baseline, if it has data there.
    const KVMSPISingleTaskBaselineReader* selectedBaseline(int32_t uid) const;

    void sortUniqueIDsByTaskID();
    void readBaselines();
    void buildParentTaskMap();
    void buildParentTaskMapFromOutline();

    const KVMSPIMPPPropertyList& m_layout;
    MPPObjectFieldReads m_reads;
    std::vector<int32_t> m_uniqueIDs;
    int32_t m_baselineNumber = -1;
    std::array<BaselineReaders, kMPPBaselineCount> m_baselineReaders;
    std::unordered_map<int32_t, int32_t> m_parentTaskMap;
    std::unordered_set<int32_t> m_summaryTaskUIDs;
};
