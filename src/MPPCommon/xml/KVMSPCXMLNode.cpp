#include "MPPCommon/xml/KVMSPCXMLNode.h"

#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPCommon/xml/KVMSPCXMLDocument.h"
#include "MPPCommon/xml/KVMSPCXMLElement.h"
#include "MPPCommon/xml/MSPCXMLErrors.h"
#include "MPPCommon/xml/MSPCXMLText.h"
#include "MPPCommon/xml/MSPCXMLTree.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <libxml/entities.h>
#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>

using namespace mspcxml;

namespace {

// Replaces a string field that libxml2 allocated.
void replaceXmlString(const xmlChar*& field, const xmlChar* value) {
    xmlFree(const_cast<xmlChar*>(field));
    field = value != nullptr ? xmlStrdup(value) : nullptr;
}

std::string encodedText(xmlDocPtr doc, const std::string& text) {
    xmlChar* encoded = xmlEncodeSpecialChars(doc, MSPCGetXMLString(text));
    std::string result = MSPCPlainString(encoded);
    xmlFree(encoded);
    return result;
}

bool hasChildList(int type) {
    return type == XML_ELEMENT_NODE || type == XML_DOCUMENT_NODE || type == XML_DTD_NODE;
}

// The deepest last descendant, not entering entity references, whose children belong to the DTD.
xmlNodePtr deepestLastDescendant(xmlNodePtr node) {
    while (hasChildList(node->type) && node->last != nullptr) {
        node = node->last;
    }
    return node;
}

// A node-set member that libxml2 may free with the result: namespaces there are copies whose
// `next` word names the element they were found on.
struct NamespaceDeclaration {
    xmlNsPtr ns = nullptr;
    xmlNodePtr owner = nullptr;
};

NamespaceDeclaration declarationInScope(const xmlChar* prefix, const xmlChar* href, xmlNodePtr element) {
    for (xmlNodePtr node = element; node != nullptr && node->type == XML_ELEMENT_NODE; node = node->parent) {
        for (xmlNsPtr ns = node->nsDef; ns != nullptr; ns = ns->next) {
            if (xmlStrEqual(ns->prefix, prefix) && xmlStrEqual(ns->href, href)) {
                return {ns, node};
            }
        }
    }
    return {};
}

// A detached node evaluated by XPath stands in a temporary document for the time of the query.
class TemporaryDocument {
public:
    explicit TemporaryDocument(xmlNodePtr node) : m_top(node) {
        while (m_top->parent != nullptr) {
            m_top = m_top->parent;
        }
        m_doc = xmlNewDoc(nullptr);
        tvAssert(m_doc != nullptr, "Out of memory for a temporary document");
        linkChild(reinterpret_cast<xmlNodePtr>(m_doc), m_top, nullptr);
    }
    TemporaryDocument(const TemporaryDocument&) = delete;
    TemporaryDocument& operator=(const TemporaryDocument&) = delete;
    ~TemporaryDocument() {
        detachChild(m_top, reinterpret_cast<xmlNodePtr>(m_doc), false);
        m_top->parent = nullptr;
        m_top->next = nullptr;
        m_top->prev = nullptr;
        recursiveStripDocPointersFromNode(m_top);
        xmlFreeDoc(m_doc);
    }
    xmlDocPtr doc() const { return m_doc; }

private:
    xmlNodePtr m_top;
    xmlDocPtr m_doc;
};

// The XPath context of this thread, made once and pointed at each query's document and node. Making a
// context registers every XPath function anew, which cost more than most queries of the export's
// mapping. Between queries the context points at no document, so a freed one is never reached.
class ReusedXPathContext {
public:
    ReusedXPathContext() : m_context(xmlXPathNewContext(nullptr)) {
        tvAssert(m_context != nullptr, "Out of memory for an XPath context");
    }
    ReusedXPathContext(const ReusedXPathContext&) = delete;
    ReusedXPathContext& operator=(const ReusedXPathContext&) = delete;
    ~ReusedXPathContext() { xmlXPathFreeContext(m_context); }

