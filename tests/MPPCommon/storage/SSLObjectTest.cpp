#include "CompoundFileBuilder.h"
#include "MPPCommon/storage/SSL.h"
#include "MPPCommon/storage/SSLTypes.h"
#include "StorageTestSupport.h"

#include <gtest/gtest.h>

namespace {

// Root children: stream "Data" holding `bytes`, and storage "Dir" holding an empty storage "Empty".
OpenedFile openWithData(const std::vector<unsigned char>& bytes) {
    CompoundFileBuilder builder;
    int32_t data = builder.addStream(u"Data", bytes);
    int32_t dir = builder.addEntry({u"Dir", 1});
    int32_t empty = builder.addEntry({u"Empty", 1});
    builder.entry(0).child = data;
    builder.entry(data).left = dir;
    builder.entry(dir).child = empty;
    return openBytes(builder.build());
}

std::unique_ptr<SSLStream> dataStream(OpenedFile& opened) {
    EXPECT_TRUE(opened.storage);
    return opened.storage ? opened.storage->childStreamWithName("Data") : nullptr;
}

TEST(SSLObjectTest, LookupIsCaseInsensitiveAndTyped) {
    OpenedFile opened = openWithData(patternBytes(10, 1));
    SSLStorage& root = *opened.storage;
    EXPECT_TRUE(root.childStreamWithName("DATA"));
    EXPECT_TRUE(root.childStorageWithName("dir"));
    EXPECT_EQ(root.childStreamWithName("Dir"), nullptr);
    EXPECT_EQ(root.lastError(), SSL_ERROR_NOT_STREAM);
    EXPECT_EQ(root.childStorageWithName("Data"), nullptr);
    EXPECT_EQ(root.lastError(), SSL_ERROR_NOT_STORAGE);
    EXPECT_EQ(root.childStreamWithName("Dat"), nullptr);
    EXPECT_EQ(root.lastError(), SSL_ERROR_NOT_FOUND);
    EXPECT_EQ(root.childStreamWithName(""), nullptr);
    EXPECT_EQ(root.lastError(), SSL_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(root.childStreamWithName(std::string(32, 'D')), nullptr);
    EXPECT_EQ(root.lastError(), SSL_ERROR_BAD_ARGUMENT);
    auto empty = root.childStorageWithName("Dir")->childStorageWithName("Empty");
    ASSERT_TRUE(empty);
    EXPECT_EQ(empty->childStreamWithName("x"), nullptr);
    EXPECT_EQ(empty->lastError(), SSL_ERROR_NOT_FOUND);
}

TEST(SSLObjectTest, ChildListIsFilledByChildCount) {
    OpenedFile opened = openWithData(patternBytes(10, 1));
    SSLStorage& root = *opened.storage;
    EXPECT_EQ(root.childTypeByIndex(0), -1);
    EXPECT_EQ(root.childTypeByIndex(0), kSSLInfoTypeStream);
    EXPECT_EQ(root.childCount(), 2);
    EXPECT_EQ(root.childNameByIndex(1), "Dir");
    EXPECT_EQ(root.childTypeByIndex(1), kSSLInfoTypeStorage);
    EXPECT_EQ(root.childNameByIndex(2), "");
    EXPECT_EQ(root.childTypeByIndex(-1), -1);
    auto empty = root.childStorageWithName("Dir")->childStorageWithName("Empty");
    EXPECT_EQ(empty->childCount(), 0);
    EXPECT_EQ(empty->childTypeByIndex(0), -1);
}

TEST(SSLObjectTest, ReadsClampAtTheEndAndFailBehindIt) {
    OpenedFile opened = openWithData(patternBytes(30, 2));
    auto stream = dataStream(opened);
    ASSERT_TRUE(stream);
    EXPECT_EQ(stream->streamName(), "Data");
    ASSERT_TRUE(stream->seekFromStart(20));
    std::vector<unsigned char> buffer(100);
    EXPECT_EQ(stream->readBytes(100, buffer.data()), 10);
    EXPECT_EQ(stream->lastError(), SSL_OK);
    EXPECT_EQ(stream->readBytes(100, buffer.data()), -1);
    EXPECT_EQ(stream->lastError(), SSL_ERROR_END_OF_STREAM);

    ASSERT_TRUE(stream->seekFromCurrentPos(-2));
    stream->readInt();
    EXPECT_EQ(stream->lastError(), SSL_OK);
    stream->readInt();
    EXPECT_EQ(stream->lastError(), SSL_ERROR_END_OF_STREAM);

    EXPECT_FALSE(stream->seekFromStart(-1));
    EXPECT_EQ(stream->lastError(), SSL_ERROR_BAD_ARGUMENT);
    EXPECT_FALSE(stream->seekFromCurrentPos(-31));
    EXPECT_TRUE(stream->seekFromCurrentPos(100));
    EXPECT_EQ(stream->position(), 130u);
    EXPECT_EQ(stream->bytesAvailable(), 0u);
    EXPECT_TRUE(stream->rewind());
    EXPECT_EQ(stream->bytesAvailable(), 30u);
}

TEST(SSLObjectTest, MppDatesAndDurations) {
    // Time 0xFFFF with day 0; day 0xFFFF; day 0; time 10 then day 2; day 0xFFFF.
    std::vector<unsigned char> bytes(14);
    putLE16(bytes, 0, 0xFFFF);
    putLE16(bytes, 2, 0);
    putLE16(bytes, 4, 0xFFFF);
    putLE16(bytes, 6, 0);
    putLE16(bytes, 8, 10);
    putLE16(bytes, 10, 2);
    putLE16(bytes, 12, 0xFFFF);
    OpenedFile opened = openWithData(bytes);
    auto stream = dataStream(opened);
    ASSERT_TRUE(stream);
    EXPECT_EQ(stream->readTimeInterval(), 0xFFFF * 6.0);
    EXPECT_EQ(stream->readDate(), std::nullopt);
    EXPECT_EQ(stream->readDate(), getMPPEpoch());
    EXPECT_EQ(stream->readDateTime(), getMPPEpoch().addingSeconds(2 * 86400 + 60));
    stream->seekFromStart(10);
    // Day 2 as a time and 0xFFFF as the day: not both null, so a value.
    EXPECT_EQ(stream->readTimeInterval(), 0xFFFF * 86400.0 + 12 - 4294967296.0);
    EXPECT_EQ(stream->readDate(), std::nullopt);
    EXPECT_EQ(stream->lastError(), SSL_ERROR_END_OF_STREAM);
}

TEST(SSLObjectTest, NullDurationNeedsBothHalves) {
    std::vector<unsigned char> bytes(4, 0xFF);
    OpenedFile opened = openWithData(bytes);
    auto stream = dataStream(opened);
    EXPECT_EQ(stream->readTimeInterval(), -1.0);
    EXPECT_EQ(stream->readTimeInterval(), -1.0);
    EXPECT_EQ(stream->lastError(), SSL_ERROR_END_OF_STREAM);
}

TEST(SSLObjectTest, TextReads) {
    std::vector<unsigned char> bytes = {'A',  0,    'B', 0,   0, 0,   'C',  0,    0x3D, 0xD8,
                                        0x00, 0xDE, 'o', 'k', 0, 'x', 0xC3, 0x28, 0};
    OpenedFile opened = openWithData(bytes);
    auto stream = dataStream(opened);
    EXPECT_EQ(stream->readStringWithLength(5), "AB");
    EXPECT_EQ(stream->position(), 6u);
    // No terminator within the length: the field ends there; a surrogate pair joins.
    EXPECT_EQ(stream->readStringWithLength(3), "C\xF0\x9F\x98\x80");
    EXPECT_EQ(stream->readBytesIntoString(4), "ok");
    EXPECT_EQ(stream->readBytesIntoString(4), std::nullopt);
    EXPECT_EQ(stream->readStringWithLength(100), std::nullopt);
    EXPECT_EQ(stream->lastError(), SSL_ERROR_END_OF_STREAM);
}

TEST(SSLObjectTest, WideStringConversions) {
    EXPECT_EQ(SSL::wstringFromNSString("a\xC3\xA9\xF0\x9F\x98\x80"),
              (std::u32string{U'a', 0xE9, 0xD83D, 0xDE00}));
    EXPECT_EQ(SSL::wstringFromNSString("a\xFF"), (std::u32string{U'a', 0xFFFD}));
    EXPECT_EQ(SSL::stringWithWCharStr(std::u32string{U'a', 0xD83D, 0xDE00, 0, U'b'}), "a\xF0\x9F\x98\x80");
    EXPECT_EQ(SSL::stringWithWCharStr(std::u32string{0xDE00, 0x110000}), "\xEF\xBF\xBD\xEF\xBF\xBD");
}

} // namespace
