#include "MPPImporter/Mapper/mapping/KVMSPIAssignmentMapper.h"

#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPCommon/support/Log.h"
#include "MPPImporter/Mapper/mapping/KVMSPIIdMapper.h"
#include "MPPImporter/Mapper/mapping/KVMSPIMapper.h"
#include "MPPImporter/Mapper/mapping/MSPIQueryAnswers.h"
#include "MPPImporter/readers/KVMSPISingleResourceReader.h"

#include <cstdlib>

KVMSPIAssignmentMapper::KVMSPIAssignmentMapper(KVMSPIMapper& mapper) : KVMSPIObjectMapperBase(mapper) {}

KVMSPCXMLElement::ElementPtr
KVMSPIAssignmentMapper::newAssignmentFromMSPAssignment(KVMSPIXQuery& mspAssignment,
                                                       const KVMSPIXQuery::Objects& resources) const {
    using namespace tvnx;
    const KVMSPCXMLElement::ElementPtr assignment = KVMSPCXMLElement::initWithName(element::kAssignment);
    bool costAssignment = false;
    if (const auto resourceUID = queryString(mspAssignment, "ResourceUID")) {
        assignment->setAttributeWithName(attribute::kIdref,
                                         _mapper.idMapper().resourceIdFromMspdiUID(*resourceUID));
        const int64_t uid = std::strtoll(resourceUID->c_str(), nullptr, 10);
        for (const auto& resource : resources) {
            const auto* reader = dynamic_cast<const KVMSPISingleResourceReader*>(resource.get());
            if (reader != nullptr && reader->uid() == uid) {
                costAssignment = queryBool(*resource, "IsCostResource").value_or(false);
            }
        }
    }
    const auto units = queryFloat(mspAssignment, costAssignment ? "Cost" : "Units");
    if (units && *units >= 0.0) {
        assignment->setAttributeWithName(attribute::kUnits, stringWithFormat("%f", *units));
    }
    return assignment;
}
