#include "FrontendTestSupport.h"
#include "MPPExporter/ExportBundleText.h"
#include "tool/frontend/UsageTexts.h"

using namespace frontendtest;

namespace {

class ExportDriverTest : public FrontendTest {
protected:
    void SetUp() override {
        FrontendTest::SetUp();
        templatePath = makeFile("Template.mpp");
    }

    bool runExport(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"/usr/bin/tvmspfilter", "-export", "--template-path"});
        return ExportDriver(recorder.factory(), preferences()).run(arguments, "tvmspfilter");
    }

    void expectRefused(std::vector<std::string> arguments, const std::string& name,
                       const std::string& reason) {
        EXPECT_FALSE(runExport(std::move(arguments)));
        EXPECT_EQ(logLines.back(), "EXCEPTION: " + name + "\n" + reason);
    }

    std::vector<std::string> outputs() const {
        std::vector<std::string> paths;
        for (const ExportCall& call : recorder.calls) {
            paths.push_back(call.mppURL.path());
        }
        return paths;
    }

    ExportRecorder recorder;
    std::string templatePath;
};

TEST_F(ExportDriverTest, ArgumentChecksRefuseBeforeAnyExport) {
    const char* argument = "CommandLineArgumentException";
    const char* notFound = "FileNotFoundException";
    std::string bundle = makeFolder("a.tvnx"), out = path("out.mpp");
    // A single bundle needs its output, though the usage marks it optional.
    expectRefused({templatePath, bundle}, argument, "Too few arguments. " + exporterUsage("tvmspfilter"));
    expectRefused({"T.mpt", bundle, out}, argument, "Template is not a valid MPP file: 'T.mpt'");
    expectRefused({makeFolder("F.MPP"), bundle, out}, notFound,
                  "MPP template file not found: " + path("F.MPP"));
    expectRefused({templatePath, "a.tvn", out}, argument,
                  "Input file is not a valid TVNX doc folder: 'a.tvn'");
    expectRefused({templatePath, path("gone.tvnx"), out}, notFound,
                  "Input file not found: " + path("gone.tvnx"));
    expectRefused({templatePath, makeFile("f.tvnx"), out}, notFound,
                  "Input file is not a bundle (folder): " + path("f.tvnx"));
    // Unlike the inputs' extensions, the output's is compared with its case.
    expectRefused({templatePath, bundle, path("x.MPP")}, argument,
                  "Output file extension is not 'mpp': " + path("x.MPP") + ".");
    EXPECT_TRUE(recorder.calls.empty());
}

TEST_F(ExportDriverTest, OutputIsAFileOrGoesIntoAFolder) {
    std::string bundle = makeFolder("in/Plan.TVNX");
    makeFile("existing.mpp");
    EXPECT_TRUE(runExport({templatePath, bundle, path("x.mpp")}));
    EXPECT_TRUE(runExport({templatePath, bundle, makeFolder("out")}));
    EXPECT_TRUE(runExport({templatePath, bundle, path("existing.mpp")}));
    EXPECT_EQ(outputs(),
              (std::vector<std::string>{path("x.mpp"), path("out/Plan.mpp"), path("existing.mpp")}));
    EXPECT_TRUE(exists("existing.mpp")) << "without the overwrite setting the pipeline numbers around it";

    const ExportCall& call = recorder.calls[0];
    EXPECT_EQ(call.bundleURL, TVFileURL(bundle, true));
    EXPECT_EQ(call.templateURL, TVFileURL(templatePath, true));
    EXPECT_EQ(*call.info.urlForKey(kInfoTVNXTemplateUrl), TVFileURL(templatePath, true));
    EXPECT_EQ(*call.info.stringForKey(kInfoMSPProjectName), "Plan");
    EXPECT_TRUE(logged("### Exporting of " + bundle + ": SUCCEEDED."));

    setPreferences(kMPPExportPreferencesName, "IncludeInputExtension=true\nOverwriteFilterTarget=true\n");
    makeFile("out/Plan.tvnx.mpp");
    EXPECT_TRUE(runExport({templatePath, bundle, path("out")}));
    EXPECT_EQ(outputs().back(), path("out/Plan.tvnx.mpp"));
    EXPECT_FALSE(exists("out/Plan.tvnx.mpp"));
}

