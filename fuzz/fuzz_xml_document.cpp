// Parses arbitrary bytes as an XML document, queries it, takes nodes out of it and puts them into a
// new document, and serialises everything, so that the ownership rules of the XML layer run on hostile
// trees. The same bytes also go through the namespace-stripping load.
#include "MPPCommon/support/TVException.h"
#include "MPPCommon/xml/KVMSPCXMLDocument.h"

#include <cstdint>
#include <fstream>
#include <unistd.h>

namespace {

constexpr size_t kMaxNodesTouched = 64;

const char* const kQueries[] = {"//*",         "//@*",         "//namespace::*", "//text()",
                                "//comment()", "/*/*[last()]", "//*[@id]",       "//node()/node()"};

void exerciseValues(const KVMSPCXMLNode::Ptr& node) {
    node->XPath();
    node->stringValue();
    node->index();
    node->level();
    node->nextNode();
    node->previousNode();
    node->XMLStringWithOptions(kXMLNodePrettyPrint | kXMLNodeCompactEmptyElement);
    try {
        node->intValueForXQuery("@id", nullptr);
        node->boolValueForXQuery(".", nullptr);
        node->floatValueForXQuery("*[1]", {}, nullptr);
    } catch (const TVException&) {
        // Text that doesn't scan as a number raises by design.
    }
}

void exercise(KVMSPCXMLDocument::DocumentPtr document) {
    std::vector<KVMSPCXMLNode::Ptr> kept;
    std::vector<KVMSPCXMLNode::Ptr> copies;
    for (const char* query : kQueries) {
        size_t count = 0;
        for (const auto& object : document->objectsForXQuery(query, nullptr)) {
            auto node = std::dynamic_pointer_cast<KVMSPCXMLNode>(object);
            if (node == nullptr || ++count > kMaxNodesTouched) {
                break;
            }
            exerciseValues(node);
            if (count % 3 == 0) {
                node->detach();
                kept.push_back(node);
            } else if (count % 5 == 0) {
                copies.push_back(node->copyWithZone());
            }
        }
    }
    document->XMLStringWithOptions(kXMLNodePrettyPrint);
    document.reset();

    auto target = KVMSPCXMLDocument::initWithRootElement(KVMSPCXMLNode::elementWithName("target"));
    auto root = target->rootElement();
    kept.insert(kept.end(), copies.begin(), copies.end());
    for (const auto& node : kept) {
        if (node == nullptr) {
            continue;
        }
        exerciseValues(node);
        try {
            if (node->isXmlAttrPtr()) {
                root->addAttribute(node);
            } else if (node->isXmlNsPtr()) {
                root->addNamespace(node);
            } else {
                root->addChild(node);
            }
        } catch (const TVException&) {
            // Nodes still linked under another kept node, and kinds an element can't take, are refused.
        }
    }
    target->XMLStringWithOptions(0);
    root->objectsForXQuery("//*", nullptr);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (auto document =
            KVMSPCXMLDocument::initWithData(KVMSPCXMLDocument::Data(data, data + size), 0, nullptr)) {
        exercise(document);
    }
    static const std::string path = "/tmp/fuzz_xml_document_" + std::to_string(getpid()) + ".xml";
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    std::optional<std::string> xmlns;
    if (auto document = KVMSPCXMLDocument::initWithContentsOfURL(path, 0, &xmlns, nullptr)) {
        exercise(document);
    }
    return 0;
}
