#include "MPPCommon/xml/KVMSPCXMLElement.h"

#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPCommon/xml/KVMSPCXMLDocument.h"
#include "MPPCommon/xml/MSPCXMLText.h"
#include "MPPCommon/xml/MSPCXMLTree.h"

using namespace mspcxml;

namespace {

std::string qualifiedName(const xmlChar* name, xmlNsPtr ns) {
    if (ns != nullptr && ns->prefix != nullptr) {
        return MSPCPlainString(ns->prefix) + ":" + MSPCPlainString(name);
    }
    return MSPCPlainString(name);
}

const xmlChar* prefixOrNull(const std::string& prefix) {
    return prefix.empty() ? nullptr : MSPCGetXMLString(prefix);
}

bool isElement(const xmlNode* node) {
    return node != nullptr && node->type == XML_ELEMENT_NODE;
}

bool isAncestorOrSelf(xmlNodePtr candidate, xmlNodePtr node) {
    for (; node != nullptr; node = node->parent) {
        if (node == candidate) {
            return true;
        }
    }
    return false;
}

} // namespace

KVMSPCXMLElement::ElementPtr KVMSPCXMLElement::nodeWithPrimitive(void* primitive) {
    if (primitive == nullptr || primitiveType(primitive) != XML_ELEMENT_NODE) {
        return nullptr;
    }
    return std::static_pointer_cast<KVMSPCXMLElement>(KVMSPCXMLNode::nodeWithPrimitive(primitive));
}

KVMSPCXMLElement::ElementPtr KVMSPCXMLElement::initWithName(const std::string& name) {
    return nodeWithPrimitive(xmlNewNode(nullptr, MSPCGetXMLString(name)));
}

KVMSPCXMLElement::ElementPtr KVMSPCXMLElement::initWithName(const std::string& name, const XMLURI& uri) {
    ElementPtr element = initWithName(name);
    if (element != nullptr) {
        element->setURI(uri.value);
    }
    return element;
}

KVMSPCXMLElement::ElementPtr KVMSPCXMLElement::initWithName(const std::string& name,
                                                            const std::string& stringValue) {
    ElementPtr element = initWithName(name);
    if (element != nullptr) {
        element->setStringValue(stringValue);
    }
    return element;
}

KVMSPCXMLElement::ElementPtr KVMSPCXMLElement::initWithXMLString(const std::string& xmlString,
                                                                 TVError* error) {
    auto document = KVMSPCXMLDocument::initWithXMLString(xmlString, 0, error);
    ElementPtr root = document != nullptr ? document->rootElement() : nullptr;
    if (root != nullptr) {
        root->detach();
    }
    return root;
}

KVMSPCXMLElement::ElementPtr KVMSPCXMLElement::addChildElementWithName(const std::string& name) {
    ElementPtr child = initWithName(name);
    addChild(child);
    return child;
}

KVMSPCXMLElement::ElementPtr KVMSPCXMLElement::addChildElementWithName(const std::string& name,
                                                                       const std::string& stringValue) {
    ElementPtr child = initWithName(name, stringValue);
    addChild(child);
    return child;
}

KVMSPCXMLElement::ElementPtr KVMSPCXMLElement::insertChildElementWithName(const std::string& name,
                                                                          unsigned index) {
    ElementPtr child = initWithName(name);
    insertChild(child, index);
    return child;
}

KVMSPCXMLElement::ElementPtr KVMSPCXMLElement::insertChildElementWithName(const std::string& name,
                                                                          const std::string& stringValue,
                                                                          unsigned index) {
    ElementPtr child = initWithName(name, stringValue);
    insertChild(child, index);
    return child;
}

void KVMSPCXMLElement::addComment(const std::string& text) {
    addChild(commentWithStringValue(text));
}

void KVMSPCXMLElement::insertComment(const std::string& text, unsigned index) {
    insertChild(commentWithStringValue(text), index);
}

void KVMSPCXMLElement::replaceChildAtIndex(unsigned index, const Ptr& node) {
    removeChildAtIndex(index);
    insertChild(node, index);
}

