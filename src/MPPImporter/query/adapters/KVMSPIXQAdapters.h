#pragma once

#include "MPPImporter/query/frame/KVMSPIXQAdapterFactory.h"

// The query layer's adapter factory: one adapter class per reader family.
class KVMSPIXQAdapters : public KVMSPIXQAdapterFactory {
public:
    // Installs the query layer's factory into the frame. Safe to call any number of times, from any
    // thread.
    static void install();

    std::unique_ptr<KVMSPIXQAdapter> newAdapter(KVMSPIMPPProjectReader& reader) const override;
    std::unique_ptr<KVMSPIXQAdapter> newAdapter(KVMSPISingleTaskReader& reader) const override;
    std::unique_ptr<KVMSPIXQAdapter> newAdapter(KVMSPISingleResourceReader& reader) const override;
    std::unique_ptr<KVMSPIXQAdapter> newAdapter(KVMSPISingleAssignmentReader& reader) const override;
    std::unique_ptr<KVMSPIXQAdapter> newAdapter(KVMSPISingleCalendarReader& reader) const override;
    std::unique_ptr<KVMSPIXQAdapter> newAdapter(KVMSPISingleWeekDayReader& reader) const override;
    std::unique_ptr<KVMSPIXQAdapter> newAdapter(KVMSPISingleExceptionReader& reader) const override;
    std::unique_ptr<KVMSPIXQAdapter> newAdapter(KVMSPISingleTimePeriodReader& reader) const override;
    std::unique_ptr<KVMSPIXQAdapter> newAdapter(KVMSPISingleWorkingTimeReader& reader) const override;
    std::unique_ptr<KVMSPIXQAdapter> newAdapter(KVMSPISinglePredecessorLinkReader& reader) const override;
    std::unique_ptr<KVMSPIXQAdapter> newAdapter(KVMSPISingleTimephasedDataReader& reader) const override;
};
