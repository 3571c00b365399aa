#include "MPPImporter/file/KVMSPIMPPVersionReader.h"

#include "MPPCommon/storage/SSLRoot.h"
#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/support/TVError.h"
#include "MPPCommon/support/TVException.h"
#include "MPPFixtureFile.h"
#include "MPPImporter/file/KVMSPIMPPPropertyList.h"
#include "MPPImporter/file/KVMSPOLE2DirectoryReader.h"
#include "StreamFileFixture.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

namespace {

constexpr const char* kApp9 = "Microsoft Project 9.0";
constexpr const char* kApp12 = "Microsoft Project 12.0";
constexpr const char* kApp14 = "Microsoft.Project 14.0";
constexpr const char* kApp15 = "Microsoft.Project 15.0";
constexpr const char* kApp16 = "Microsoft.Project 16.0";

class KVMSPIMPPVersionReaderTest : public ::testing::Test {
protected:
    // Opens `file` and asks for its reader; the root stays open for the reader's life.
    std::unique_ptr<KVMSPIMPPReader> readerOf(const MPPFixtureFile& file, bool accept, TVError* error,
                                              KVMSPIMPPReader::ProjectReaderFactory factory = {}) {
        m_root = std::make_unique<SSLRoot>(file.write(m_dir.path(), "plan.mpp").string());
        EXPECT_EQ(m_root->lastError(), 0);
        return KVMSPIMPPVersionReader("plan.mpp", std::move(factory)).getMppReader(*m_root, accept, error);
    }

    static MPPFixtureFile fileWith(const std::optional<std::string>& app,
                                   const std::optional<std::string>& format) {
        MPPFixtureFile file;
        file.addStream("\001CompObj", MPPFixtureFile::compObj(app, format, "MSProject.Project.9"));
        return file;
    }