TEST_F(ExportDriverTest, ListsWriteBesideEachInputAndTheLastResultStands) {
    std::string list =
        makeFile("list.txt", makeFolder("one/a.tvnx") + "\n:: skipped\n" + makeFolder("two/b.tvnx"));
    recorder.results = {false, true, true, false};
    EXPECT_TRUE(runExport({templatePath, "--input-list", list}));
    EXPECT_EQ(outputs(), (std::vector<std::string>{path("one/a.mpp"), path("two/b.mpp")}));
    EXPECT_TRUE(logged("### Exporting of " + path("one/a.tvnx") + ": FAILED."));
    EXPECT_FALSE(runExport({templatePath, "--input-list", list}));

    EXPECT_TRUE(runExport({templatePath, "--input-list", makeFile("empty.txt", "::a.tvnx\n\n")}));
    EXPECT_FALSE(
        runExport({templatePath, "--input-list", makeFile("bad.txt", path("one/a.tvnx") + "\nb.mpp")}));
    EXPECT_EQ(recorder.calls.size(), 5u);
}

// A limit of the file ends a real export with the writer's exception and leaves no output file: here a
// day of six working ranges. A bundle names at most 30 custom texts to the writers, so the unknown
// text field is out of its reach: a 31st key is left out and the plan exports.
TEST_F(ExportDriverTest, TheFilesLimitsEndARealExportWithoutAFile) {
    using exportbundle::scenario;
    const std::string task = R"(<task id="t1"><title>Only</title><type>task</type></task>)";
    const auto writeBundle = [this](const std::string& name, const std::string& toc,
                                    const std::vector<std::pair<std::string, std::string>>& files) {
        const std::string folder = makeFolder(name);
        makeFile(name + "/__TOC.xml", toc);
        for (const auto& [file, text] : files) {
            makeFile(name + "/" + file, text);
        }
        return folder;
    };
    const ExportDriver driver(
        [](const TVInfoDictionary& info) { return std::make_unique<KVMSPEMPPExporter>(info); },
        preferences());
    const std::string shipped = TVMSP_SOURCE_DIR "/templates/Template.mpp";
    const auto exportTo = [&](const std::string& bundle, const std::string& output) {
        return driver.run(
            {"/usr/bin/tvmspfilter", "-export", "--template-path", shipped, bundle, path(output)},
            "tvmspfilter");
    };

    std::string spans;
    for (int hour = 1; hour <= 6; ++hour) {
        spans += "<time-span start-time=\"" + std::to_string(hour * 7200) + "\" end-time=\"" +
                 std::to_string(hour * 7200 + 3600) + "\"/>";
    }
    std::string sixRanges = scenario({"t1"}, task);
    sixRanges.insert(sixRanges.find("</resource>"), R"(<schedule><schedule-day day-of-week="monday">)" +
                                                        spans + "</schedule-day></schedule>");
    const std::string ranges =
        writeBundle("ranges.tvnx", exportbundle::tableOfContents(), {{"Actual.xml", sixRanges}});
    EXPECT_FALSE(exportTo(ranges, "ranges.mpp"));
    EXPECT_TRUE(logged(
        "EXCEPTION: TooManyRangesException\nNot more than 5 time ranges can be written to a calendar"));
    EXPECT_FALSE(exists("ranges.mpp"));

    std::string keys;
    for (int key = 1; key <= 31; ++key) {
        keys += "<user-data><key>Key " + std::to_string(key) + "</key></user-data>";
    }
    const std::string texts =
        writeBundle("texts.tvnx",
                    exportbundle::tableOfContents(exportbundle::kScenarioEntry + "<task-user-data-keys>" +
                                                  keys + "</task-user-data-keys>"),
                    {{"Actual.xml", scenario({"t1"}, task)}});
    EXPECT_TRUE(exportTo(texts, "texts.mpp"));
    EXPECT_TRUE(exists("texts.mpp"));
}

} // namespace