    // The context for a query from `node` of `doc`, knowing the prefixes that the root element declares.
    xmlXPathContextPtr pointedAt(xmlDocPtr doc, xmlNodePtr node) {
        m_context->doc = doc;
        m_context->node = node;
        xmlXPathRegisteredNsCleanup(m_context);
        if (doc->children != nullptr && doc->children->type == XML_ELEMENT_NODE) {
            for (xmlNsPtr ns = doc->children->nsDef; ns != nullptr; ns = ns->next) {
                if (ns->prefix != nullptr) {
                    xmlXPathRegisterNs(m_context, ns->prefix, ns->href);
                }
            }
        }
        return m_context;
    }
    void release() {
        m_context->doc = nullptr;
        m_context->node = nullptr;
        xmlXPathRegisteredNsCleanup(m_context);
    }

private:
    xmlXPathContextPtr m_context;
};

std::string constantsDescription(const KVMSPIXQueryConstants& constants) {
    std::string text = "{";
    for (const auto& [key, value] : constants) {
        text += stringWithFormat(" %s = %s;", key.c_str(), value.c_str());
    }
    return text + " }";
}

std::optional<int64_t> scanInteger(const std::string& text) {
    const char* start = text.c_str();
    char* end = nullptr;
    long long value = std::strtoll(start, &end, 10);
    if (end == start) {
        return std::nullopt;
    }
    return static_cast<int64_t>(value);
}

// Decimal notation only: no "nan", "inf" or hexadecimal forms, which strtod would also take.
std::optional<double> scanDouble(const std::string& text) {
    size_t start = text.find_first_not_of(" \t\n\r\v\f");
    if (start == std::string::npos) {
        return std::nullopt;
    }
    size_t position = start;
    auto digitsFrom = [&](size_t from) {
        size_t end = from;
        while (end < text.size() && std::isdigit(static_cast<unsigned char>(text[end]))) {
            ++end;
        }
        return end;
    };
    if (text[position] == '+' || text[position] == '-') {
        ++position;
    }
    size_t integerEnd = digitsFrom(position);
    size_t end = integerEnd;
    if (end < text.size() && text[end] == '.') {
        end = digitsFrom(end + 1);
    }
    if (end == position || (end == position + 1 && integerEnd == position)) {
        return std::nullopt;
    }
    if (end < text.size() && (text[end] == 'e' || text[end] == 'E')) {
        size_t exponent = end + 1;
        if (exponent < text.size() && (text[exponent] == '+' || text[exponent] == '-')) {
            ++exponent;
        }
        size_t exponentEnd = digitsFrom(exponent);
        if (exponentEnd > exponent) {
            end = exponentEnd;
        }
    }
    return std::strtod(text.substr(start, end - start).c_str(), nullptr);
}

std::string lowercased(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text;
}

} // namespace

KVMSPCXMLNode::KVMSPCXMLNode(void* primitive, xmlNodePtr nsParent)
    : m_genericPtr(primitive), m_nsParentPtr(nsParent) {
    if (primitive != nullptr) {
        setPrimitivePrivate(primitive, this);
    }
}

KVMSPCXMLNode::~KVMSPCXMLNode() {
    if (m_genericPtr == nullptr) {
        return;
    }
    setPrimitivePrivate(m_genericPtr, nullptr);
    switch (kind()) {
    case XML_NAMESPACE_DECL:
        if (m_nsParentPtr == nullptr) {
            xmlFreeNs(nsPtr());
        }
        break;
    case XML_ATTRIBUTE_NODE:
        if (nodePtr()->parent == nullptr) {
            freeParentlessAttribute(reinterpret_cast<xmlAttrPtr>(m_genericPtr));
        }
        break;
    case XML_DTD_NODE:
        if (nodePtr()->parent == nullptr) {
            freeDtd(static_cast<xmlDtdPtr>(m_genericPtr));
        }
        break;
    case XML_DOCUMENT_NODE:
        freeDocument(static_cast<xmlDocPtr>(m_genericPtr));
        break;
    default:
        if (nodePtr()->parent == nullptr && isChildKind(kind())) {
            nodeFree(nodePtr());
        }
        break;
    }
}

KVMSPCXMLNode::Ptr KVMSPCXMLNode::nodeWithPrimitive(void* primitive) {
    if (primitive == nullptr) {
        return nullptr;
    }
    if (auto* wrapper = static_cast<KVMSPCXMLNode*>(primitivePrivate(primitive))) {
        return wrapper->shared_from_this();
    }
    switch (primitiveType(primitive)) {
    case XML_ELEMENT_NODE:
        return Ptr(new KVMSPCXMLElement(primitive));
    case XML_DOCUMENT_NODE:
        return Ptr(new KVMSPCXMLDocument(primitive));
    default:
        return Ptr(new KVMSPCXMLNode(primitive, nullptr));
    }
}

