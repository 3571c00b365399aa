#include "MPPImporter/Mapper/utilities/MSPExtendedAttributeDictionary.h"

#include "MPPImporter/Mapper/utilities/KVMSPIUtilities.h"
#include "MPPImporter/readers/KVMSPISingleExtendedAttribute.h"

std::map<std::string, std::string>
newDictionaryWithMSPExtendedAttributes(const KVMSPIXQuery::Objects& attributes) {
    std::map<std::string, std::string> dictionary;
    for (const auto& object : attributes) {
        // Only extended-attribute readers carry a name and a value; an answer of any other class (an
        // XML node, another reader) has neither and is passed over.
        const auto* attribute = dynamic_cast<const KVMSPISingleExtendedAttribute*>(object.get());
        if (attribute == nullptr) {
            continue;
        }
        std::string text = attribute->stringValue();
        if (attribute->type() == KVMSPISingleExtendedAttribute::Type::timestamp) {
            text = KVMSPIUtilities::mspdiDateTimeToString(text).value_or(text);
        }
        dictionary[attribute->name()] = std::move(text);
    }
    return dictionary;
}
