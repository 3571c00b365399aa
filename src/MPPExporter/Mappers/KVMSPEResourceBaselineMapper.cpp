#include "MPPExporter/Mappers/KVMSPEResourceBaselineMapper.h"

#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPCommon/support/Log.h"
#include "MPPExporter/Mappers/KVMSPEBaseline.h"
#include "MPPExporter/Mappers/MSPETvnxReading.h"

std::optional<KVMPPResourceBaseline>
KVMSPEResourceBaselineMapper::newBaselineFromTvnxResource(const KVMSPCXMLElement& tvnxResource) const {
    const auto saved =
        baseline().getResourceById(tvnxread::attribute(tvnxResource, tvnx::attribute::kId).value_or(""));
    if (!saved) {
        return std::nullopt;
    }
    const double cost = tvnxread::number(*saved, tvnx::element::kTotalCost, 0.0);
    const double hours = tvnxread::number(*saved, tvnx::element::kTotalHours, 0.0);
    tvLog(stringWithFormat("           baseline(%lu, cost: %f, work: %f)",
                           static_cast<unsigned long>(baselineNumber()), cost, hours));
    KVMPPResourceBaseline result;
    result.number = static_cast<int64_t>(baselineNumber());
    result.cost = cost;
    // The work of the plan is counted in seconds: hours taken as they stand would save an hour of work
    // as a second of it.
    result.work = hours * 3600.0;
    return result;
}
