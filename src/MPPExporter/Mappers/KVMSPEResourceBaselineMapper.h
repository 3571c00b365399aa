#pragma once

#include "MPPCommon/xml/KVMSPCXMLElement.h"
#include "MPPExporter/MPPObjects/KVMPPResourceBaseline.h"
#include "MPPExporter/Mappers/KVMSPEBaselineMapperBase.h"

#include <optional>

// Reads the saved work and cost of one resource from one baseline document.
class KVMSPEResourceBaselineMapper : public KVMSPEBaselineMapperBase {
public:
    using KVMSPEBaselineMapperBase::KVMSPEBaselineMapperBase;

    // `tvnxResource` is the resource element of the actual plan; none when the baseline doesn't hold
    // the resource.
    std::optional<KVMPPResourceBaseline>
    newBaselineFromTvnxResource(const KVMSPCXMLElement& tvnxResource) const;
};
