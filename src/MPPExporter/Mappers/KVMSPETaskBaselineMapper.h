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

    // The saved dates of a task as its baseline takes them: `saved` is the baseline document's task,
    // `actual` the plan's.
    static std::optional<TVDate> savedStart(const KVMSPCXMLElement& saved, const KVMSPCXMLElement& actual);
    static std::optional<TVDate> savedFinish(const KVMSPCXMLElement& saved, const KVMSPCXMLElement& actual);
};
