#pragma once

#include "MPPCommon/xml/KVMSPCXMLElement.h"
#include "MPPExporter/MPPObjects/KVMPPExtendedAttribute.h"

#include <vector>

// Turns the `user-data` element of a task or resource into custom field values: one extended
// attribute per `key` with its `string`, the key as alias, in document order.
class KVMSPEUserDataMapper {
public:
    // A key followed by `null`, or by nothing, has no value and gives no attribute: a bundle may
    // write one (the table of contents declares names that way), and refusing the whole export over
    // it would lose every other value.
    static std::vector<KVMPPExtendedAttribute>
    newExtendedAttributesFromUserData(const KVMSPCXMLElement& userData);
};
