#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPImporter/readers/KVMSPISimpleObjectReaderBase.h"

#include <memory>

// One working range of a week day or of a calendar exception, in time spans after midnight.
class KVMSPISingleWorkingTimeReader : public KVMSPISimpleObjectReaderBase {
public:
    // `owner` is the week day or exception reader the range belongs to.
    KVMSPISingleWorkingTimeReader(TVTimeSpan fromTime, TVTimeSpan toTime,
                                  const KVMSPISimpleObjectReaderBase& owner)
        : KVMSPISimpleObjectReaderBase(owner.reader()), _fromTimeSpan(fromTime), _toTimeSpan(toTime) {}

    TVTimeSpan fromTimeSpan() const { return _fromTimeSpan; }
    TVTimeSpan toTimeSpan() const { return _toTimeSpan; }

protected:
    std::unique_ptr<KVMSPIXQAdapter> newXQAdapter() override;

private:
    TVTimeSpan _fromTimeSpan;
    TVTimeSpan _toTimeSpan;
};
