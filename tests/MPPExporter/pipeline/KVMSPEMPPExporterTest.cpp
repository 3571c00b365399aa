#include "MPPExporter/pipeline/KVMSPEMPPExporter.h"

#include "MPPCommon/support/Log.h"
#include "MPPExporter/MPPObjects/KVMPPProject.h"
#include "MPPExporter/ExportBundleText.h"
#include "support/TestSupport.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;
using exportbundle::scenario;
using exportbundle::tableOfContents;

class KVMSPEMPPExporterTest : public ::testing::Test {
protected:
    void SetUp() override {
        tvSetLogSink([this](const std::string& line) { m_log += line + "\n"; });
    }
    void TearDown() override { tvSetLogSink({}); }

    // A bundle of a table of contents and an "Actual.xml", either left out when empty.
    TVFileURL bundle(const std::string& name, const std::string& toc, const std::string& actual) const {
        const fs::path folder = m_temp.path() / name;
        fs::create_directories(folder);
        if (!toc.empty()) {
            std::ofstream(folder / "__TOC.xml") << toc;
        }
        if (!actual.empty()) {
            std::ofstream(folder / "Actual.xml") << actual;
        }
        return TVFileURL(folder.string(), true);
    }

    // Exports a bundle to "out.mpp" beside it through the shipped template.
    bool exportBundle(const TVFileURL& bundleURL) {
        m_log.clear();
        KVMSPEMPPExporter exporter{TVInfoDictionary()};
        return exporter.exportTvnxBundle(bundleURL, output(),
                                         TVFileURL(TVMSP_SOURCE_DIR "/templates/Template.mpp", false));
    }

    TVFileURL output() const { return TVFileURL((m_temp.path() / "out.mpp").string(), false); }

    testsupport::TempDir m_temp;
    std::string m_log;
};

std::string task(const std::string& id, const std::string& content) {
    return R"(<task id=")" + id + R"(">)" + content + "</task>";
}

} // namespace

// Each bundle that the export can't take ends it with its text in the log and no output file.
TEST_F(KVMSPEMPPExporterTest, BadBundlesEndWithTheirTexts) {
    const std::string plain = "<type>task</type>";
    const std::vector<std::tuple<std::string, std::string, std::string, std::string>> cases = {
        {"noProject", R"(<document><window><editing-scenario>s1</editing-scenario></window></document>)",
         scenario({}, ""),
         "MSPEMPPExporterException\nMSPEMPPExporter.exportTVNXBundle: No 'project' element found in source "
         "document."},
        {"noWindow", tableOfContents(exportbundle::kScenarioEntry, ""), scenario({}, ""),
         "MSPEMPPExporterException\nMSPEMPPExporter.exportTVNXBundle: No window elements found in source "
         "document."},
        {"windowInProject", tableOfContents(exportbundle::kScenarioEntry + exportbundle::kWindow, ""),
         scenario({}, ""), "No window elements found in source document."},
        {"missingScenarioFile", tableOfContents(), "", "EXCEPTION: MSPEXMLException\n"},
        {"noTableOfContents", "", scenario({}, ""), "EXCEPTION: MSPEXMLException\n"},
        {"taskIdWithoutLetter", tableOfContents(), scenario({"x5"}, task("x5", plain)),
         "NSInternalInconsistencyException\nInvalid format of TVNX Task ID (must begin with 't'): x5"},
        {"taskReachedTwice", tableOfContents(), scenario({"t1", "t1"}, task("t1", plain)),
         "Duplicated Task UID='1' found (tvnx Task id='t1')."},
        {"twoTasksOfOneId", tableOfContents(), scenario({"t1"}, task("t1", plain) + task("t1", plain)),
         "Duplicated Task UID='1' found (tvnx Task id='t1')."},
        {"groupAndSplit", tableOfContents(), scenario({"t1"}, task("t1", "<type>group</type><split/>")),
         "Task group and split task are mutualy exclusive."},
        {"linkOutsideTree", tableOfContents(),
         scenario({"t1"}, task("t1", plain + R"(<prerequisite-task idref="t9"/>)") + task("t9", plain)),
         "Can not find Task ID for Task with UID='9' in the map."},
        {"groupCycle", tableOfContents(),
         scenario({},
                  R"(<resource id="r1"><type>Group</type><child-resource idref="r2"/></resource>)"
                  R"(<resource id="r2"><type>Group</type><child-resource idref="r1"/></resource>)",
                  "", {"r1"}),
         "Resource id='r1' is reached twice in the resource tree."},
    };
    for (const auto& [name, toc, actual, text] : cases) {
        EXPECT_FALSE(exportBundle(bundle(name + ".tvnx", toc, actual))) << name;
        EXPECT_NE(m_log.find(text), std::string::npos) << name << "\n" << m_log;
        EXPECT_NE(m_log.find("MSPEMPPExporter: Finished with success=NO"), std::string::npos) << name;
        EXPECT_FALSE(fs::exists(output().path())) << name;
    }
}

