#pragma once

#include "MPPCommon/xml/KVMSPCXMLNode.h"

// An element wrapper: children, attributes and namespace declarations.
class KVMSPCXMLElement : public KVMSPCXMLNode {
public:
    using ElementPtr = std::shared_ptr<KVMSPCXMLElement>;
    using Elements = std::vector<ElementPtr>;

    // Null for a null object or anything that isn't an element.
    static ElementPtr nodeWithPrimitive(void* primitive);

    static ElementPtr initWithName(const std::string& name);
    static ElementPtr initWithName(const std::string& name, const XMLURI& uri);
    static ElementPtr initWithName(const std::string& name, const std::string& stringValue);
    // Parses the text as a document and keeps its root element; null with the parse error otherwise.
    static ElementPtr initWithXMLString(const std::string& xmlString, TVError* error);

    // Each returns the new child.
    ElementPtr addChildElementWithName(const std::string& name);
    ElementPtr addChildElementWithName(const std::string& name, const std::string& stringValue);
    ElementPtr insertChildElementWithName(const std::string& name, unsigned index);
    ElementPtr insertChildElementWithName(const std::string& name, const std::string& stringValue,
                                          unsigned index);
    void addComment(const std::string& text);
    void insertComment(const std::string& text, unsigned index);
    void replaceChildAtIndex(unsigned index, const Ptr& node);

    // Replaces an attribute of the same name. Raises for an attribute that has a parent.
    void addAttribute(const Ptr& attribute);
    void removeAttribute(const Ptr& attribute);
    void removeAttributeForName(const std::string& name);
    void removeAllAttributes();
    Nodes attributes() const;
    Ptr attributeForName(const std::string& name) const;
    void setAttributes(const Nodes& attributes);

    // Replaces a namespace of the same prefix; a namespace without prefix becomes the element's own.
    void addNamespace(const Ptr& aNamespace);
    void removeNamespace(const Ptr& aNamespace);
    void removeAllNamespaces();
    // An empty prefix means the namespace without prefix.
    void removeNamespaceForPrefix(const std::string& prefix);
    Nodes namespaces() const;
    // The empty prefix gives the element's own namespace.
    Ptr namespaceForPrefix(const std::string& prefix) const;
    void setNamespaces(const Nodes& namespaces);

    // Search of the declarations of `node` and its ancestors; an empty prefix means none.
    static xmlNsPtr resolveNamespaceForPrefix(const std::string& prefix, xmlNodePtr node);
    static xmlNsPtr resolvePrefixForURI(const std::string& uri, xmlNodePtr node);
    // The namespace for the prefix of `name` in scope here; none for a name without prefix, the
    // namespace without prefix for an empty name.
    Ptr resolveNamespaceForName(const std::string& name) const;
    // The first non-empty prefix bound to the URI in scope here.
    std::optional<std::string> resolvePrefixForNamespaceURI(const std::string& uri) const;

    // Direct child elements by name; with a prefix that resolves here, by namespace URI as well.
    Elements elementsForName(const std::string& name) const;
    Elements elementsForLocalName(const std::string& localName, const std::string& uri) const;

    // Raise for a child that has a parent or can't be an element's child. insertChild raises
    // "index (%u) beyond bounds (%u)" past the end; removeChildAtIndex ignores such an index.
    void addChild(const Ptr& child);
    void insertChild(const Ptr& child, unsigned index);
    void removeChildAtIndex(unsigned index);
    void removeChild(const Ptr& child);
    void removeAllChildren();
    void setChildren(const Nodes& children);

protected:
    friend class KVMSPCXMLNode;
    explicit KVMSPCXMLElement(void* primitive) : KVMSPCXMLNode(primitive, nullptr) {}

private:
    Elements elementsWithName(const std::optional<std::string>& name,
                              const std::optional<std::string>& uri) const;
    // The index-th child of a node kind, or null with `count` set to how many there are.
    xmlNodePtr nodeChildAtIndex(unsigned index, unsigned& count) const;
    void checkNewChild(const Ptr& child) const;
    // Elements and documents hold children; a wrapper emptied with its DTD holds nothing.
    bool hasChildListKind() const;
};
