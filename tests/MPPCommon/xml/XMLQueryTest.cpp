#include "MPPCommon/support/TVException.h"
#include "MPPCommon/xml/KVMSPCXMLDocument.h"
#include "MPPCommon/xml/MSPCXMLErrors.h"
#include "MPPCommon/xml/MSPCXMLText.h"

#include <gtest/gtest.h>
#include <set>

namespace {

class XMLQueryTest : public testing::Test {
protected:
    void SetUp() override {
        document = KVMSPCXMLDocument::initWithXMLString(
            "<plan><task id='t1'><priority>500 extra</priority><effort>2.5h</effort><done> Yes\n</done>"
            "<flag>no</flag><inf>inf</inf><hex>0x1p3</hex><exp>-1.5e2x</exp><dot>.5</dot><zero>0</"
            "zero><bad>abc</bad></task><task id='t2'/></plan>",
            0, nullptr);
        ASSERT_NE(document, nullptr);
        root = document->rootElement();
    }

    std::string assertionText(const std::function<void()>& operation) {
        try {
            operation();
        } catch (const TVException& exception) {
            EXPECT_EQ(exception.name(), kInternalInconsistencyException);
            return exception.reason();
        }
        return "no assertion";
    }

    KVMSPCXMLDocument::DocumentPtr document;
    KVMSPCXMLElement::ElementPtr root;
};

TEST_F(XMLQueryTest, ObjectsAndPathErrors) {
    TVError error = TVError::make("stale", 9, "stale");
    auto tasks = root->objectsForXQuery("task", &error);
    ASSERT_EQ(tasks.size(), 2u);
    EXPECT_EQ(error.code, 0);
    EXPECT_EQ(std::dynamic_pointer_cast<KVMSPCXMLNode>(tasks[1])->XPath(), "/plan[1]/task[2]");
    EXPECT_TRUE(root->objectsForXQuery("nothing", nullptr).empty());
    EXPECT_TRUE(root->objectsForXQuery("count(task)", nullptr).empty());

    EXPECT_TRUE(root->objectsForXQuery("task[", &error).empty());
    EXPECT_EQ(error.domain, kMSPCXMLErrorDomain);
    EXPECT_NE(error.code, 0);
    KVMSPCXMLNode::Ptr attribute = root->setAttributeWithName("a", std::string("1"));
    EXPECT_FALSE(attribute->nodesForXPath(".", nullptr).has_value());
}

TEST_F(XMLQueryTest, SingleAnswers) {
    TVError error;
    EXPECT_EQ(root->singleObjectForXQuery("task[@id='t9']", &error), nullptr);
    EXPECT_EQ(error.domain, kTVMSPXQueryErrorDomain);
    EXPECT_EQ(error.code, kTVMSPXQueryNoMatchError);

    auto last = std::dynamic_pointer_cast<KVMSPCXMLElement>(root->singleObjectForXQuery("task", &error));
    EXPECT_EQ(error.code, kTVMSPXQueryMultipleMatchesError);
    ASSERT_NE(last, nullptr);
    EXPECT_EQ(last->attributeForName("id")->stringValue(), "t2");

    error = TVError{};
    EXPECT_EQ(root->singleObjectForXQuery("task[@id='t9']", {{"k", "v"}}, &error), nullptr);
    EXPECT_EQ(error.code, 0);
    EXPECT_EQ(
        assertionText([&] {
            root->stringValueForXQuery("task/@id", {{"k", "v"}}, nullptr);
        }),
        "Multiple elements found for xquery 'task/@id' with constants { k = v; } sent to element 'plan'.");
    EXPECT_EQ(assertionText([&] { document->singleObjectForXQuery("//task", {}, nullptr); }),
              "Multiple elements found for xquery '//task' with constants { }.");

    EXPECT_EQ(root->stringValueForXQuery("task/@id", &error), "t2");
    EXPECT_EQ(root->stringValueForXQuery("task[1]/@id", {}, nullptr), "t1");
    EXPECT_EQ(root->stringValueForXQuery("task[3]", nullptr), std::nullopt);
}

TEST_F(XMLQueryTest, NumbersAndFlags) {
    EXPECT_EQ(root->intValueForXQuery("task/priority", nullptr), 500);
    EXPECT_EQ(root->intValueForXQuery("task/missing", nullptr), 0);
    EXPECT_DOUBLE_EQ(root->floatValueForXQuery("task/effort", nullptr), 2.5);
    EXPECT_DOUBLE_EQ(root->floatValueForXQuery("task/missing", {}, nullptr), 0.0);
    EXPECT_DOUBLE_EQ(root->floatValueForXQuery("task/hex", nullptr), 0.0);
    EXPECT_DOUBLE_EQ(root->floatValueForXQuery("task/exp", nullptr), -150.0);
    EXPECT_DOUBLE_EQ(root->floatValueForXQuery("task/dot", nullptr), 0.5);
    EXPECT_EQ(assertionText([&] { root->floatValueForXQuery("task/inf", nullptr); }),
              "Failed to get float value from XML node: inf");
    EXPECT_TRUE(root->boolValueForXQuery("task/done", nullptr));
    EXPECT_FALSE(root->boolValueForXQuery("task/flag", nullptr));
    EXPECT_FALSE(root->boolValueForXQuery("task/zero", {}, nullptr));
    EXPECT_TRUE(root->boolValueForXQuery("task/priority", {}, nullptr));
    EXPECT_FALSE(root->boolValueForXQuery("task/missing", nullptr));

    EXPECT_EQ(assertionText([&] { root->boolValueForXQuery("task/done", {}, nullptr); }),
              "Failed to get boolean value from XML node:  Yes\n");
    EXPECT_EQ(assertionText([&] { root->intValueForXQuery("task/bad", nullptr); }),
              "Failed to get int value from XML node: abc");
    EXPECT_EQ(assertionText([&] { root->floatValueForXQuery("task/bad", nullptr); }),
              "Failed to get float value from XML node: abc");
}

TEST_F(XMLQueryTest, NavigationInDocumentOrder) {
    auto priority = root->singleObjectForXQuery("task[1]/priority", nullptr);
    auto node = std::dynamic_pointer_cast<KVMSPCXMLNode>(priority);
    EXPECT_EQ(node->level(), 3u);
    EXPECT_EQ(node->index(), 0u);
    EXPECT_EQ(node->previousNode()->name(), "task");
    EXPECT_EQ(node->nextNode()->kind(), XML_TEXT_NODE);
    auto secondTask =
        std::dynamic_pointer_cast<KVMSPCXMLElement>(root->singleObjectForXQuery("task[2]", nullptr));
    EXPECT_EQ(secondTask->previousNode()->stringValue(), "abc")
        << "deepest last descendant of the previous sibling";
    EXPECT_EQ(secondTask->nextNode(), nullptr);
    EXPECT_EQ(root->previousNode(), nullptr);
    EXPECT_EQ(secondTask->attributeForName("id")->XPath(), "/plan[1]/task[2]/@id");
    EXPECT_EQ(KVMSPCXMLNode::elementWithName("alone")->XPath(), "alone");

    auto named = KVMSPCXMLElement::initWithXMLString("<r xmlns:x='urn:x'><x:a/><a/><x:a/></r>", nullptr);
    ASSERT_NE(named, nullptr);
    EXPECT_EQ(named->elementsForName("x:a").size(), 2u);
    EXPECT_EQ(named->elementsForName("a").size(), 1u);
    EXPECT_EQ(named->elementsForLocalName("a", "urn:x").size(), 2u);
    EXPECT_EQ(named->elementsForLocalName("a", "urn:other").size(), 0u);
}

TEST(XMLTextTest, IdentifiersAndCleanUp) {
    std::set<std::string> identifiers;
    for (int i = 0; i < 50; ++i) {
        std::string identifier = KFXMLCreateID();
        ASSERT_EQ(identifier.size(), 11u);
        EXPECT_TRUE(identifier[0] >= 'a' && identifier[0] <= 'p') << identifier;
        EXPECT_EQ(identifier.substr(6), "aaaaa");
        identifiers.insert(identifier);
    }
    EXPECT_GT(identifiers.size(), 40u);

    std::string controls;
    for (char c = 1; c < 0x20; ++c) {
        controls += c;
    }
    std::string expected = "\t\n\r";
    for (char c = 0x10; c < 0x20; ++c) {
        expected += c;
    }
    EXPECT_EQ(filterInvalidXmlCharacters("a" + controls + "é"), "a" + expected + "é");
    EXPECT_EQ(MSPCTrimWhitespace(" \t a b \t"), "a b");
    EXPECT_EQ(MSPCTrimWhitespace("\na\n"), "\na\n");
}

} // namespace