KVMSPCXMLNode::Ptr KVMSPCXMLNode::nodeWithPrimitive(void* primitive, xmlNodePtr nsParent) {
    if (!isXmlNsPtr(primitive)) {
        return nullptr;
    }
    if (auto* wrapper = static_cast<KVMSPCXMLNode*>(primitivePrivate(primitive))) {
        return wrapper->shared_from_this();
    }
    return Ptr(new KVMSPCXMLNode(primitive, nsParent));
}

KVMSPCXMLNode::Ptr KVMSPCXMLNode::wrapNamespace(xmlNsPtr ns, xmlNodePtr element) {
    if (ns == nullptr) {
        return nullptr;
    }
    NamespaceDeclaration declaration = declarationInScope(ns->prefix, ns->href, element);
    if (declaration.ns != nullptr) {
        return nodeWithPrimitive(declaration.ns, declaration.owner);
    }
    return nodeWithPrimitive(newNamespaceCopy(ns->href, ns->prefix), nullptr);
}

KVMSPCXMLNode::Nodes KVMSPCXMLNode::wrapList(xmlNodePtr first, bool (*accept)(const void*)) {
    Nodes nodes;
    for (xmlNodePtr node = first; node != nullptr; node = node->next) {
        if (accept == nullptr || accept(node)) {
            nodes.push_back(nodeWithPrimitive(node));
        }
    }
    return nodes;
}

std::shared_ptr<KVMSPCXMLElement> KVMSPCXMLNode::elementWithName(const std::string& name) {
    return KVMSPCXMLElement::initWithName(name);
}

std::shared_ptr<KVMSPCXMLElement> KVMSPCXMLNode::elementWithName(const std::string& name,
                                                                 const std::string& stringValue) {
    return KVMSPCXMLElement::initWithName(name, stringValue);
}

std::shared_ptr<KVMSPCXMLElement>
KVMSPCXMLNode::elementWithName(const std::string& name, const Nodes& children, const Nodes& attributes) {
    auto element = KVMSPCXMLElement::initWithName(name);
    if (element != nullptr) {
        element->setChildren(children);
        element->setAttributes(attributes);
    }
    return element;
}

std::shared_ptr<KVMSPCXMLElement> KVMSPCXMLNode::elementWithName(const std::string& name, const XMLURI& uri) {
    return KVMSPCXMLElement::initWithName(name, uri);
}

KVMSPCXMLNode::Ptr KVMSPCXMLNode::attributeWithName(const std::string& name, const std::string& stringValue) {
    return nodeWithPrimitive(xmlNewProp(nullptr, MSPCGetXMLString(name), MSPCGetXMLString(stringValue)));
}

KVMSPCXMLNode::Ptr KVMSPCXMLNode::attributeWithName(const std::string& name, const XMLURI& uri,
                                                    const std::string& stringValue) {
    Ptr attribute = attributeWithName(name, stringValue);
    if (attribute != nullptr) {
        attribute->setURI(uri.value);
    }
    return attribute;
}

KVMSPCXMLNode::Ptr KVMSPCXMLNode::namespaceWithName(const std::string& name, const std::string& stringValue) {
    const xmlChar* prefix = name.empty() ? nullptr : MSPCGetXMLString(name);
    return nodeWithPrimitive(xmlNewNs(nullptr, MSPCGetXMLString(stringValue), prefix), nullptr);
}

KVMSPCXMLNode::Ptr KVMSPCXMLNode::processingInstructionWithName(const std::string& name,
                                                                const std::string& stringValue) {
    return nodeWithPrimitive(xmlNewPI(MSPCGetXMLString(name), MSPCGetXMLString(stringValue)));
}

KVMSPCXMLNode::Ptr KVMSPCXMLNode::commentWithStringValue(const std::string& stringValue) {
    return nodeWithPrimitive(xmlNewComment(MSPCGetXMLString(stringValue)));
}

KVMSPCXMLNode::Ptr KVMSPCXMLNode::textWithStringValue(const std::string& stringValue) {
    return nodeWithPrimitive(xmlNewText(MSPCGetXMLString(stringValue)));
}

int KVMSPCXMLNode::kind() const {
    return m_genericPtr != nullptr ? primitiveType(m_genericPtr) : 0;
}

bool KVMSPCXMLNode::isXmlNodePtr(const void* primitive) {
    return primitive != nullptr && isXmlNodeKind(primitiveType(primitive));
}

bool KVMSPCXMLNode::isXmlAttrPtr(const void* primitive) {
    return primitive != nullptr && primitiveType(primitive) == XML_ATTRIBUTE_NODE;
}

bool KVMSPCXMLNode::isXmlDocPtr(const void* primitive) {
    return primitive != nullptr && primitiveType(primitive) == XML_DOCUMENT_NODE;
}

