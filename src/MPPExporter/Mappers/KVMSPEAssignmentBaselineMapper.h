#pragma once

#include "MPPCommon/xml/KVMSPCXMLElement.h"
#include "MPPExporter/MPPObjects/KVMPPAssignmentBaseline.h"
#include "MPPExporter/Mappers/KVMSPEBaselineMapperBase.h"

#include <optional>

// Reads the saved values of one assignment from one baseline document: its dates, or its task's, the
// work of its task and the cost of its resource.
class KVMSPEAssignmentBaselineMapper : public KVMSPEBaselineMapperBase {
public:
    using KVMSPEBaselineMapperBase::KVMSPEBaselineMapperBase;

    // `tvnxAssignment` is an assignment element of the actual plan, under its task; none when the
    // baseline doesn't hold the assignment.
    std::optional<KVMPPAssignmentBaseline>
    newBaselineFromTvnxAssignment(const KVMSPCXMLElement& tvnxAssignment) const;
};
