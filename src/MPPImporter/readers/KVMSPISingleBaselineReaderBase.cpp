#include "MPPImporter/readers/KVMSPISingleBaselineReaderBase.h"

#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"

KVMSPISingleBaselineReaderBase::KVMSPISingleBaselineReaderBase(int32_t uid, int32_t baselineNumber,
                                                               KVMSPIMPPDataDirectoryReader& reader,
                                                               const char* invalidNumberFormat)
    : KVMSPISingleObjectReaderBase(uid, reader), m_baselineNumber(baselineNumber),
      m_MPPPropertyList(reader.MPPPropertyList()) {
    tvAssert(baselineNumber >= 0 && baselineNumber <= kLastBaselineNumber,
             stringWithFormat(invalidNumberFormat, baselineNumber));
}

std::string
KVMSPISingleBaselineReaderBase::describe(const char* kind,
                                         std::initializer_list<std::pair<const char*, bool>> flags) const {
    std::string text = stringWithFormat("<%s UID=%d baseline=%d> ", kind, uid(), m_baselineNumber);
    for (const auto& [name, flag] : flags) {
        text += stringWithFormat(" %s=%s", name, flag ? "YES" : "NO");
    }
    return text + " ";
}
