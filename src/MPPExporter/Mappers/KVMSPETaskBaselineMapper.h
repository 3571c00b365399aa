#pragma once

#include "MPPCommon/xml/KVMSPCXMLElement.h"
#include "MPPExporter/MPPObjects/KVMPPTaskBaseline.h"
#include "MPPExporter/Mappers/KVMSPEBaselineMapperBase.h"

#include <optional>

// Reads the saved values of one task from one baseline document: dates, duration, work and costs.
class KVMSPETaskBaselineMapper : public KVMSPEBaselineMapperBase {
public:
    using KVMSPEBaselineMapperBase::KVMSPEBaselineMapperBase;

    // `tvnxTask` is the task element of the actual plan; none when the baseline doesn't hold the task.
    std::optional<KVMPPTaskBaseline> newBaselineFromTvnxTask(const KVMSPCXMLElement& tvnxTask) const;
};
