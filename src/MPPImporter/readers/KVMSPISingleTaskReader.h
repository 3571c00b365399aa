#pragma once

#include "MPPImporter/readers/KVMSPIMPPAbsConstraintReader.h"
#include "MPPImporter/readers/KVMSPIMPPTaskReader.h"
#include "MPPImporter/readers/KVMSPISingleObjectReaderBase.h"

#include <memory>
#include <vector>

// One task of the task reader: it holds the task's UID and its links to its predecessors, and
// answers the task reader's field operations for that UID.
class KVMSPISingleTaskReader : public KVMSPISingleObjectReaderBase {
public:
    using PredecessorLinks = std::vector<std::shared_ptr<KVMSPISinglePredecessorLinkReader>>;

    // The UID must be valid ("... (may be deleted task)." otherwise), and the task reader must stand
    // under a project reader that has a constraint reader.
    KVMSPISingleTaskReader(int32_t uid, KVMSPIMPPTaskReader& reader);
    // A reader to test a query's filter on: a task reader is light, so the same as the full one.
    static std::unique_ptr<KVMSPISingleTaskReader> initForFilterWithTaskUID(int32_t uid,
                                                                            KVMSPIMPPTaskReader& reader);

    const PredecessorLinks& predecessorLinkReaders() const { return m_predecessorLinkReaders; }

    bool taskUID(int32_t& value, TVError* error = nullptr) const;
    // The row number; false when the task reader doesn't know it.
    bool taskID(int32_t& value, TVError* error = nullptr) const;

    bool taskTotalCost(double& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskTotalCost, value, error);
    }
    bool taskActualCost(double& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskActualCost, value, error);
    }
    bool taskRemainingCost(double& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskRemainingCost, value, error);
    }
    bool taskActualWork(TVTimeSpan& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskActualWork, value, error);
    }
    bool taskRemainingWork(TVTimeSpan& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskRemainingWork, value, error);
    }
    bool taskConstraintDate(TVDate& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskConstraintDate, value, error);
    }
    bool taskConstraintType(int16_t& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskConstraintType, value, error);
    }
    bool taskEarlyFinish(TVDate& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskEarlyFinish, value, error);
    }
    bool taskEarlyStart(TVDate& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskEarlyStart, value, error);
    }
    bool taskLateStart(TVDate& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskLateStart, value, error);
    }
    bool taskLateFinish(TVDate& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskLateFinish, value, error);
    }
    bool taskActualStart(TVDate& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskActualStart, value, error);
    }
    bool taskActualFinish(TVDate& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskActualFinish, value, error);
    }
    bool taskScheduledStart(TVDate& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskScheduledStart, value, error);
    }
    bool taskScheduledFinish(TVDate& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskScheduledFinish, value, error);
    }
    bool taskEstimated(bool& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskEstimated, value, error);
    }
    bool taskFixedCost(double& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskFixedCost, value, error);
    }
    bool taskFixedCostAccrual(int16_t& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskFixedCostAccrual, value, error);
    }
    bool taskOleLink(uint8_t& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskOleLink, value, error);
    }
    bool taskOutlineLevel(int16_t& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskOutlineLevel, value, error);
    }
    bool taskParentUID(int32_t& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskParentUID, value, error);
    }
    bool taskPercentComplete(int16_t& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskPercentComplete, value, error);
    }
    bool taskPercentWorkComplete(int16_t& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskPercentWorkComplete, value, error);
    }
    bool taskPriority(int16_t& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskPriority, value, error);
    }
    bool taskType(int16_t& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskType, value, error);
    }
    bool taskManualStart(TVDate& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskManualStart, value, error);
    }
    bool taskManualFinish(TVDate& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskManualFinish, value, error);
    }
    bool taskName(std::string& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskName, value, error);
    }
    bool taskNotes(std::string& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskNotes, value, error);
    }
    bool taskPinnedDuration(std::string& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskPinnedDuration, value, error);
    }
    bool taskPinnedFinish(std::string& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskPinnedFinish, value, error);
    }
    bool taskPinnedStart(std::string& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskPinnedStart, value, error);
    }
    bool taskPreLeveledFinish(TVDate& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskPreLeveledFinish, value, error);
    }
    bool taskPreLeveledStart(TVDate& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskPreLeveledStart, value, error);
    }
    bool taskCost(double& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskCost, value, error);
    }
    bool taskDuration(TVTimeSpan& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskDuration, value, error);
    }
    bool taskStart(TVDate& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskStart, value, error);
    }
    bool taskFinish(TVDate& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskFinish, value, error);
    }
    bool taskWork(TVTimeSpan& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskWork, value, error);
    }
    bool taskEffortDriven(bool& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskEffortDriven, value, error);
    }
    bool taskMilestone(bool& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskMilestone, value, error);
    }
    bool taskExpanded(bool& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskExpanded, value, error);
    }
    bool taskFlag(int32_t flagNumber, bool& value, TVError* error = nullptr) const {
        return m_taskReader.taskFlag(flagNumber, uid(), value, error);
    }
    bool taskOleLinkMeta(uint8_t& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskOleLinkMeta, value, error);
    }
    bool taskHammock(bool& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskHammock, value, error);
    }
    bool taskPreHammock(bool& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskPreHammock, value, error);
    }
    bool taskPostHammock(bool& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskPostHammock, value, error);
    }
    bool taskManual(bool& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskManual, value, error);
    }
    bool hasBaseline(int32_t index, bool& value, TVError* error = nullptr) const {
        return m_taskReader.hasBaseline(uid(), index, value, error);
    }
    bool taskIsNull(bool& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskIsNull, value, error);
    }
    bool taskSummary(bool& value, TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskSummary, value, error);
    }
    bool taskCustomFields(std::vector<std::unique_ptr<KVMSPISingleExtendedAttribute>>& value,
                          TVError* error = nullptr) const {
        return forward(&KVMSPIMPPAbsTaskReader::taskCustomFields, value, error);
    }

protected:
    std::unique_ptr<KVMSPIXQAdapter> newXQAdapter() override;

private:
    template <typename Value>
    bool forward(bool (KVMSPIMPPAbsTaskReader::*operation)(int32_t, Value&, TVError*), Value& value,
                 TVError* error) const {
        return (m_taskReader.*operation)(uid(), value, error);
    }

    KVMSPIMPPTaskReader& m_taskReader;
    PredecessorLinks m_predecessorLinkReaders;
};
