#include "MPPImporter/Mapper/mapping/KVMSPIResourceMapper.h"

#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/Mapper/mapping/KVMSPICalendarMapper.h"
#include "MPPImporter/Mapper/mapping/KVMSPIIdMapper.h"
#include "MPPImporter/Mapper/mapping/KVMSPIMapper.h"
#include "MPPImporter/Mapper/mapping/KVMSPINoteMapper.h"
#include "MPPImporter/Mapper/mapping/MSPIDateTexts.h"
#include "MPPImporter/Mapper/mapping/MSPIQueryAnswers.h"
#include "MPPImporter/Mapper/utilities/MSPExtendedAttributeDictionary.h"
#include "MPPImporter/readers/KVMSPIMPPProjectReader.h"
#include "MPPImporter/readers/KVMSPISingleResourceReader.h"

#include <algorithm>
#include <cstdlib>

namespace {

using ElementPtr = KVMSPCXMLElement::ElementPtr;

// MSPDI resource types.
constexpr int64_t kMaterialResource = 0;
constexpr int64_t kWorkResource = 1;

} // namespace

KVMSPIResourceMapper::KVMSPIResourceMapper(KVMSPIMapper& mapper, MSPIUserDataTOCElements& userDataTOCElements,
                                           int64_t* mspResourceMaxId)
    : KVMSPIObjectMapperBase(mapper), _userDataTOCElements(userDataTOCElements),
      _mspResourceMaxId(mspResourceMaxId) {}

KVMSPIResourceMapper::ElementPtr KVMSPIResourceMapper::newResourceFromMSPResource(KVMSPIXQuery& mspResource) {
    using namespace tvnx;
    const std::optional<std::string> uid = queryString(mspResource, "UID");
    tvAssert(uid.has_value(), "Failed to get UID from Resource.");
    _mspResourceUID = std::strtoll(uid->c_str(), nullptr, 10);
    const ElementPtr resource = KVMSPCXMLElement::initWithName(element::kResource);
    resource->setAttributeWithName(attribute::kId, _mapper.idMapper().resourceIdFromMspdiUID(*uid));
    if (_mspResourceUID > 0 && _mspResourceUID > *_mspResourceMaxId) {
        *_mspResourceMaxId = _mspResourceUID;
    }
    addTextChild(*resource, element::kName, queryString(mspResource, "Name"));
    const int64_t type = queryInt(mspResource, "Type").value_or(kWorkResource);
    tvAssert(
        type == kMaterialResource || type == kWorkResource,
        stringWithFormat("Invalid value of 'Type' in 'Resource': '%lld'.", static_cast<long long>(type)));
    const bool costResource =
        _mapper.mspSaveVersion() >= 12 && queryBool(mspResource, "IsCostResource").value_or(false);
    const bool material = costResource || type == kMaterialResource;
    resource->addChildElementWithName(element::kType,
                                      material ? value::kResourceTypeMaterial : value::kResourceTypeStaff);
    if (const auto notes = queryString(mspResource, "Notes"); notes && !notes->empty()) {
        resource->addChild(KVMSPINoteMapper().newNoteFromMSPNotes(*notes));
    }
    addUserData(mspResource, *resource);
    addCosts(mspResource, *resource, costResource);
    addUnitsAvailable(mspResource, *resource, material, costResource);
    addSchedule(mspResource, *resource);
    addTextChild(*resource, element::kEmailAddress, queryString(mspResource, "EmailAddress"));
    return resource;
}

void KVMSPIResourceMapper::addUserData(KVMSPIXQuery& mspResource, KVMSPCXMLElement& resource) {
    const KVMSPIXQuery::Objects attributes = queryObjectsOrEmpty(mspResource, "ExtendedAttribute");
    const KVMSPIUserDataMapper::Fields fields = newDictionaryWithMSPExtendedAttributes(attributes);
    if (fields.empty()) {
        return;
    }
    KVMSPIUserDataMapper userDataMapper(_userDataTOCElements);
    if (const ElementPtr userData = userDataMapper.newUserDataFromDictionary(fields)) {
        resource.addChild(userData);
    }
    _userDataChanged =
        userDataMapper.setUserDataTOCElementsForTag(tvnx::element::kResourceUserDataKeys, fields);
}

