#pragma once

#include "MPPCommon/xml/KVMSPCXMLElement.h"
#include "MPPImporter/Mapper/mapping/KVMSPIObjectMapperBase.h"

// Turns one assignment into the `assignment` element of its task: the resource and its units, which
// for a cost resource are the amount of money.
class KVMSPIAssignmentMapper : public KVMSPIObjectMapperBase {
public:
    explicit KVMSPIAssignmentMapper(KVMSPIMapper& mapper);

    // `resources` are the plan's resource readers, to tell a cost resource.
    KVMSPCXMLElement::ElementPtr newAssignmentFromMSPAssignment(KVMSPIXQuery& mspAssignment,
                                                                const KVMSPIXQuery::Objects& resources) const;
};
