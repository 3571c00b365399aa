#include "MPPImporter/readers/KVMSPISingleAssignmentBaselineReader.h"

#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"

KVMSPISingleAssignmentBaselineReader::KVMSPISingleAssignmentBaselineReader(
    int32_t uid, int32_t baselineNumber, KVMSPIMPPDataDirectoryReader& reader)
    : KVMSPISingleObjectReaderBase(uid, reader), m_baselineNumber(baselineNumber) {
    constexpr int32_t kLastBaselineNumber = 10;
    tvAssert(baselineNumber >= 0 && baselineNumber <= kLastBaselineNumber,
             stringWithFormat("Invalid baseline number: %d", baselineNumber));
}
