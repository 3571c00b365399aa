#include "MPPImporter/readers/KVMSPISingleAssignmentBaselineReader.h"

KVMSPISingleAssignmentBaselineReader::KVMSPISingleAssignmentBaselineReader(
    int32_t uid, int32_t baselineNumber, KVMSPIMPPDataDirectoryReader& reader)
    : KVMSPISingleBaselineReaderBase(uid, baselineNumber, reader, "Invalid baseline number: %d") {
    m_hasStart = read(MPPField::assignmentBaselineStart, m_start);
    m_hasFinish = read(MPPField::assignmentBaselineFinish, m_finish);
    m_hasWork = read(MPPField::assignmentBaselineWork, m_work);
    m_hasCost = read(MPPField::assignmentBaselineCost, m_cost);
    // A date that was never set holds 0, the MPP epoch, in some files, as well as the null word.
    m_hasStart = m_hasStart && m_start != getMPPEpoch();
    m_hasFinish = m_hasFinish && m_finish != getMPPEpoch();
}
