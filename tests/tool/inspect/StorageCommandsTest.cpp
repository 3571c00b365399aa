#include "InspectToolRun.h"
#include "MPPCommon/storage/SSLRoot.h"
#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/storage/SSLStream.h"
#include "support/TestSupport.h"
#include "tool/inspect/EntryPath.h"

#include <gtest/gtest.h>

namespace {

// A file with a stream at the root, a storage whose name needs escapes, and a stream inside it.
std::string writeSample(const testsupport::TempDir& dir) {
    const std::string path = (dir.path() / "sample.mpp").string();
    std::unique_ptr<SSLRoot> root = SSLRoot::forWritingToFile(path);
    std::unique_ptr<SSLStorage> storage = root->rootStorage();
    storage->createChildStreamWithName("\x05SummaryInformation")->writeBuffer("abc", 3);
    auto odd = storage->createChildStorageWithName("a/b\\c");
    odd->createChildStreamWithName("Inner")->writeBuffer("hello", 5);
    return path;
}

TEST(EntryPathTest, EscapesControlCharactersAndSeparators) {
    EXPECT_EQ(EntryPath::escapeName("\x05Sum/x\\y\x1F"), "\\x05Sum\\x2Fx\\x5Cy\\x1F");
    EXPECT_EQ(EntryPath::escapeName("caf\xC3\xA9 1"), "caf\xC3\xA9 1");
    EXPECT_EQ(EntryPath::join("", "a/b"), "a\\x2Fb");
    EXPECT_EQ(EntryPath::join("   1", "Props"), "   1/Props");
    EXPECT_EQ(EntryPath::split("a\\x2Fb/\\x05c"), (std::vector<std::string>{"a/b", "\x05"
                                                                                   "c"}));
    EXPECT_EQ(EntryPath::split("x\\y\\x4"), (std::vector<std::string>{"x\\y\\x4"}));
}

TEST(StorageCommandsTest, ListsCatsAndCopies) {
    testsupport::TempDir dir;
    const std::string sample = writeSample(dir);
    const std::string listing = "S\t3\t352441c2\t\\x05SummaryInformation\n"
                                "D\t0\t-\ta\\x2Fb\\x5Cc\n"
                                "S\t5\t3610a686\ta\\x2Fb\\x5Cc/Inner\n";
    InspectToolRun ls = InspectToolRun::of({"ls", sample});
    EXPECT_EQ(ls.status, 0) << ls.err;
    EXPECT_EQ(ls.out, listing);

    InspectToolRun cat = InspectToolRun::of({"cat", sample, "A\\x2FB\\x5CC/inner"});
    EXPECT_EQ(cat.status, 0) << cat.err;
    EXPECT_EQ(cat.out, "hello");

    const std::string copy = (dir.path() / "copy.mpp").string();
    InspectToolRun copied = InspectToolRun::of({"copy", sample, copy});
    EXPECT_EQ(copied.status, 0) << copied.err;
    EXPECT_EQ(InspectToolRun::of({"ls", copy}).out, listing);
}

TEST(StorageCommandsTest, FailuresNameTheResultCode) {
    testsupport::TempDir dir;
    const std::string sample = writeSample(dir);
    const std::string junk = (dir.path() / "junk.mpp").string();
    testsupport::writeFileBytes(junk, std::vector<unsigned char>(600, 'x'));

    InspectToolRun notCompound = InspectToolRun::of({"ls", junk});
    EXPECT_EQ(notCompound.status, InspectCommand::kExitFailure);
    EXPECT_EQ(notCompound.err.rfind("error 3 SSL_ERROR_NOT_COMPOUND_FILE: ", 0), 0u) << notCompound.err;

    InspectToolRun missing = InspectToolRun::of({"cat", (dir.path() / "none").string(), "x"});
    EXPECT_EQ(missing.err.rfind("error 1 SSL_ERROR_FILE_NOT_FOUND: ", 0), 0u) << missing.err;

    InspectToolRun noStream = InspectToolRun::of({"cat", sample, "a\\x2Fb\\x5Cc/Other"});
    EXPECT_EQ(noStream.status, InspectCommand::kExitFailure);
    EXPECT_EQ(noStream.err.rfind("error 11 SSL_ERROR_NOT_FOUND: ", 0), 0u) << noStream.err;

    InspectToolRun notStream = InspectToolRun::of({"cat", sample, "a\\x2Fb\\x5Cc"});
    EXPECT_EQ(notStream.err.rfind("error 10 SSL_ERROR_NOT_STREAM: ", 0), 0u) << notStream.err;

    EXPECT_EQ(InspectToolRun::of({"ls"}).err, "usage: mppinspect ls FILE\n");
    EXPECT_EQ(InspectToolRun::of({"cat", sample}).err, "usage: mppinspect cat FILE PATH\n");
}

TEST(InspectToolTest, WithoutAKnownCommandPrintsEveryCommandsUsage) {
    const std::string all =
        "usage: mppinspect info [--accept-downgraded] FILE\n"
        "       mppinspect props FILE\n"
        "       mppinspect dump [--accept-downgraded] [--baseline N] FILE\n"
        "       mppinspect query [--accept-downgraded] [--baseline N] FILE QUERY[:TYPE] [LEAF[:TYPE] ...] "
        "(TYPE: text, int, num or bool)\n"
        "       mppinspect ls FILE\n"
        "       mppinspect cat FILE PATH\n"
        "       mppinspect copy IN OUT\n"
        "       mppinspect model BUNDLE\n";
    for (const auto& arguments :
         std::vector<std::vector<std::string>>{{}, {"frob", "plan.mpp"}, {"--help"}}) {
        const InspectToolRun usage = InspectToolRun::of(arguments);
        EXPECT_EQ(usage.status, InspectCommand::kExitUsage);
        EXPECT_EQ(usage.err, all);
        EXPECT_EQ(usage.out, "");
    }
}

} // namespace