bool KVMSPCXMLNode::isXmlDtdPtr(const void* primitive) {
    return primitive != nullptr && primitiveType(primitive) == XML_DTD_NODE;
}

bool KVMSPCXMLNode::isXmlNsPtr(const void* primitive) {
    return primitive != nullptr && primitiveType(primitive) == XML_NAMESPACE_DECL;
}

void KVMSPCXMLNode::setName(const std::string& name) {
    if (isXmlNsPtr()) {
        replaceXmlString(nsPtr()->prefix, name.empty() ? nullptr : MSPCGetXMLString(name));
    } else if (m_genericPtr != nullptr) {
        xmlNodeSetName(nodePtr(), MSPCGetXMLString(name));
    }
}

std::optional<std::string> KVMSPCXMLNode::name() const {
    if (isXmlNsPtr()) {
        return MSPCPlainString(nsPtr()->prefix);
    }
    return m_genericPtr != nullptr ? MSPCOptionalString(nodePtr()->name) : std::nullopt;
}

void KVMSPCXMLNode::setStringValue(const std::string& value) {
    xmlNodePtr node = nodePtr();
    switch (kind()) {
    case XML_ELEMENT_NODE:
        removeAllChildrenFromNode(node);
        xmlNodeSetContent(node, MSPCGetXMLString(encodedText(node->doc, value)));
        break;
    case XML_ATTRIBUTE_NODE:
        if (node->children == nullptr) {
            xmlNodePtr text = xmlNewText(MSPCGetXMLString(value));
            if (text != nullptr) {
                text->parent = node;
                text->doc = node->doc;
                node->children = text;
                node->last = text;
            }
        } else {
            xmlNodeSetContent(node, MSPCGetXMLString(encodedText(node->doc, value)));
        }
        break;
    case XML_NAMESPACE_DECL:
        replaceXmlString(nsPtr()->href, MSPCGetXMLString(encodedText(nullptr, value)));
        break;
    case XML_TEXT_NODE:
    case XML_CDATA_SECTION_NODE:
    case XML_PI_NODE:
    case XML_COMMENT_NODE:
        xmlNodeSetContent(node, MSPCGetXMLString(value));
        break;
    default:
        break;
    }
}

std::optional<std::string> KVMSPCXMLNode::stringValue() const {
    if (isXmlNsPtr()) {
        return MSPCOptionalString(nsPtr()->href);
    }
    if (isXmlAttrPtr()) {
        xmlNodePtr value = nodePtr()->children;
        return value != nullptr ? MSPCOptionalString(value->content) : std::nullopt;
    }
    if (isXmlNodePtr()) {
        xmlChar* content = xmlNodeGetContent(nodePtr());
        std::optional<std::string> result = MSPCOptionalString(content);
        xmlFree(content);
        return result;
    }
    return std::nullopt;
}

unsigned KVMSPCXMLNode::index() const {
    unsigned count = 0;
    if (isXmlNsPtr()) {
        if (m_nsParentPtr != nullptr) {
            for (xmlNsPtr ns = m_nsParentPtr->nsDef; ns != nullptr; ns = ns->next, ++count) {
                if (ns == nsPtr()) {
                    return count;
                }
            }
        }
        return 0;
    }
    if (m_genericPtr != nullptr) {
        for (xmlNodePtr node = nodePtr()->prev; node != nullptr; node = node->prev) {
            ++count;
        }
    }
    return count;
}

unsigned KVMSPCXMLNode::level() const {
    xmlNodePtr node = nullptr;
    unsigned count = 0;
    if (isXmlNsPtr()) {
        node = m_nsParentPtr;
        count = node != nullptr ? 1 : 0;
    } else if (m_genericPtr != nullptr) {
        node = nodePtr()->parent;
        count = node != nullptr ? 1 : 0;
    }
    for (; node != nullptr && node->parent != nullptr; node = node->parent) {
        ++count;
    }
    return count;
}

std::shared_ptr<KVMSPCXMLDocument> KVMSPCXMLNode::rootDocument() const {
    xmlNodePtr node = isXmlNsPtr() ? m_nsParentPtr : nodePtr();
    return node != nullptr ? KVMSPCXMLDocument::nodeWithPrimitive(node->doc) : nullptr;
}

KVMSPCXMLNode::Ptr KVMSPCXMLNode::parent() const {
    if (isXmlNsPtr()) {
        return nodeWithPrimitive(m_nsParentPtr);
    }
    return m_genericPtr != nullptr ? nodeWithPrimitive(nodePtr()->parent) : nullptr;
}

