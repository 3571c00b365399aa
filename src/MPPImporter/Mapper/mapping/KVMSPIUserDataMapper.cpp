#include "MPPImporter/Mapper/mapping/KVMSPIUserDataMapper.h"

#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPImporter/Mapper/mapping/MSPIXmlCharacters.h"

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
    for (const auto& [name, value] : fields) {
        userData->addChildElementWithName(kKey, xmlCharacterText(name));
        if (tag) {
            userData->addChildElementWithName(kNull);
        } else {
            userData->addChildElementWithName(kString, xmlCharacterText(value));
        }
    }
    _userDataTOCElements[tag.value_or(kMSPIProjectUserDataTag)] = userData;
    return true;
}
