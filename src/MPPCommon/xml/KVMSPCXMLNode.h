#pragma once

#include "MPPCommon/xml/KVMSPIXQuery.h"

#include <libxml/tree.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class KVMSPCXMLElement;
class KVMSPCXMLDocument;

// Output options of XMLStringWithOptions.
inline constexpr unsigned kXMLNodeCompactEmptyElement = 4;
inline constexpr unsigned kXMLNodePrettyPrint = 0x20000;

// A namespace URI argument, kept apart from a string value where both would be plain text.
struct XMLURI {
    std::string value;
};

// A wrapper of one libxml2 tree object: element, attribute, text, comment, processing instruction,
// namespace, DTD or document.
//
// Ownership: there is at most one wrapper per libxml2 object, stored in the object's _private word,
// and wrappers are shared through std::shared_ptr. An object stays alive while its tree or its wrapper
// holds it and is freed by whichever lets go last: when the last reference to a wrapper goes, the
// object is freed if it has no parent; when a tree frees an object that has a wrapper, the object is
// cut loose instead and lives on under the wrapper, without a document. A DTD and its declarations
// live with their document; their wrappers become empty (kind 0) when it is freed.
class KVMSPCXMLNode : public KVMSPIXQuery, public std::enable_shared_from_this<KVMSPCXMLNode> {
public:
    using Ptr = std::shared_ptr<KVMSPCXMLNode>;
    using Nodes = std::vector<Ptr>;

    KVMSPCXMLNode(const KVMSPCXMLNode&) = delete;
    KVMSPCXMLNode& operator=(const KVMSPCXMLNode&) = delete;
    ~KVMSPCXMLNode() override;

    // The wrapper of a libxml2 object, made on first request: an element wrapper for type 1, a
    // document wrapper for type 9. Null for null.
    static Ptr nodeWithPrimitive(void* primitive);
    // The wrapper of a namespace declared on `nsParent` (null for an unlinked one); null for anything
    // that isn't a namespace.
    static Ptr nodeWithPrimitive(void* primitive, xmlNodePtr nsParent);

    // Creation; each gives null when libxml2 fails.
    static std::shared_ptr<KVMSPCXMLElement> elementWithName(const std::string& name);
    static std::shared_ptr<KVMSPCXMLElement> elementWithName(const std::string& name,
                                                             const std::string& stringValue);
    static std::shared_ptr<KVMSPCXMLElement> elementWithName(const std::string& name, const Nodes& children,
                                                             const Nodes& attributes);
    static std::shared_ptr<KVMSPCXMLElement> elementWithName(const std::string& name, const XMLURI& uri);
    static Ptr attributeWithName(const std::string& name, const std::string& stringValue);
    static Ptr attributeWithName(const std::string& name, const XMLURI& uri, const std::string& stringValue);
    // An empty name makes a namespace without prefix.
    static Ptr namespaceWithName(const std::string& name, const std::string& stringValue);
    static Ptr processingInstructionWithName(const std::string& name, const std::string& stringValue);
    static Ptr commentWithStringValue(const std::string& stringValue);
    static Ptr textWithStringValue(const std::string& stringValue);

    // The libxml2 type number of the object, 0 for an empty wrapper.
    int kind() const;
    bool isXmlNodePtr() const { return isXmlNodePtr(m_genericPtr); }
    bool isXmlAttrPtr() const { return isXmlAttrPtr(m_genericPtr); }
    bool isXmlDocPtr() const { return isXmlDocPtr(m_genericPtr); }
    bool isXmlDtdPtr() const { return isXmlDtdPtr(m_genericPtr); }
    bool isXmlNsPtr() const { return isXmlNsPtr(m_genericPtr); }
    static bool isXmlNodePtr(const void* primitive);
    static bool isXmlAttrPtr(const void* primitive);
    static bool isXmlDocPtr(const void* primitive);
    static bool isXmlDtdPtr(const void* primitive);
    static bool isXmlNsPtr(const void* primitive);

    void* genericPtr() const { return m_genericPtr; }
    xmlNodePtr nsParentPtr() const { return m_nsParentPtr; }
    // For the tree layer: the element that carries this namespace, or none.
    void setNsParentPtr(xmlNodePtr element) { m_nsParentPtr = element; }
    // For the tree layer: the object is freed by its owner; the wrapper becomes empty.
    void disown() { m_genericPtr = nullptr; }

