#pragma once

#include "MPPCommon/support/TVError.h"
#include "MPPCommon/xml/KVMSPCXMLDocument.h"
#include "MPPCommon/xml/KVMSPCXMLElement.h"

#include <algorithm>
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

// The custom fields of a bundle as sorted lines, since the import declares and writes them in its own
// order: each name that the table of contents declares for tasks and resources ("task field Room"),
// and each `key` of the user data of a task or resource of `plan` with the `string` behind it, by the
// object's title or name ("task Paint: Room = 2.04").
inline std::vector<std::string> customFieldLines(const std::filesystem::path& bundle,
                                                 const KVMSPCXMLElement& plan) {
    TVError error;
    const auto toc = KVMSPCXMLDocument::initWithContentsOfURL(bundle / "__TOC.xml", 0, nullptr, &error);
    std::vector<std::string> lines;
    for (const auto& [kind, label] : {std::pair{"task", "title"}, std::pair{"resource", "name"}}) {
        const auto declared =
            toc && toc->rootElement()
                ? toc->rootElement()->nodesForXPath(
                      std::string("project/") + kind + "-user-data-keys/user-data/key", nullptr)
                : std::nullopt;
        for (const auto& key : declared.value_or(KVMSPCXMLNode::Nodes{})) {
            lines.push_back(std::string(kind) + " field " + key->stringValue().value_or(""));
        }
        for (const KVMSPCXMLElement::ElementPtr& owner : plan.elementsForName(kind)) {
            const auto name = child(*owner, label);
            for (const KVMSPCXMLElement::ElementPtr& userData : owner->elementsForName("user-data")) {
                const auto keys = userData->elementsForName("key");
                const auto values = userData->elementsForName("string");
                for (size_t index = 0; index < keys.size(); ++index) {
                    lines.push_back(
                        (name ? name->stringValue().value_or("") : "") + ": " +
                        keys[index]->stringValue().value_or("") + " = " +
                        (index < values.size() ? values[index]->stringValue().value_or("") : "?"));
                }
            }
        }
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

} // namespace bundleread
