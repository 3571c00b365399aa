#pragma once

#include <memory>

class KVMSPIXQAdapter;
class KVMSPIMPPProjectReader;
class KVMSPISingleTaskReader;
class KVMSPISingleResourceReader;
class KVMSPISingleAssignmentReader;
class KVMSPISingleCalendarReader;
class KVMSPISingleWeekDayReader;
class KVMSPISingleExceptionReader;
class KVMSPISingleTimePeriodReader;
class KVMSPISingleWorkingTimeReader;
class KVMSPISinglePredecessorLinkReader;
class KVMSPISingleTimephasedDataReader;

// Makes the adapter of each reader family. The readers sit below the adapters, so they reach them
// only through the factory that the query layer installs: once, by whoever hands readers to the
// mappers, before the first query.
class KVMSPIXQAdapterFactory {
public:
    virtual ~KVMSPIXQAdapterFactory() = default;

    virtual std::unique_ptr<KVMSPIXQAdapter> newAdapter(KVMSPIMPPProjectReader& reader) const = 0;
    virtual std::unique_ptr<KVMSPIXQAdapter> newAdapter(KVMSPISingleTaskReader& reader) const = 0;
    virtual std::unique_ptr<KVMSPIXQAdapter> newAdapter(KVMSPISingleResourceReader& reader) const = 0;
    virtual std::unique_ptr<KVMSPIXQAdapter> newAdapter(KVMSPISingleAssignmentReader& reader) const = 0;
    virtual std::unique_ptr<KVMSPIXQAdapter> newAdapter(KVMSPISingleCalendarReader& reader) const = 0;
    virtual std::unique_ptr<KVMSPIXQAdapter> newAdapter(KVMSPISingleWeekDayReader& reader) const = 0;
    virtual std::unique_ptr<KVMSPIXQAdapter> newAdapter(KVMSPISingleExceptionReader& reader) const = 0;
    virtual std::unique_ptr<KVMSPIXQAdapter> newAdapter(KVMSPISingleTimePeriodReader& reader) const = 0;
    virtual std::unique_ptr<KVMSPIXQAdapter> newAdapter(KVMSPISingleWorkingTimeReader& reader) const = 0;
    virtual std::unique_ptr<KVMSPIXQAdapter> newAdapter(KVMSPISinglePredecessorLinkReader& reader) const = 0;
    virtual std::unique_ptr<KVMSPIXQAdapter> newAdapter(KVMSPISingleTimephasedDataReader& reader) const = 0;

    // Makes `factory` the one that readers use; it must live until the process ends.
    static void install(const KVMSPIXQAdapterFactory& factory);
    // The installed factory; raises "Query adapters must be installed." when there is none.
    static const KVMSPIXQAdapterFactory& installed();
};
