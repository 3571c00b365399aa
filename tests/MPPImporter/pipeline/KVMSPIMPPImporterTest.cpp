#include "MPPImporter/pipeline/KVMSPIMPPImporter.h"

#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/file/KVMSPIClassFactory.h"
#include "PipelineTestSupport.h"

#include <gtest/gtest.h>

using namespace pipelinetest;
namespace fs = std::filesystem;

namespace {

class KVMSPIMPPImporterTest : public ::testing::Test {
protected:
    void SetUp() override {
        tvSetLogSink([this](const std::string& line) { log += line + "\n"; });
        writeCompObjOnlyFile(source, "Microsoft.Project 14.0", "MSProject.MPP14");
        writeTemplateBundle(templateBundle, kTemplateTOC);
        writeText(templateBundle / "Baseline3.xml", "stale");
        info.setURL(kInfoTVNXTemplateUrl, TVFileURL(templateBundle.string(), true));
    }
    void TearDown() override { tvSetLogSink({}); }

    bool import(KVMSPIMapperFactory makeMapper, const TVFileURL& from, const TVFileURL& to) {
        error = TVError();
        return KVMSPIMPPImporter(info, std::move(makeMapper)).importFromMppURL(from, to, false, &error);
    }
    bool import(KVMSPIMapperFactory makeMapper) {
        return import(std::move(makeMapper), TVFileURL(source.string(), false),
                      TVFileURL(bundle.string(), true));
    }
    bool logHas(const std::string& text) const { return log.find(text) != std::string::npos; }

    testsupport::TempDir dir;
    fs::path source = dir.path() / "plan.mpp", templateBundle = dir.path() / "Template.tvnx";
    fs::path bundle = dir.path() / "out.tvnx";
    TVInfoDictionary info;
    TVError error;
    std::string log;
    ScenarioMappers actualOnly{{-1}};
};

struct RaisingMapper : KVMSPIMapperInterface {
    void map() override { throw TVException("WriteToStreamException", "gone", {{"k", "v"}}); }
    KVMSPCXMLDocument::DocumentPtr tvnxXmlDoc() const override { return nullptr; }
};

} // namespace

TEST_F(KVMSPIMPPImporterTest, BadArgumentsEndAsCode5BeforeAnythingIsWritten) {
    const TVFileURL mpp(source.string(), false), tvnx(bundle.string(), true);
    const std::tuple<TVFileURL, TVFileURL, const char*> rows[] = {
        {TVFileURL(), tvnx, "Source URL not specified."},
        {TVFileURL(dir.path().string() + std::string("/a\0b.mpp", 8), false), tvnx,
         "Source must be a file system."},
        {TVFileURL(source.string() + "x", false), tvnx, "Source must be a MS Project MPP document."},
        {mpp, TVFileURL(), "Destination URL not specified."},
        {mpp, TVFileURL(bundle.string() + std::string("\0.tvnx", 6), true),
         "Destination must be a file system."},
        {mpp, TVFileURL(bundle.string() + ".zip", true),
         "Destination must be a Tarvane 2 document bundle (.tvnx directory)."},
    };
    for (const auto& [from, to, reason] : rows) {
        EXPECT_FALSE(import(actualOnly.factory(), from, to));
        EXPECT_EQ(std::tie(error.domain, error.code), std::make_tuple("TVMSPFilter.GeneralErrorDomain", 5));
        EXPECT_TRUE(logHas(std::string("EXCEPTION: TVMPPImporterException\nMSPIMPPImporter "
                                       "importFromMppURL:toTvnxBundleURL: ") +
                           reason + "\n\n"))
            << log;
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(dir.path()), {}), 2) << "only the source and the template";
}

TEST_F(KVMSPIMPPImporterTest, ExceptionsEndAsCode5WithTheirUserDataOrAsAnAssertion) {
    EXPECT_FALSE(import([](auto&&...) { return std::make_unique<RaisingMapper>(); }));
    EXPECT_EQ(error.code, 5);
    EXPECT_EQ(error.userInfo, (TVException::UserInfo{{"k", "v"}}));
    EXPECT_TRUE(logHas("EXCEPTION: WriteToStreamException\ngone\n{\n    k = v;\n}")) << log;

    info.removeValue(kInfoTVNXTemplateUrl);
    EXPECT_FALSE(import(actualOnly.factory()));
    EXPECT_EQ(error.code, 5);
    EXPECT_EQ(error.localizedDescription(), "assertion was raised");
}

TEST_F(KVMSPIMPPImporterTest, ExistingDestinationMovesTheBundleToTheNextFreeNumber) {
    fs::create_directory(bundle);
    fs::create_directory(dir.path() / "out-1.tvnx");
    EXPECT_TRUE(import(actualOnly.factory()));
    EXPECT_TRUE(fs::is_empty(bundle) && fs::is_empty(dir.path() / "out-1.tvnx"));
    EXPECT_TRUE(fileText(dir.path() / "out-2.tvnx" / "Actual.xml"));
}