void KVMSPCXMLElement::addAttribute(const Ptr& attribute) {
    tvAssert(attribute == nullptr || attribute->isXmlNsPtr() || attribute->kind() == 0 ||
                 static_cast<xmlNodePtr>(attribute->genericPtr())->parent == nullptr,
             "Cannot add an attribute with a parent; detach or copy first");
    tvAssert(attribute != nullptr && attribute->isXmlAttrPtr() && kind() == XML_ELEMENT_NODE,
             "Not an attribute");
    auto* attr = static_cast<xmlAttrPtr>(attribute->genericPtr());
    removeAttributeForName(qualifiedName(attr->name, attr->ns));
    linkAttribute(nodePtr(), attr);
}

void KVMSPCXMLElement::removeAttribute(const Ptr& attribute) {
    if (kind() == XML_ELEMENT_NODE && attribute != nullptr && attribute->isXmlAttrPtr()) {
        mspcxml::removeAttribute(static_cast<xmlAttrPtr>(attribute->genericPtr()), nodePtr());
    }
}

void KVMSPCXMLElement::removeAttributeForName(const std::string& name) {
    removeAttribute(attributeForName(name));
}

void KVMSPCXMLElement::removeAllAttributes() {
    if (kind() == XML_ELEMENT_NODE) {
        removeAllAttributesFromNode(nodePtr());
    }
}

KVMSPCXMLNode::Nodes KVMSPCXMLElement::attributes() const {
    if (kind() != XML_ELEMENT_NODE) {
        return {};
    }
    return wrapList(reinterpret_cast<xmlNodePtr>(nodePtr()->properties), nullptr);
}

KVMSPCXMLNode::Ptr KVMSPCXMLElement::attributeForName(const std::string& name) const {
    if (kind() != XML_ELEMENT_NODE) {
        return nullptr;
    }
    for (xmlAttrPtr attr = nodePtr()->properties; attr != nullptr; attr = attr->next) {
        if (qualifiedName(attr->name, attr->ns) == name) {
            return KVMSPCXMLNode::nodeWithPrimitive(attr);
        }
    }
    return nullptr;
}

void KVMSPCXMLElement::setAttributes(const Nodes& attributes) {
    removeAllAttributes();
    for (const Ptr& attribute : attributes) {
        addAttribute(attribute);
    }
}

void KVMSPCXMLElement::addNamespace(const Ptr& aNamespace) {
    tvAssert(aNamespace == nullptr || aNamespace->nsParentPtr() == nullptr,
             "Cannot add a namespace with a parent; detach or copy first");
    tvAssert(aNamespace != nullptr && aNamespace->isXmlNsPtr() && kind() == XML_ELEMENT_NODE,
             "Not a namespace");
    auto* ns = static_cast<xmlNsPtr>(aNamespace->genericPtr());
    std::string prefix = MSPCPlainString(ns->prefix);
    removeNamespaceForPrefix(prefix);
    appendNamespace(nodePtr(), ns);
    aNamespace->setNsParentPtr(nodePtr());
    if (prefix.empty()) {
        nodePtr()->ns = ns;
    }
}

void KVMSPCXMLElement::removeNamespace(const Ptr& aNamespace) {
    if (kind() == XML_ELEMENT_NODE && aNamespace != nullptr && aNamespace->isXmlNsPtr()) {
        mspcxml::removeNamespace(static_cast<xmlNsPtr>(aNamespace->genericPtr()), nodePtr());
    }
}

void KVMSPCXMLElement::removeAllNamespaces() {
    if (kind() != XML_ELEMENT_NODE) {
        return;
    }
    while (nodePtr()->nsDef != nullptr) {
        mspcxml::removeNamespace(nodePtr()->nsDef, nodePtr());
    }
}

void KVMSPCXMLElement::removeNamespaceForPrefix(const std::string& prefix) {
    if (kind() != XML_ELEMENT_NODE) {
        return;
    }
    for (xmlNsPtr ns = nodePtr()->nsDef; ns != nullptr; ns = ns->next) {
        if (xmlStrEqual(ns->prefix, prefixOrNull(prefix))) {
            mspcxml::removeNamespace(ns, nodePtr());
            return;
        }
    }
}

