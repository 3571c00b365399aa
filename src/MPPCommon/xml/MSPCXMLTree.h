#pragma once

#include <libxml/tree.h>

// The raw tree operations under the XML wrappers. They keep libxml2's lists consistent and honour the
// ownership rule of the layer: an object that has a wrapper (its _private word is set) is cut loose
// and lives on under that wrapper, every other object is freed with the tree that lets it go.
//
// Objects cut loose are made self-contained: they lose their document pointers (the document may be
// freed before them), and namespace references that point outside them are replaced by copies that
// they own. A parentless attribute owns its namespace; a detached element declares what it uses.
namespace mspcxml {

// Type word and _private word of any libxml2 tree object, namespaces included.
xmlElementType primitiveType(const void* primitive);
void* primitivePrivate(const void* primitive);
void setPrimitivePrivate(void* primitive, void* value);
inline bool hasWrapper(const void* primitive) {
    return primitivePrivate(primitive) != nullptr;
}

// Element, text, CDATA, processing instruction, comment: what an element may take as a child.
bool isXmlNodeKind(int type);
// What libxml2 links into a child list: the node kinds plus entity references and XInclude markers.
bool isChildKind(int type);

// Frees a child node unless it has a wrapper, in which case it is cut loose. Raises the assertion
// "Wrong kind of node passed to nodeFree: %i" for a node that can't stand in a child list.
void nodeFree(xmlNodePtr node);
void removeAllAttributesFromNode(xmlNodePtr node);
void removeAllNamespacesFromNode(xmlNodePtr node);
void removeAllChildrenFromNode(xmlNodePtr node);
void removeAllChildrenFromDoc(xmlDocPtr doc);

// Free objects that nothing else holds.
void freeParentlessAttribute(xmlAttrPtr attr);
void freeDtd(xmlDtdPtr dtd);
void freeDocument(xmlDocPtr doc);

void stripDocPointersFromAttr(xmlAttrPtr attr);
void recursiveStripDocPointersFromNode(xmlNodePtr node);

// Unlinking. The detach forms keep the object; the remove forms free it when it has no wrapper. Each
// does nothing when the object isn't linked under `node`.
void detachAttribute(xmlAttrPtr attr, xmlNodePtr node);
void removeAttribute(xmlAttrPtr attr, xmlNodePtr node);
bool detachNamespace(xmlNsPtr ns, xmlNodePtr node);
void removeNamespace(xmlNsPtr ns, xmlNodePtr node);
void detachChild(xmlNodePtr child, xmlNodePtr node, bool nullifyPointers = true);
void removeChild(xmlNodePtr child, xmlNodePtr node);

// Linking without libxml2's merging of adjacent text nodes, which would free a node that a wrapper
// holds. `child` is linked ahead of `before`, or last when `before` is null.
void linkChild(xmlNodePtr parent, xmlNodePtr child, xmlNodePtr before);
// Appends a parentless attribute and binds the namespace it owns to a declaration in scope.
void linkAttribute(xmlNodePtr element, xmlAttrPtr attr);
void appendNamespace(xmlNodePtr element, xmlNsPtr ns);
// Binds the namespace that `attr` owns to `element`'s scope, declaring it there when needed.
void adoptAttributeNamespace(xmlAttrPtr attr, xmlNodePtr element);

// A new unlinked namespace; unlike xmlNewNs this also makes the reserved "xml" prefix.
xmlNsPtr newNamespaceCopy(const xmlChar* href, const xmlChar* prefix);

} // namespace mspcxml
