#include "MPPImporter/query/adapters/KVMSPIXQAdapters.h"

#include "MPPImporter/query/adapters/KVMSPIXQAssignmentAdapter.h"
#include "MPPImporter/query/adapters/KVMSPIXQCalendarAdapter.h"
#include "MPPImporter/query/adapters/KVMSPIXQExceptionAdapter.h"
#include "MPPImporter/query/adapters/KVMSPIXQPredecessorLinkAdapter.h"
#include "MPPImporter/query/adapters/KVMSPIXQProjectAdapter.h"
#include "MPPImporter/query/adapters/KVMSPIXQResourceAdapter.h"
#include "MPPImporter/query/adapters/KVMSPIXQTaskAdapter.h"
#include "MPPImporter/query/adapters/KVMSPIXQTimePeriodAdapter.h"
#include "MPPImporter/query/adapters/KVMSPIXQTimephasedDataAdapter.h"
#include "MPPImporter/query/adapters/KVMSPIXQWeekDayAdapter.h"
#include "MPPImporter/query/adapters/KVMSPIXQWorkingTimeAdapter.h"
#include "MPPImporter/readers/KVMSPIMPPProjectReader.h"
#include "MPPImporter/readers/KVMSPISingleAssignmentReader.h"
#include "MPPImporter/readers/KVMSPISingleCalendarReader.h"
#include "MPPImporter/readers/KVMSPISingleExceptionReader.h"
#include "MPPImporter/readers/KVMSPISinglePredecessorLinkReader.h"
#include "MPPImporter/readers/KVMSPISingleResourceReader.h"
#include "MPPImporter/readers/KVMSPISingleTaskReader.h"
#include "MPPImporter/readers/KVMSPISingleTimePeriodReader.h"
#include "MPPImporter/readers/KVMSPISingleTimephasedDataReader.h"
#include "MPPImporter/readers/KVMSPISingleWeekDayReader.h"
#include "MPPImporter/readers/KVMSPISingleWorkingTimeReader.h"

void KVMSPIXQAdapters::install() {
    // A static local is made once even when several threads get here first.
    static const KVMSPIXQAdapters adapters;
    static const bool installed = (KVMSPIXQAdapterFactory::install(adapters), true);
    (void)installed;
}

std::unique_ptr<KVMSPIXQAdapter> KVMSPIXQAdapters::newAdapter(KVMSPIMPPProjectReader& reader) const {
    return std::make_unique<KVMSPIXQProjectAdapter>(reader);
}

std::unique_ptr<KVMSPIXQAdapter> KVMSPIXQAdapters::newAdapter(KVMSPISingleTaskReader& reader) const {
    return std::make_unique<KVMSPIXQTaskAdapter>(reader);
}

std::unique_ptr<KVMSPIXQAdapter> KVMSPIXQAdapters::newAdapter(KVMSPISingleResourceReader& reader) const {
    return std::make_unique<KVMSPIXQResourceAdapter>(reader);
}

std::unique_ptr<KVMSPIXQAdapter> KVMSPIXQAdapters::newAdapter(KVMSPISingleAssignmentReader& reader) const {
    return std::make_unique<KVMSPIXQAssignmentAdapter>(reader);
}

std::unique_ptr<KVMSPIXQAdapter> KVMSPIXQAdapters::newAdapter(KVMSPISingleCalendarReader& reader) const {
    return std::make_unique<KVMSPIXQCalendarAdapter>(reader);
}

std::unique_ptr<KVMSPIXQAdapter> KVMSPIXQAdapters::newAdapter(KVMSPISingleWeekDayReader& reader) const {
    return std::make_unique<KVMSPIXQWeekDayAdapter>(reader);
}

std::unique_ptr<KVMSPIXQAdapter> KVMSPIXQAdapters::newAdapter(KVMSPISingleExceptionReader& reader) const {
    return std::make_unique<KVMSPIXQExceptionAdapter>(reader);
}

std::unique_ptr<KVMSPIXQAdapter> KVMSPIXQAdapters::newAdapter(KVMSPISingleTimePeriodReader& reader) const {
    return std::make_unique<KVMSPIXQTimePeriodAdapter>(reader);
}

std::unique_ptr<KVMSPIXQAdapter> KVMSPIXQAdapters::newAdapter(KVMSPISingleWorkingTimeReader& reader) const {
    return std::make_unique<KVMSPIXQWorkingTimeAdapter>(reader);
}

std::unique_ptr<KVMSPIXQAdapter>
KVMSPIXQAdapters::newAdapter(KVMSPISinglePredecessorLinkReader& reader) const {
    return std::make_unique<KVMSPIXQPredecessorLinkAdapter>(reader);
}

std::unique_ptr<KVMSPIXQAdapter>
KVMSPIXQAdapters::newAdapter(KVMSPISingleTimephasedDataReader& reader) const {
    return std::make_unique<KVMSPIXQTimephasedDataAdapter>(reader);
}