KVMSPCXMLNode::Nodes KVMSPCXMLElement::namespaces() const {
    Nodes namespaces;
    if (kind() == XML_ELEMENT_NODE) {
        for (xmlNsPtr ns = nodePtr()->nsDef; ns != nullptr; ns = ns->next) {
            namespaces.push_back(KVMSPCXMLNode::nodeWithPrimitive(ns, nodePtr()));
        }
    }
    return namespaces;
}

KVMSPCXMLNode::Ptr KVMSPCXMLElement::namespaceForPrefix(const std::string& prefix) const {
    if (kind() != XML_ELEMENT_NODE) {
        return nullptr;
    }
    if (prefix.empty()) {
        return wrapNamespace(nodePtr()->ns, nodePtr());
    }
    for (xmlNsPtr ns = nodePtr()->nsDef; ns != nullptr; ns = ns->next) {
        if (xmlStrEqual(ns->prefix, MSPCGetXMLString(prefix))) {
            return KVMSPCXMLNode::nodeWithPrimitive(ns, nodePtr());
        }
    }
    return nullptr;
}

void KVMSPCXMLElement::setNamespaces(const Nodes& namespaces) {
    removeAllNamespaces();
    for (const Ptr& aNamespace : namespaces) {
        addNamespace(aNamespace);
    }
}

xmlNsPtr KVMSPCXMLElement::resolveNamespaceForPrefix(const std::string& prefix, xmlNodePtr node) {
    for (; isElement(node); node = node->parent) {
        for (xmlNsPtr ns = node->nsDef; ns != nullptr; ns = ns->next) {
            if (xmlStrEqual(ns->prefix, prefixOrNull(prefix))) {
                return ns;
            }
        }
    }
    return nullptr;
}

xmlNsPtr KVMSPCXMLElement::resolvePrefixForURI(const std::string& uri, xmlNodePtr node) {
    for (; isElement(node); node = node->parent) {
        for (xmlNsPtr ns = node->nsDef; ns != nullptr; ns = ns->next) {
            if (xmlStrEqual(ns->href, MSPCGetXMLString(uri))) {
                return ns;
            }
        }
    }
    return nullptr;
}

KVMSPCXMLNode::Ptr KVMSPCXMLElement::resolveNamespaceForName(const std::string& name) const {
    if (kind() != XML_ELEMENT_NODE || (!name.empty() && name.find(':') == std::string::npos)) {
        return nullptr;
    }
    return wrapNamespace(resolveNamespaceForPrefix(prefixForName(name), nodePtr()), nodePtr());
}

std::optional<std::string> KVMSPCXMLElement::resolvePrefixForNamespaceURI(const std::string& uri) const {
    for (xmlNodePtr node = nodePtr(); isElement(node); node = node->parent) {
        for (xmlNsPtr ns = node->nsDef; ns != nullptr; ns = ns->next) {
            if (xmlStrEqual(ns->href, MSPCGetXMLString(uri)) && ns->prefix != nullptr && ns->prefix[0] != 0) {
                return MSPCPlainString(ns->prefix);
            }
        }
    }
    return std::nullopt;
}

KVMSPCXMLElement::Elements KVMSPCXMLElement::elementsForName(const std::string& name) const {
    std::string prefix = prefixForName(name);
    xmlNsPtr ns = nullptr;
    if (!prefix.empty() && kind() == XML_ELEMENT_NODE) {
        ns = xmlSearchNs(nodePtr()->doc, nodePtr(), MSPCGetXMLString(prefix));
    }
    return elementsWithName(name, ns != nullptr ? std::optional<std::string>(MSPCPlainString(ns->href))
                                                : std::nullopt);
}

KVMSPCXMLElement::Elements KVMSPCXMLElement::elementsForLocalName(const std::string& localName,
                                                                  const std::string& uri) const {
    std::optional<std::string> prefix = resolvePrefixForNamespaceURI(uri);
    return elementsWithName(
        prefix.has_value() ? stringWithFormat("%s:%s", prefix->c_str(), localName.c_str()) : localName, uri);
}

