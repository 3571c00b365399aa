#include "MPPImporter/readers/KVMSPIMPPTaskReader.h"

#include "MPPCommon/date/DateExtensions.h"
#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/file/KVMPPFixedDataReader.h"
#include "MPPImporter/file/KVMSPIClassFactory.h"
#include "MPPImporter/file/KVMSPIMPPPropertyList.h"
#include "MPPImporter/format/MPPFormatConstants.h"
#include "MPPImporter/format/MPPTaskPropertyKeys.h"
#include "MPPImporter/format/MPPValueCodecs.h"
#include "MPPImporter/readers/KVMSPIMPPAbsProjectReader.h"
#include "MPPImporter/readers/KVMSPIMPPTaskCustomFieldReader.h"
#include "MPPImporter/readers/KVMSPISingleExtendedAttribute.h"
#include "MPPImporter/readers/KVMSPISingleTaskBaselineReader.h"

#include <algorithm>

namespace {

constexpr int32_t kNoTask = -1;
constexpr uint8_t kHammockMark = 231;
constexpr uint8_t kSplitHammockMark = 243;
constexpr uint8_t kPreHammockMark = 191;
constexpr uint8_t kPostHammockMark = 255;

// The file's list is asked of the store's base, as the task layout isn't chosen yet.
const KVMSPIMPPPropertyList& taskLayout(const KVMSPIMPPDataDirectoryReader& store) {
    const KVMSPIMPPPropertyList& fileList = store.KVMSPIMPPDataDirectoryReader::MPPPropertyList();
    MPPDataItemInfo summary;
    if (store.fixedDataReader() == nullptr || !store.fixedDataReader()->dataItemInfo(&summary, 0)) {
        return fileList;
    }
    return KVMSPIClassFactory::taskLayout(fileList, store.appVersion(), summary.dataSize);
}

} // namespace

KVMSPIMPPTaskReader::KVMSPIMPPTaskReader(std::unique_ptr<SSLStorage> directory, std::string name,
                                         KVMSPIParentReader* parentReader)
    : KVMSPIMPPDataDirectoryReader(std::move(directory), std::move(name), parentReader),
      m_layout(taskLayout(*this)), m_reads(*this), m_uniqueIDs(KVMSPIMPPDataDirectoryReader::uniqueIDs()) {
    sortUniqueIDsByTaskID();
    auto* project = dynamic_cast<KVMSPIMPPAbsProjectReader*>(parentReader);
    m_baselineNumber = project != nullptr ? project->baselineNumber() : -1;
    readBaselines();
    tvLog("    Building parent task map......");
    buildParentTaskMap();
    // A task is a summary when another names it as its parent; asked once per task, so kept as a set.
    for (const auto& [child, parent] : m_parentTaskMap) {
        m_summaryTaskUIDs.insert(parent);
    }
}

KVMSPIMPPTaskReader::~KVMSPIMPPTaskReader() = default;

void KVMSPIMPPTaskReader::sortUniqueIDsByTaskID() {
    std::stable_sort(m_uniqueIDs.begin(), m_uniqueIDs.end(), [this](int32_t uid1, int32_t uid2) {
        int32_t id1 = 0;
        int32_t id2 = 0;
        if (!taskID(uid1, id1) || !taskID(uid2, id2)) {
            tvLog(stringWithFormat("TASK SORT ERROR: task1UID=%d task2UID=%d", uid1, uid2));
            return false;
        }
        return id1 < id2;
    });
}

// The files don't give the task with UID 0 a mark for each baseline: a task's Fixed2 meta item holds
// bit fields of the baseline values it has, and where they lie shifts with the application version
// and the item size, while plans whose baselines were set field by field leave the summary task
// unmarked. So every valid task's copy of each baseline is read, and a baseline exists when some task
// holds data in it.
void KVMSPIMPPTaskReader::readBaselines() {
    tvLog("      Reading task baselines......");
    for (int32_t number = 0; number < kMPPBaselineCount; ++number) {
        BaselineReaders& readers = m_baselineReaders[static_cast<size_t>(number)];
        for (int32_t uid : m_uniqueIDs) {
            if (!isValidUID(uid)) {
                continue;
            }
            auto reader = std::make_unique<KVMSPISingleTaskBaselineReader>(uid, number, *this);
            if (reader->hasBaselineData()) {
                readers.emplace(uid, std::move(reader));
            }
        }
        if (readers.empty()) {
            tvLog(stringWithFormat("        No baseline %d", number));
        }
    }
}

