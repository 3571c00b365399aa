#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPImporter/readers/KVMSPISingleObjectReaderBase.h"

#include <memory>

// One phase of an assignment's timephased work: its period and the work done in it.
class KVMSPISingleTimephasedDataReader : public KVMSPISingleObjectReaderBase {
public:
    KVMSPISingleTimephasedDataReader(int32_t assignmentUID, TVDate startDate, TVDate endDate, double duration,
                                     KVMSPIMPPDataDirectoryReader& reader)
        : KVMSPISingleObjectReaderBase(assignmentUID, reader), m_startDate(startDate), m_endDate(endDate),
          m_duration(duration) {}

    int32_t assignmentUID() const { return uid(); }
    TVDate startDate() const { return m_startDate; }
    TVDate endDate() const { return m_endDate; }
    // The phase's work, in seconds.
    double duration() const { return m_duration; }

protected:
    std::unique_ptr<KVMSPIXQAdapter> newXQAdapter() override;

private:
    TVDate m_startDate;
    TVDate m_endDate;
    double m_duration;
};
