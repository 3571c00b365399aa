#include "MPPImporter/file/KVMSPIOLE2StreamError.h"

#include "StreamFileFixture.h"

#include <gtest/gtest.h>

namespace {

TEST(KVMSPIOLE2StreamErrorTest, CarriesTheStreamCodeAndDescribesWhatItKnows) {
    StreamFile file({{"Data", {1, 2}}});
    auto stream = file.stream("Data");
    stream->seekFromStart(2);
    stream->readInt();
    ASSERT_NE(stream->lastError(), 0);

    KVMSPIOLE2StreamError error = KVMSPIOLE2StreamError::errorWithStream(*stream, "reading past the end");
    EXPECT_EQ(error.domain, "TVMSPFilter.OLE2StreamReaderErrorDomain");
    EXPECT_EQ(error.code, stream->lastError());
    EXPECT_TRUE(error.userInfo.empty());
    const std::string head = error.description();
    EXPECT_EQ(head.rfind("<KVMSPIOLE2StreamError 0x", 0), 0u) << head;
    EXPECT_NE(head.find(">:\n  GSFErrorCode=" + std::to_string(error.code)), std::string::npos) << head;

    error.userInfo = {
        {kOLE2InputStreamNameKey, "Data"}, {kOLE2InputStreamSizeKey, "2"}, {kOLE2InputStreamEOFKey, "1"}};
    EXPECT_EQ(error.description(), head + "\n  streamName='Data'\n  streamSize=2\n  streamEOF=YES");
}

} // namespace
