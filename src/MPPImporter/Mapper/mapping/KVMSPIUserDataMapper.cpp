#include "MPPImporter/Mapper/mapping/KVMSPIUserDataMapper.h"

#include "MPPCommon/bundle/KVTVNXNames.h"

KVMSPIUserDataMapper::KVMSPIUserDataMapper(MSPIUserDataTOCElements& userDataTOCElements)
    : _userDataTOCElements(userDataTOCElements) {}

KVMSPCXMLElement::ElementPtr KVMSPIUserDataMapper::newUserDataFromDictionary(const Fields& fields) const {
    using namespace tvnx::element;
    if (fields.empty()) {
        return nullptr;
    }
    const KVMSPCXMLElement::ElementPtr userData = KVMSPCXMLElement::initWithName(kUserData);
    for (const auto& [name, value] : fields) {
        userData->addChildElementWithName(kKey, name);
        userData->addChildElementWithName(kString, value);
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
        userData->addChildElementWithName(kKey, name);
        if (tag) {
            userData->addChildElementWithName(kNull);
        } else {
            userData->addChildElementWithName(kString, value);
        }
    }
    _userDataTOCElements[tag.value_or(kMSPIProjectUserDataTag)] = userData;
    return true;
}
