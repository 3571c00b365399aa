#include "MPPImporter/readers/KVMSPISingleTaskBaselineReader.h"

#include "MPPCommon/date/DateExtensions.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/file/KVMPPFixedDataReader.h"
#include "MPPImporter/file/KVMPPVarDataReader.h"
#include "MPPImporter/file/KVMSPIMPPPropertyList.h"
#include "MPPImporter/file/MPPFormatConstants.h"
#include "MPPImporter/readers/KVMSPIMPPAbsProjectReader.h"
#include "MPPImporter/readers/KVMSPIMPPTaskReader.h"
#include "MPPImporter/readers/MPPTaskPropertyKeys.h"

namespace {

constexpr int32_t kLastBaselineNumber = 10;

const char* yesNo(bool flag) {
    return flag ? "YES" : "NO";
}

// Reads `value` at the key's offset of the task's fixed item with `read`; false when the version
// has no such key or the task reader no fixed data.
template <typename Value, typename Read>
bool readFixedKey(const KVMSPIMPPPropertyList& list, KVMSPIMPPTaskReader& reader, int32_t key, int32_t uid,
                  Value& value, Read read) {
    const std::optional<uint32_t> offset = list.propertyOffset(key);
    KVMPPFixedDataReader* fixed = reader.fixedDataReader();
    return offset && fixed != nullptr && (fixed->*read)(value, uid, static_cast<int32_t>(*offset));
}

template <typename Value, typename Read>
bool readVarKey(const KVMSPIMPPPropertyList& list, KVMSPIMPPTaskReader& reader, int32_t key, int32_t uid,
                Value& value, Read read) {
    const std::optional<uint32_t> property = list.propertyID(key);
    KVMPPVarDataReader* var = reader.varDataReader();
    return property && var != nullptr && (var->*read)(value, uid, static_cast<int32_t>(*property), 0);
}

} // namespace

KVMSPISingleTaskBaselineReader::KVMSPISingleTaskBaselineReader(int32_t uid, int32_t baselineNumber,
                                                               KVMSPIMPPTaskReader& reader)
    : KVMSPISingleObjectReaderBase(uid, reader), m_baselineNumber(baselineNumber),
      m_MPPPropertyList(reader.MPPPropertyList()) {
    tvAssert(baselineNumber >= 0 && baselineNumber <= kLastBaselineNumber,
             stringWithFormat("      Invalid baseline number: %d", baselineNumber));
    if (baselineNumber > 0) {
        readCustomFieldBaseline(reader);
    } else {
        readBaseline0(reader);
    }
}

// Baselines 1 to 10 are custom fields of the task, under the group keys.
void KVMSPISingleTaskBaselineReader::readCustomFieldBaseline(KVMSPIMPPTaskReader& reader) {
    auto* project = dynamic_cast<KVMSPIMPPAbsProjectReader*>(reader.parentReader());
    KVMPPVarDataReader* var = reader.varDataReader();
    if (project == nullptr || var == nullptr) {
        return;
    }
    const int32_t task = uid();
    const auto property = [this](int32_t groupKey) {
        return m_MPPPropertyList.propertyID(groupKey, m_baselineNumber);
    };
    if (const auto id = property(kTaskBaselineCostGroupKey)) {
        m_hasCost =
            project->customFieldDoubleValue(m_taskCost, *var, task, static_cast<int32_t>(*id), nullptr);
    }
    if (const auto id = property(kTaskBaselineDurationGroupKey)) {
        m_hasDuration =
            project->customFieldIntValue(m_taskDuration, *var, task, static_cast<int32_t>(*id), nullptr);
    }
    if (const auto id = property(kTaskBaselineFinishGroupKey)) {
        m_hasFinish =
            project->customFieldTimestampValue(m_taskFinish, *var, task, static_cast<int32_t>(*id), nullptr);
    }
    if (const auto id = property(kTaskBaselineStartGroupKey)) {
        m_hasStart =
            project->customFieldTimestampValue(m_taskStart, *var, task, static_cast<int32_t>(*id), nullptr);
    }
    if (const auto id = property(kTaskBaselineWorkGroupKey)) {
        m_hasWork =
            project->customFieldDoubleValue(m_taskWork, *var, task, static_cast<int32_t>(*id), nullptr);
    }
}

