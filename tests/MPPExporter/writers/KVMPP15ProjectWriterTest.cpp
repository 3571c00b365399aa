#include "MPPExporter/writers/KVMPP15ProjectWriter.h"

#include "MPPExporter/MPPObjects/KVMPPProject.h"
#include "MPPExporter/writers/KVMPP15TaskWriter.h"
#include "MPPImporter/file/MPPFixtureFile.h"
#include "MPPImporter/format/MPPFormatConstants.h"
#include "WriterTestSupport.h"
#include "support/TestSupport.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;
using Bytes = MPPFixtureFile::Bytes;

Bytes pattern(size_t size, uint8_t seed) {
    Bytes bytes(size);
    for (size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<uint8_t>(seed + i * 7);
    }
    return bytes;
}

// A template of application 16 with what newer saves hold beyond the known storages: storages under
// "   114" that no writer knows, a VBA project three levels down in "   214", a storage at the root,
// an empty stream and streams on both sides of the mini stream's cut-off.
MPPFixtureFile richTemplate(const std::string& application = "Microsoft.Project 16.0") {
    MPPFixtureFile file;
    file.addStream(kCompObjFileName,
                   MPPFixtureFile::compObj(application, "MSProject.MPP14", "MSProject.Project.9"))
        .addStream(kProjectPropsFileName, pattern(406, 1))
        .addStream("   114/Props", pattern(5000, 2))
        .addStream("   114/Labels/Data", pattern(300, 3))
        .addStream("   114/Sprints/Inner/Deep", pattern(4096, 4))
        .addStream("   114/Attachments/Empty", {})
        .addStream("   214/CVba/VBA/dir", pattern(700, 5))
        .addStream("   214/CVba/PROJECT", pattern(90, 6))
        .addStream("   214/Props", pattern(64, 7))
        .addStream("Extra/Nested/Stream", pattern(10, 8))
        .addStream("Empty", {});
    file.addStorage("   114/Boards").addStorage("   214/CV_iew");
    return file;
}

KVMPP15ProjectWriter::WriterFactory copyingFactory() {
    return [](std::unique_ptr<KVMPPFormatReader> reader, std::unique_ptr<KVMPPFormatWriter> writer,
              int32_t layoutVersion) {
        return std::make_unique<KVMPPWriter>(std::move(writer), std::move(reader), layoutVersion);
    };
}

TEST(KVMPP15ProjectWriter, CopyingWalkReproducesEveryStreamAndStorageWhole) {
    testsupport::TempDir dir;
    const fs::path built = richTemplate().write(dir.path(), "template.mpp");
    for (const fs::path& source : {built, writertest::shippedTemplate()}) {
        const fs::path output = dir.path() / "copy.mpp";
        fs::remove(output);
        KVMPPProject project;
        ASSERT_TRUE(
            KVMPP15ProjectWriter::walkTemplate(project, output.string(), source.string(), copyingFactory()))
            << source;
        const std::vector<std::string> expected = writertest::olefileListing(source);
        ASSERT_GT(expected.size(), 10u) << source;
        EXPECT_EQ(writertest::olefileListing(output), expected) << source;
    }
}

TEST(KVMPP15ProjectWriter, ExportCopiesStoragesThatNoWriterKnowsAndRegeneratesTasks) {
    testsupport::TempDir dir;
    MPPFixtureFile file = richTemplate();
    file.addStream("   114/TBkndTask/Props", pattern(86, 9));
    const fs::path source = file.write(dir.path(), "template.mpp");
    const fs::path output = dir.path() / "out.mpp";
    KVMPPProject project;
    ASSERT_TRUE(KVMPP15ProjectWriter::writeProject(project, output.string(), source.string()));

    std::vector<std::string> expected = writertest::olefileListing(source);
    std::vector<std::string> written = writertest::olefileListing(output);
    // The task storage and the two project property streams are regenerated: their streams are new,
    // all else is the template's.
    auto outsideTasks = [](std::vector<std::string> lines) {
        std::erase_if(lines, [](const std::string& line) {
            return line.find("TBkndTask/") != std::string::npos || line.ends_with("\tProps14") ||
                   line.ends_with("\t   114/Props");
        });
        return lines;
    };
    EXPECT_EQ(outsideTasks(written), outsideTasks(expected));
    for (const char* stream : {"FixedMeta", "FixedData", "Fixed2Meta", "Fixed2Data", "VarMeta", "Var2Data"}) {
        EXPECT_TRUE(std::ranges::any_of(written, [&](const std::string& line) {
            return line.starts_with("S\t") && line.ends_with(std::string("TBkndTask/") + stream);
        })) << stream;
    }
    // The property stream of the tasks is the template's while the project names no custom fields.
    EXPECT_TRUE(std::ranges::find(written, *std::ranges::find_if(expected, [](const std::string& line) {
                                      return line.ends_with("TBkndTask/Props");
                                  })) != written.end());
}

TEST(KVMPP15ProjectWriter, RefusesTemplatesItCannotWriteAndOutputsItCannotCreate) {
    testsupport::TempDir dir;
    KVMPPProject project;
    const fs::path older = richTemplate("Microsoft.Project 14.0").write(dir.path(), "older.mpp");
    EXPECT_FALSE(
        KVMPP15ProjectWriter::writeProject(project, (dir.path() / "a.mpp").string(), older.string()));
    EXPECT_FALSE(fs::exists(dir.path() / "a.mpp"));
    EXPECT_FALSE(KVMPP15ProjectWriter::writeProject(project, (dir.path() / "b.mpp").string(),
                                                    (dir.path() / "missing.mpp").string()));
    EXPECT_FALSE(KVMPP15ProjectWriter::writeProject(project, (dir.path() / "no" / "such" / "c.mpp").string(),
                                                    writertest::shippedTemplate().string()));
    // A template whose task storage lacks the property stream fails at that stream.
    const fs::path noProps = richTemplate().addStorage("   114/TBkndTask").write(dir.path(), "noprops.mpp");
    EXPECT_FALSE(
        KVMPP15ProjectWriter::writeProject(project, (dir.path() / "d.mpp").string(), noProps.string()));
    EXPECT_FALSE(fs::exists(dir.path() / "d.mpp"));
}

} // namespace