KVMSPCXMLNode::Ptr KVMSPCXMLNode::previousSibling() const {
    if (isXmlNsPtr() || m_genericPtr == nullptr) {
        return nullptr;
    }
    return nodeWithPrimitive(nodePtr()->prev);
}

KVMSPCXMLNode::Ptr KVMSPCXMLNode::nextSibling() const {
    if (isXmlNsPtr() || m_genericPtr == nullptr) {
        return nullptr;
    }
    return nodeWithPrimitive(nodePtr()->next);
}

unsigned KVMSPCXMLNode::childCount() const {
    unsigned count = 0;
    if (hasChildList(kind())) {
        for (xmlNodePtr child = nodePtr()->children; child != nullptr; child = child->next) {
            ++count;
        }
    }
    return count;
}

KVMSPCXMLNode::Nodes KVMSPCXMLNode::children() const {
    return hasChildList(kind()) ? wrapList(nodePtr()->children, nullptr) : Nodes{};
}

KVMSPCXMLNode::Ptr KVMSPCXMLNode::childAtIndex(unsigned index) const {
    unsigned count = 0;
    if (hasChildList(kind())) {
        for (xmlNodePtr child = nodePtr()->children; child != nullptr; child = child->next, ++count) {
            if (count == index) {
                return nodeWithPrimitive(child);
            }
        }
    }
    throw TVException(kInternalInconsistencyException,
                      stringWithFormat("index (%u) beyond bounds (%u)", index, count));
}

KVMSPCXMLNode::Ptr KVMSPCXMLNode::previousNode() const {
    if (!isXmlNodePtr()) {
        return nullptr;
    }
    xmlNodePtr node = nodePtr();
    if (node->prev != nullptr) {
        return nodeWithPrimitive(deepestLastDescendant(node->prev));
    }
    if (node->parent != nullptr && node->parent->type != XML_DOCUMENT_NODE) {
        return nodeWithPrimitive(node->parent);
    }
    return nullptr;
}

KVMSPCXMLNode::Ptr KVMSPCXMLNode::nextNode() const {
    if (!isXmlNodePtr() && !isXmlDocPtr()) {
        return nullptr;
    }
    xmlNodePtr node = nodePtr();
    if (hasChildList(node->type) && node->children != nullptr) {
        return nodeWithPrimitive(node->children);
    }
    for (; node != nullptr; node = node->parent) {
        if (node->next != nullptr) {
            return nodeWithPrimitive(node->next);
        }
    }
    return nullptr;
}

std::string KVMSPCXMLNode::XPath() const {
    std::string path;
    xmlNodePtr element = nullptr;
    if (isXmlNsPtr()) {
        element = m_nsParentPtr;
        path = stringWithFormat(element != nullptr ? "/namespace::%s" : "namespace::%s",
                                MSPCPlainString(nsPtr()->prefix).c_str());
    } else if (isXmlAttrPtr()) {
        element = nodePtr()->parent;
        path =
            stringWithFormat(element != nullptr ? "/@%s" : "@%s", MSPCPlainString(nodePtr()->name).c_str());
    } else if (m_genericPtr != nullptr) {
        element = nodePtr();
    }
    for (xmlNodePtr node = element; node != nullptr && node->type == XML_ELEMENT_NODE; node = node->parent) {
        std::string qualifiedName = MSPCPlainString(node->name);
        if (node->ns != nullptr && node->ns->prefix != nullptr) {
            qualifiedName = MSPCPlainString(node->ns->prefix) + ":" + qualifiedName;
        }
        if (node->parent == nullptr && node->doc == nullptr) {
            path = qualifiedName + path;
            continue;
        }
        int position = 1;
        for (xmlNodePtr sibling = node->prev; sibling != nullptr; sibling = sibling->prev) {
            if (sibling->type == XML_ELEMENT_NODE && xmlStrEqual(sibling->name, node->name)) {
                ++position;
            }
        }
        path = stringWithFormat("/%s[%i]", qualifiedName.c_str(), position) + path;
    }
    return path;
}

std::string KVMSPCXMLNode::localName() const {
    if (isXmlNsPtr()) {
        return MSPCPlainString(nsPtr()->prefix);
    }
    return localNameForName(name().value_or(""));
}

std::string KVMSPCXMLNode::prefix() const {
    return isXmlNsPtr() ? std::string() : prefixForName(name().value_or(""));
}

std::string KVMSPCXMLNode::localNameForName(const std::string& name) {
    size_t colon = name.find(':');
    return colon == std::string::npos ? name : name.substr(colon + 1);
}