void KVMSPIMPPTaskReader::buildParentTaskMap() {
    if (MPPPropertyList().mppVersion() <= kMSPDIVersion_2003) {
        buildParentTaskMapFromOutline();
        return;
    }
    KVMPPFixedDataReader* fixed = fixedDataReader();
    if (fixed == nullptr) {
        return;
    }
    for (int32_t uid : m_uniqueIDs) {
        if (fixed->nullIDs().count(uid) != 0 || !fixed->dataItemInfo(nullptr, uid)) {
            continue;
        }
        int32_t parent = kNoTask;
        TVError error;
        if (taskParentUID(uid, parent, &error) && parent >= 0) {
            m_parentTaskMap[uid] = parent;
        }
    }
}

// Format 9 keeps no parent: the outline comes from the levels in row order, with a stack of the
// ancestors of the current task. The stack's first element stands for the top, which is no task.
void KVMSPIMPPTaskReader::buildParentTaskMapFromOutline() {
    KVMPPFixedDataReader* fixed = fixedDataReader();
    if (fixed == nullptr) {
        return;
    }
    std::vector<int32_t> ancestors{kNoTask};
    int32_t currentLevel = 0;
    int32_t parentLevel = -1;
    int32_t parent = kNoTask;
    int32_t previous = kNoTask;
    for (int32_t uid : m_uniqueIDs) {
        if (fixed->nullIDs().count(uid) != 0) {
            continue;
        }
        auto count = static_cast<int32_t>(ancestors.size());
        tvAssert(parentLevel == count - 2, "Corrupted task ancestors stack.");
        int16_t storedLevel = -1;
        taskOutlineLevel(uid, storedLevel);
        const int32_t level = storedLevel;
        if (level != currentLevel) {
            if (level < currentLevel) {
                while (!ancestors.empty() && level < static_cast<int32_t>(ancestors.size()) - 1) {
                    ancestors.pop_back();
                }
            } else {
                tvAssert(
                    level == currentLevel + 1,
                    stringWithFormat("Currupted task hierarchy: currentOutlineLevel=%d taskOutlineLevel=%d "
                                     "(must be %d)",
                                     currentLevel, level, currentLevel + 1));
                ancestors.push_back(previous);
            }
            count = static_cast<int32_t>(ancestors.size());
            parent = count >= 2 ? ancestors.back() : kNoTask;
            currentLevel = count - 1;
            parentLevel = count - 2;
        }
        tvAssert(level == parentLevel + 1,
                 stringWithFormat(
                     "Currupted task hierarchy: parentOutlineLevel=%d taskOutlineLevel=%d (must be %d)",
                     parentLevel, level, parentLevel + 1));
        if (parent != kNoTask) {
            m_parentTaskMap[uid] = parent;
        }
        previous = uid;
    }
}

const KVMSPIMPPTaskReader::BaselineReaders&
KVMSPIMPPTaskReader::readersForBaseline(int32_t baselineNumber) const {
    tvAssert(baselineNumber >= 0 && baselineNumber < kMPPBaselineCount,
             stringWithFormat("Invalid baseline number: %ld", static_cast<long>(baselineNumber)));
    return m_baselineReaders[static_cast<size_t>(baselineNumber)];
}

bool KVMSPIMPPTaskReader::isValidUID(int32_t uid) const {
    const int32_t appVersion = this->appVersion();
    const bool knownApp = appVersion == kMSPDIVersion_2003 || appVersion == kMSPDIVersion_2007 ||
                          appVersion == kMSPDIVersion_2010 || appVersion == kMSPDIVersion_2013 ||
                          appVersion == kMSPDIVersion_2016;
    const int32_t minimumSize = knownApp ? KVMSPIMPPPropertyList::taskMinExpectedSizeForAppVersion(appVersion)
                                         : MPPPropertyList().taskMinExpectedSize();
    MPPDataItemInfo info;
    return fixedDataReader() != nullptr && fixedDataReader()->dataItemInfo(&info, uid) &&
           info.dataSize >= minimumSize;
}

