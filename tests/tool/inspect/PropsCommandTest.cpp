#include "tool/inspect/PropsCommand.h"

#include "InspectToolRun.h"
#include "MPPCommon/storage/SSLRoot.h"
#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/storage/SSLStream.h"
#include "support/TestSupport.h"

#include <fstream>
#include <gtest/gtest.h>

namespace {

void put32(std::vector<uint8_t>& bytes, uint32_t value) {
    for (int shift = 0; shift < 32; shift += 8) {
        bytes.push_back(static_cast<uint8_t>(value >> shift));
    }
}

// A Props stream with one short and one text entry.
std::vector<uint8_t> propsStream() {
    std::vector<uint8_t> bytes;
    // The header holds the entry count at offset 12.
    for (uint32_t word : {0u, 0u, 0u, 2u}) {
        put32(bytes, word);
    }
    put32(bytes, 2);
    put32(bytes, 0x2400012);
    put32(bytes, 0);
    bytes.insert(bytes.end(), {3, 0});
    put32(bytes, 6);
    put32(bytes, 0x2400010);
    put32(bytes, 0);
    bytes.insert(bytes.end(), {0xAC, 0x20, 'E', 0, 0, 0});
    return bytes;
}

// A CompObj stream naming format 14 and its application.
std::vector<uint8_t> compObj() {
    std::vector<uint8_t> bytes(28);
    for (std::string text : {"Microsoft.Project 14.0", "MSProject.MPP14", "MSProject.Project.9"}) {
        put32(bytes, static_cast<uint32_t>(text.size() + 1));
        bytes.insert(bytes.end(), text.begin(), text.end());
        bytes.push_back(0);
    }
    return bytes;
}

void writeStream(SSLStorage& storage, const std::string& name, const std::vector<uint8_t>& bytes) {
    auto stream = storage.createChildStreamWithName(name);
    ASSERT_TRUE(stream);
    stream->writeBuffer(bytes.data(), static_cast<int32_t>(bytes.size()));
}

} // namespace

TEST(PropsCommand, PrintsBothPropsStreams) {
    testsupport::TempDir dir;
    const std::string path = (dir.path() / "plan.mpp").string();
    {
        auto root = SSLRoot::forWritingToFile(path);
        auto storage = root->rootStorage();
        writeStream(*storage, "\001CompObj", compObj());
        writeStream(*storage, "Props14", propsStream());
        auto dataDirectory = storage->createChildStorageWithName("   114");
        writeStream(*dataDirectory, "Props", propsStream());
    }
    const auto properties = PropsCommand::propertiesOfFile(path);
    // Without summary information the file names no code page.
    EXPECT_EQ(properties["codepage"], 0);
    EXPECT_FALSE(properties.contains("summaryInformation"));
    EXPECT_FALSE(properties.contains("documentSummaryInformation"));
    EXPECT_EQ(properties["docProps"]["stream"], "Props14");
    EXPECT_EQ(properties["projectProps"]["stream"], "   114/Props");
    const auto& projectProps = properties["projectProps"]["properties"];
    EXPECT_EQ(projectProps[std::to_string(0x2400012)], 3);
    EXPECT_EQ(projectProps[std::to_string(0x2400010)], "\u20ACE");
}

TEST(PropsCommand, RefusedFilesGiveTheImportErrorAndBadArgumentsTheUsage) {
    testsupport::TempDir dir;
    const auto path = dir.path() / "plain.txt";
    testsupport::writeFileBytes(path, {'n', 'o', 't', ' ', 'a', 'n', ' ', 'M', 'P', 'P'});
    const auto refused = InspectToolRun::of({"props", path.string()});
    EXPECT_EQ(refused.status, 1);
    EXPECT_NE(refused.out.find("\"error\""), std::string::npos);
    const auto usage = InspectToolRun::of({"props"});
    EXPECT_EQ(usage.status, 2);
    EXPECT_EQ(usage.err, "usage: mppinspect props FILE\n");
}
