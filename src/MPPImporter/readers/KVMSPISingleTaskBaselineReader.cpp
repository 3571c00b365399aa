#include "MPPImporter/readers/KVMSPISingleTaskBaselineReader.h"

#include "MPPCommon/date/DateExtensions.h"
#include "MPPCommon/storage/SSLStream.h"
#include "MPPCommon/support/Log.h"
#include "MPPImporter/file/KVMSPIMPP12PropertyList.h"
#include "MPPImporter/format/MPPExtendedFieldBlock.h"
#include "MPPImporter/format/MPPFormatConstants.h"
#include "MPPImporter/format/MPPTaskPropertyKeys.h"
#include "MPPImporter/readers/KVMSPIMPPTaskReader.h"

namespace {

// Format 9 keeps baselines 1 to 10 in the task's block of extended fields, under the task field mark
// with the property number that format 12 gives the same field.
constexpr int32_t kExtendedFieldsProperty = 0xA3;
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
    if (baselineNumber > 0 && MPPPropertyList().mppVersion() == kMSPDIVersion_2003) {
        readExtendedFieldBaseline();
    } else if (baselineNumber > 0) {
        readCustomFieldBaseline();
    } else {
        readBaseline0();
    }
}

void KVMSPISingleTaskBaselineReader::readCustomFieldBaseline() {
    m_hasCost = readGroupDouble(kTaskBaselineCostGroupKey, m_taskCost);
    m_hasDuration = readGroupInt(kTaskBaselineDurationGroupKey, m_taskDuration);
    m_hasFinish = readGroupTimestamp(kTaskBaselineFinishGroupKey, m_taskFinish);
    m_hasStart = readGroupTimestamp(kTaskBaselineStartGroupKey, m_taskStart);
    m_hasWork = readGroupDouble(kTaskBaselineWorkGroupKey, m_taskWork);
}

void KVMSPISingleTaskBaselineReader::readExtendedFieldBaseline() {
    KVMPPVarDataReader* var = reader().varDataReader();
    int32_t size = 0;
    int32_t position = 0;
    if (var == nullptr || !var->getDataSize(size, uid(), kExtendedFieldsProperty) || size <= 0 ||
        !var->validateObjectUID(uid(), kExtendedFieldsProperty, 0, size, &position, nullptr)) {
        return;
    }
    // The size is the file's claim: the stream must hold that many bytes before they are allocated.
    SSLStream& stream = var->dataStream();
    if (!stream.seekFromStart(position) || stream.bytesAvailable() < static_cast<uint32_t>(size)) {
        return;
    }
    std::vector<uint8_t> bytes(static_cast<size_t>(size));
    if (!var->readDataByteArray(bytes.data(), size, uid(), kExtendedFieldsProperty, 0)) {
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

// Baseline 0 has its own fields: in the variable data from format 14 on, in the fixed item before.
// Its work is the task's work field in every version.
void KVMSPISingleTaskBaselineReader::readBaseline0() {
    const int32_t version = MPPPropertyList().mppVersion();
    if (version == kMSPDIVersion_2010 || version == kMSPDIVersion_2013 || version == kMSPDIVersion_2016) {
        m_hasCost = fields().varDouble(kTaskBaselineCostKey, uid(), m_taskCost, nullptr);
        m_hasDuration = fields().varInt(kTaskBaselineDurationKey, uid(), m_taskDuration, nullptr);
        m_hasFinish = fields().varTimestamp(kTaskBaselineFinishKey, uid(), m_taskFinish, nullptr);
        m_hasStart = fields().varTimestamp(kTaskBaselineStartKey, uid(), m_taskStart, nullptr);
    } else if (version == kMSPDIVersion_2003 || version == kMSPDIVersion_2007) {
        m_hasCost = fields().fixedDouble(kTaskBaselineCostFixedKey, uid(), m_taskCost, nullptr);
        m_hasDuration = fields().fixedInt(kTaskBaselineDurationFixedKey, uid(), m_taskDuration, nullptr);
        m_hasFinish = fields().fixedTimestamp(kTaskBaselineFinishFixedKey, uid(), m_taskFinish, nullptr);
        m_hasStart = fields().fixedTimestamp(kTaskBaselineStartFixedKey, uid(), m_taskStart, nullptr);
    } else {
        tvLog(stringWithFormat(
            "      WARNING: Reading of Baseline properties is not supported in MPP %d version. "
            "Use defaults.",
            version));
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
