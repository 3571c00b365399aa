#pragma once

#include "MPPCommon/xml/KVMSPCXMLElement.h"
#include "MPPExporter/MPPObjects/KVMPPResource.h"
#include "MPPExporter/Mappers/KVMSPEObjectMapperBase.h"

#include <cstdint>
#include <memory>

// Turns one resource element of the bundle into a resource of the plan, and has the calendar mapper
// read its schedule. A group resource makes no resource, but its schedule is read all the same.
class KVMSPEResourceMapper : public KVMSPEObjectMapperBase {
public:
    using ElementPtr = KVMSPCXMLElement::ElementPtr;

    explicit KVMSPEResourceMapper(KVMSPEMapper& mapper) : KVMSPEObjectMapperBase(mapper) {}

    // The work resource that stands first in every plan, with the next resource ID.
    static std::shared_ptr<KVMPPResource> newDummyResourceWithMapper(KVMSPEMapper& mapper);

    // Null for a group resource. `parentResource` is null for the top resource.
    std::shared_ptr<KVMPPResource> newResourceFromTVNXResource(const ElementPtr& tvnxResource,
                                                               const ElementPtr& parentResource);
    // The UID of the last mapped resource's calendar; -1 before.
    int64_t resourceCalendarUID() const { return _resourceCalendarUID; }

private:
    static void mapWorkAndCost(KVMSPCXMLElement& element, KVMPPResource& resource);
    // The resource's saved values in each baseline document that holds it, numbered by the document.
    void mapBaselines(const KVMSPCXMLElement& element, KVMPPResource& resource) const;

    int64_t _resourceCalendarUID = -1;
};
