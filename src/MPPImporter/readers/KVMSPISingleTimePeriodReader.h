#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPImporter/readers/KVMSPISimpleObjectReaderBase.h"

#include <memory>

// The date period of a calendar exception: its first and last dates.
class KVMSPISingleTimePeriodReader : public KVMSPISimpleObjectReaderBase {
public:
    // `owner` is the exception (or week day) reader the period belongs to.
    KVMSPISingleTimePeriodReader(TVDate fromDate, TVDate toDate, const KVMSPISimpleObjectReaderBase& owner)
        : KVMSPISimpleObjectReaderBase(owner.reader()), _fromDate(fromDate), _toDate(toDate) {}

    TVDate fromDate() const { return _fromDate; }
    TVDate toDate() const { return _toDate; }

protected:
    std::unique_ptr<KVMSPIXQAdapter> newXQAdapter() override;

private:
    TVDate _fromDate;
    TVDate _toDate;
};
