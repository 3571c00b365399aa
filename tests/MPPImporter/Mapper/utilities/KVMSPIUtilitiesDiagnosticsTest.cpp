#include "MPPCommon/support/Log.h"
#include "MPPCommon/xml/KVMSPCXMLDocument.h"
#include "MPPImporter/Mapper/utilities/KVMSPIUtilities.h"
#include "support/TestSupport.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;

class KVMSPIUtilitiesDumpTest : public ::testing::Test {
protected:
    void SetUp() override {
        tvSetLogSink([this](const std::string& line) { m_log += line + "\n"; });
        m_document =
            KVMSPCXMLDocument::initWithXMLString("<scenario><task id=\"t1\"/></scenario>", 0, nullptr);
        ASSERT_TRUE(m_document);
    }
    void TearDown() override { tvSetLogSink({}); }

    std::string dumped(const std::string& name) const {
        const auto bytes = testsupport::readFileBytes(m_folder.path() / "TVMSPDIFilterDump" / name);
        return std::string(bytes.begin(), bytes.end());
    }

    testsupport::TempDir m_folder;
    KVMSPCXMLDocument::DocumentPtr m_document;
    std::string m_log;
};

TEST_F(KVMSPIUtilitiesDumpTest, WritesNamedAndNumberedDumps) {
    const TVFileURL folder(m_folder.path().string(), true);
    KVMSPIUtilities::dumpXMLDocument(*m_document, folder, "Actual", 2);
    KVMSPIUtilities::dumpXMLDocument(*m_document, folder, "");
    EXPECT_NE(dumped("Actual_dump(2).xml").find("<task id=\"t1\"/>"), std::string::npos);
    EXPECT_NE(dumped("TVMSPDIFilter_dump.xml").find("\n  <task"), std::string::npos);
    // A second dump replaces the first and leaves no temporary file behind.
    KVMSPIUtilities::dumpXMLDocument(*m_document, folder, "");
    EXPECT_EQ(std::distance(fs::directory_iterator(m_folder.path() / "TVMSPDIFilterDump"),
                            fs::directory_iterator()),
              2);
    EXPECT_EQ(m_log, "");
}

TEST_F(KVMSPIUtilitiesDumpTest, WritesNothingWithoutAUsableFolder) {
    KVMSPIUtilities::dumpXMLDocument(*m_document, TVFileURL(), "Actual");
    EXPECT_NE(m_log.find("*** ERROR: MSPIUtilities dumpXMLDocument:workingFolderUrl: Not a file URL: '"),
              std::string::npos);

    KVMSPIUtilities::dumpXMLDocument(*m_document, TVFileURL((m_folder.path() / "missing").string(), true),
                                     "A");
    EXPECT_FALSE(fs::exists(m_folder.path() / "missing"));

    testsupport::writeFileBytes(m_folder.path() / "TVMSPDIFilterDump", {'x'});
    m_log.clear();
    KVMSPIUtilities::dumpXMLDocument(*m_document, TVFileURL(m_folder.path().string(), true), "A");
    EXPECT_NE(m_log.find("Failed to locate dump folder: 'file://"), std::string::npos);
    EXPECT_TRUE(fs::is_regular_file(m_folder.path() / "TVMSPDIFilterDump"));
}

MPPDataStreamParams taskParams() {
    MPPDataStreamParams params;
    params.hasFixedStream = true;
    params.fixed = {0xFADFADBA, 4, 400, 0};
    params.hasVarStream = true;
    params.var = {0xFADFADBA, 12};
    return params;
}

TEST(KVMSPIUtilitiesStreamParamsTest, PrintsOneFieldALine) {
    const MPPDataStreamParams params = taskParams();
    const std::string head =
        stringWithFormat("MPPDataStreamParams (%p):\n  hasPropsStream=NO\n  hasFixedStream=YES\n"
                         "    fixed.metaStreamMagicNumber=FADFADBA\n",
                         static_cast<const void*>(&params));
    EXPECT_EQ(KVMSPIUtilities::stringFromDataStreamParams(params).substr(0, head.size()), head);
}

TEST(KVMSPIUtilitiesStreamParamsTest, ComparesTheGroupsTheFirstHas) {
    const MPPDataStreamParams params = taskParams();
    EXPECT_TRUE(KVMSPIUtilities::dataStreamParams(params, params));
    MPPDataStreamParams other = params;
    other.fixed.metaStreamItemSize = 8;
    EXPECT_FALSE(KVMSPIUtilities::dataStreamParams(params, other));
    other = params;
    other.hasVarStream = false;
    EXPECT_FALSE(KVMSPIUtilities::dataStreamParams(params, other));
    // A group the first lacks isn't compared: the test is not symmetric.
    other = params;
    other.hasFixed2Stream = true;
    other.fixed2 = {1, 2, 3, 4};
    EXPECT_TRUE(KVMSPIUtilities::dataStreamParams(params, other));
    EXPECT_FALSE(KVMSPIUtilities::dataStreamParams(other, params));
}

} // namespace
