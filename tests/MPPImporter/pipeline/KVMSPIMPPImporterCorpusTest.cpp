#include "MPPCommon/support/Log.h"
#include "MPPImporter/file/KVMSPIClassFactory.h"
#include "MPPImporter/file/KVMSPIMPPReader.h"
#include "MPPImporter/pipeline/KVMSPIMPPImporter.h"
#include "PipelineTestSupport.h"

#include <gtest/gtest.h>

using namespace pipelinetest;

// Plans of each format generation, one of format 14 from a later application (which has a list of its
// own), one saved down to an older format, and one of a generation that isn't read.
TEST(KVMSPIMPPImporterCorpusTest, CorpusPlansReachTheMapperWithTheReaderOfTheirFormat) {
    TVMSP_REQUIRE_CORPUS();
    const struct {
        const char* file;
        bool acceptDowngraded;
        std::pair<int, int> versions; // of the reader; for a refused file {0, error code}
    } imports[] = {
        {"legacy__headertest9.mpp", false, {9, 9}},
        {"mpp12header.mpp", false, {12, 12}},
        {"mpp14header.mpp", false, {14, 14}},
        {"mpp14task-from2013.mpp", false, {15, 15}},
        {"task__task-deletion__task-deletion1-project2013-mpp9.mpp", true, {9, 15}},
        {"task__task-deletion__task-deletion1-project2013-mpp9.mpp", false, {0, kTVMSPFormatDowngradeError}},
        {"legacy__headertest8.mpp", false, {0, kTVMSPUnsupportedApplicationError}},
    };
    testsupport::TempDir dir;
    writeTemplateBundle(dir.path() / "Template.tvnx", kTemplateTOC);
    TVInfoDictionary info;
    info.setURL(kInfoTVNXTemplateUrl, TVFileURL((dir.path() / "Template.tvnx").string(), true));
    tvSetLogSink([](const std::string&) {});

    for (const auto& expected : imports) {
        const std::filesystem::path bundle = dir.path() / "out.tvnx";
        std::filesystem::remove_all(bundle);
        ScenarioMappers mappers({-1});
        std::pair<int, int> versions;
        KVMSPIMapperFactory recordReader = [&](KVMSPIMPPReader& reader, auto&... rest) {
            versions = {reader.version(), reader.appVersion()};
            return mappers.factory()(reader, rest...);
        };
        TVError error;
        const bool imported =
            KVMSPIMPPImporter(info, recordReader)
                .importFromMppURL(TVFileURL(testsupport::corpusDir() / "mpp" / expected.file, false),
                                  TVFileURL(bundle, true), expected.acceptDowngraded, &error);
        EXPECT_EQ(imported, expected.versions.first != 0) << expected.file;
        EXPECT_EQ(imported ? versions : std::make_pair(0, error.code), expected.versions) << expected.file;
        EXPECT_EQ(mappers.runs.size(), imported ? 12u : 0u) << expected.file;
        EXPECT_EQ(fileText(bundle / "Actual.xml")->find("<scenario id=\"Actual\">") != std::string::npos,
                  imported)
            << expected.file;
    }
    tvSetLogSink({});
}
