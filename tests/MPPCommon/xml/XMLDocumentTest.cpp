#include "MPPCommon/xml/KVMSPCXMLDocument.h"
#include "MPPCommon/xml/MSPCXMLErrors.h"
#include "support/TestSupport.h"

#include <arpa/inet.h>
#include <chrono>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

using DocumentPtr = KVMSPCXMLDocument::DocumentPtr;

std::string text(const KVMSPCXMLDocument::Data& data) {
    return std::string(data.begin(), data.end());
}

void writeText(const std::filesystem::path& path, const std::string& contents) {
    testsupport::writeFileBytes(path, std::vector<unsigned char>(contents.begin(), contents.end()));
}

TEST(XMLDocumentTest, BadDataGivesErrorsInTheLayerDomain) {
    TVError error;
    EXPECT_EQ(KVMSPCXMLDocument::initWithData({}, 0, &error), nullptr);
    EXPECT_EQ(error.domain, kMSPCXMLErrorDomain);
    EXPECT_EQ(error.code, kMSPCXMLNoDataError);

    for (const char* bad :
         {"<plan>", "<plan></task>", "not xml", "<a b='1' b='2'/>", "<?xml version='1.0'?>"}) {
        error = TVError{};
        EXPECT_EQ(KVMSPCXMLDocument::initWithXMLString(bad, 0, &error), nullptr) << bad;
        EXPECT_EQ(error.domain, kMSPCXMLErrorDomain) << bad;
        EXPECT_EQ(error.code, kMSPCXMLParseError) << bad;
        EXPECT_FALSE(error.localizedDescription().empty());
    }
    EXPECT_EQ(KVMSPCXMLElement::initWithXMLString("<a>", &error), nullptr);
    EXPECT_EQ(KVMSPCXMLDocument::initWithContentsOfURL("/nonexistent/file.xml", 0, &error), nullptr);
    EXPECT_EQ(error.code, ENOENT);
}

