#include "MPPImporter/query/adapters/KVMSPIXQResourceAdapter.h"

#include "MPPCommon/date/DateExtensions.h"
#include "MPPImporter/readers/KVMSPISingleExtendedAttribute.h"

namespace {

using Resource = KVMSPISingleResourceReader;

// The file's type 0 is a work resource, which the interchange vocabulary calls 1; every other type
// (and a type that can't be read) answers 0.
int64_t interchangeType(const Resource& resource, TVError* error) {
    int16_t type = 0;
    return resource.resourceType(type, error) && type == 0 ? 1 : 0;
}

} // namespace

KVMSPIXQResourceAdapter::KVMSPIXQResourceAdapter(KVMSPIXQResponder& reader)
    : KVMSPIXQLeafAdapter(reader, "MSPIXQResourceAdapter: Incorrect reader %s.", resourceLeaves()) {}

const KVMSPIXQResourceAdapter::Leaves& KVMSPIXQResourceAdapter::resourceLeaves() {
    static const Leaves leaves{
        .strings =
            {
                {"EmailAddress", stringLeaf(&Resource::resourceEmailAddress)},
                {"Name", stringLeaf(&Resource::resourceName)},
                {"Notes", stringLeaf(&Resource::resourceNotes)},
                {"ID", stringLeaf(&Resource::resourceID, decimalText)},
                {"UID", stringLeaf(&Resource::resourceUID, decimalText)},
                {"CostPerUse", stringLeaf(&Resource::resourceCostPerUse, moneyText)},
                {"StandardRate", stringLeaf(&Resource::resourceStandardRate, moneyText)},
                {"AvailableFrom", stringLeaf(&Resource::resourceAvailableFrom, initWithDateTime)},
                {"AvailableTo", stringLeaf(&Resource::resourceAvailableTo, initWithDateTime)},
            },
        .integers =
            {
                {"CalendarUID", integerLeaf(&Resource::resourceCalendarUID)},
                {"UID", integerLeaf(&Resource::resourceUID)},
                {"Type", interchangeType},
            },
        .doubles =
            {
                {"CostPerUse", doubleLeaf(&Resource::resourceCostPerUse)},
                {"StandardRate", doubleLeaf(&Resource::resourceStandardRate)},
                {"MaxUnits", doubleLeaf(&Resource::resourceMaxUnits, 100.0)},
            },
        .booleans =
            {
                {"IsCostResource", booleanLeaf(&Resource::resourceIsCostResource)},
            },
        .collections =
            {
                {"ExtendedAttribute", collectionLeaf(&Resource::resourceCustomFields)},
            },
    };
    return leaves;
}
