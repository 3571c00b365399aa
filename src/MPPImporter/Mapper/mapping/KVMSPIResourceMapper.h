#pragma once

#include "MPPCommon/xml/KVMSPCXMLElement.h"
#include "MPPImporter/Mapper/mapping/KVMSPIObjectMapperBase.h"
#include "MPPImporter/Mapper/mapping/KVMSPIUserDataMapper.h"

#include <cstdint>

// Turns one resource of the plan into one `resource` element. Work resources become staff; material
// and cost resources become material, a cost resource at a price of one for each unit of money.
class KVMSPIResourceMapper : public KVMSPIObjectMapperBase {
public:
    using ElementPtr = KVMSPCXMLElement::ElementPtr;

    KVMSPIResourceMapper(KVMSPIMapper& mapper, MSPIUserDataTOCElements& userDataTOCElements,
                         int64_t* mspResourceMaxId);

    ElementPtr newResourceFromMSPResource(KVMSPIXQuery& mspResource);
    int64_t mspResourceUID() const { return _mspResourceUID; }
    bool userDataChanged() const { return _userDataChanged; }

private:
    void addUserData(KVMSPIXQuery& mspResource, KVMSPCXMLElement& resource);
    void addCosts(KVMSPIXQuery& mspResource, KVMSPCXMLElement& resource, bool costResource) const;
    void addUnitsAvailable(KVMSPIXQuery& mspResource, KVMSPCXMLElement& resource, bool material,
                           bool costResource) const;
    void addSchedule(KVMSPIXQuery& mspResource, KVMSPCXMLElement& resource) const;

    int64_t _mspResourceUID = -1;
    MSPIUserDataTOCElements& _userDataTOCElements;
    int64_t* _mspResourceMaxId;
    bool _userDataChanged = false;
};
