#include "support/TestSupport.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <regex>
#include <sys/wait.h>

// Runs the built program as a shell would, in a folder of its own with its own preferences root.

namespace {

using testsupport::shellQuoted;

class FilterProgramTest : public ::testing::Test {
protected:
    void SetUp() override { dir = std::filesystem::canonical(temp.path()); }

    // The exit status; standard output and error land in `out` and `err`.
    int run(const std::vector<std::string>& arguments) {
        std::string command = "cd " + shellQuoted(dir) +
                              " && XDG_CONFIG_HOME=" + shellQuoted(dir / "config") + " " +
                              shellQuoted(TVMSPFILTER_PATH);
        for (const std::string& argument : arguments) {
            command += " " + shellQuoted(argument);
        }
        int status = std::system((command + " >stdout 2>stderr").c_str());
        out = read("stdout");
        err = read("stderr");
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1000;
    }

    std::string read(const std::string& name) const {
        std::vector<unsigned char> bytes = testsupport::readFileBytes(dir / name);
        return std::string(bytes.begin(), bytes.end());
    }
    void write(const std::string& relative, const std::string& contents) const {
        std::filesystem::create_directories((dir / relative).parent_path());
        std::ofstream(dir / relative, std::ios::binary) << contents;
    }
    bool logged(const std::string& text) const { return err.find(text) != std::string::npos; }

    testsupport::TempDir temp;
    std::filesystem::path dir;
    std::string out, err;
};

TEST_F(FilterProgramTest, TooFewArgumentsExitWith255AndLogOnlyToStandardError) {
    EXPECT_EQ(run({"--template-path", "T \"1\".tvnx"}), 255);
    EXPECT_EQ(out, "");
    std::regex prefix(
        R"(^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} tvmspfilter\[\d+\] Command line arguments: \(")");
    EXPECT_TRUE(std::regex_search(err, prefix)) << err;
    EXPECT_TRUE(logged(R"(", "--template-path", "T \"1\".tvnx"))"));
    EXPECT_TRUE(logged(R"(] Too few arguments.
Importer Usage:
  tvmspfilter --template-path <TVNX_template_path> <input_MPP_path> <[output_folder_path]> [-accept-downgraded]
  tvmspfilter --template-path <TVNX_template_path> --input-list <input_list_file_path> <[output_folder_path]> [-accept-downgraded]
Exporter Usage:
  tvmspfilter -export --template-path <MPP_template_path> <input_TVNX_path> [<output_folder_path>]
  tvmspfilter -export --template-path <MPP_template_path> <input_TVNX_path> [<output_MPP_path>]
  tvmspfilter -export --template-path <MPP_template_path> --input-list <input_list_file_path> [<output_folder_path>]
)")) << err;

    EXPECT_EQ(run({"--export", "--template-path", "T.mpp"}), 255);
    EXPECT_TRUE(logged("EXCEPTION: CommandLineArgumentException\nToo few arguments. Importer Usage:"));
}

TEST_F(FilterProgramTest, FailedImportExitsWithTheErrorCodeAndRemovesTheBundle) {
    write("T.tvnx/Actual.xml", "<scenario/>");
    write("T.tvnx/__TOC.xml", "<toc/>");
    write("Not A Plan.mpp", "this is no compound file");
    write("config/Tarvane2/Tarvane2.MSPImportMPP.conf", "IncludeInputExtension=true\n");

    EXPECT_EQ(run({"--template-path", "T.tvnx", "Not A Plan.mpp"}), 4);
    EXPECT_EQ(out, "");
    EXPECT_TRUE(logged("tvnxBundlePath='" + (dir / "Not A Plan.mpp.tvnx").string() + "'")) << err;
    EXPECT_TRUE(logged("### Importer FAILED: error code(4): "));
    EXPECT_TRUE(logged("Final clean up."));
    EXPECT_FALSE(std::filesystem::exists(dir / "Not A Plan.mpp.tvnx"));
}

TEST_F(FilterProgramTest, AnEmptyListIsASuccessForExportOnly) {
    write("T.mpp", "template");
    std::filesystem::create_directory(dir / "T.tvnx");
    write("list.txt", ":: nothing yet\r\n");
    EXPECT_EQ(run({"-export", "--template-path", "T.mpp", "--input-list", "list.txt"}), 0);
    EXPECT_EQ(run({"--template-path", "T.tvnx", "--input-list", "list.txt"}), 255);
    EXPECT_EQ(out, "");
}

} // namespace
