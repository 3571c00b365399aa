#include "MPPExporter/Mappers/MSPETvnxReading.h"

#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPImporter/Mapper/utilities/KVMSPIUtilities.h"

#include <cmath>
#include <cstdlib>

namespace tvnxread {

std::optional<std::string> attribute(const KVMSPCXMLElement& element, const char* name) {
    const auto node = element.attributeForName(name);
    return node ? node->stringValue() : std::nullopt;
}

ElementPtr singleElement(KVMSPCXMLElement& element, const std::string& query) {
    return std::dynamic_pointer_cast<KVMSPCXMLElement>(element.singleObjectForXQuery(query, nullptr));
}

std::optional<TVDate> date(const std::optional<std::string>& text) {
    if (!text) {
        return std::nullopt;
    }
    const std::optional<std::string> mspdi = KVMSPIUtilities::tvnxToMspdiDateTime(*text);
    return mspdi ? KVMSPIUtilities::mspdiToMppDateTime(*mspdi) : std::nullopt;
}

std::optional<TVDate> dateForQuery(KVMSPCXMLElement& element, const std::string& query) {
    return date(element.stringValueForXQuery(query, nullptr));
}

double number(KVMSPCXMLElement& element, const std::string& query, double fallback) {
    TVError error;
    const double value = element.floatValueForXQuery(query, &error);
    return error.code == 0 ? value : fallback;
}

double doubleValue(const std::string& text) {
    // Infinities and NaN, which the scan also takes, read as no number: they would spread into every
    // value computed from them.
    const double value = std::strtod(text.c_str(), nullptr);
    return std::isfinite(value) ? value : 0.0;
}

std::map<std::string, ElementPtr>
elementsById(KVMSPCXMLElement& scenario, const char* name,
             const std::function<void(const std::string& id)>& onDuplicate) {
    std::map<std::string, ElementPtr> elements;
    for (const ElementPtr& element : scenario.elementsForName(name)) {
        if (const auto id = attribute(*element, tvnx::attribute::kId)) {
            if (!elements.emplace(*id, element).second) {
                onDuplicate(*id);
            }
        }
    }
    return elements;
}

} // namespace tvnxread