    testsupport::TempDir m_dir;
    std::unique_ptr<SSLRoot> m_root;
    LogCapture m_log;
};

struct FormatCase {
    const char* format;
    const char* application;
    bool accept;
    int errorCode;       // 0 for a reader
    int32_t listVersion; // the reader's property list
    int32_t appVersion;
};

TEST_F(KVMSPIMPPVersionReaderTest, FormatAndApplicationDecideListOrRefusal) {
    const std::vector<FormatCase> cases = {
        {"MSProject.MPP9", kApp9, false, 0, 9, 9},
        {"MSProject.MPT12", kApp12, false, 0, 12, 12},
        {"MSProject.MPP14", kApp14, false, 0, 14, 14},
        {"MSProject.GLOBAL14", kApp15, false, 0, 15, 15},
        {"MSProject.MPP14", kApp16, false, 0, 16, 16},
        {"MSProject.MPP12", kApp14, false, 3, 0, 0},
        {"MSProject.MPP12", kApp14, true, 0, 12, 14},
        {"MSProject.MPP14", kApp12, false, 3, 0, 0},
        {"MSProject.MPP14", kApp12, true, 0, 14, 12},
        {"MSProject.MPP9", kApp15, false, 3, 0, 0},
        {"MSProject.MPP9", kApp15, true, 0, 9, 15},
        {"MSProject.MPP8", "Microsoft Project 8.0", false, 1, 0, 0},
        {"MSProject.MPP8", "Microsoft Project 8.0", true, 1, 0, 0},
        {"MSProject.MPP14", "Microsoft Project 14.0", true, 1, 0, 0},
        {"MSProject.MPP15", kApp15, true, 1, 0, 0},
    };
    for (const FormatCase& c : cases) {
        SCOPED_TRACE(std::string(c.format) + " by " + c.application + (c.accept ? " accepted" : ""));
        TVError error;
        auto reader = readerOf(fileWith(c.application, c.format), c.accept, &error);
        if (c.errorCode != 0) {
            EXPECT_EQ(reader, nullptr);
            EXPECT_EQ(error.domain, "TVMSPFilter.GeneralErrorDomain");
            EXPECT_EQ(error.code, c.errorCode);
            continue;
        }
        ASSERT_NE(reader, nullptr);
        EXPECT_EQ(error.code, 0);
        EXPECT_EQ(reader->MPPPropertyList().mppVersion(), c.listVersion);
        EXPECT_EQ(reader->version(), c.listVersion);
        EXPECT_EQ(reader->appVersion(), c.appVersion);
    }
}

TEST_F(KVMSPIMPPVersionReaderTest, RefusalsNameFormatAndApplication) {
    TVError error;
    EXPECT_EQ(readerOf(fileWith(kApp14, "MSProject.MPP12"), false, &error), nullptr);
    EXPECT_EQ(
        error.localizedDescription(),
        "FORMAT DOWNGRADE: File in 'MSProject.MPP12' format was saved by 'Microsoft.Project 14.0' app.");
    EXPECT_EQ(readerOf(fileWith("Microsoft Project 8.0", "MSProject.MPP8"), false, &error), nullptr);
    EXPECT_EQ(error.localizedDescription(),
              "UNSUPPORTED APPLICATION DETECTED: File was saved by 'Microsoft Project 8.0' app.");
    EXPECT_EQ(m_log.lines().back(),
              "  Importing MS Project binary document in 'MSProject.MPP8' format created by "
              "'Microsoft Project 8.0' app.");
    // Without an out-parameter the refusal only shows in the missing reader.
    EXPECT_EQ(readerOf(fileWith(kApp14, "MSProject.MPP12"), false, nullptr), nullptr);
}

TEST_F(KVMSPIMPPVersionReaderTest, Project4FileIsRefusedAfterItsName) {
    // Such a file ends after the application name; the reader names its format itself.
    MPPFixtureFile file;
    const std::string name = "Microsoft Project 4.0";
    ByteWriter compObj;
    compObj.zeros(28).u32(22).bytes({name.begin(), name.end()}).u8(0);
    file.addStream("\001CompObj", compObj.data());
    TVError error;
    EXPECT_EQ(readerOf(file, true, &error), nullptr);
    EXPECT_EQ(error.code, 1);
    EXPECT_NE(error.localizedDescription().find("'Microsoft Project 4.0'"), std::string::npos);
    EXPECT_NE(m_log.lines().back().find("'MSProject.MPP4' format"), std::string::npos);
}

TEST_F(KVMSPIMPPVersionReaderTest, CompObjWithoutFormatGivesNeitherReaderNorError) {
    TVError error = TVError::make("stale", 9, "stale");
    EXPECT_EQ(readerOf(fileWith(kApp14, std::nullopt), false, &error), nullptr);
    EXPECT_EQ(error.code, 9) << "the out-parameter is left alone";
}

TEST_F(KVMSPIMPPVersionReaderTest, BrokenCompObjStreamsAreRefusedWithoutCrash) {
    const std::vector<MPPFixtureFile::Bytes> broken = {
        {},                                                              // empty
        MPPFixtureFile::Bytes(20, 0x41),                                 // shorter than the header
        ByteWriter().zeros(28).u32(0x7FFFFFF0).bytes({'M', 'S'}).data(), // a length far beyond the end
        ByteWriter().zeros(28).u32(-5u).u32(-5u).u32(-5u).data(),        // negative lengths
        ByteWriter().zeros(28).u32(4).bytes({0xC3, 0x28, 0xFF, 0}).u32(4).bytes({0xFE, 0x80, 0x80, 0}).data(),
    };
    for (size_t i = 0; i < broken.size(); ++i) {
        SCOPED_TRACE(i);
        MPPFixtureFile file;
        file.addStream("\001CompObj", broken[i]);
        TVError error;
        EXPECT_EQ(readerOf(file, true, &error), nullptr);
        EXPECT_EQ(error.code, 0);
    }
}

TEST_F(KVMSPIMPPVersionReaderTest, FileWithoutCompObjIsAnAssertion) {
    MPPFixtureFile file;
    file.addStream("Props14", {1, 2, 3});
    TVError error;
    try {
        readerOf(file, true, &error);
        FAIL() << "no assertion";
    } catch (const TVException& exception) {
        EXPECT_EQ(exception.name(), kInternalInconsistencyException);
        EXPECT_NE(exception.reason().find("getting \001CompObj stream"), std::string::npos);
    }
}

TEST_F(KVMSPIMPPVersionReaderTest, CodePageComesFromTheSummaryInformation) {
    struct Case {
        std::optional<std::optional<int16_t>> summary; // none: no stream; inner none: no property
        int16_t expected;
    };
    const std::vector<Case> cases = {
        {std::optional<int16_t>(1252), 1252},
        {std::optional<int16_t>(std::nullopt), static_cast<int16_t>(65001)},
        {std::nullopt, 0},
    };
    for (const Case& c : cases) {
        MPPFixtureFile file = fileWith(kApp14, "MSProject.MPP14");
        if (c.summary) {
            file.addStream("\005SummaryInformation", MPPFixtureFile::summaryInformation(*c.summary));
        }
        auto reader = readerOf(file, false, nullptr);
        ASSERT_NE(reader, nullptr);
        EXPECT_EQ(reader->codepage(), c.expected);
        EXPECT_EQ(reader->summaryInfoReader() != nullptr, c.summary.has_value());
    }
}

TEST_F(KVMSPIMPPVersionReaderTest, PropsStreamsAndProjectReaderFollowTheList) {
    MPPFixtureFile file = fileWith(kApp12, "MSProject.MPP12");
    file.addStream("Props14", {0, 0, 0, 0}).addStorage("   114").addStorage("   112");
    file.addStream("\005DocumentSummaryInformation", MPPFixtureFile::summaryInformation(std::nullopt));
    std::vector<std::string> madeFor;
    auto factory = [&madeFor](std::unique_ptr<SSLStorage> directory, const std::string& name,
                              KVMSPIMPPReader& parent) {
        madeFor.push_back(name);
        return std::make_unique<KVMSPOLE2DirectoryReader>(std::move(directory), name, &parent);
    };
    auto reader = readerOf(file, false, nullptr, factory);
    ASSERT_NE(reader, nullptr);
    EXPECT_EQ(reader->docPropsReader(), nullptr) << "version 12 reads Props12 only";
    EXPECT_NE(reader->docSummaryInfoReader(), nullptr);
    EXPECT_EQ(madeFor, std::vector<std::string>{"   112"});
    ASSERT_NE(reader->projectReader(), nullptr);
    EXPECT_EQ(reader->projectReader()->parentReader(), reader.get());
    EXPECT_EQ(reader->projectReader()->appVersion(), 12);

    // Without the data directory there is no project reader.
    madeFor.clear();
    reader = readerOf(fileWith(kApp12, "MSProject.MPP12"), false, nullptr, factory);
    ASSERT_NE(reader, nullptr);
    EXPECT_EQ(reader->projectReader(), nullptr);
    EXPECT_TRUE(madeFor.empty());
}

} // namespace
