#include "MPPCommon/support/TVFileURL.h"

#include "MPPCommon/support/TVPath.h"

#include <filesystem>
#include <gtest/gtest.h>

TEST(TVPath, ComponentsAndExtensions) {
    EXPECT_EQ(lastPathComponent("/a/b.mpp/"), "b.mpp");
    EXPECT_EQ(lastPathComponent("/"), "/");
    EXPECT_EQ(lowercasedPathExtension("/a/B.c.TvNx/"), "tvnx");
    EXPECT_EQ(pathExtension("/a.d/.hidden"), "");
    EXPECT_EQ(pathExtension("/a.d/plain"), "");
    EXPECT_EQ(deletingPathExtension("/a.d/b.c.mpp"), "/a.d/b.c");
    EXPECT_EQ(deletingPathExtension("/a.d/plain"), "/a.d/plain");
    EXPECT_EQ(deletingLastPathComponent("/a"), "/");
    EXPECT_EQ(deletingLastPathComponent("a"), "");
    EXPECT_EQ(appendingPathComponent("/", "x"), "/x");
    EXPECT_EQ(appendingPathComponent("/a", "x"), "/a/x");
}

TEST(TVFileURL, AbsoluteStringEncodesThePathAndMarksFolders) {
    EXPECT_EQ(TVFileURL("/tmp/My Plan #1/ä%?.mpp", false).absoluteString(),
              "file:///tmp/My%20Plan%20%231/%C3%A4%25%3F.mpp");
    EXPECT_EQ(TVFileURL("/a/(x)&y=1;@:~", false).absoluteString(), "file:///a/(x)&y=1;@:~");
    EXPECT_EQ(TVFileURL("/tmp/T.tvnx//", true).absoluteString(), "file:///tmp/T.tvnx/");
    EXPECT_EQ(TVFileURL("/tmp/T.tvnx/", false).path(), "/tmp/T.tvnx");
    EXPECT_EQ(TVFileURL("/", true).absoluteString(), "file:///");
    EXPECT_EQ(TVFileURL("/b.tvnx", true).appendingPathComponent("Actual.xml", false).absoluteString(),
              "file:///b.tvnx/Actual.xml");
}

TEST(TVFileURL, RelativePathsResolveAgainstTheWorkingDirectory) {
    TVFileURL url("sub/../Plan.MPP", false);
    EXPECT_EQ(url.path(), std::filesystem::current_path().string() + "/sub/../Plan.MPP");
    EXPECT_EQ(url.pathExtension(), "MPP");
    EXPECT_TRUE(TVFileURL().isEmpty());
}
