#pragma once

#include "MPPExporter/Mappers/KVMSPEObjectMapperBase.h"

#include <cstddef>

class KVMSPEBaseline;

// The base of the mappers that read one object of the plan from one baseline document of the
// driver. One instance serves one baseline of one object.
class KVMSPEBaselineMapperBase : public KVMSPEObjectMapperBase {
public:
    // A number that names no baseline document of the driver is an internal error.
    KVMSPEBaselineMapperBase(size_t baselineNumber, KVMSPEMapper& mapper);

    size_t baselineNumber() const { return _baselineNumber; }
    const KVMSPEBaseline& baseline() const;

protected:
    // A money amount as the plan shows it, two decimals as printed.
    static double money(double value);

private:
    size_t _baselineNumber;
};
