#include "MPPImporter/readers/KVMSPISingleResourceBaselineReader.h"

#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/file/KVMPPVarDataReader.h"
#include "MPPImporter/file/KVMSPIMPPPropertyList.h"
#include "MPPImporter/readers/KVMSPIMPPAbsProjectReader.h"
#include "MPPImporter/readers/KVMSPIMPPResourceReader.h"
#include "MPPImporter/readers/MPPResourcePropertyKeys.h"

namespace {

constexpr int32_t kLastBaselineNumber = 10;
constexpr int32_t kFormatWithoutBaselineMarks = 9;

const char* yesNo(bool value) {
    return value ? "YES" : "NO";
}

} // namespace

KVMSPISingleResourceBaselineReader::KVMSPISingleResourceBaselineReader(int32_t uid, int32_t baselineNumber,
                                                                       KVMSPIMPPResourceReader& reader)
    : KVMSPISingleObjectReaderBase(uid, reader), m_baselineNumber(baselineNumber),
      m_MPPPropertyList(reader.MPPPropertyList()) {
    tvAssert(baselineNumber >= 0 && baselineNumber <= kLastBaselineNumber,
             stringWithFormat("Invalid baseline number: %d", baselineNumber));
    m_isSet = readIsSet(reader);
    if (baselineNumber == 0) {
        readBaseline0(reader);
    } else {
        readCustomFieldBaseline(reader);
    }
}

bool KVMSPISingleResourceBaselineReader::readIsSet(KVMSPIMPPResourceReader& reader) const {
    if (m_MPPPropertyList.mppVersion() == kFormatWithoutBaselineMarks) {
        return true;
    }
    const auto property = m_baselineNumber == 0
                              ? m_MPPPropertyList.propertyID(kResourceBaselineZeroKey)
                              : m_MPPPropertyList.propertyID(kResourceBaselineGroupKey, m_baselineNumber);
    const KVMPPVarDataReader* var = reader.varDataReader();
    return property && var != nullptr && var->hasDataForObjectUID(uid(), static_cast<int32_t>(*property));
}

void KVMSPISingleResourceBaselineReader::readBaseline0(KVMSPIMPPResourceReader& reader) {
    const MPPObjectFieldReads& reads = reader.fieldReads();
    m_hasCost = reads.fixedDouble(kResourceBaselineCostKey, uid(), m_resourceCost, nullptr);
    m_hasWork = reads.fixedDouble(kResourceBaselineWorkKey, uid(), m_resourceWork, nullptr);
}

void KVMSPISingleResourceBaselineReader::readCustomFieldBaseline(KVMSPIMPPResourceReader& reader) {
    auto* project = dynamic_cast<KVMSPIMPPAbsProjectReader*>(reader.parentReader());
    KVMPPVarDataReader* var = reader.varDataReader();
    if (project == nullptr || var == nullptr) {
        return;
    }
    const auto readDouble = [&](int32_t groupKey, double& value) {
        const auto property = m_MPPPropertyList.propertyID(groupKey, m_baselineNumber);
        return property && project->customFieldDoubleValue(value, *var, uid(),
                                                           static_cast<int32_t>(*property), nullptr, nullptr);
    };
    m_hasCost = readDouble(kResourceBaselineCostGroupKey, m_resourceCost);
    m_hasWork = readDouble(kResourceBaselineWorkGroupKey, m_resourceWork);
}

std::string KVMSPISingleResourceBaselineReader::description() const {
    return stringWithFormat(
        "%s  hasCost=%s hasWork=%s ",
        stringWithFormat("<Resource UID=%d baseline=%d>", uid(), m_baselineNumber).c_str(), yesNo(m_hasCost),
        yesNo(m_hasWork));
}
