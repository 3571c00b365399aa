#include "FrontendTestSupport.h"
#include "tool/frontend/UsageTexts.h"

using namespace frontendtest;

namespace {

class ImportDriverTest : public FrontendTest {
protected:
    void SetUp() override {
        FrontendTest::SetUp();
        templatePath = makeFolder("T.tvnx");
    }

    int runImport(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "/usr/bin/tvmspfilter");
        return ImportDriver(recorder.factory(), preferences()).run(arguments, "tvmspfilter");
    }

    std::string bundlePath(size_t call) const { return recorder.calls.at(call).bundleURL.path(); }

    void expectRefused(std::vector<std::string> arguments, const std::string& name,
                       const std::string& reason) {
        EXPECT_EQ(runImport(std::move(arguments)), -1);
        EXPECT_TRUE(logged("EXCEPTION: " + name + "\n" + reason)) << reason;
        EXPECT_EQ(logLines.back(), "Final clean up.");
    }

    ImportRecorder recorder;
    std::string templatePath;
};

TEST_F(ImportDriverTest, ArgumentChecksRefuseBeforeAnyImport) {
    const char* argument = "CommandLineArgumentException";
    const char* notFound = "FileNotFoundException";
    expectRefused({"--template", templatePath, "a.mpp"}, argument,
                  "Too few arguments. " + importerUsageA("tvmspfilter"));
    expectRefused({"--template-path", "T.zip", "a.mpp"}, argument,
                  "Template is not a valid TVNX doc folder: 'T.zip'");
    expectRefused({"--template-path", path("no/../U.TVNX"), "a.mpp"}, notFound,
                  "TVNX template doc folder not found: " + path("U.TVNX"));
    expectRefused({"--template-path", templatePath, "--input-list"}, argument,
                  "Wrong arguments. " + importerUsageB("tvmspfilter"));
    expectRefused({"--template-path", templatePath, "a.docx"}, argument, "Input file is not MPP: 'a.docx'");
    expectRefused({"--template-path", templatePath, path("./gone.mpp")}, notFound,
                  "Input file not found: " + path("gone.mpp"));
    expectRefused({"--template-path", templatePath, makeFolder("d.mpp")}, notFound,
                  "Input file is a directory: " + path("d.mpp"));
    expectRefused({"--template-path", templatePath, makeFile("a.mpp"), path("nowhere")}, notFound,
                  "Output directoty not found: " + path("nowhere"));
    EXPECT_TRUE(recorder.calls.empty());
}

TEST_F(ImportDriverTest, PassesUrlsInfoAndTheDowngradeFlagByPosition) {
    std::string input = makeFile("in/Plan.MPP");
    std::string out = makeFolder("out");
    EXPECT_EQ(runImport({"--template-path", templatePath + "/", input, "-accept-downgraded"}), 0);
    EXPECT_EQ(runImport({"--template-path", templatePath, input, out, "-accept-downgraded"}), 0);
    // The flag in the output slot is no folder; not being last, it is no flag either.
    EXPECT_EQ(runImport({"--template-path", templatePath, input, "-accept-downgraded", out}), 0);

    ASSERT_EQ(recorder.calls.size(), 3u);
    const ImportCall& call = recorder.calls[0];
    EXPECT_EQ(call.mppURL, TVFileURL(input, false));
    EXPECT_EQ(call.bundleURL, TVFileURL(path("in/Plan.tvnx"), true));
    EXPECT_TRUE(call.acceptDowngraded);
    EXPECT_EQ(*call.info.stringForKey(kInfoMSPProjectName), "Plan");
    EXPECT_EQ(*call.info.urlForKey(kInfoTVNXTemplateUrl), TVFileURL(templatePath, true));
    EXPECT_EQ(bundlePath(1), path("out/Plan.tvnx"));
    EXPECT_TRUE(recorder.calls[1].acceptDowngraded);
    EXPECT_EQ(bundlePath(2), path("in/Plan-1.tvnx"));
    EXPECT_FALSE(recorder.calls[2].acceptDowngraded);
    EXPECT_TRUE(logged("### Importer SUCCEEDED"));
}

TEST_F(ImportDriverTest, StatusComesFromTheErrorObjectAndAFailureRemovesTheBundle) {
    std::string input = makeFile("a.mpt");
    recorder.outcomes = {{false, TVError::make("TVMSPFilter.GeneralErrorDomain", 5, "mapping failed")},
                         {false, {}}};
    EXPECT_EQ(runImport({"--template-path", templatePath, input}), 5);
    EXPECT_TRUE(logged("### Importer FAILED: error code(5): mapping failed"));
    EXPECT_FALSE(exists("a.tvnx"));
    EXPECT_EQ(runImport({"--template-path", templatePath, input}), 0);
    EXPECT_TRUE(logged("### Importer FAILED: error code(0): (null)"));
    EXPECT_FALSE(exists("a.tvnx"));
}

TEST_F(ImportDriverTest, TargetNamesFollowThePreferences) {
    std::string input = makeFile("a.MPP");
    makeFolder("a.tvnx");
    makeFile("a-1.tvnx");
    EXPECT_EQ(runImport({"--template-path", templatePath, input}), 0);
    EXPECT_EQ(bundlePath(0), path("a-2.tvnx"));

    makeFile("a.tvnx/old.xml");
    setPreferences(kMPPImportPreferencesName, "OverwriteFilterTarget=true\n");
    EXPECT_EQ(runImport({"--template-path", templatePath, input}), 0);
    EXPECT_EQ(bundlePath(1), path("a.tvnx"));
    EXPECT_FALSE(exists("a.tvnx/old.xml"));

    makeFolder("a.mpp.tvnx");
    setPreferences(kMPPImportPreferencesName, "IncludeInputExtension=true\n");
    setPreferences(kMPPExportPreferencesName, "OverwriteFilterTarget=true\n");
    EXPECT_EQ(runImport({"--template-path", templatePath, input}), 0);
    EXPECT_EQ(bundlePath(2), path("a.mpp-1.tvnx"));
}

TEST_F(ImportDriverTest, InABatchTheLastInputDecidesAndAnExceptionEndsTheBatch) {
    std::string a = makeFile("a.mpp"), b = makeFile("b.mpp");
    recorder.outcomes = {{true, {}}, {false, TVError::make("D", 4, "bad")}};
    EXPECT_EQ(runImport({"--template-path", templatePath, "--input-list", makeFile("1.txt", a + "\r\n" + b)}),
              4);
    EXPECT_TRUE(exists("a.tvnx"));

    std::string list = makeFile("2.txt", a + "\n" + path("gone.mpp") + "\n" + b);
    EXPECT_EQ(runImport({"--template-path", templatePath, "--input-list", list, makeFolder("out")}), 0);
    EXPECT_EQ(recorder.calls.size(), 3u);
    EXPECT_TRUE(exists("out/a.tvnx"));
}

TEST_F(ImportDriverTest, NothingToImportFails) {
    std::string list = makeFile("list.txt", ":: nothing to do\n\n\r\n::" + makeFile("a.mpp") + "\n");
    EXPECT_EQ(runImport({"--template-path", templatePath, "--input-list", list}), -1);
    EXPECT_EQ(runImport({"--template-path", templatePath, "::a.mpp"}), -1);
    EXPECT_TRUE(recorder.calls.empty());
    EXPECT_EQ(logLines.back(), "Final clean up.");
}

} // namespace