    void setName(const std::string& name);
    std::optional<std::string> name() const;
    void setStringValue(const std::string& value);
    std::optional<std::string> stringValue() const;
    unsigned index() const;
    unsigned level() const;
    std::shared_ptr<KVMSPCXMLDocument> rootDocument() const;
    Ptr parent() const;
    Ptr previousSibling() const;
    Ptr nextSibling() const;
    unsigned childCount() const;
    Nodes children() const;
    // Raises "index (%u) beyond bounds (%u)" past the end.
    Ptr childAtIndex(unsigned index) const;
    Ptr previousNode() const;
    Ptr nextNode() const;
    // A readable path of the node, up to its document, e.g. "/plan[1]/task[2]/@id".
    std::string XPath() const;
    std::string localName() const;
    std::string prefix() const;
    static std::string localNameForName(const std::string& name);
    static std::string prefixForName(const std::string& name);
    void setURI(const std::optional<std::string>& uri);
    std::optional<std::string> URI() const;

    // A deep copy of the raw node that the caller frees; null for anything but a node.
    xmlNodePtr XMLNodeCopy() const;
    // An independent deep copy under a new wrapper; null for kinds that can't be copied.
    Ptr copyWithZone() const;

    std::string XMLStringWithOptions(unsigned options) const;
    std::string XMLString() const { return XMLStringWithOptions(0); }
    std::string description() const { return XMLString(); }

    // Unlinks the object from its parent and keeps it under this wrapper.
    void detach();

    // Elements only (asserts otherwise): the attribute of that name, created when missing, with the
    // value set when one is given.
    Ptr setAttributeWithName(const std::string& name);
    Ptr setAttributeWithName(const std::string& name, const std::optional<std::string>& stringValue);

    // XPath 1.0 over the node's document; a node without document is evaluated in a temporary one.
    // None for a query that libxml2 rejects (error from lastError) or for a receiver that isn't a
    // document or a node.
    std::optional<Nodes> nodesForXPath(const std::string& xpath, TVError* error);

    Objects objectsForXQuery(const std::string& xquery, TVError* error) override;
    Objects objectsForXQuery(const std::string& xquery, const KVMSPIXQueryConstants& constants,
                             TVError* error) override;
    std::shared_ptr<KVMSPIXQuery> singleObjectForXQuery(const std::string& xquery, TVError* error) override;
    std::shared_ptr<KVMSPIXQuery> singleObjectForXQuery(const std::string& xquery,
                                                        const KVMSPIXQueryConstants& constants,
                                                        TVError* error) override;
    std::optional<std::string> stringValueForXQuery(const std::string& xquery, TVError* error) override;
    std::optional<std::string> stringValueForXQuery(const std::string& xquery,
                                                    const KVMSPIXQueryConstants& constants,
                                                    TVError* error) override;
    int64_t intValueForXQuery(const std::string& xquery, TVError* error) override;
    int64_t intValueForXQuery(const std::string& xquery, const KVMSPIXQueryConstants& constants,
                              TVError* error) override;
    double floatValueForXQuery(const std::string& xquery, TVError* error) override;
    double floatValueForXQuery(const std::string& xquery, const KVMSPIXQueryConstants& constants,
                               TVError* error) override;
    bool boolValueForXQuery(const std::string& xquery, TVError* error) override;
    bool boolValueForXQuery(const std::string& xquery, const KVMSPIXQueryConstants& constants,
                            TVError* error) override;

protected:
    // Takes the object into this wrapper by storing the wrapper in its _private word.
    KVMSPCXMLNode(void* primitive, xmlNodePtr nsParent);

    xmlNodePtr nodePtr() const { return static_cast<xmlNodePtr>(m_genericPtr); }
    xmlNsPtr nsPtr() const { return static_cast<xmlNsPtr>(m_genericPtr); }
    // The wrapper of a namespace reached from `element`: the declaration itself when an element in
    // scope carries it, else an unlinked copy.
    static Ptr wrapNamespace(xmlNsPtr ns, xmlNodePtr element);
    static Nodes wrapList(xmlNodePtr first, bool (*accept)(const void*));

private:
    // The single match of a query; `constants` null for the form that reports several matches as
    // error code 2 instead of raising.
    Ptr singleNode(const std::string& xquery, const KVMSPIXQueryConstants* constants, TVError* error);
    std::optional<std::string> singleStringValue(const std::string& xquery,
                                                 const KVMSPIXQueryConstants* constants, TVError* error);

    void* m_genericPtr;
    xmlNodePtr m_nsParentPtr;
};
