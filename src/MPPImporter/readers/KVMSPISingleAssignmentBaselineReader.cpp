#include "MPPImporter/readers/KVMSPISingleAssignmentBaselineReader.h"

#include "MPPImporter/format/MPPAssignmentPropertyKeys.h"

KVMSPISingleAssignmentBaselineReader::KVMSPISingleAssignmentBaselineReader(
    int32_t uid, int32_t baselineNumber, KVMSPIMPPDataDirectoryReader& reader)
    : KVMSPISingleBaselineReaderBase(uid, baselineNumber, reader, "Invalid baseline number: %d") {
    if (baselineNumber == 0) {
        m_hasStart = fields().read(MPPField::assignmentBaselineStart, uid, m_start, nullptr);
        m_hasFinish = fields().read(MPPField::assignmentBaselineFinish, uid, m_finish, nullptr);
        m_hasWork = fields().read(MPPField::assignmentBaselineWork, uid, m_work, nullptr);
        m_hasCost = fields().read(MPPField::assignmentBaselineCost, uid, m_cost, nullptr);
    } else {
        m_hasStart = readGroupTimestamp(kAssignmentBaselineStartGroupKey, m_start);
        m_hasFinish = readGroupTimestamp(kAssignmentBaselineFinishGroupKey, m_finish);
        m_hasWork = readGroupDouble(kAssignmentBaselineWorkGroupKey, m_work);
        m_hasCost = readGroupDouble(kAssignmentBaselineCostGroupKey, m_cost);
    }
    // A date that was never set holds 0, the MPP epoch, in some files, as well as the null word.
    m_hasStart = m_hasStart && m_start != getMPPEpoch();
    m_hasFinish = m_hasFinish && m_finish != getMPPEpoch();
}
