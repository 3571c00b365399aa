#include "MPPImporter/query/adapters/KVMSPIXQProjectAdapter.h"
#include "MPPImporter/query/frame/KVMSPIXQResponder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

class NotAProjectReader : public KVMSPIXQResponder {};

} // namespace

TEST(ProjectAdapterTest, RefusesAReaderOfAnotherClass) {
    NotAProjectReader reader;
    try {
        KVMSPIXQProjectAdapter adapter(reader);
        FAIL() << "no assertion";
    } catch (const TVException& exception) {
        EXPECT_THAT(exception.reason(),
                    testing::MatchesRegex(R"(MSPIXQProjectAdapter: Incorrect reader .*NotAProjectReader\.)"));
    }
}
