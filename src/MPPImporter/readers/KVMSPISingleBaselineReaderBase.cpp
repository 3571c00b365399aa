#include "MPPImporter/readers/KVMSPISingleBaselineReaderBase.h"

#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/readers/KVMSPIMPPAbsProjectReader.h"

KVMSPISingleBaselineReaderBase::KVMSPISingleBaselineReaderBase(int32_t uid, int32_t baselineNumber,
                                                               KVMSPIMPPDataDirectoryReader& reader,
                                                               const char* invalidNumberFormat)
    : KVMSPISingleObjectReaderBase(uid, reader), m_baselineNumber(baselineNumber),
      m_MPPPropertyList(reader.MPPPropertyList()) {
    tvAssert(baselineNumber >= 0 && baselineNumber <= kLastBaselineNumber,
             stringWithFormat(invalidNumberFormat, baselineNumber));
}

template <typename Read>
bool KVMSPISingleBaselineReaderBase::readGroup(int32_t groupKey, Read read) const {
    auto* project = dynamic_cast<KVMSPIMPPAbsProjectReader*>(reader().parentReader());
    KVMPPVarDataReader* var = reader().varDataReader();
    if (project == nullptr || var == nullptr || m_baselineNumber < 1) {
        return false;
    }
    const auto property = m_MPPPropertyList.propertyID(groupKey, m_baselineNumber);
    return property && read(*project, *var, static_cast<int32_t>(*property));
}

bool KVMSPISingleBaselineReaderBase::readGroupDouble(int32_t groupKey, double& value) const {
    return readGroup(groupKey, [&](KVMSPIMPPAbsProjectReader& project, KVMPPVarDataReader& var, int32_t id) {
        return project.customFieldDoubleValue(value, var, uid(), id, nullptr);
    });
}

bool KVMSPISingleBaselineReaderBase::readGroupInt(int32_t groupKey, int32_t& value) const {
    return readGroup(groupKey, [&](KVMSPIMPPAbsProjectReader& project, KVMPPVarDataReader& var, int32_t id) {
        return project.customFieldIntValue(value, var, uid(), id, nullptr);
    });
}

bool KVMSPISingleBaselineReaderBase::readGroupTimestamp(int32_t groupKey, TVDate& value) const {
    return readGroup(groupKey, [&](KVMSPIMPPAbsProjectReader& project, KVMPPVarDataReader& var, int32_t id) {
        return project.customFieldTimestampValue(value, var, uid(), id, nullptr);
    });
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
