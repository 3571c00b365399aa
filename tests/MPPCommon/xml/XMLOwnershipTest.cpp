#include "MPPCommon/support/TVException.h"
#include "MPPCommon/xml/KVMSPCXMLDocument.h"

#include <gtest/gtest.h>

namespace {

using DocumentPtr = KVMSPCXMLDocument::DocumentPtr;
using ElementPtr = KVMSPCXMLElement::ElementPtr;

DocumentPtr parse(const std::string& text) {
    TVError error;
    DocumentPtr document = KVMSPCXMLDocument::initWithXMLString(text, 0, &error);
    EXPECT_NE(document, nullptr) << error.localizedDescription();
    return document;
}

KVMSPCXMLNode::Ptr firstNode(const KVMSPCXMLNode::Ptr& node, const std::string& xpath) {
    auto nodes = node->nodesForXPath(xpath, nullptr);
    EXPECT_TRUE(nodes.has_value() && !nodes->empty()) << xpath;
    return nodes && !nodes->empty() ? nodes->front() : nullptr;
}

ElementPtr firstElement(const KVMSPCXMLNode::Ptr& node, const std::string& xpath) {
    return std::dynamic_pointer_cast<KVMSPCXMLElement>(firstNode(node, xpath));
}

TEST(XMLOwnershipTest, OneWrapperPerObject) {
    DocumentPtr document = parse("<plan><task id='a'/><task id='b'/></plan>");
    ElementPtr root = document->rootElement();
    auto first = root->children();
    auto second = root->children();
    ASSERT_EQ(first.size(), 2u);
    EXPECT_EQ(first[0], second[0]);
    EXPECT_EQ(first[1], firstElement(document, "/plan/task[@id='b']"));
    EXPECT_EQ(root, document->rootElement());
    // Elements found through generic routes are element wrappers.
    EXPECT_NE(std::dynamic_pointer_cast<KVMSPCXMLElement>(first[0]), nullptr);
    EXPECT_EQ(root->attributes().size(), 0u);
    EXPECT_EQ(first[0]->parent(), root);
}

TEST(XMLOwnershipTest, DetachedElementSurvivesItsDocumentAndMovesToAnother) {
    ElementPtr task;
    {
        DocumentPtr document = parse("<plan><task id='a'><title>One &amp; two</title></task><task/></plan>");
        task = firstElement(document, "/plan/task[@id='a']");
        task->detach();
        EXPECT_EQ(task->parent(), nullptr);
        EXPECT_EQ(task->nextSibling(), nullptr);
        EXPECT_EQ(task->rootDocument(), nullptr);
        EXPECT_EQ(document->rootElement()->childCount(), 1u);
    }
    EXPECT_EQ(task->stringValueForXQuery("title", nullptr), "One & two");
    EXPECT_EQ(task->attributeForName("id")->stringValue(), "a");

    DocumentPtr other = parse("<scenario/>");
    other->rootElement()->addChild(task);
    EXPECT_EQ(task->rootDocument(), other);
    EXPECT_EQ(other->rootElement()->XMLString(),
              "<scenario><task id=\"a\"><title>One &amp; two</title></task></scenario>");
}

TEST(XMLOwnershipTest, TreeDiesFirstWhileWrappersOfNodesAttributesAndNamespacesLive) {
    KVMSPCXMLNode::Ptr title, attribute, aNamespace, text, comment;
    {
        DocumentPtr document =
            parse("<plan xmlns:x='urn:x'><task x:id='a'><title>T</title></task></plan><!-- tail -->");
        title = firstElement(document, "//title");
        attribute = firstNode(document, "//task/@x:id");
        aNamespace = document->rootElement()->namespaceForPrefix("x");
        text = title->childAtIndex(0);
        comment = document->childAtIndex(1);
        ASSERT_NE(attribute, nullptr);
        ASSERT_NE(aNamespace, nullptr);
    }
    EXPECT_EQ(title->parent(), nullptr);
    EXPECT_EQ(title->stringValue(), "T");
    EXPECT_EQ(text->parent(), title);
    EXPECT_EQ(attribute->stringValue(), "a");
    EXPECT_EQ(attribute->URI(), "urn:x");
    EXPECT_EQ(aNamespace->stringValue(), "urn:x");
    EXPECT_EQ(aNamespace->parent(), nullptr);
    EXPECT_EQ(comment->XMLString(), "<!-- tail -->");
}

TEST(XMLOwnershipTest, DetachedSubtreeKeepsNamespacesDeclaredAboveIt) {
    ElementPtr task;
    {
        DocumentPtr document =
            parse("<p:plan xmlns:p='urn:p' xml:lang='en'><p:task xml:lang='de'/></p:plan>");
        task = firstElement(document, "/p:plan/p:task");
        task->detach();
    }
    EXPECT_EQ(task->URI(), "urn:p");
    EXPECT_EQ(task->XMLString(), "<p:task xmlns:p=\"urn:p\" xml:lang=\"de\"></p:task>");
}

TEST(XMLOwnershipTest, ChildOfDetachedElementIsQueriedWithoutChangingTheTree) {
    DocumentPtr document = parse("<plan><task><note>n</note></task></plan>");
    ElementPtr task = firstElement(document, "//task");
    ElementPtr note = firstElement(document, "//note");
    task->detach();
    EXPECT_EQ(note->stringValueForXQuery("/task/note", nullptr), "n");
    EXPECT_EQ(note->stringValueForXQuery(".", nullptr), "n");
    EXPECT_EQ(note->parent(), task);
    EXPECT_EQ(note->rootDocument(), nullptr);
    EXPECT_EQ(task->rootDocument(), nullptr);
    auto top = task->objectsForXQuery("/", nullptr);
    EXPECT_TRUE(top.empty());
}

TEST(XMLOwnershipTest, RemovedChildrenAreFreedOrKeptByTheirWrapper) {
    DocumentPtr document = parse("<plan><a/><b/><c>text</c></plan>");
    ElementPtr root = document->rootElement();
    KVMSPCXMLNode::Ptr kept = root->childAtIndex(1);
    root->removeChild(kept);
    root->removeChildAtIndex(0);
    root->removeChildAtIndex(7);
    EXPECT_EQ(root->XMLString(), "<plan><c>text</c></plan>");
    EXPECT_EQ(kept->name(), "b");
    EXPECT_EQ(kept->parent(), nullptr);
    ElementPtr c = firstElement(document, "/plan/c");
    KVMSPCXMLNode::Ptr text = c->childAtIndex(0);
    root->setStringValue("x < y & z");
    EXPECT_EQ(root->stringValue(), "x < y & z");
    EXPECT_EQ(c->parent(), nullptr);
    EXPECT_EQ(text->parent(), c);
    root->addChild(kept);
    root->insertChild(c, 0);
    EXPECT_EQ(root->XMLString(), "<plan><c>text</c>x &lt; y &amp; z<b></b></plan>");
}

TEST(XMLOwnershipTest, AddingLinkedOrForeignNodesRaises) {
    DocumentPtr document = parse("<plan><a/></plan>");
    ElementPtr root = document->rootElement();
    ElementPtr a = firstElement(document, "/plan/a");
    auto expectAssertion = [](auto operation, const std::string& text) {
        try {
            operation();
            ADD_FAILURE() << "no assertion: " << text;
        } catch (const TVException& exception) {
            EXPECT_EQ(exception.name(), kInternalInconsistencyException);
            EXPECT_EQ(exception.reason(), text);
        }
    };
    expectAssertion([&] { root->addChild(a); }, "Cannot add a child that has a parent; detach or copy first");
    expectAssertion(
        [&] { root->addChild(KVMSPCXMLNode::attributeWithName("k", "v")); },
        "Elements can only have text, elements, processing instructions, and comments as children");
    expectAssertion(
        [&] { a->addChild(document); },
        "Elements can only have text, elements, processing instructions, and comments as children");
    expectAssertion([&] { root->insertChild(KVMSPCXMLNode::textWithStringValue("t"), 3); },
                    "index (3) beyond bounds (1)");
    expectAssertion([&] { root->childAtIndex(1); }, "index (1) beyond bounds (1)");
    KVMSPCXMLNode::Ptr attribute = a->setAttributeWithName("id", std::string("1"));
    expectAssertion([&] { root->addAttribute(attribute); },
                    "Cannot add an attribute with a parent; detach or copy first");
    expectAssertion([&] { root->addAttribute(KVMSPCXMLNode::textWithStringValue("t")); }, "Not an attribute");
    expectAssertion([&] { root->addNamespace(KVMSPCXMLNode::textWithStringValue("t")); }, "Not a namespace");
    expectAssertion(
        [&] { KVMSPCXMLNode::textWithStringValue("t")->setAttributeWithName("k"); },
        "Sent message setAttributeWithName:stringValue: to an object which is not MSPCXMLElement.");
    a->detach();
    expectAssertion([&] { a->addChild(a); }, "Cannot add a node as a child of itself or of its descendant");
    // A copy is independent and can be added where the original can't.
    root->addChild(a->copyWithZone());
    root->addChild(a);
    EXPECT_EQ(root->XMLString(), "<plan><a id=\"1\"></a><a id=\"1\"></a></plan>");
}

TEST(XMLOwnershipTest, AdjacentTextNodesAreNotMergedAway) {
    ElementPtr element = KVMSPCXMLNode::elementWithName("p", "one");
    KVMSPCXMLNode::Ptr two = KVMSPCXMLNode::textWithStringValue("two");
    element->addChild(two);
    element.reset();
    EXPECT_EQ(two->stringValue(), "two");
    EXPECT_EQ(two->parent(), nullptr);
}

TEST(XMLOwnershipTest, AttributesMoveBetweenElementsWithTheirNamespace) {
    KVMSPCXMLNode::Ptr attribute;
    {
        DocumentPtr document = parse("<plan xmlns:x='urn:x'><task x:id='a' k='1'/></plan>");
        ElementPtr task = firstElement(document, "//task");
        attribute = task->attributeForName("x:id");
        task->removeAttribute(attribute);
        task->removeAttributeForName("k");
        EXPECT_EQ(task->attributes().size(), 0u);
    }
    EXPECT_EQ(attribute->URI(), "urn:x");
    ElementPtr target = KVMSPCXMLNode::elementWithName("target");
    target->addAttribute(attribute);
    EXPECT_EQ(target->XMLString(), "<target xmlns:x=\"urn:x\" x:id=\"a\"></target>");

    KVMSPCXMLNode::Ptr plain = KVMSPCXMLNode::attributeWithName("ref", XMLURI{"urn:r"}, "v");
    target->addAttribute(plain);
    EXPECT_EQ(plain->URI(), "urn:r");
    EXPECT_EQ(target->XMLString(),
              "<target xmlns:x=\"urn:x\" xmlns:ns1=\"urn:r\" x:id=\"a\" ns1:ref=\"v\"></target>");
    target->setAttributes({KVMSPCXMLNode::attributeWithName("only", "1")});
    EXPECT_EQ(target->XMLString(), "<target xmlns:x=\"urn:x\" xmlns:ns1=\"urn:r\" only=\"1\"></target>");
    EXPECT_EQ(plain->parent(), nullptr);
}

TEST(XMLOwnershipTest, NamespacesDetachReattachAndOutliveTheirElement) {
    DocumentPtr document = parse("<plan xmlns='urn:d' xmlns:x='urn:x'><x:task/></plan>");
    ElementPtr root = document->rootElement();
    ASSERT_EQ(root->namespaces().size(), 2u);
    KVMSPCXMLNode::Ptr x = root->namespaceForPrefix("x");
    EXPECT_EQ(x->index(), 1u);
    EXPECT_EQ(x->XPath(), "/plan[1]/namespace::x");
    x->detach();
    EXPECT_EQ(x->parent(), nullptr);
    // The element that used the removed declaration no longer points at it.
    EXPECT_EQ(root->XMLString(), "<plan xmlns=\"urn:d\"><task></task></plan>");
    ElementPtr other = KVMSPCXMLNode::elementWithName("other");
    other->addNamespace(x);
    EXPECT_EQ(x->parent(), other);
    root->removeNamespaceForPrefix("");
    EXPECT_EQ(root->URI(), std::nullopt);
    root->setURI("urn:new");
    EXPECT_EQ(root->URI(), "urn:new");
    root->addNamespace(KVMSPCXMLNode::namespaceWithName("y", "urn:y"));
    EXPECT_EQ(root->resolvePrefixForNamespaceURI("urn:y"), "y");
    EXPECT_EQ(firstElement(document, "//task")->resolveNamespaceForName("y:a")->stringValue(), "urn:y");
    other.reset();
    EXPECT_EQ(x->stringValue(), "urn:x");
    EXPECT_EQ(x->parent(), nullptr);
    root->setNamespaces({});
    EXPECT_EQ(root->XMLString(), "<plan><task></task></plan>");
}

TEST(XMLOwnershipTest, DtdWrappersBecomeEmptyWithTheirDocument) {
    KVMSPCXMLNode::Ptr dtd, declaration;
    {
        DocumentPtr document = parse("<!DOCTYPE plan [<!ELEMENT plan EMPTY><!ENTITY e 'x'>]><plan/>");
        dtd = document->childAtIndex(0);
        ASSERT_EQ(dtd->kind(), XML_DTD_NODE);
        declaration = dtd->childAtIndex(0);
        EXPECT_EQ(dtd->childCount(), 2u);
        KVMSPCXMLNode::Ptr copy = dtd->copyWithZone();
        EXPECT_EQ(copy->childCount(), 2u);
    }
    EXPECT_EQ(dtd->kind(), 0);
    EXPECT_EQ(declaration->kind(), 0);
    EXPECT_EQ(dtd->XMLString(), "");
}

TEST(XMLOwnershipTest, EntityReferencesDetachWithoutTheirDeclaration) {
    ElementPtr task;
    {
        DocumentPtr document =
            parse("<!DOCTYPE plan [<!ENTITY e 'expanded'>]><plan><task>a &e; b</task></plan>");
        task = firstElement(document, "//task");
        EXPECT_EQ(task->stringValue(), "a expanded b");
        task->detach();
    }
    EXPECT_EQ(task->XMLString(), "<task>a &e; b</task>");
    DocumentPtr other = parse("<plan/>");
    other->rootElement()->addChild(task);
    EXPECT_EQ(other->rootElement()->XMLString(), "<plan><task>a &e; b</task></plan>");
}

TEST(XMLOwnershipTest, RootElementReplacementKeepsTheOldRootUnderItsWrapper) {
    DocumentPtr document = parse("<old><child/></old>");
    ElementPtr old = document->rootElement();
    ElementPtr child = firstElement(document, "//child");
    document->setRootElement(child);
    EXPECT_EQ(document->rootElement(), child);
    EXPECT_EQ(old->parent(), nullptr);
    EXPECT_EQ(old->childCount(), 0u);
    document.reset();
    EXPECT_EQ(child->rootDocument(), nullptr);
    EXPECT_EQ(old->XMLString(), "<old></old>");
}

TEST(XMLOwnershipTest, StringValuesEscapeOnce) {
    const std::string value = "a < b && c > \"d\"";
    ElementPtr element = KVMSPCXMLNode::elementWithName("e");
    KVMSPCXMLNode::Ptr attribute = element->setAttributeWithName("k", value);
    EXPECT_EQ(attribute->stringValue(), value) << "first value, stored as it is";
    attribute->setStringValue(value + "!");
    EXPECT_EQ(attribute->stringValue(), value + "!") << "later value, encoded and decoded once";
    element->setStringValue(value);
    EXPECT_EQ(element->stringValue(), value);
    EXPECT_EQ(element->XMLString(),
              "<e k=\"a &lt; b &amp;&amp; c &gt; &quot;d&quot;!\">a &lt; b &amp;&amp; c &gt; \"d\"</e>");
    TVError error;
    ElementPtr reparsed = KVMSPCXMLElement::initWithXMLString(element->XMLString(), &error);
    ASSERT_NE(reparsed, nullptr) << error.localizedDescription();
    EXPECT_EQ(reparsed->stringValue(), value);
    EXPECT_EQ(reparsed->attributeForName("k")->stringValue(), value + "!");
}

TEST(XMLOwnershipTest, CopiesAreIndependent) {
    DocumentPtr document = parse("<plan xmlns:x='urn:x'><x:task x:id='1'><title>T</title></x:task></plan>");
    ElementPtr task = firstElement(document, "//x:task");
    auto copy = std::dynamic_pointer_cast<KVMSPCXMLElement>(task->copyWithZone());
    ASSERT_NE(copy, nullptr);
    KVMSPCXMLNode::Ptr attributeCopy = task->attributeForName("x:id")->copyWithZone();
    KVMSPCXMLNode::Ptr namespaceCopy = document->rootElement()->namespaceForPrefix("x")->copyWithZone();
    auto documentCopy = std::dynamic_pointer_cast<KVMSPCXMLDocument>(document->copyWithZone());
    copy->setStringValue("changed");
    document.reset();
    EXPECT_EQ(task->stringValue(), "T");
    EXPECT_EQ(copy->XMLString(), "<x:task xmlns:x=\"urn:x\" x:id=\"1\">changed</x:task>");
    EXPECT_EQ(attributeCopy->URI(), "urn:x");
    EXPECT_EQ(namespaceCopy->parent(), nullptr);
    EXPECT_EQ(namespaceCopy->stringValue(), "urn:x");
    ASSERT_NE(documentCopy, nullptr);
    EXPECT_EQ(documentCopy->stringValueForXQuery("//x:task/title", nullptr), "T");
}

} // namespace
