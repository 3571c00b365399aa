#include "MPPExporter/Mappers/KVMSPEBaselineMapperBase.h"

#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPExporter/Mappers/KVMSPEMapper.h"

#include <cstdlib>

KVMSPEBaselineMapperBase::KVMSPEBaselineMapperBase(size_t baselineNumber, KVMSPEMapper& mapper)
    : KVMSPEObjectMapperBase(mapper), _baselineNumber(baselineNumber) {
    const size_t count = mapper.tvnxBaselines().size();
    tvAssert(baselineNumber < count,
             stringWithFormat("Incorrect argument baselineNumber=%ld. Must be from 0 to %ld.",
                              static_cast<long>(baselineNumber), static_cast<long>(count) - 1));
}

const KVMSPEBaseline& KVMSPEBaselineMapperBase::baseline() const {
    return mapper().tvnxBaselines()[_baselineNumber];
}

double KVMSPEBaselineMapperBase::money(double value) {
    return std::strtod(stringWithFormat("%.02f", value).c_str(), nullptr);
}
