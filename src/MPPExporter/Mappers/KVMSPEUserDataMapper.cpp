#include "MPPExporter/Mappers/KVMSPEUserDataMapper.h"

#include "MPPCommon/bundle/KVTVNXNames.h"

std::vector<KVMPPExtendedAttribute>
KVMSPEUserDataMapper::newExtendedAttributesFromUserData(const KVMSPCXMLElement& userData) {
    std::vector<KVMPPExtendedAttribute> attributes;
    std::optional<std::string> key;
    for (const auto& child : userData.children()) {
        if (child->kind() != XML_ELEMENT_NODE) {
            continue;
        }
        const std::string name = child->name().value_or("");
        if (name == tvnx::element::kString && key) {
            KVMPPExtendedAttribute attribute;
            attribute.alias = key;
            attribute.value = child->stringValue().value_or("");
            attributes.push_back(std::move(attribute));
        }
        key = name == tvnx::element::kKey ? child->stringValue() : std::nullopt;
    }
    return attributes;
}