// A sound bundle maps in full and is written; an existing output stays as it is, the export writes
// the first free numbered name beside it.
TEST_F(KVMSPEMPPExporterTest, SoundBundleReachesTheWriterWithoutOverwriting) {
    const TVFileURL sound = bundle("Sound.TVNX", tableOfContents(),
                                   scenario({"t1"}, task("t1", "<title>Only</title><type>task</type>")));
    std::ofstream(output().path()) << "kept";
    std::ofstream(m_temp.path() / "out-1.mpp") << "kept too";

    EXPECT_TRUE(exportBundle(sound)) << m_log;
    EXPECT_NE(m_log.find("Output: '" + (m_temp.path() / "out-2.mpp").string() + "'"), std::string::npos)
        << m_log;
    EXPECT_EQ(m_log.find("EXCEPTION"), std::string::npos) << m_log;
    EXPECT_TRUE(fs::exists(m_temp.path() / "out-2.mpp"));
    EXPECT_EQ(testsupport::readFileBytes(output().path()), (std::vector<unsigned char>{'k', 'e', 'p', 't'}));

    const auto project = KVMSPEMPPExporter::newProjectFromBundle(sound, TVInfoDictionary());
    ASSERT_TRUE(project);
    EXPECT_EQ(project->tasks.size(), 2u);
    EXPECT_EQ(project->title, "Plan");

    // A baseline being edited: the actual plan becomes a baseline, and the baseline is exported.
    const TVFileURL editingBaseline =
        bundle("Baseline.tvnx",
               tableOfContents(R"(<scenario id="s0" name="Actual" filename="Actual.xml"/>)"
                               R"(<scenario id="s1" name="Baseline" filename="Baseline.xml"/>)"),
               scenario({}, ""));
    std::ofstream(fs::path(editingBaseline.path()) / "Baseline.xml")
        << scenario({"t1"}, task("t1", "<title>Saved</title><type>task</type>"));
    const auto baseline = KVMSPEMPPExporter::newProjectFromBundle(editingBaseline, TVInfoDictionary());
    ASSERT_TRUE(baseline);
    EXPECT_EQ(baseline->tasks.back()->title, "Saved");
    EXPECT_EQ(baseline->baselineSaveDates.size(), 1u);
}

TEST_F(KVMSPEMPPExporterTest, InputURLsAreChecked) {
    const TVFileURL mpp("/a/out.mpp", false);
    const TVFileURL bundleURL("/a/in.tvnx", true);
    const std::vector<std::tuple<TVFileURL, TVFileURL, TVFileURL, std::string>> cases = {
        {TVFileURL(), mpp, mpp, "Source URL not specified."},
        {TVFileURL("/a/in.xml", true), mpp, mpp,
         "Source must be a Tarvane 2 document bundle (.tvnx directory)."},
        {bundleURL, TVFileURL(), mpp, "Destination URL not specified."},
        {bundleURL, TVFileURL("/a/out.mpt", false), mpp, "Destination must be a MS Project MPP document."},
        {bundleURL, mpp, TVFileURL(), "Template URL not specified."},
        {bundleURL, mpp, TVFileURL("/a/t.tvnx", false), "Template must be a MS Project MPP document."},
    };
    for (const auto& [source, destination, templateURL, text] : cases) {
        m_log.clear();
        EXPECT_FALSE(KVMSPEMPPExporter::verifyInputUrl(source, destination, templateURL));
        EXPECT_EQ(m_log.substr(m_log.find("exportTvnxBundle:")),
                  "exportTvnxBundle:toMppURL:withMppTemplate: " + text + "\n");
    }
    EXPECT_TRUE(
        KVMSPEMPPExporter::verifyInputUrl(TVFileURL("/a/IN.TVNX", true), TVFileURL("/a/o.MPP", false), mpp));
}
