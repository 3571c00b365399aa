#include "MPPImporter/query/adapters/KVMSPIXQTimephasedDataAdapter.h"

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
                {"Start", stringLeaf(&Phase::startDate, KVMSPIUtilities::mppToMspdiDateTime)},
                {"Finish", stringLeaf(&Phase::endDate, KVMSPIUtilities::mppToMspdiDateTime)},
                {"Value", stringLeaf(&Phase::duration, KVMSPIUtilities::mppToMspdiDuration)},
            },
    };
    return leaves;
}