std::string KVMSPCXMLNode::prefixForName(const std::string& name) {
    size_t colon = name.find(':');
    return colon == std::string::npos ? std::string() : name.substr(0, colon);
}

void KVMSPCXMLNode::setURI(const std::optional<std::string>& uri) {
    const bool hasURI = uri.has_value() && !uri->empty();
    if (kind() == XML_ELEMENT_NODE) {
        xmlNodePtr node = nodePtr();
        if (node->ns != nullptr) {
            removeNamespace(node->ns, node);
            node->ns = nullptr;
        }
        if (hasURI) {
            xmlNsPtr ns = newNamespaceCopy(MSPCGetXMLString(*uri), nullptr);
            ns->next = node->nsDef;
            node->nsDef = ns;
            node->ns = ns;
        }
    } else if (isXmlAttrPtr()) {
        auto* attr = reinterpret_cast<xmlAttrPtr>(m_genericPtr);
        // A parentless attribute owns its namespace; an attached one refers to its element's scope.
        if (attr->parent == nullptr && attr->ns != nullptr) {
            xmlFreeNs(attr->ns);
        }
        attr->ns = hasURI ? newNamespaceCopy(MSPCGetXMLString(*uri), nullptr) : nullptr;
        if (attr->parent != nullptr) {
            adoptAttributeNamespace(attr, attr->parent);
        }
    }
}

std::optional<std::string> KVMSPCXMLNode::URI() const {
    if ((isXmlAttrPtr() || isXmlNodePtr()) && nodePtr()->ns != nullptr) {
        return MSPCOptionalString(nodePtr()->ns->href);
    }
    return std::nullopt;
}

xmlNodePtr KVMSPCXMLNode::XMLNodeCopy() const {
    return isXmlNodePtr() ? xmlCopyNode(nodePtr(), 1) : nullptr;
}

KVMSPCXMLNode::Ptr KVMSPCXMLNode::copyWithZone() const {
    switch (kind()) {
    case XML_DOCUMENT_NODE:
        return nodeWithPrimitive(xmlCopyDoc(static_cast<xmlDocPtr>(m_genericPtr), 1));
    case XML_ATTRIBUTE_NODE: {
        auto* source = reinterpret_cast<xmlAttrPtr>(m_genericPtr);
        xmlAttrPtr copy = xmlCopyProp(nullptr, source);
        if (copy != nullptr && source->ns != nullptr) {
            copy->ns = newNamespaceCopy(source->ns->href, source->ns->prefix);
        }
        return nodeWithPrimitive(copy);
    }
    case XML_NAMESPACE_DECL:
        return nodeWithPrimitive(newNamespaceCopy(nsPtr()->href, nsPtr()->prefix), nullptr);
    case XML_DTD_NODE:
        return nodeWithPrimitive(xmlCopyDtd(static_cast<xmlDtdPtr>(m_genericPtr)));
    default:
        return nodeWithPrimitive(XMLNodeCopy());
    }
}

std::string KVMSPCXMLNode::XMLStringWithOptions(unsigned options) const {
    if (m_genericPtr == nullptr) {
        return {};
    }
    mspcxmlInitialize();
    xmlSaveNoEmptyTags = (options & kXMLNodeCompactEmptyElement) != 0 ? 0 : 1;
    int format = 0;
    if ((options & kXMLNodePrettyPrint) != 0) {
        xmlIndentTreeOutput = 1;
        format = 1;
    }
    xmlDocPtr doc = isXmlNsPtr() ? nullptr : nodePtr()->doc;
    xmlBufferPtr buffer = xmlBufferCreate();
    tvAssert(buffer != nullptr, "Out of memory for an XML buffer");
    xmlNodeDump(buffer, doc, nodePtr(), 0, format);
    std::string text(reinterpret_cast<const char*>(xmlBufferContent(buffer)),
                     static_cast<size_t>(xmlBufferLength(buffer)));
    xmlBufferFree(buffer);
    return kind() == XML_PI_NODE ? text : MSPCTrimWhitespaceAndNewlines(text);
}

void KVMSPCXMLNode::detach() {
    if (isXmlNsPtr()) {
        if (m_nsParentPtr != nullptr) {
            removeNamespace(nsPtr(), m_nsParentPtr);
        }
    } else if (isXmlAttrPtr()) {
        if (nodePtr()->parent != nullptr) {
            detachAttribute(reinterpret_cast<xmlAttrPtr>(m_genericPtr), nodePtr()->parent);
        }
    } else if (isXmlNodePtr() && nodePtr()->parent != nullptr) {
        detachChild(nodePtr(), nodePtr()->parent);
    }
}

