#include "MPPImporter/readers/KVMSPISingleResourceBaselineReader.h"

#include "MPPImporter/format/MPPResourcePropertyKeys.h"
#include "MPPImporter/readers/KVMSPIMPPResourceReader.h"

namespace {

constexpr int32_t kFormatWithoutBaselineMarks = 9;

} // namespace

KVMSPISingleResourceBaselineReader::KVMSPISingleResourceBaselineReader(int32_t uid, int32_t baselineNumber,
                                                                       KVMSPIMPPResourceReader& reader)
    : KVMSPISingleBaselineReaderBase(uid, baselineNumber, reader, "Invalid baseline number: %d") {
    bool marked = false;
    m_isSet = MPPPropertyList().mppVersion() == kFormatWithoutBaselineMarks ||
              (reader.hasBaseline(uid, baselineNumber, marked) && marked);
    if (baselineNumber == 0) {
        m_hasCost = fields().read(MPPField::resourceBaselineCost, uid, m_resourceCost, nullptr);
        m_hasWork = fields().read(MPPField::resourceBaselineWork, uid, m_resourceWork, nullptr);
    } else {
        m_hasCost = readGroupDouble(kResourceBaselineCostGroupKey, m_resourceCost);
        m_hasWork = readGroupDouble(kResourceBaselineWorkGroupKey, m_resourceWork);
    }
}

std::string KVMSPISingleResourceBaselineReader::description() const {
    return describe("Resource", {{"hasCost", m_hasCost}, {"hasWork", m_hasWork}});
}