TEST_F(KVMSPIMPPImporterTest, FilesThatCantBeReadEndWithTheirErrorAfterTheTemplateWasCopied) {
    testsupport::writeFileBytes(source, std::vector<unsigned char>(600, 0xAB));
    EXPECT_FALSE(import(actualOnly.factory()));
    EXPECT_EQ(std::tie(error.domain, error.code), std::make_tuple("TVMSPFilter.GeneralErrorDomain", 4));
    EXPECT_EQ(error.localizedDescription(), "MSPIMPPImporter: Couldn't open an invalid MPP file.");
    EXPECT_EQ(fileText(bundle / "Baseline3.xml"), "stale");

    fs::remove_all(bundle);
    writeCompObjOnlyFile(source, "Microsoft Project 8.0", "MSProject.MPP8");
    EXPECT_FALSE(import(actualOnly.factory()));
    EXPECT_EQ(error.code, kTVMSPUnsupportedApplicationError);
    EXPECT_TRUE(actualOnly.runs.empty());
}

TEST_F(KVMSPIMPPImporterTest, WritesActualAndTheBaselinesThatMapThenTheTOC) {
    ScenarioMappers mappers({-1, 0, 10});
    ASSERT_TRUE(import(mappers.factory())) << log;
    std::vector<MapperRun> expectedRuns = {{-1, "Actual"}, {0, "Baseline"}};
    for (int i = 1; i <= 10; ++i) {
        expectedRuns.emplace_back(i, "Baseline" + std::to_string(i));
    }
    EXPECT_EQ(mappers.runs, expectedRuns);

    std::set<std::string> files;
    for (const auto& entry : fs::directory_iterator(bundle)) {
        files.insert(entry.path().filename());
    }
    EXPECT_EQ(files, (std::set<std::string>{"Actual.xml", "Baseline.xml", "Baseline10.xml", "Baseline3.xml",
                                            "__TOC.xml"}));
    EXPECT_EQ(fileText(bundle / "Baseline3.xml"), "stale");
    EXPECT_NE(fileText(bundle / "Baseline10.xml")->find("<scenario id=\"Baseline10\">"), std::string::npos);
    // The table of contents holds every run's trace, pretty printed, with its namespace back.
    const std::string toc = *fileText(bundle / "__TOC.xml");
    EXPECT_NE(toc.find("<document xmlns=\"http://schemas.tarvane.example/2\">\n  <project>"),
              std::string::npos);
    EXPECT_NE(toc.find("<mapped>Baseline10</mapped>"), std::string::npos) << toc;
}

TEST_F(KVMSPIMPPImporterTest, TOCWithoutNamespaceIsWrittenWithoutOne) {
    writeText(templateBundle / "__TOC.xml", "<document><project/></document>");
    ASSERT_TRUE(import(actualOnly.factory()));
    EXPECT_EQ(fileText(bundle / "__TOC.xml")->find("xmlns"), std::string::npos);
}

TEST_F(KVMSPIMPPImporterTest, NoActualDocumentFailsWithoutAnError) {
    ScenarioMappers baselineOnly({0});
    for (const KVMSPIMapperFactory& factory : {baselineOnly.factory(), KVMSPIMapperFactory()}) {
        fs::remove_all(bundle);
        EXPECT_FALSE(import(factory));
        EXPECT_TRUE(error.domain.empty());
        EXPECT_EQ(fileText(bundle / "__TOC.xml"), kTemplateTOC);
    }
    EXPECT_EQ(baselineOnly.runs.size(), 1u) << "no baseline is mapped without the actual plan";
}

TEST_F(KVMSPIMPPImporterTest, MissingTOCInTemplateIsCode5AndLeavesTheCopy) {
    fs::remove(templateBundle / "__TOC.xml");
    EXPECT_FALSE(import(actualOnly.factory()));
    EXPECT_EQ(error.code, 5);
    EXPECT_TRUE(logHas("EXCEPTION: MSPEXMLException\n"));
    EXPECT_TRUE(fileText(bundle / "Actual.xml"));
}

TEST_F(KVMSPIMPPImporterTest, UnwritableScenarioFileIsLeftAsItWasAndTheImportSucceeds) {
    fs::create_directories(templateBundle / "Baseline.xml" / "inside");
    ASSERT_TRUE(import(ScenarioMappers({-1, 0, 1}).factory()));
    EXPECT_TRUE(fs::is_directory(bundle / "Baseline.xml" / "inside"));
    EXPECT_EQ(std::distance(fs::directory_iterator(bundle), {}), 5) << "no temporary file is left";
    EXPECT_TRUE(fileText(bundle / "Baseline1.xml"));
}
