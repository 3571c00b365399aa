#include "InspectToolRun.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

TEST(InfoCommandTest, ArgumentsOtherThanAFileAndTheOptionAreAUsageError) {
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{"info"},
                                               {"info", "--accept", "a.mpp"},
                                               {"info", "a.mpp", "--accept-downgraded"},
                                               {"info", "--baseline", "1", "a.mpp"},
                                               {"info", "a", "b"}}) {
        const auto run = InspectToolRun::of(arguments);
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.err, "usage: mppinspect info [--accept-downgraded] FILE\n");
        EXPECT_TRUE(run.out.empty());
    }
}

TEST(InfoCommandTest, FileThatIsNoCompoundFileIsRefusedAsTheImportRefusesIt) {
    testsupport::TempDir dir;
    const auto path = dir.path() / "plain.mpp";
    testsupport::writeFileBytes(path, std::vector<unsigned char>(600, 'x'));
    for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
             {"info", path.string()},
             {"info", "--accept-downgraded", (dir.path() / "missing.mpp").string()}}) {
        const auto run = InspectToolRun::of(arguments);
        EXPECT_EQ(run.status, 1);
        const auto info = nlohmann::json::parse(run.out);
        EXPECT_EQ(info["error"]["domain"], "TVMSPFilter.GeneralErrorDomain");
        EXPECT_EQ(info["error"]["code"], 4);
        EXPECT_EQ(info["error"]["text"], "MSPIMPPImporter: Couldn't open an invalid MPP file.");
    }
}

} // namespace
