#pragma once

#include "MPPCommon/xml/KVMSPCXMLElement.h"

#include <filesystem>
#include <string>
#include <vector>

// Small reads of bundle elements and folders that the corpus tests of the programs share.
namespace bundleread {

// The text of an attribute, empty when it is missing.
inline std::string attribute(const KVMSPCXMLElement& element, const char* name) {
    const auto node = element.attributeForName(name);
    return node ? node->stringValue().value_or("") : "";
}

// The first child element of the name, or null.
inline KVMSPCXMLElement::ElementPtr child(const KVMSPCXMLElement& element, const char* name) {
    const auto children = element.elementsForName(name);
    return children.empty() ? nullptr : children.front();
}

// The bundles (.tvnx folders) directly in a folder; none when the folder is missing.
inline std::vector<std::filesystem::path> bundlesIn(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> bundles;
    if (std::filesystem::exists(folder)) {
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            if (entry.path().extension() == ".tvnx") {
                bundles.push_back(entry.path());
            }
        }
    }
    return bundles;
}

} // namespace bundleread