TEST(XMLDocumentTest, SerialisationOptions) {
    DocumentPtr document =
        KVMSPCXMLDocument::initWithXMLString("<plan>\n  <task/>\n  <title>T</title>\n</plan>", 0, nullptr);
    ASSERT_NE(document, nullptr);
    KVMSPCXMLElement::ElementPtr root = document->rootElement();
    EXPECT_EQ(root->childCount(), 2u) << "blank text between elements is dropped";
    EXPECT_EQ(root->XMLString(), "<plan><task></task><title>T</title></plan>");
    EXPECT_EQ(root->XMLStringWithOptions(kXMLNodeCompactEmptyElement),
              "<plan><task/><title>T</title></plan>");
    EXPECT_EQ(root->XMLStringWithOptions(kXMLNodePrettyPrint),
              "<plan>\n  <task></task>\n  <title>T</title>\n</plan>");
    EXPECT_EQ(text(document->XMLData()),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plan><task></task><title>T</title></plan>");
    EXPECT_EQ(KVMSPCXMLNode::processingInstructionWithName("app", "x ")->XMLString(), "<?app x ?>");
    EXPECT_EQ(KVMSPCXMLNode::attributeWithName("k", "a\"b")->XMLString(), "k=\"a&quot;b\"");

    DocumentPtr built =
        KVMSPCXMLDocument::initWithRootElement(KVMSPCXMLNode::elementWithName("scenario", XMLURI{"urn:s"}));
    built->setCharacterEncoding("UTF-8");
    built->rootElement()->addChildElementWithName("title", "A <b>");
    built->rootElement()->insertComment("  Tasks  ", 0);
    EXPECT_EQ(text(built->XMLDataWithOptions(kXMLNodePrettyPrint)),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<scenario xmlns=\"urn:s\">\n  <!--  Tasks  -->\n"
              "  <title>A &lt;b&gt;</title>\n</scenario>");
}

TEST(XMLDocumentTest, NamespaceStrippingLoad) {
    testsupport::TempDir dir;
    struct Case {
        std::string contents;
        std::optional<std::string> xmlns;
        bool unprefixedPathMatches;
    };
    const std::vector<Case> cases = {
        {"<?xml version=\"1.0\"?>\n<scenario xmlns=\"urn:tv\" id=\"s\"><task/></scenario>", "urn:tv", true},
        {"<?xml version=\"1.0\"?><scenario xmlns = \"urn:a\"\n xmlns=\"urn:b\"><task/></scenario>", "urn:b",
         false},
        {"<?xml version=\"1.0\"?><scenario xmlns:p=\"urn:p\"><task/></scenario>", std::nullopt, true},
        {"<?xml version=\"1.0\"?><scenario><task xmlns=\"urn:late\"/></scenario>", std::nullopt, false},
        {"<scenario xmlns=\"urn:tv\"/>", std::nullopt, false},
    };
    for (const Case& c : cases) {
        std::filesystem::path file = dir.path() / "doc.xml";
        writeText(file, c.contents);
        std::optional<std::string> xmlns = "stale";
        DocumentPtr document = KVMSPCXMLDocument::initWithContentsOfURL(file, 0, &xmlns, nullptr);
        ASSERT_NE(document, nullptr) << c.contents;
        EXPECT_EQ(xmlns, c.xmlns) << c.contents;
        EXPECT_EQ(document->objectsForXQuery("/scenario/task", nullptr).size(),
                  c.unprefixedPathMatches ? 1u : 0u)
            << c.contents;
    }
    std::optional<std::string> xmlns;
    TVError error;
    EXPECT_EQ(KVMSPCXMLDocument::initWithContentsOfURL(dir.path() / "missing.xml", 0, &xmlns, &error),
              nullptr);
    EXPECT_EQ(error.code, ENOENT);
}

// A local listener that tells whether anything tried to connect to it.
class ConnectionWitness {
public:
    ConnectionWitness() {
        m_socket = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        bind(m_socket, reinterpret_cast<sockaddr*>(&address), length);
        listen(m_socket, 4);
        getsockname(m_socket, reinterpret_cast<sockaddr*>(&address), &length);
        m_port = ntohs(address.sin_port);
        fcntl(m_socket, F_SETFL, O_NONBLOCK);
    }
    ~ConnectionWitness() { close(m_socket); }
    int port() const { return m_port; }
    bool wasContacted() const {
        int connection = accept(m_socket, nullptr, nullptr);
        if (connection >= 0) {
            close(connection);
        }
        return connection >= 0;
    }

private:
    int m_socket = -1;
    int m_port = 0;
};

TEST(XMLDocumentTest, ExternalEntitiesAndDtdsAreNeverFetched) {
    testsupport::TempDir dir;
    const std::string secret = "SECRET-CONTENT-7f3a";
    writeText(dir.path() / "secret.txt", secret);
    writeText(dir.path() / "secret.dtd",
              "<!ENTITY inner '" + secret + "'><!ATTLIST plan extra CDATA '" + secret + "'>");
    ConnectionWitness witness;
    const std::string file = "file://" + (dir.path() / "secret.txt").string();
    const std::string dtd = "file://" + (dir.path() / "secret.dtd").string();
    const std::string http = "http://127.0.0.1:" + std::to_string(witness.port()) + "/evil";
    const std::vector<std::string> documents = {
        "<!DOCTYPE plan [<!ENTITY x SYSTEM '" + file + "'>]><plan>&x;</plan>",
        "<!DOCTYPE plan [<!ENTITY x SYSTEM 'file:///etc/passwd'>]><plan>&x;</plan>",
        "<!DOCTYPE plan [<!ENTITY x SYSTEM '" + http + "'>]><plan>&x;</plan>",
        "<!DOCTYPE plan SYSTEM '" + dtd + "'><plan>&inner;</plan>",
        "<!DOCTYPE plan SYSTEM '" + http + ".dtd'><plan/>",
        "<!DOCTYPE plan [<!ENTITY % p SYSTEM '" + dtd + "'> %p;]><plan>&inner;</plan>",
        "<!DOCTYPE plan [<!ENTITY % p SYSTEM '" + http + "'> %p;]><plan/>",
    };
    for (const std::string& xml : documents) {
        DocumentPtr document = KVMSPCXMLDocument::initWithXMLString(xml, 0, nullptr);
        if (document != nullptr) {
            EXPECT_EQ(document->XMLString().find(secret), std::string::npos) << xml;
            EXPECT_EQ(document->rootElement()->stringValue()->find(secret), std::string::npos) << xml;
            EXPECT_EQ(document->rootElement()->stringValue()->find("root:"), std::string::npos) << xml;
        }
    }
    EXPECT_FALSE(witness.wasContacted());
}

TEST(XMLDocumentTest, EntityExpansionBlowUpIsRefused) {
    std::string xml = "<!DOCTYPE lolz [<!ENTITY lol0 'lollollollollollollollollollol'>";
    for (int level = 1; level <= 9; ++level) {
        xml += "<!ENTITY lol" + std::to_string(level) + " '";
        for (int i = 0; i < 10; ++i) {
            xml += "&lol" + std::to_string(level - 1) + ";";
        }
        xml += "'>";
    }
    xml += "]><lolz>&lol9;</lolz>";
    auto start = std::chrono::steady_clock::now();
    TVError error;
    DocumentPtr document = KVMSPCXMLDocument::initWithXMLString(xml, 0, &error);
    if (document != nullptr) {
        EXPECT_LT(document->rootElement()->stringValue()->size(), 100u * xml.size());
    } else {
        EXPECT_EQ(error.code, kMSPCXMLParseError);
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

} // namespace
