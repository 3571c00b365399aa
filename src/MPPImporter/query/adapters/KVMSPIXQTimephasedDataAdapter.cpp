#include "MPPImporter/query/adapters/KVMSPIXQTimephasedDataAdapter.h"

#include "MPPCommon/date/DateExtensions.h"
#include "MPPImporter/Mapper/utilities/KVMSPIUtilities.h"

namespace {

using Phase = KVMSPISingleTimephasedDataReader;

} // namespace

KVMSPIXQTimephasedDataAdapter::KVMSPIXQTimephasedDataAdapter(KVMSPIXQResponder& reader)
    : KVMSPIXQLeafAdapter(reader, "MSPIXQTimephasedDataAdapter: Incorrect reader %s.", phaseLeaves()) {}

const KVMSPIXQTimephasedDataAdapter::Leaves& KVMSPIXQTimephasedDataAdapter::phaseLeaves() {
    static const Leaves leaves{
        .strings =
            {
                // A phase's dates hold the wall clock as a UTC instant, as every reader's dates do, and
                // are written in the same MSPDI form: read in the machine's zone they would move with it.
                {"Start", stringLeaf(&Phase::startDate, initWithDateTime)},
                {"Finish", stringLeaf(&Phase::endDate, initWithDateTime)},
                {"Value", stringLeaf(&Phase::duration, KVMSPIUtilities::mppToMspdiDuration)},
            },
    };
    return leaves;
}
