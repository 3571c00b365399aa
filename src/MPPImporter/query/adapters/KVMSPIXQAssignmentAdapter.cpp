#include "MPPImporter/query/adapters/KVMSPIXQAssignmentAdapter.h"

#include "MPPImporter/Mapper/utilities/KVMSPIUtilities.h"
#include "MPPImporter/readers/KVMSPISingleTimephasedDataReader.h"

namespace {

using Assignment = KVMSPISingleAssignmentReader;

} // namespace

KVMSPIXQAssignmentAdapter::KVMSPIXQAssignmentAdapter(KVMSPIXQResponder& reader)
    : KVMSPIXQLeafAdapter(reader, "MSPIXQAssignmentAdapter: Incorrect reader %s.", assignmentLeaves()) {}

const KVMSPIXQAssignmentAdapter::Leaves& KVMSPIXQAssignmentAdapter::assignmentLeaves() {
    // The reader holds work in seconds. The work fields are answered as the saving application shows
    // them, as its interchange files give them.
    static const Leaves leaves{
        .strings =
            {
                {"ResourceUID", stringLeaf(&Assignment::assignmentResourceUID, decimalText)},
                {"TaskUID", stringLeaf(&Assignment::assignmentTaskUID, decimalText)},
                {"Work", stringLeaf(&Assignment::shownWork, KVMSPIUtilities::mppToMspdiDuration)},
                {"ActualWork",
                 stringLeaf(&Assignment::assignmentActualWork, KVMSPIUtilities::mppToMspdiDuration)},
                {"RemainingWork",
                 stringLeaf(&Assignment::shownRemainingWork, KVMSPIUtilities::mppToMspdiDuration)},
            },
        .integers =
            {
                {"ResourceUID", integerLeaf(&Assignment::assignmentResourceUID)},
                {"TaskUID", integerLeaf(&Assignment::assignmentTaskUID)},
            },
        // The reader's units are a percentage; the interchange vocabulary has a fraction.
        .doubles =
            {
                {"Units", doubleLeaf(&Assignment::assignmentUnits, 100.0)},
                {"Cost", doubleLeaf(&Assignment::assignmentCost)},
            },
        .collections =
            {
                {"TimephasedData", collectionLeaf(&Assignment::timephasedDataReaders)},
            },
    };
    return leaves;
}