KVMSPCXMLNode::Ptr KVMSPCXMLNode::setAttributeWithName(const std::string& name) {
    return setAttributeWithName(name, std::nullopt);
}

KVMSPCXMLNode::Ptr KVMSPCXMLNode::setAttributeWithName(const std::string& name,
                                                       const std::optional<std::string>& stringValue) {
    auto* element = dynamic_cast<KVMSPCXMLElement*>(this);
    tvAssert(element != nullptr && kind() == XML_ELEMENT_NODE,
             "Sent message setAttributeWithName:stringValue: to an object which is not MSPCXMLElement.");
    Ptr attribute = element->attributeForName(name);
    if (attribute == nullptr) {
        attribute = nodeWithPrimitive(xmlNewProp(nullptr, MSPCGetXMLString(name), nullptr));
        tvAssert(attribute != nullptr, "Out of memory for an attribute");
        element->addAttribute(attribute);
    }
    if (stringValue.has_value()) {
        attribute->setStringValue(*stringValue);
    }
    return attribute;
}

std::optional<KVMSPCXMLNode::Nodes> KVMSPCXMLNode::nodesForXPath(const std::string& xpath, TVError* error) {
    xmlNodePtr node = nodePtr();
    xmlDocPtr doc = nullptr;
    if (isXmlDocPtr()) {
        doc = static_cast<xmlDocPtr>(m_genericPtr);
    } else if (isXmlNodePtr()) {
        doc = node->doc;
    } else {
        return std::nullopt;
    }
    mspcxmlInitialize();
    clearLastError();
    std::optional<TemporaryDocument> temporary;
    if (doc == nullptr) {
        temporary.emplace(node);
        doc = temporary->doc();
    }
    thread_local ReusedXPathContext reused;
    xmlXPathContextPtr context = reused.pointedAt(doc, node);
    std::optional<Nodes> nodes;
    if (xmlXPathObjectPtr result = xmlXPathEvalExpression(MSPCGetXMLString(xpath), context)) {
        nodes.emplace();
        xmlNodeSetPtr set = result->type == XPATH_NODESET ? result->nodesetval : nullptr;
        for (int i = 0; set != nullptr && i < set->nodeNr; ++i) {
            xmlNodePtr found = set->nodeTab[i];
            if (found->type == XML_NAMESPACE_DECL) {
                auto* ns = reinterpret_cast<xmlNsPtr>(found);
                nodes->push_back(wrapNamespace(ns, reinterpret_cast<xmlNodePtr>(ns->next)));
            } else if (!temporary || found != reinterpret_cast<xmlNodePtr>(doc)) {
                nodes->push_back(nodeWithPrimitive(found));
            }
        }
        xmlXPathFreeObject(result);
        if (error != nullptr) {
            *error = TVError{};
        }
    } else {
        setError(error, lastError().value_or(
                            TVError::make(kMSPCXMLErrorDomain, XML_XPATH_EXPR_ERROR, "Invalid expression")));
    }
    reused.release();
    return nodes;
}

KVMSPIXQuery::Objects KVMSPCXMLNode::objectsForXQuery(const std::string& xquery, TVError* error) {
    Objects objects;
    if (auto nodes = nodesForXPath(xquery, error)) {
        objects.assign(nodes->begin(), nodes->end());
    }
    return objects;
}

KVMSPIXQuery::Objects KVMSPCXMLNode::objectsForXQuery(const std::string& xquery, const KVMSPIXQueryConstants&,
                                                      TVError* error) {
    return objectsForXQuery(xquery, error);
}

KVMSPCXMLNode::Ptr KVMSPCXMLNode::singleNode(const std::string& xquery,
                                             const KVMSPIXQueryConstants* constants, TVError* error) {
    std::optional<Nodes> nodes = nodesForXPath(xquery, error);
    if (!nodes.has_value() || nodes->empty()) {
        if (nodes.has_value() && constants == nullptr) {
            setError(error, TVError::make(kTVMSPXQueryErrorDomain, kTVMSPXQueryNoMatchError,
                                          stringWithFormat("No node found for xquery '%s'", xquery.c_str())));
        }
        return nullptr;
    }
    if (nodes->size() > 1) {
        if (constants != nullptr) {
            std::string receiver = kind() == XML_ELEMENT_NODE ? stringWithFormat(" sent to element '%s'",
                                                                                 name().value_or("").c_str())
                                                              : std::string();
            throw TVException(kInternalInconsistencyException,
                              stringWithFormat("Multiple elements found for xquery '%s' with constants %s%s.",
                                               xquery.c_str(), constantsDescription(*constants).c_str(),
                                               receiver.c_str()));
        }
        setError(error,
                 TVError::make(kTVMSPXQueryErrorDomain, kTVMSPXQueryMultipleMatchesError,
                               stringWithFormat("Multiple nodes found for xquery '%s'", xquery.c_str())));
    }
    return nodes->back();
}