KVMSPCXMLElement::Elements KVMSPCXMLElement::elementsWithName(const std::optional<std::string>& name,
                                                              const std::optional<std::string>& uri) const {
    Elements elements;
    if (!name.has_value() || !hasChildListKind()) {
        return elements;
    }
    const bool prefixed = name->find(':') != std::string::npos;
    const std::string local = localNameForName(*name);
    for (xmlNodePtr child = nodePtr()->children; child != nullptr; child = child->next) {
        if (child->type != XML_ELEMENT_NODE) {
            continue;
        }
        const bool sameWholeName = qualifiedName(child->name, child->ns) == *name;
        bool matches = sameWholeName;
        if (uri.has_value()) {
            const bool sameURI = child->ns != nullptr && MSPCPlainString(child->ns->href) == *uri;
            matches = prefixed ? sameWholeName || (MSPCPlainString(child->name) == local && sameURI)
                               : MSPCPlainString(child->name) == *name && sameURI;
        }
        if (matches) {
            elements.push_back(nodeWithPrimitive(child));
        }
    }
    return elements;
}

void KVMSPCXMLElement::checkNewChild(const Ptr& child) const {
    const bool hasParent = child != nullptr && !child->isXmlNsPtr() && child->kind() != 0 &&
                           static_cast<xmlNodePtr>(child->genericPtr())->parent != nullptr;
    tvAssert(!hasParent, "Cannot add a child that has a parent; detach or copy first");
    tvAssert(child != nullptr && child->isXmlNodePtr() && hasChildListKind(),
             "Elements can only have text, elements, processing instructions, and comments as children");
    tvAssert(!isAncestorOrSelf(static_cast<xmlNodePtr>(child->genericPtr()), nodePtr()),
             "Cannot add a node as a child of itself or of its descendant");
}

bool KVMSPCXMLElement::hasChildListKind() const {
    return kind() == XML_ELEMENT_NODE || kind() == XML_DOCUMENT_NODE;
}

xmlNodePtr KVMSPCXMLElement::nodeChildAtIndex(unsigned index, unsigned& count) const {
    count = 0;
    if (!hasChildListKind()) {
        return nullptr;
    }
    for (xmlNodePtr child = nodePtr()->children; child != nullptr; child = child->next) {
        if (isXmlNodeKind(child->type)) {
            if (count == index) {
                return child;
            }
            ++count;
        }
    }
    return nullptr;
}

void KVMSPCXMLElement::addChild(const Ptr& child) {
    checkNewChild(child);
    linkChild(nodePtr(), static_cast<xmlNodePtr>(child->genericPtr()), nullptr);
}

void KVMSPCXMLElement::insertChild(const Ptr& child, unsigned index) {
    checkNewChild(child);
    unsigned count = 0;
    xmlNodePtr before = nodeChildAtIndex(index, count);
    tvAssert(before != nullptr || index == count,
             stringWithFormat("index (%u) beyond bounds (%u)", index, count));
    linkChild(nodePtr(), static_cast<xmlNodePtr>(child->genericPtr()), before);
}

void KVMSPCXMLElement::removeChildAtIndex(unsigned index) {
    unsigned count = 0;
    if (xmlNodePtr child = nodeChildAtIndex(index, count)) {
        mspcxml::removeChild(child, nodePtr());
    }
}

void KVMSPCXMLElement::removeChild(const Ptr& child) {
    if (child != nullptr && child->isXmlNodePtr() && hasChildListKind()) {
        mspcxml::removeChild(static_cast<xmlNodePtr>(child->genericPtr()), nodePtr());
    }
}

void KVMSPCXMLElement::removeAllChildren() {
    if (kind() == XML_DOCUMENT_NODE) {
        removeAllChildrenFromDoc(static_cast<xmlDocPtr>(genericPtr()));
    } else if (kind() == XML_ELEMENT_NODE) {
        removeAllChildrenFromNode(nodePtr());
    }
}

void KVMSPCXMLElement::setChildren(const Nodes& children) {
    removeAllChildren();
    for (const Ptr& child : children) {
        addChild(child);
    }
}
