#include "MPPExporter/Mappers/KVMSPEResourceMapper.h"

#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPCommon/date/KVMSPCDateTimeConverter.h"
#include "MPPCommon/date/StringExtensions.h"
#include "MPPCommon/shared/MSPCNotes.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPExporter/Mappers/KVMSPECalendarMapper.h"
#include "MPPExporter/Mappers/KVMSPEIdMapper.h"
#include "MPPExporter/Mappers/KVMSPEMapper.h"
#include "MPPExporter/Mappers/KVMSPEProjectMapper.h"
#include "MPPExporter/Mappers/KVMSPEResourceBaselineMapper.h"
#include "MPPExporter/Mappers/KVMSPEUserDataMapper.h"
#include "MPPExporter/Mappers/MSPETvnxReading.h"

std::shared_ptr<KVMPPResource> KVMSPEResourceMapper::newDummyResourceWithMapper(KVMSPEMapper&) {
    auto resource = std::make_shared<KVMPPResource>();
    resource->ID = static_cast<uint64_t>(KVMSPEMapper::nextResourceID());
    resource->setResourceTypeWork();
    return resource;
}

std::shared_ptr<KVMPPResource>
KVMSPEResourceMapper::newResourceFromTVNXResource(const ElementPtr& tvnxResource,
                                                  const ElementPtr& parentResource) {
    KVMSPCXMLElement& element = *tvnxResource;
    const std::optional<std::string> id = tvnxread::attribute(element, tvnx::attribute::kId);
    tvAssert(id.has_value(),
             stringWithFormat("Resource <%p> has no 'id' attribute.", static_cast<void*>(&element)));
    const auto nameElement = tvnxread::singleElement(element, tvnx::element::kName);
    const std::string name = nameElement ? nameElement->stringValue().value_or("") : "";
    tvLog(nameElement ? "  *** Mapping Resource id='" + *id + "' name='" + name + "'"
                      : "  *** Mapping Top Resource id='" + *id + "'");
    _resourceCalendarUID = mapper().calendarMapper()->mapCalendarForResource(tvnxResource, parentResource);

    const std::optional<std::string> type = element.stringValueForXQuery(tvnx::element::kType, nullptr);
    const bool isMaterial = type == tvnx::value::kResourceTypeMaterial;
    if (type != tvnx::value::kResourceTypeStaff && type != tvnx::value::kResourceTypeEquipment &&
        !isMaterial) {
        tvLog("         Mapping group resource....");
        return nullptr;
    }

    auto resource = std::make_shared<KVMPPResource>();
    const std::string uid = mapper().idMapper()->resourceUIDFromTvnxResourceId(*id);
    resource->ID = static_cast<uint64_t>(KVMSPEMapper::nextResourceID());
    KVMSPEProjectMapper::UidToIdMap& uidToId = mapper().projectMapper()->resourceUidToIdMap();
    tvAssert(uidToId.count(uid) == 0,
             "Duplicated Resource UID='" + uid + "' found (tvnx Resource id='" + *id + "').");
    uidToId[uid] = std::to_string(resource->ID);
    resource->name = stringByReplacingOccurrencesOfNewline(name);
    if (isMaterial) {
        resource->setResourceTypeMaterial();
    } else {
        resource->setResourceTypeWork();
    }

    resource->maxUnits = tvnxread::number(element, tvnx::element::kUnitsAvailable, 1.0);
    const double efficiency = tvnxread::number(element, tvnx::element::kEfficiency, 1.0);
    if (efficiency != 1.0) {
        tvLog(stringWithFormat("WARINING: MS Project doesn't support the Tarvane 'efficiency' attribute for "
                               "resources. Efficiency=%.02f%% in resource '%s' is ignored.",
                               efficiency * 100, name.c_str()));
    }
    if (const auto note = tvnxread::singleElement(element, tvnx::element::kNote)) {
        resource->notes = newNotesFromTVNXNote(*note);
    }
    if (const auto userData = tvnxread::singleElement(element, tvnx::element::kUserData)) {
        for (KVMPPExtendedAttribute& attribute :
             KVMSPEUserDataMapper::newExtendedAttributesFromUserData(*userData)) {
            resource->customFieldsText.addAttribute(std::move(attribute));
        }
    }
    if (const auto schedule = tvnxread::singleElement(element, tvnx::element::kSchedule)) {
        const auto availability = [&schedule](const char* name) {
            const auto text = schedule->stringValueForXQuery(name, nullptr);
            return text ? KVMSPCDateTimeConverter::mppFromTvnxDateTime(*text) : std::nullopt;
        };
        resource->availableFromDate = availability(tvnx::element::kScheduleStart);
        resource->availableToDate = availability(tvnx::element::kScheduleEnd);
    }
    resource->emailAddress = element.stringValueForXQuery(tvnx::element::kEmailAddress, nullptr);
    resource->calendar.setKey(std::to_string(_resourceCalendarUID));
    mapWorkAndCost(element, *resource);
    mapBaselines(element, *resource);
    return resource;
}

void KVMSPEResourceMapper::mapBaselines(const KVMSPCXMLElement& element, KVMPPResource& resource) const {
    const size_t count = mapper().tvnxBaselines().size();
    resource.baselines.reserve(count);
    for (size_t number = 0; number < count; ++number) {
        tvLog(stringWithFormat("           current(%lu, cost: %f, work: %f)",
                               static_cast<unsigned long>(number), resource.cost, resource.work));
        if (auto baseline =
                KVMSPEResourceBaselineMapper(number, mapper()).newBaselineFromTvnxResource(element)) {
            resource.baselines.push_back(*baseline);
        }
    }
}

void KVMSPEResourceMapper::mapWorkAndCost(KVMSPCXMLElement& element, KVMPPResource& resource) {
    const auto number = [&element](const char* name) { return tvnxread::number(element, name, 0.0); };
    resource.costPerUse = number(tvnx::element::kCostPerUse);
    resource.cost = number(tvnx::element::kTotalCost);
    std::optional<double> actualCost;
    if (resource.getResourceType() == 1) {
        resource.work = number(tvnx::element::kTotalUses);
        resource.actualWork = number(tvnx::element::kActualUses);
        actualCost = resource.actualWork * resource.costPerUse;
    } else {
        resource.work = number(tvnx::element::kEffort);
        resource.actualWork = number(tvnx::element::kEffortDone);
        resource.standartRate = number(tvnx::element::kCostPerHour);
        TVError error;
        const double hourlyCostDone = element.floatValueForXQuery(tvnx::element::kHourlyCostDone, &error);
        if (error.code == 0) {
            actualCost = hourlyCostDone + resource.costPerUse;
        }
    }
    resource.remainingWork = resource.work - resource.actualWork;
    if (actualCost) {
        resource.actualCost = *actualCost;
        resource.remainingCost = resource.cost - *actualCost;
    }
}
