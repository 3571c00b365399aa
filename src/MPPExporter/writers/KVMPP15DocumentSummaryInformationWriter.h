#pragma once

#include "MPPExporter/writers/KVMPP15SummaryInformationWriter.h"

// Regenerates the document summary information property set at the root: the code page, category,
// manager and company of the project's summary.
class KVMPP15DocumentSummaryInformationWriter : public KVMPP15SummaryInformationWriter {
public:
    using KVMPP15SummaryInformationWriter::KVMPP15SummaryInformationWriter;

protected:
    std::vector<Property> properties() const override;
    void openSet(KVMPPSummaryInfoData& data) const override;
};
