#include "MPPImporter/Mapper/mapping/KVMSPIUserDataMapper.h"

#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPImporter/Mapper/mapping/MSPIXmlCharacters.h"

#include <set>

KVMSPIUserDataMapper::KVMSPIUserDataMapper(MSPIUserDataTOCElements& userDataTOCElements)
    : _userDataTOCElements(userDataTOCElements) {}

KVMSPCXMLElement::ElementPtr KVMSPIUserDataMapper::newUserDataFromDictionary(const Fields& fields) const {
    using namespace tvnx::element;
    if (fields.empty()) {
        return nullptr;
    }
    const KVMSPCXMLElement::ElementPtr userData = KVMSPCXMLElement::initWithName(kUserData);
    for (const auto& [name, value] : fields) {
        userData->addChildElementWithName(kKey, xmlCharacterText(name));
        userData->addChildElementWithName(kString, xmlCharacterText(value));
    }
    return userData;
}

bool KVMSPIUserDataMapper::setUserDataTOCElementsForTag(const std::optional<std::string>& tag,
                                                        const Fields& fields) {
    using namespace tvnx::element;
    if (fields.empty()) {
        return false;
    }
    const KVMSPCXMLElement::ElementPtr userData = KVMSPCXMLElement::initWithName(kUserData);
    KVMSPCXMLElement::ElementPtr& entry = _userDataTOCElements[tag.value_or(kMSPIProjectUserDataTag)];
    if (!tag) {
        for (const auto& [name, value] : fields) {
            userData->addChildElementWithName(kKey, xmlCharacterText(name));
            userData->addChildElementWithName(kString, xmlCharacterText(value));
        }
        entry = userData;
        return true;
    }
    // A declaration keeps the names of the objects mapped before and adds those it lacks: the export
    // writes only declared fields, so declaring just the last object's names would drop every value
    // of a field that object doesn't hold.
    std::set<std::string> declared;
    const auto declare = [&](const std::string& name) {
        if (declared.insert(name).second) {
            userData->addChildElementWithName(kKey, name);
            userData->addChildElementWithName(kNull);
        }
    };
    if (entry) {
        for (const KVMSPCXMLElement::ElementPtr& key : entry->elementsForName(kKey)) {
            declare(key->stringValue().value_or(""));
        }
    }
    for (const auto& field : fields) {
        declare(xmlCharacterText(field.first));
    }
    entry = userData;
    return true;
}
