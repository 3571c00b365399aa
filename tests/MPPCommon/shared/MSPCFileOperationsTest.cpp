#include "MPPCommon/shared/MSPCAtomicWrite.h"
#include "MPPCommon/shared/MSPCNotes.h"
#include "MPPCommon/shared/MSPCXMLLoading.h"
#include "MPPCommon/support/TVException.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

namespace fs = std::filesystem;

TEST(MSPCFileOperationsTest, StrippedNamespaceComesBackAndFailuresRaiseTheXMLException) {
    testsupport::TempDir dir;
    const fs::path file = dir.path() / "toc.xml";
    const std::string xml = "<document xmlns=\"urn:x\"><project><title>T</title></project></document>";
    ASSERT_TRUE(writeDataAtomically(file, std::vector<unsigned char>(xml.begin(), xml.end())));
    std::string uri;
    EXPECT_EQ(newXmlDocFromUrlStripNamespace(TVFileURL(file, false), uri)
                  ->rootElement()
                  ->stringValueForXQuery("project/title", nullptr),
              "T");
    EXPECT_EQ(uri, "urn:x");
    EXPECT_EQ(newXmlDocFromUrl(TVFileURL(file, false))->rootElement()->URI(), "urn:x");

    testsupport::writeFileBytes(file, {'<', 'a', '>'});
    for (const fs::path& path : {file, dir.path() / "none.xml"}) {
        EXPECT_THROW(newXmlDocFromUrl(TVFileURL(path, false)), TVException);
        try {
            newXmlDocFromUrlStripNamespace(TVFileURL(path, false), uri);
            ADD_FAILURE() << path;
        } catch (const TVException& exception) {
            EXPECT_EQ(exception.name(), "MSPEXMLException");
            EXPECT_EQ(
                exception.reason(),
                "MSPEXMLExporter.newXmlDocFromUrlStripNamespace: Failed to build XML DOM from source data.");
        }
    }
}

TEST(MSPCFileOperationsTest, NotesJoinRunLiteralsOneLinePerParagraph) {
    const auto notes = [](const std::string& xml) {
        return newNotesFromTVNXNote(*KVMSPCXMLElement::initWithXMLString(xml, nullptr));
    };
    EXPECT_EQ(notes("<note><text><p><run><lit>Hi </lit></run><run><b/></run><run><lit>you</lit></run></p><p/>"
                    "<p><run><lit>x</lit></run></p></text></note>"),
              "Hi you\n\nx\n");
    EXPECT_EQ(notes("<note><text/></note>"), "");
    EXPECT_EQ(notes("<note><p/></note>"), std::nullopt);
}
