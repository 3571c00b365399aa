#include "MPPCommon/xml/MSPCXMLTree.h"

#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPCommon/xml/KVMSPCXMLNode.h"

#include <cstddef>
#include <cstring>
#include <libxml/valid.h>

namespace mspcxml {

static_assert(offsetof(xmlNode, type) == offsetof(xmlNs, type), "libxml2 objects share their type word");

namespace {

KVMSPCXMLNode* wrapperOf(const void* primitive) {
    return static_cast<KVMSPCXMLNode*>(primitivePrivate(primitive));
}

bool isDeclaredBetween(xmlNsPtr ns, xmlNodePtr node, xmlNodePtr root) {
    for (xmlNodePtr n = node; n != nullptr; n = n->parent) {
        for (xmlNsPtr declared = n->nsDef; declared != nullptr; declared = declared->next) {
            if (declared == ns) {
                return true;
            }
        }
        if (n == root) {
            break;
        }
    }
    return false;
}

// A declaration on `root` with the prefix and URI of `ns`, made when `root` has none.
xmlNsPtr localDeclaration(xmlNodePtr root, xmlNsPtr ns) {
    for (xmlNsPtr declared = root->nsDef; declared != nullptr; declared = declared->next) {
        if (xmlStrEqual(declared->prefix, ns->prefix) && xmlStrEqual(declared->href, ns->href)) {
            return declared;
        }
    }
    xmlNsPtr copy = newNamespaceCopy(ns->href, ns->prefix);
    appendNamespace(root, copy);
    return copy;
}

void localizeNamespacesBelow(xmlNodePtr node, xmlNodePtr root) {
    if (node->type != XML_ELEMENT_NODE) {
        return;
    }
    if (node->ns != nullptr && !isDeclaredBetween(node->ns, node, root)) {
        node->ns = localDeclaration(root, node->ns);
    }
    for (xmlAttrPtr attr = node->properties; attr != nullptr; attr = attr->next) {
        if (attr->ns != nullptr && !isDeclaredBetween(attr->ns, node, root)) {
            attr->ns = localDeclaration(root, attr->ns);
        }
    }
    for (xmlNodePtr child = node->children; child != nullptr; child = child->next) {
        localizeNamespacesBelow(child, root);
    }
}

// Makes every namespace that the subtree refers to a declaration inside it, so that the subtree
// survives the tree it is taken from.
void localizeNamespaces(xmlNodePtr root) {
    localizeNamespacesBelow(root, root);
}

void clearNamespaceReferences(xmlNodePtr node, xmlNsPtr ns) {
    if (node->type != XML_ELEMENT_NODE) {
        return;
    }
    if (node->ns == ns) {
        node->ns = nullptr;
    }
    for (xmlAttrPtr attr = node->properties; attr != nullptr; attr = attr->next) {
        if (attr->ns == ns) {
            attr->ns = nullptr;
        }
    }
    for (xmlNodePtr child = node->children; child != nullptr; child = child->next) {
        clearNamespaceReferences(child, ns);
    }
}

// A parentless attribute owns its namespace: it gets a copy of the one it referred to in the tree.
void giveAttributeOwnNamespace(xmlAttrPtr attr) {
    if (attr->ns != nullptr) {
        attr->ns = newNamespaceCopy(attr->ns->href, attr->ns->prefix);
    }
}

// Cuts a wrapped node loose from a tree that unlinks or frees it.
void loosenChild(xmlNodePtr child) {
    localizeNamespaces(child);
    child->parent = nullptr;
    child->next = nullptr;
    child->prev = nullptr;
    if (child->doc != nullptr) {
        recursiveStripDocPointersFromNode(child);
    }
}

void loosenAttribute(xmlAttrPtr attr) {
    attr->parent = nullptr;
    attr->next = nullptr;
    attr->prev = nullptr;
    giveAttributeOwnNamespace(attr);
    if (attr->doc != nullptr) {
        stripDocPointersFromAttr(attr);
    }
}

void stripDocPointersFromList(xmlNodePtr first) {
    for (xmlNodePtr child = first; child != nullptr; child = child->next) {
        recursiveStripDocPointersFromNode(child);
    }
}

// Wrappers of a DTD and its declarations can't outlive it: declarations live in the DTD's tables.
void disownDtdWrappers(xmlDtdPtr dtd) {
    if (dtd == nullptr) {
        return;
    }
    if (KVMSPCXMLNode* wrapper = wrapperOf(dtd)) {
        wrapper->disown();
    }
    for (xmlNodePtr child = dtd->children; child != nullptr; child = child->next) {
        if (KVMSPCXMLNode* wrapper = wrapperOf(child)) {
            wrapper->disown();
        }
    }
}

bool prefixIsFree(xmlNodePtr element, const xmlChar* prefix) {
    return xmlSearchNs(element->doc, element, prefix) == nullptr;
}

} // namespace

xmlElementType primitiveType(const void* primitive) {
    xmlElementType type;
    std::memcpy(&type, static_cast<const char*>(primitive) + offsetof(xmlNode, type), sizeof type);
    return type;
}

void* primitivePrivate(const void* primitive) {
    if (primitiveType(primitive) == XML_NAMESPACE_DECL) {
        return static_cast<const xmlNs*>(primitive)->_private;
    }
    return static_cast<const xmlNode*>(primitive)->_private;
}

void setPrimitivePrivate(void* primitive, void* value) {
    if (primitiveType(primitive) == XML_NAMESPACE_DECL) {
        static_cast<xmlNs*>(primitive)->_private = value;
    } else {
        static_cast<xmlNode*>(primitive)->_private = value;
    }
}

bool isXmlNodeKind(int type) {
    return type == XML_ELEMENT_NODE || type == XML_TEXT_NODE || type == XML_CDATA_SECTION_NODE ||
           type == XML_PI_NODE || type == XML_COMMENT_NODE;
}

bool isChildKind(int type) {
    return isXmlNodeKind(type) || type == XML_ENTITY_REF_NODE || type == XML_XINCLUDE_START ||
           type == XML_XINCLUDE_END;
}

void nodeFree(xmlNodePtr node) {
    tvAssert(isChildKind(node->type),
             stringWithFormat("Wrong kind of node passed to nodeFree: %i", node->type));
    if (hasWrapper(node)) {
        loosenChild(node);
        return;
    }
    // Children and attributes go first: wrapped ones among them still need this node's declarations.
    if (node->type != XML_ENTITY_REF_NODE) {
        removeAllChildrenFromNode(node);
    }
    if (node->type == XML_ELEMENT_NODE) {
        removeAllAttributesFromNode(node);
        removeAllNamespacesFromNode(node);
    }
    xmlFreeNode(node);
}

void removeAllAttributesFromNode(xmlNodePtr node) {
    xmlAttrPtr attr = node->properties;
    node->properties = nullptr;
    while (attr != nullptr) {
        xmlAttrPtr next = attr->next;
        if (hasWrapper(attr)) {
            loosenAttribute(attr);
        } else {
            xmlFreeProp(attr);
        }
        attr = next;
    }
}

void removeAllNamespacesFromNode(xmlNodePtr node) {
    xmlNsPtr ns = node->nsDef;
    node->nsDef = nullptr;
    node->ns = nullptr;
    while (ns != nullptr) {
        xmlNsPtr next = ns->next;
        if (KVMSPCXMLNode* wrapper = wrapperOf(ns)) {
            wrapper->setNsParentPtr(nullptr);
            ns->next = nullptr;
        } else {
            xmlFreeNs(ns);
        }
        ns = next;
    }
}

void removeAllChildrenFromNode(xmlNodePtr node) {
    xmlNodePtr child = node->children;
    node->children = nullptr;
    node->last = nullptr;
    while (child != nullptr) {
        xmlNodePtr next = child->next;
        nodeFree(child);
        child = next;
    }
}

void removeAllChildrenFromDoc(xmlDocPtr doc) {
    xmlNodePtr child = doc->children;
    while (child != nullptr) {
        xmlNodePtr next = child->next;
        if (isChildKind(child->type)) {
            detachChild(child, reinterpret_cast<xmlNodePtr>(doc), false);
            nodeFree(child);
        }
        child = next;
    }
}

void freeParentlessAttribute(xmlAttrPtr attr) {
    xmlNsPtr ns = attr->ns;
    xmlFreeProp(attr);
    if (ns != nullptr) {
        xmlFreeNs(ns);
    }
}

void freeDtd(xmlDtdPtr dtd) {
    disownDtdWrappers(dtd);
    xmlFreeDtd(dtd);
}

void freeDocument(xmlDocPtr doc) {
    removeAllChildrenFromDoc(doc);
    disownDtdWrappers(doc->intSubset);
    if (doc->extSubset != doc->intSubset) {
        disownDtdWrappers(doc->extSubset);
    }
    xmlFreeDoc(doc);
}

void stripDocPointersFromAttr(xmlAttrPtr attr) {
    if (attr->doc != nullptr && attr->atype == XML_ATTRIBUTE_ID) {
        xmlRemoveID(attr->doc, attr);
    }
    attr->doc = nullptr;
    stripDocPointersFromList(attr->children);
}

void recursiveStripDocPointersFromNode(xmlNodePtr node) {
    if (node->type == XML_ELEMENT_NODE) {
        for (xmlAttrPtr attr = node->properties; attr != nullptr; attr = attr->next) {
            stripDocPointersFromAttr(attr);
        }
    }
    if (node->type == XML_ENTITY_REF_NODE) {
        // An entity reference points at the declaration in its document's DTD; it stays a bare name.
        node->children = nullptr;
        node->last = nullptr;
    } else {
        stripDocPointersFromList(node->children);
    }
    node->doc = nullptr;
}

void detachAttribute(xmlAttrPtr attr, xmlNodePtr node) {
    if (attr->parent != node) {
        return;
    }
    if (attr->prev != nullptr) {
        attr->prev->next = attr->next;
    } else {
        node->properties = attr->next;
    }
    if (attr->next != nullptr) {
        attr->next->prev = attr->prev;
    }
    loosenAttribute(attr);
}

void removeAttribute(xmlAttrPtr attr, xmlNodePtr node) {
    if (attr->parent != node) {
        return;
    }
    detachAttribute(attr, node);
    if (!hasWrapper(attr)) {
        freeParentlessAttribute(attr);
    }
}

bool detachNamespace(xmlNsPtr ns, xmlNodePtr node) {
    xmlNsPtr previous = nullptr;
    xmlNsPtr current = node->nsDef;
    while (current != nullptr && current != ns) {
        previous = current;
        current = current->next;
    }
    if (current == nullptr) {
        return false;
    }
    if (previous != nullptr) {
        previous->next = ns->next;
    } else {
        node->nsDef = ns->next;
    }
    ns->next = nullptr;
    // Nothing in the subtree may keep pointing at a declaration that is gone from it.
    clearNamespaceReferences(node, ns);
    if (KVMSPCXMLNode* wrapper = wrapperOf(ns)) {
        wrapper->setNsParentPtr(nullptr);
    }
    return true;
}

void removeNamespace(xmlNsPtr ns, xmlNodePtr node) {
    if (detachNamespace(ns, node) && !hasWrapper(ns)) {
        xmlFreeNs(ns);
    }
}

void detachChild(xmlNodePtr child, xmlNodePtr node, bool nullifyPointers) {
    if (child->parent != node) {
        return;
    }
    if (child->prev != nullptr) {
        child->prev->next = child->next;
    } else {
        node->children = child->next;
    }
    if (child->next != nullptr) {
        child->next->prev = child->prev;
    } else {
        node->last = child->prev;
    }
    if (nullifyPointers) {
        loosenChild(child);
    }
}

void removeChild(xmlNodePtr child, xmlNodePtr node) {
    if (child->parent != node) {
        return;
    }
    detachChild(child, node, false);
    nodeFree(child);
}

void linkChild(xmlNodePtr parent, xmlNodePtr child, xmlNodePtr before) {
    child->parent = parent;
    child->next = before;
    child->prev = before != nullptr ? before->prev : parent->last;
    if (child->prev != nullptr) {
        child->prev->next = child;
    } else {
        parent->children = child;
    }
    if (before != nullptr) {
        before->prev = child;
    } else {
        parent->last = child;
    }
    if (child->doc != parent->doc) {
        xmlSetTreeDoc(child, parent->doc);
    }
}

void linkAttribute(xmlNodePtr element, xmlAttrPtr attr) {
    xmlAttrPtr last = element->properties;
    while (last != nullptr && last->next != nullptr) {
        last = last->next;
    }
    attr->parent = element;
    attr->prev = last;
    attr->next = nullptr;
    if (last != nullptr) {
        last->next = attr;
    } else {
        element->properties = attr;
    }
    if (attr->doc != element->doc) {
        xmlSetTreeDoc(reinterpret_cast<xmlNodePtr>(attr), element->doc);
    }
    adoptAttributeNamespace(attr, element);
}

void appendNamespace(xmlNodePtr element, xmlNsPtr ns) {
    ns->next = nullptr;
    if (element->nsDef == nullptr) {
        element->nsDef = ns;
        return;
    }
    xmlNsPtr last = element->nsDef;
    while (last->next != nullptr) {
        last = last->next;
    }
    last->next = ns;
}

void adoptAttributeNamespace(xmlAttrPtr attr, xmlNodePtr element) {
    xmlNsPtr owned = attr->ns;
    if (owned == nullptr) {
        return;
    }
    xmlNsPtr inScope = owned->prefix != nullptr ? xmlSearchNs(element->doc, element, owned->prefix)
                                                : xmlSearchNsByHref(element->doc, element, owned->href);
    if (inScope != nullptr && inScope->prefix != nullptr && xmlStrEqual(inScope->href, owned->href)) {
        attr->ns = inScope;
        xmlFreeNs(owned);
        return;
    }
    // An attribute is in a namespace only through a prefix: declare one that is free here.
    if (owned->prefix == nullptr || !prefixIsFree(element, owned->prefix)) {
        for (int number = 1;; ++number) {
            std::string prefix = stringWithFormat("ns%d", number);
            if (prefixIsFree(element, BAD_CAST prefix.c_str())) {
                xmlFree(const_cast<xmlChar*>(owned->prefix));
                owned->prefix = xmlStrdup(BAD_CAST prefix.c_str());
                break;
            }
        }
    }
    appendNamespace(element, owned);
}

xmlNsPtr newNamespaceCopy(const xmlChar* href, const xmlChar* prefix) {
    auto* ns = static_cast<xmlNsPtr>(xmlMalloc(sizeof(xmlNs)));
    tvAssert(ns != nullptr, "Out of memory for a namespace");
    std::memset(ns, 0, sizeof(xmlNs));
    ns->type = XML_LOCAL_NAMESPACE;
    ns->href = href != nullptr ? xmlStrdup(href) : nullptr;
    ns->prefix = prefix != nullptr ? xmlStrdup(prefix) : nullptr;
    return ns;
}

} // namespace mspcxml
