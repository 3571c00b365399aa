#include "MPPImporter/readers/KVMSPISingleTaskBaselineReader.h"

#include "MPPCommon/date/DateExtensions.h"
#include "MPPCommon/support/Log.h"
#include "MPPImporter/file/KVMSPIMPP12PropertyList.h"
#include "MPPImporter/format/MPPExtendedFieldBlock.h"
#include "MPPImporter/format/MPPTaskPropertyKeys.h"
#include "MPPImporter/readers/KVMSPIMPPTaskReader.h"

namespace {

// In the block of extended fields of format 9, baselines 1 to 10 stand under the task field mark with
// the property number that format 12 gives the same field.
constexpr uint32_t kTaskFieldMark = 0x0B400000;

// The value's has-flag: whether it was read.
template <typename Value>
bool take(const std::optional<Value>& read, Value& value) {
    if (read) {
        value = *read;
    }
    return read.has_value();
}

} // namespace

KVMSPISingleTaskBaselineReader::KVMSPISingleTaskBaselineReader(int32_t uid, int32_t baselineNumber,
                                                               KVMSPIMPPTaskReader& reader)
    : KVMSPISingleBaselineReaderBase(uid, baselineNumber, reader, "      Invalid baseline number: %d") {
    if (baselineNumber > 0 && MPPPropertyList().propertyID(kTaskExtendedFieldsKey)) {
        readExtendedFieldBaseline();
    } else if (baselineNumber > 0) {
        readCustomFieldBaseline();
    } else {
        readBaseline0();
    }
    // A baseline date that was never set holds 0, the MPP epoch, in some files, as well as the null word.
    m_hasStart = m_hasStart && m_taskStart != getMPPEpoch();
    m_hasFinish = m_hasFinish && m_taskFinish != getMPPEpoch();
}

void KVMSPISingleTaskBaselineReader::readCustomFieldBaseline() {
    m_hasCost = readGroupDouble(kTaskBaselineCostGroupKey, m_taskCost);
    m_hasDuration = readGroupInt(kTaskBaselineDurationGroupKey, m_taskDuration);
    m_hasFinish = readGroupTimestamp(kTaskBaselineFinishGroupKey, m_taskFinish);
    m_hasStart = readGroupTimestamp(kTaskBaselineStartGroupKey, m_taskStart);
    m_hasWork = readGroupDouble(kTaskBaselineWorkGroupKey, m_taskWork);
}

void KVMSPISingleTaskBaselineReader::readExtendedFieldBaseline() {
    std::vector<uint8_t> bytes;
    if (!fields().varBytes(kTaskExtendedFieldsKey, uid(), bytes, nullptr)) {
        return;
    }
    const MPPExtendedFieldBlock block(std::move(bytes));
    const auto field = [this](int32_t groupKey) {
        const auto number = KVMSPIMPP12PropertyList::shared().propertyID(groupKey, baselineNumber());
        return number ? kTaskFieldMark | static_cast<uint32_t>(*number) : 0;
    };
    m_hasCost = take(block.doubleValue(field(kTaskBaselineCostGroupKey)), m_taskCost);
    m_hasDuration = take(block.intValue(field(kTaskBaselineDurationGroupKey)), m_taskDuration);
    m_hasFinish = take(block.timestampValue(field(kTaskBaselineFinishGroupKey)), m_taskFinish);
    m_hasStart = take(block.timestampValue(field(kTaskBaselineStartGroupKey)), m_taskStart);
    m_hasWork = take(block.doubleValue(field(kTaskBaselineWorkGroupKey)), m_taskWork);
}

// Baseline 0 has its own fields, which the catalogue rows find in the layout's block. Its work is the
// task's work field in every version.
void KVMSPISingleTaskBaselineReader::readBaseline0() {
    if (fields().place(MPPField::taskBaselineStart)) {
        m_hasCost = fields().read(MPPField::taskBaselineCost, uid(), m_taskCost, nullptr);
        m_hasDuration = fields().read(MPPField::taskBaselineDuration, uid(), m_taskDuration, nullptr);
        m_hasFinish = fields().read(MPPField::taskBaselineFinish, uid(), m_taskFinish, nullptr);
        m_hasStart = fields().read(MPPField::taskBaselineStart, uid(), m_taskStart, nullptr);
    } else {
        tvLog(stringWithFormat(
            "      WARNING: Reading of Baseline properties is not supported in MPP %d version. "
            "Use defaults.",
            MPPPropertyList().mppVersion()));
    }
    m_hasWork = fields().fixedDouble(kTaskWorkKey, uid(), m_taskWork, nullptr);
}

bool KVMSPISingleTaskBaselineReader::hasBaselineData() const {
    if (!m_hasStart && !m_hasFinish && m_taskDuration == 0) {
        return false;
    }
    return m_hasCost || m_hasDuration || m_hasFinish || m_hasStart || m_hasWork;
}

std::string KVMSPISingleTaskBaselineReader::description() const {
    return describe("Task", {{"hasCost", m_hasCost},
                             {"hasDuration", m_hasDuration},
                             {"hasFinish", m_hasFinish},
                             {"hasStart", m_hasStart},
                             {"hasWork", m_hasWork}});
}

void KVMSPISingleTaskBaselineReader::dbgPrint() const {
    tvLog(stringWithFormat("  Baseline %d: start=%s finish=%s", baselineNumber(),
                           m_hasStart ? initWithDateTime(m_taskStart).c_str() : "(none)",
                           m_hasFinish ? initWithDateTime(m_taskFinish).c_str() : "(none)"));
}