// Baseline 0 has its own fields: in the variable data from format 14 on, in the fixed item before.
// Its work is the task's work field in every version.
void KVMSPISingleTaskBaselineReader::readBaseline0(KVMSPIMPPTaskReader& reader) {
    const int32_t task = uid();
    const int32_t version = m_MPPPropertyList.mppVersion();
    const KVMSPIMPPPropertyList& list = m_MPPPropertyList;
    if (version == kMSPDIVersion_2010 || version == kMSPDIVersion_2013 || version == kMSPDIVersion_2016) {
        m_hasCost = readVarKey(list, reader, kTaskBaselineCostKey, task, m_taskCost,
                               &KVMPPVarDataReader::readDataDouble);
        m_hasDuration = readVarKey(list, reader, kTaskBaselineDurationKey, task, m_taskDuration,
                                   &KVMPPVarDataReader::readDataInt);
        m_hasFinish = readVarKey(list, reader, kTaskBaselineFinishKey, task, m_taskFinish,
                                 &KVMPPVarDataReader::readDataTimestamp);
        m_hasStart = readVarKey(list, reader, kTaskBaselineStartKey, task, m_taskStart,
                                &KVMPPVarDataReader::readDataTimestamp);
    } else if (version == kMSPDIVersion_2003 || version == kMSPDIVersion_2007) {
        m_hasCost = readFixedKey(list, reader, kTaskBaselineCostFixedKey, task, m_taskCost,
                                 &KVMPPFixedDataReader::readDataDouble);
        m_hasDuration = readFixedKey(list, reader, kTaskBaselineDurationFixedKey, task, m_taskDuration,
                                     &KVMPPFixedDataReader::readDataInt);
        m_hasFinish = readFixedKey(list, reader, kTaskBaselineFinishFixedKey, task, m_taskFinish,
                                   &KVMPPFixedDataReader::readDataTimestamp);
        m_hasStart = readFixedKey(list, reader, kTaskBaselineStartFixedKey, task, m_taskStart,
                                  &KVMPPFixedDataReader::readDataTimestamp);
    } else {
        tvLog(stringWithFormat(
            "      WARNING: Reading of Baseline properties is not supported in MPP %d version. "
            "Use defaults.",
            version));
    }
    m_hasWork =
        readFixedKey(list, reader, kTaskWorkKey, task, m_taskWork, &KVMPPFixedDataReader::readDataDouble);
}

bool KVMSPISingleTaskBaselineReader::hasBaselineData() const {
    if (!m_hasStart && !m_hasFinish && m_taskDuration == 0) {
        return false;
    }
    return m_hasCost || m_hasDuration || m_hasFinish || m_hasStart || m_hasWork;
}

std::string KVMSPISingleTaskBaselineReader::description() const {
    return stringWithFormat("%s  hasCost=%s hasDuration=%s hasFinish=%s hasStart=%s hasWork=%s ",
                            stringWithFormat("<Task UID=%d baseline=%d>", uid(), m_baselineNumber).c_str(),
                            yesNo(m_hasCost), yesNo(m_hasDuration), yesNo(m_hasFinish), yesNo(m_hasStart),
                            yesNo(m_hasWork));
}

void KVMSPISingleTaskBaselineReader::dbgPrint() const {
    tvLog(stringWithFormat("  Baseline %d: start=%s finish=%s", m_baselineNumber,
                           m_hasStart ? initWithDateTime(m_taskStart).c_str() : "(none)",
                           m_hasFinish ? initWithDateTime(m_taskFinish).c_str() : "(none)"));
}
