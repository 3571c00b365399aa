#include "tool/inspect/InfoCommand.h"

#include "support/TestSupport.h"

#include <gtest/gtest.h>
#include <sstream>

namespace {

int runInfo(const std::vector<std::string>& arguments, std::string& out, std::string& err) {
    std::ostringstream outStream;
    std::ostringstream errStream;
    const int status = InfoCommand::run(arguments, outStream, errStream);
    out = outStream.str();
    err = errStream.str();
    return status;
}

TEST(InfoCommandTest, ArgumentsOtherThanAFileAndTheOptionAreAUsageError) {
    std::string out;
    std::string err;
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{"info"},
                                               {"info", "--accept", "a.mpp"},
                                               {"info", "a.mpp", "--accept-downgraded"},
                                               {"info", "a", "b"}}) {
        EXPECT_EQ(runInfo(arguments, out, err), 2);
        EXPECT_EQ(err, "usage: mppinspect info [--accept-downgraded] FILE\n");
        EXPECT_TRUE(out.empty());
    }
}

TEST(InfoCommandTest, FileThatIsNoCompoundFileIsRefusedAsTheImportRefusesIt) {
    testsupport::TempDir dir;
    const auto path = dir.path() / "plain.mpp";
    testsupport::writeFileBytes(path, std::vector<unsigned char>(600, 'x'));
    std::string out;
    std::string err;
    for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
             {"info", path.string()},
             {"info", "--accept-downgraded", (dir.path() / "missing.mpp").string()}}) {
        EXPECT_EQ(runInfo(arguments, out, err), 1);
        const auto info = nlohmann::json::parse(out);
        EXPECT_EQ(info["error"]["domain"], "TVMSPFilter.GeneralErrorDomain");
        EXPECT_EQ(info["error"]["code"], 4);
        EXPECT_EQ(info["error"]["text"], "MSPIMPPImporter: Couldn't open an invalid MPP file.");
    }
}

} // namespace
