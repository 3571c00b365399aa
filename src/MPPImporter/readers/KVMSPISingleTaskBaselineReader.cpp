#include "MPPImporter/readers/KVMSPISingleTaskBaselineReader.h"

#include "MPPCommon/date/DateExtensions.h"
#include "MPPCommon/support/Log.h"
#include "MPPImporter/readers/KVMSPIMPPTaskReader.h"

KVMSPISingleTaskBaselineReader::KVMSPISingleTaskBaselineReader(int32_t uid, int32_t baselineNumber,
                                                               KVMSPIMPPTaskReader& reader)
    : KVMSPISingleBaselineReaderBase(uid, baselineNumber, reader, "      Invalid baseline number: %d") {
    if (baselineNumber == 0 && !MPPObjectFieldReads(reader).place(MPPField::taskBaselineStart)) {
        tvLog(stringWithFormat(
            "      WARNING: Reading of Baseline properties is not supported in MPP %d version. "
            "Use defaults.",
            MPPPropertyList().mppVersion()));
    } else {
        m_hasCost = read(MPPField::taskBaselineCost, m_taskCost);
        m_hasDuration = read(MPPField::taskBaselineDuration, m_taskDuration);
        m_hasFinish = read(MPPField::taskBaselineFinish, m_taskFinish);
        m_hasStart = read(MPPField::taskBaselineStart, m_taskStart);
    }
    m_hasWork = read(MPPField::taskBaselineWork, m_taskWork);
    // A baseline date that was never set holds 0, the MPP epoch, in some files, as well as the null word.
    m_hasStart = m_hasStart && m_taskStart != getMPPEpoch();
    m_hasFinish = m_hasFinish && m_taskFinish != getMPPEpoch();
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
