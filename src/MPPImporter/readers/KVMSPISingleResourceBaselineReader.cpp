#include "MPPImporter/readers/KVMSPISingleResourceBaselineReader.h"

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
    m_hasCost = read(MPPField::resourceBaselineCost, m_resourceCost);
    m_hasWork = read(MPPField::resourceBaselineWork, m_resourceWork);
}

std::string KVMSPISingleResourceBaselineReader::description() const {
    return describe("Resource", {{"hasCost", m_hasCost}, {"hasWork", m_hasWork}});
}
