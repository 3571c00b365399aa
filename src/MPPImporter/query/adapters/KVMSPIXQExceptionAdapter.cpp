#include "MPPImporter/query/adapters/KVMSPIXQExceptionAdapter.h"

namespace {

using Exception = KVMSPISingleExceptionReader;

const KVMSPIXQExceptionAdapter::Leaves& noLeaves() {
    static const KVMSPIXQExceptionAdapter::Leaves leaves;
    return leaves;
}

} // namespace

KVMSPIXQExceptionAdapter::KVMSPIXQExceptionAdapter(KVMSPIXQResponder& reader)
    : KVMSPIXQCalendarDayAdapter(reader, "MSPIXQExceptionAdapter: Incorrect reader %s.", noLeaves(),
                                 &Exception::exceptionTimePeriodFromDate,
                                 &Exception::exceptionTimePeriodToDate) {}

KVMSPIXQuery::Objects KVMSPIXQExceptionAdapter::timePeriodObjects(const std::string&, TVError*) {
    KVMSPISingleTimePeriodReader* period = dayReader().timePeriodReader();
    return period != nullptr ? Objects{answerOwnedBy(reader(), *period)} : Objects{};
}
