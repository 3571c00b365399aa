#include "FrontendTestSupport.h"
#include "tool/frontend/PathStandardizer.h"

#include <cstdlib>

using namespace frontendtest;

namespace {

TEST(PathStandardizer, ExpandsTildeAndFoldsDots) {
    std::string home = std::getenv("HOME") != nullptr ? std::getenv("HOME") : "";
    setenv("HOME", "/home/planner", 1);
    EXPECT_EQ(PathStandardizer::standardize("~"), "/home/planner");
    EXPECT_EQ(PathStandardizer::standardize("~/plans/./a.mpp"), "/home/planner/plans/a.mpp");
    EXPECT_EQ(PathStandardizer::standardize("~root/x"), "/root/x");
    setenv("HOME", home.c_str(), 1);
    EXPECT_EQ(PathStandardizer::standardize("/a//b/../c/./d/"), "/a/c/d");
    EXPECT_EQ(PathStandardizer::standardize("/../.."), "/");
    EXPECT_EQ(PathStandardizer::standardize("rel/../x/./y.mpp"), "rel/../x/y.mpp");
    EXPECT_EQ(PathStandardizer::standardize("./-accept-downgraded"), "-accept-downgraded");
    EXPECT_EQ(PathStandardizer::standardize("."), ".");
    EXPECT_EQ(PathStandardizer::standardize(".//./"), ".");
}

class PreferencesStoreTest : public FrontendTest {};

TEST_F(PreferencesStoreTest, ReadsItsDomainsKeysAndValues) {
    EXPECT_FALSE(preferences().boolForKey(kMPPImportPreferencesName, kIncludeInputExtensionKey));
    setPreferences(kMPPExportPreferencesName,
                   "# comment\r\n  OverwriteFilterTarget =  Yes \r\n"
                   "IncludeInputExtensionX=true\nIncludeInputExtension=maybe\nno equals\n");
    FilterSettings settings = preferences().settingsForDomain(kMPPExportPreferencesName);
    EXPECT_TRUE(settings.overwriteFilterTarget);
    EXPECT_FALSE(settings.includeInputExtension);
    EXPECT_FALSE(preferences().boolForKey(kMPPImportPreferencesName, kOverwriteFilterTargetKey));

    setPreferences(kMPPExportPreferencesName, "OverwriteFilterTarget=true\nOverwriteFilterTarget=false\n");
    EXPECT_FALSE(preferences().boolForKey(kMPPExportPreferencesName, kOverwriteFilterTargetKey))
        << "last line wins";
}

} // namespace
