#include "MPPImporter/readers/KVMSPISingleResourceBaselineReader.h"

#include "MPPImporter/file/KVMPPVarDataReader.h"
#include "MPPImporter/format/MPPResourcePropertyKeys.h"
#include "MPPImporter/readers/KVMSPIMPPResourceReader.h"

namespace {

constexpr int32_t kFormatWithoutBaselineMarks = 9;

// Whether the resource's variable data holds the mark property of the baseline.
bool markedInVarData(int32_t uid, int32_t baselineNumber, KVMSPIMPPResourceReader& reader) {
    const KVMSPIMPPPropertyList& list = reader.MPPPropertyList();
    const auto property = baselineNumber == 0 ? list.propertyID(kResourceBaselineZeroKey)
                                              : list.propertyID(kResourceBaselineGroupKey, baselineNumber);
    KVMPPVarDataReader* var = reader.varDataReader();
    return property && var != nullptr && var->hasDataForObjectUID(uid, static_cast<int32_t>(*property));
}

} // namespace

KVMSPISingleResourceBaselineReader::KVMSPISingleResourceBaselineReader(int32_t uid, int32_t baselineNumber,
                                                                       KVMSPIMPPResourceReader& reader)
    : KVMSPISingleBaselineReaderBase(uid, baselineNumber, reader, "Invalid baseline number: %d") {
    m_isSet = MPPPropertyList().mppVersion() == kFormatWithoutBaselineMarks ||
              markedInVarData(uid, baselineNumber, reader);
    if (baselineNumber == 0) {
        m_hasCost = fields().fixedDouble(kResourceBaselineCostKey, uid, m_resourceCost, nullptr);
        m_hasWork = fields().fixedDouble(kResourceBaselineWorkKey, uid, m_resourceWork, nullptr);
    } else {
        m_hasCost = readGroupDouble(kResourceBaselineCostGroupKey, m_resourceCost);
        m_hasWork = readGroupDouble(kResourceBaselineWorkGroupKey, m_resourceWork);
    }
}

std::string KVMSPISingleResourceBaselineReader::description() const {
    return describe("Resource", {{"hasCost", m_hasCost}, {"hasWork", m_hasWork}});
}
