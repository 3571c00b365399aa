#include "MPPExporter/writers/KVMPP15DocumentSummaryInformationWriter.h"

#include "MPPExporter/MPPObjects/KVMPPProject.h"
#include "MPPExporter/writers/KVMPPSummaryInfoData.h"

namespace {

constexpr uint32_t kCategory = 0x02;
constexpr uint32_t kManager = 0x0E;
constexpr uint32_t kCompany = 0x0F;

} // namespace

std::vector<KVMPP15SummaryInformationWriter::Property>
KVMPP15DocumentSummaryInformationWriter::properties() const {
    const KVMPPSummaryInformation& summary = project().summaryInfo;
    const uint16_t codePage = codePageForTexts({summary.category, summary.manager, summary.company});
    std::vector<Property> result = {codePageProperty(codePage)};
    for (const auto& [id, text] :
         {std::pair{kCategory, &summary.category}, std::pair{kManager, &summary.manager},
          std::pair{kCompany, &summary.company}}) {
        if (auto property = textProperty(id, *text)) {
            result.push_back(std::move(*property));
        }
    }
    return result;
}

void KVMPP15DocumentSummaryInformationWriter::openSet(KVMPPSummaryInfoData& data) const {
    data.openDoc();
}