// The cost per use is stored in hundredths of the currency unit; a cost resource costs one for each
// unit of money that its assignments carry.
void KVMSPIResourceMapper::addCosts(KVMSPIXQuery& mspResource, KVMSPCXMLElement& resource,
                                    bool costResource) const {
    using namespace tvnx::element;
    const std::optional<double> costPerUse = costResource ? 100.0 : queryFloat(mspResource, "CostPerUse");
    if (costPerUse) {
        resource.addChildElementWithName(kCostPerUse, stringWithFormat("%0.2f", *costPerUse / 100.0));
    }
    addTextChild(resource, kCostPerHour, queryString(mspResource, "StandardRate"));
}

// Staff are available by their maximum units; a material by the sum of what its assignments' `units`
// hold: their quantities (the "Units" leaf), or their costs for a cost resource. Summing the raw
// percentages instead would make a material's availability a hundred times its quantity, so that a
// plan exported from a bundle came back with every material's availability multiplied by 100.
void KVMSPIResourceMapper::addUnitsAvailable(KVMSPIXQuery& mspResource, KVMSPCXMLElement& resource,
                                             bool material, bool costResource) const {
    double units = 0.0;
    if (!material) {
        units = queryFloat(mspResource, "MaxUnits").value_or(1.0);
    } else if (const auto uid = queryInt(mspResource, "UID")) {
        const auto query =
            stringWithFormat("Assignments/Assignment[ResourceUID=%lld]", static_cast<long long>(*uid));
        for (const auto& assignment : queryObjectsOrEmpty(*_mapper.mspProject(), query)) {
            units += std::max(0.0, queryFloat(*assignment, costResource ? "Cost" : "Units").value_or(0.0));
        }
    }
    resource.addChildElementWithName(tvnx::element::kUnitsAvailable, stringWithFormat("%f", units));
}

// The availability dates stand behind the schedule's days and ahead of its exception calendars.
void KVMSPIResourceMapper::addSchedule(KVMSPIXQuery& mspResource, KVMSPCXMLElement& resource) const {
    using namespace tvnx::element;
    const auto calendarUID = queryInt(mspResource, "CalendarUID");
    if (!calendarUID || *calendarUID < 0) {
        return;
    }
    const auto calendars =
        queryObjectsOrEmpty(*_mapper.mspProject(), stringWithFormat("Calendars/Calendar[UID=%lld]",
                                                                    static_cast<long long>(*calendarUID)));
    if (calendars.empty()) {
        return;
    }
    std::vector<MPPResourceAvailabilityPeriod> availability;
    if (const auto* reader = dynamic_cast<const KVMSPISingleResourceReader*>(&mspResource)) {
        reader->resourceAvailability(availability);
    }
    const ElementPtr schedule =
        KVMSPICalendarMapper(_mapper).newScheduleFromMSPCalendar(*calendars.front(), &availability);
    unsigned position = 0;
    const KVMSPCXMLNode::Nodes children = schedule->children();
    while (position < children.size() && children[position]->name() == kScheduleDay) {
        ++position;
    }
    // A schedule without days takes the dates at its start, where the child list allows it.
    position = std::min<unsigned>(position == 0 ? 1 : position, schedule->childCount());
    for (const auto& [query, name] :
         {std::pair{"AvailableFrom", kScheduleStart}, {"AvailableTo", kScheduleEnd}}) {
        if (const auto date = tvnxDateTimeOfMspdi(queryString(mspResource, query))) {
            schedule->insertChild(KVMSPCXMLElement::initWithName(name, *date), position++);
        }
    }
    resource.addComment("  Resource Schedule  ");
    resource.addChild(schedule);
}
