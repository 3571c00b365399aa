#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVError.h"

#include <gtest/gtest.h>

TEST(TVError, DescriptionFallsBackToDomainAndCode) {
    TVError error{"Some.Domain", 7, {}};
    EXPECT_EQ(error.localizedDescription(), "The operation couldn't be completed. (Some.Domain error 7.)");
    EXPECT_EQ(TVError::make("D", 4, "text").localizedDescription(), "text");
}

TEST(Log, SinkReceivesLinesAndFormatExpands) {
    std::vector<std::string> lines;
    tvSetLogSink([&](const std::string& line) { lines.push_back(line); });
    tvLog(stringWithFormat("Mapping %d MSP Tasks %s", 12, "......"));
    tvSetLogSink({});
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0], "Mapping 12 MSP Tasks ......");
}