std::shared_ptr<KVMSPIXQuery> KVMSPCXMLNode::singleObjectForXQuery(const std::string& xquery,
                                                                   TVError* error) {
    return singleNode(xquery, nullptr, error);
}

std::shared_ptr<KVMSPIXQuery> KVMSPCXMLNode::singleObjectForXQuery(const std::string& xquery,
                                                                   const KVMSPIXQueryConstants& constants,
                                                                   TVError* error) {
    return singleNode(xquery, &constants, error);
}

std::optional<std::string> KVMSPCXMLNode::singleStringValue(const std::string& xquery,
                                                            const KVMSPIXQueryConstants* constants,
                                                            TVError* error) {
    Ptr node = singleNode(xquery, constants, error);
    return node != nullptr ? node->stringValue() : std::nullopt;
}

std::optional<std::string> KVMSPCXMLNode::stringValueForXQuery(const std::string& xquery, TVError* error) {
    return singleStringValue(xquery, nullptr, error);
}

std::optional<std::string> KVMSPCXMLNode::stringValueForXQuery(const std::string& xquery,
                                                               const KVMSPIXQueryConstants& constants,
                                                               TVError* error) {
    return singleStringValue(xquery, &constants, error);
}

namespace {

// The value of a single node found by a query, converted by `scan`; the assertion `failure` when the
// node's text doesn't scan.
template <typename Value, typename Scan>
Value scannedValue(const std::optional<std::string>& text, Scan scan, const char* failure) {
    if (!text.has_value()) {
        return Value{};
    }
    std::optional<Value> value = scan(*text);
    tvAssert(value.has_value(), stringWithFormat(failure, text->c_str()));
    return *value;
}

std::optional<bool> scanBool(const std::string& text, bool acceptYesNo) {
    std::string word = lowercased(MSPCTrimWhitespaceAndNewlines(text));
    if (word == "true" || (acceptYesNo && word == "yes")) {
        return true;
    }
    if (word == "false" || (acceptYesNo && word == "no")) {
        return false;
    }
    std::optional<int64_t> number = scanInteger(word);
    return number.has_value() ? std::optional<bool>(*number != 0) : std::nullopt;
}

constexpr const char* kIntFailure = "Failed to get int value from XML node: %s";
constexpr const char* kFloatFailure = "Failed to get float value from XML node: %s";
constexpr const char* kBoolFailure = "Failed to get boolean value from XML node: %s";

} // namespace

int64_t KVMSPCXMLNode::intValueForXQuery(const std::string& xquery, TVError* error) {
    return scannedValue<int64_t>(singleStringValue(xquery, nullptr, error), scanInteger, kIntFailure);
}

int64_t KVMSPCXMLNode::intValueForXQuery(const std::string& xquery, const KVMSPIXQueryConstants& constants,
                                         TVError* error) {
    return scannedValue<int64_t>(singleStringValue(xquery, &constants, error), scanInteger, kIntFailure);
}

double KVMSPCXMLNode::floatValueForXQuery(const std::string& xquery, TVError* error) {
    return scannedValue<double>(singleStringValue(xquery, nullptr, error), scanDouble, kFloatFailure);
}

double KVMSPCXMLNode::floatValueForXQuery(const std::string& xquery, const KVMSPIXQueryConstants& constants,
                                          TVError* error) {
    return scannedValue<double>(singleStringValue(xquery, &constants, error), scanDouble, kFloatFailure);
}

bool KVMSPCXMLNode::boolValueForXQuery(const std::string& xquery, TVError* error) {
    return scannedValue<bool>(
        singleStringValue(xquery, nullptr, error),
        [](const std::string& text) { return scanBool(text, true); }, kBoolFailure);
}

bool KVMSPCXMLNode::boolValueForXQuery(const std::string& xquery, const KVMSPIXQueryConstants& constants,
                                       TVError* error) {
    return scannedValue<bool>(
        singleStringValue(xquery, &constants, error),
        [](const std::string& text) { return scanBool(text, false); }, kBoolFailure);
}