int64_t KVMSPIMPPTaskReader::objectIDforUniqueID(int32_t uid) const {
    return KVMSPIMPPDataDirectoryReader::objectIDforUniqueID(uid);
}

void KVMSPIMPPTaskReader::dbgPrint() {
    for (int32_t uid : m_uniqueIDs) {
        TVDate start;
        TVDate finish;
        const bool hasStart = taskManualStart(uid, start);
        const bool hasFinish = taskManualFinish(uid, finish);
        tvLog(stringWithFormat("Task UID=%d start=%s finish=%s", uid,
                               hasStart ? initWithDateTime(start).c_str() : "(none)",
                               hasFinish ? initWithDateTime(finish).c_str() : "(none)"));
        for (const BaselineReaders& readers : m_baselineReaders) {
            const auto found = readers.find(uid);
            if (found != readers.end()) {
                found->second->dbgPrint();
            }
        }
    }
}

bool KVMSPIMPPTaskReader::taskTotalCost(int32_t uid, double& value, TVError* error) {
    return m_reads.read(MPPField::taskTotalCost, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskActualCost(int32_t uid, double& value, TVError* error) {
    return m_reads.read(MPPField::taskActualCost, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskRemainingCost(int32_t uid, double& value, TVError* error) {
    return m_reads.read(MPPField::taskRemainingCost, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskActualWork(int32_t uid, TVTimeSpan& value, TVError* error) {
    return m_reads.read(MPPField::taskActualWork, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskRemainingWork(int32_t uid, TVTimeSpan& value, TVError* error) {
    return m_reads.read(MPPField::taskRemainingWork, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskConstraintDate(int32_t uid, TVDate& value, TVError* error) {
    return m_reads.read(MPPField::taskConstraintDate, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskConstraintType(int32_t uid, int16_t& value, TVError* error) {
    return m_reads.read(MPPField::taskConstraintType, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskEarlyFinish(int32_t uid, TVDate& value, TVError* error) {
    return m_reads.read(MPPField::taskEarlyFinish, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskEarlyStart(int32_t uid, TVDate& value, TVError* error) {
    return m_reads.read(MPPField::taskEarlyStart, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskLateStart(int32_t uid, TVDate& value, TVError* error) {
    return m_reads.read(MPPField::taskLateStart, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskLateFinish(int32_t uid, TVDate& value, TVError* error) {
    return m_reads.read(MPPField::taskLateFinish, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskActualStart(int32_t uid, TVDate& value, TVError* error) {
    return m_reads.read(MPPField::taskActualStart, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskActualFinish(int32_t uid, TVDate& value, TVError* error) {
    return m_reads.read(MPPField::taskActualFinish, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskScheduledStart(int32_t uid, TVDate& value, TVError* error) {
    return m_reads.read(MPPField::taskScheduledStart, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskScheduledFinish(int32_t uid, TVDate& value, TVError* error) {
    return m_reads.read(MPPField::taskScheduledFinish, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskEstimated(int32_t uid, bool& value, TVError* error) {
    value = false;
    return m_reads.read(MPPField::taskEstimated, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskFixedCost(int32_t uid, double& value, TVError* error) {
    return m_reads.read(MPPField::taskFixedCost, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskFixedCostAccrual(int32_t uid, int16_t& value, TVError* error) {
    return m_reads.read(MPPField::taskFixedCostAccrual, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskID(int32_t uid, int32_t& value, TVError* error) {
    return m_reads.read(MPPField::taskID, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskOleLink(int32_t uid, uint8_t& value, TVError* error) {
    return m_reads.read(MPPField::taskOleLink, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskOutlineLevel(int32_t uid, int16_t& value, TVError* error) {
    return m_reads.read(MPPField::taskOutlineLevel, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskParentUID(int32_t uid, int32_t& value, TVError* error) {
    return m_reads.read(MPPField::taskParentUID, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskPercentComplete(int32_t uid, int16_t& value, TVError* error) {
    return m_reads.read(MPPField::taskPercentComplete, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskPercentWorkComplete(int32_t uid, int16_t& value, TVError* error) {
    return m_reads.read(MPPField::taskPercentWorkComplete, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskPriority(int32_t uid, int16_t& value, TVError* error) {
    return m_reads.read(MPPField::taskPriority, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskType(int32_t uid, int16_t& value, TVError* error) {
    return m_reads.read(MPPField::taskType, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskManualStart(int32_t uid, TVDate& value, TVError* error) {
    return m_reads.read(MPPField::taskStart, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskManualFinish(int32_t uid, TVDate& value, TVError* error) {
    return m_reads.read(MPPField::taskFinish, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskName(int32_t uid, std::string& value, TVError* error) {
    return m_reads.read(MPPField::taskName, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskNotes(int32_t uid, std::string& value, TVError* error) {
    return m_reads.read(MPPField::taskNotes, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskPinnedDuration(int32_t uid, std::string& value, TVError* error) {
    return m_reads.read(MPPField::taskPinnedDuration, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskPinnedFinish(int32_t uid, std::string& value, TVError* error) {
    return m_reads.read(MPPField::taskPinnedFinish, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskPinnedStart(int32_t uid, std::string& value, TVError* error) {
    return m_reads.read(MPPField::taskPinnedStart, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskPreLeveledFinish(int32_t uid, TVDate& value, TVError* error) {
    return m_reads.read(MPPField::taskPreLeveledFinish, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskPreLeveledStart(int32_t uid, TVDate& value, TVError* error) {
    return m_reads.read(MPPField::taskPreLeveledStart, uid, value, error);
}

const KVMSPISingleTaskBaselineReader* KVMSPIMPPTaskReader::selectedBaseline(int32_t uid) const {
    if (m_baselineNumber >= kMPPBaselineCount) {
        return nullptr;
    }
    const BaselineReaders& readers = m_baselineReaders[static_cast<size_t>(m_baselineNumber)];
    const auto found = readers.find(uid);
    return found != readers.end() ? found->second.get() : nullptr;
}

bool KVMSPIMPPTaskReader::taskCost(int32_t uid, double& value, TVError* error) {
    if (m_baselineNumber < 0) {
        return m_reads.read(MPPField::taskTotalCost, uid, value, error);
    }
    const KVMSPISingleTaskBaselineReader* baseline = selectedBaseline(uid);
    if (baseline == nullptr || !baseline->hasCost()) {
        return false;
    }
    value = baseline->taskCost() / 100;
    return true;
}

bool KVMSPIMPPTaskReader::taskDuration(int32_t uid, TVTimeSpan& value, TVError* error) {
    if (m_baselineNumber < 0) {
        return m_reads.read(MPPField::taskDuration, uid, value, error);
    }
    const KVMSPISingleTaskBaselineReader* baseline = selectedBaseline(uid);
    if (baseline == nullptr || !baseline->hasDuration()) {
        return false;
    }
    value = static_cast<TVTimeSpan>(baseline->taskDuration()) * 6000000;
    return true;
}

bool KVMSPIMPPTaskReader::taskStart(int32_t uid, TVDate& value, TVError* error) {
    if (m_baselineNumber < 0) {
        return m_reads.read(MPPField::taskStart, uid, value, error);
    }
    const KVMSPISingleTaskBaselineReader* baseline = selectedBaseline(uid);
    if (baseline == nullptr || !baseline->hasStart()) {
        return false;
    }
    value = baseline->taskStart();
    return true;
}

bool KVMSPIMPPTaskReader::taskFinish(int32_t uid, TVDate& value, TVError* error) {
    if (m_baselineNumber < 0) {
        return m_reads.read(MPPField::taskFinish, uid, value, error);
    }
    const KVMSPISingleTaskBaselineReader* baseline = selectedBaseline(uid);
    if (baseline == nullptr || !baseline->hasFinish()) {
        return false;
    }
    value = baseline->taskFinish();
    return true;
}

bool KVMSPIMPPTaskReader::taskWork(int32_t uid, TVTimeSpan& value, TVError* error) {
    if (m_baselineNumber < 0) {
        return m_reads.read(MPPField::taskWork, uid, value, error);
    }
    const KVMSPISingleTaskBaselineReader* baseline = selectedBaseline(uid);
    if (baseline == nullptr || !baseline->hasWork()) {
        return false;
    }
    value = mppWorkTimeSpan(baseline->taskWork());
    return true;
}

bool KVMSPIMPPTaskReader::taskEffortDriven(int32_t uid, bool& value, TVError* error) {
    return m_reads.read(MPPField::taskEffortDriven, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskMilestone(int32_t uid, bool& value, TVError* error) {
    return m_reads.read(MPPField::taskMilestone, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskExpanded(int32_t uid, bool& value, TVError* error) {
    return m_reads.read(MPPField::taskExpanded, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskFlag(int32_t flagNumber, int32_t uid, bool& value, TVError* error) {
    if (flagNumber < 1 || flagNumber > kMPPTaskFlagCount) {
        return false;
    }
    return m_reads.read(mppTaskFlagField(flagNumber), uid, value, error);
}

bool KVMSPIMPPTaskReader::taskOleLinkMeta(int32_t uid, uint8_t& value, TVError* error) {
    return m_reads.read(MPPField::taskHammockMark, uid, value, error);
}

bool KVMSPIMPPTaskReader::taskHammock(int32_t uid, bool& value, TVError* error) {
    uint8_t mark = 0;
    if (!MPPPropertyList().propertyOffset(kTaskOleLinkKey) ||
        !m_reads.read(MPPField::taskHammockMark, uid, mark, error)) {
        return false;
    }
    value = mark == kHammockMark;
    return true;
}

bool KVMSPIMPPTaskReader::taskPreHammock(int32_t uid, bool& value, TVError* error) {
    uint8_t mark = 0;
    uint8_t side = 0;
    if (!m_reads.read(MPPField::taskHammockMark, uid, mark, error) ||
        !m_reads.read(MPPField::taskHammockSide, uid, side, error)) {
        return false;
    }
    value = mark == kSplitHammockMark && side == kPreHammockMark;
    return true;
}

bool KVMSPIMPPTaskReader::taskPostHammock(int32_t uid, bool& value, TVError* error) {
    uint8_t mark = 0;
    uint8_t side = 0;
    if (!m_reads.read(MPPField::taskHammockMark, uid, mark, error) ||
        !m_reads.read(MPPField::taskHammockSide, uid, side, error)) {
        return false;
    }
    value = mark == kSplitHammockMark && side == kPostHammockMark;
    return true;
}

bool KVMSPIMPPTaskReader::taskManual(int32_t uid, bool& value, TVError* error) {
    return m_reads.read(MPPField::taskManual, uid, value, error);
}

// Whether the task holds data in the baseline, as read at open.
bool KVMSPIMPPTaskReader::hasBaseline(int32_t uid, int32_t index, bool& value, TVError* /*error*/) {
    if (index < 0 || index >= kMPPBaselineCount || !isValidUID(uid)) {
        return false;
    }
    value = m_baselineReaders[static_cast<size_t>(index)].count(uid) != 0;
    return true;
}

bool KVMSPIMPPTaskReader::taskIsNull(int32_t uid, bool& value, TVError* /*error*/) {
    value = fixedDataReader() != nullptr && fixedDataReader()->nullIDs().count(uid) != 0;
    return true;
}

bool KVMSPIMPPTaskReader::taskSummary(int32_t uid, bool& value, TVError* /*error*/) {
    value = uid == 0 || m_summaryTaskUIDs.count(uid) != 0;
    return true;
}

bool KVMSPIMPPTaskReader::taskUID(int32_t uid, int32_t& value, TVError* /*error*/) {
    value = uid;
    return true;
}

bool KVMSPIMPPTaskReader::taskCustomFields(int32_t uid,
                                           std::vector<std::unique_ptr<KVMSPISingleExtendedAttribute>>& value,
                                           TVError* error) {
    return KVMSPIMPPTaskCustomFieldReader(uid, *this).customFields(value, error);
}
