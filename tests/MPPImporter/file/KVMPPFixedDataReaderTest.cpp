#include "MPPImporter/file/KVMPPFixedDataReader.h"

#include "MPPCommon/support/TVException.h"
#include "MPPImporter/format/MPPStreamLayout.h"
#include "StreamFileFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

constexpr int32_t kItemSize = 12;

struct MetaItem {
    int32_t firstField;
    int32_t dataOffset;
};

// `inUse` is the header's count of items in use; all of them when not given.
std::vector<uint8_t> fixedMeta(const std::vector<MetaItem>& items, uint32_t magic = kMPPMetaStreamMagicNumber,
                               std::optional<int32_t> inUse = std::nullopt) {
    ByteWriter meta;
    meta.u32(magic)
        .u32(4)
        .u32(static_cast<uint32_t>(inUse.value_or(static_cast<int32_t>(items.size()))))
        .u32(0);
    for (size_t index = 0; index < items.size(); ++index) {
        // The flag byte at offset 8 and the last byte of the item let reads tell items apart.
        meta.u32(static_cast<uint32_t>(items[index].firstField))
            .u32(static_cast<uint32_t>(items[index].dataOffset));
        meta.u8(static_cast<uint8_t>(0xA0 + index)).u16(0x1234).u8(0xEE);
    }
    return meta.data();
}

// Data items that begin with their UID and object id, as the task and resource items do.
std::vector<uint8_t> dataItem(int32_t uid, int32_t objectID, size_t size) {
    ByteWriter item;
    item.u32(static_cast<uint32_t>(uid)).u32(static_cast<uint32_t>(objectID)).zeros(size - 8);
    return item.data();
}

// The UID reader of these tests: UID and object id from the item's first words, the null mark from
// the meta first field; every call is recorded.
class TestFixedDataReader : public KVMPPFixedDataReader {
public:
    struct Call {
        int32_t firstField, offset, size;
        bool operator==(const Call&) const = default;
    };

    TestFixedDataReader(StreamFile& file, int64_t firstIndex, int32_t minSize, int32_t maxSize,
                        std::shared_ptr<MPPIndexMap> indexMap = nullptr)
        : KVMPPFixedDataReader(file.stream(indexMap ? "Fixed2Meta" : "FixedMeta"),
                               indexMap ? "Fixed2Meta" : "FixedMeta", kItemSize, kMPPMetaStreamMagicNumber,
                               indexMap, firstIndex, file.stream(indexMap ? "Fixed2Data" : "FixedData"),
                               indexMap ? "Fixed2Data" : "FixedData", minSize, maxSize, nullptr) {}

    std::vector<Call> calls;

protected:
    int32_t objectUIDFromStream(int32_t firstField, int32_t offset, int32_t size, int64_t* objectID,
                                bool* isNull) override {
        calls.push_back({firstField, offset, size});
        dataStream().seekFromStart(offset);
        int32_t uid = dataStream().readInt();
        *objectID = dataStream().readInt();
        *isNull = (firstField & 0xFFFF) == 4;
        return uid;
    }
};

StreamFile fixedFile(const std::vector<uint8_t>& meta, const std::vector<uint8_t>& data) {
    return StreamFile({{"FixedMeta", meta}, {"FixedData", data}});
}

TEST(KVMPPFixedDataReader, InconsistentSetupsAreAssertions) {
    StreamFile file = fixedFile(fixedMeta({{0, 0}}), {});
    auto make = [&](const char* meta, const char* data, std::shared_ptr<MPPIndexMap> map) {
        KVMPPFixedDataReader(file.stream("FixedMeta"), meta, kItemSize, kMPPMetaStreamMagicNumber, map, 0,
                             file.stream("FixedData"), data, 0, 0, nullptr);
    };
    EXPECT_THROW(make("FixedMeta", "Fixed2Data", nullptr), TVException);
    EXPECT_THROW(make("FixedMeta", "FixedData", std::make_shared<MPPIndexMap>()), TVException);
    EXPECT_THROW(make("Fixed2Meta", "Fixed2Data", nullptr), TVException);
    // Items but no data stream bytes.
    TestFixedDataReader reader(file, 0, 0, 0);
    EXPECT_THROW(reader.open(), TVException);
}

TEST(KVMPPFixedDataReader, WrongMagicGivesNoObjectsSilentlyAndHeaderOnlyOpensEmpty) {
    StreamFile wrongMagic = fixedFile(fixedMeta({{0, 0}}, 0xFADFADBB), dataItem(7, 1, 20));
    TestFixedDataReader refused(wrongMagic, 0, 0, 0);
    LogCapture log;
    EXPECT_FALSE(refused.open());
    EXPECT_THAT(refused.uniqueIDs(), IsEmpty());
    EXPECT_THAT(log.lines(), IsEmpty());

    StreamFile headerOnly = fixedFile(fixedMeta({}), {});
    TestFixedDataReader empty(headerOnly, 0, 0, 0);
    EXPECT_TRUE(empty.open());
    EXPECT_EQ(empty.itemCount(), 0);
}

TEST(KVMPPFixedDataReader, ItemSizesComeFromTheNextOffsetWithMinimumAndMaximum) {
    // Items at 0, 10, 10 (no size of its own), 30; the data stream ends at 60. The last meta item is
    // partial and no item.
    ByteWriter data;
    data.bytes(dataItem(1, 10, 10)).bytes(dataItem(3, 30, 20)).bytes(dataItem(4, 40, 30));
    auto meta = fixedMeta({{0, 0}, {0, 10}, {0, 10}, {0, 30}});
    meta.resize(meta.size() + 5);
    StreamFile file = fixedFile(meta, data.data());
    TestFixedDataReader reader(file, 0, 8, 25);
    ASSERT_TRUE(reader.open());
    EXPECT_EQ(reader.itemCount(), 4);
    using Call = TestFixedDataReader::Call;
    EXPECT_THAT(reader.calls, ElementsAre(Call{0, 0, 10}, Call{0, 10, 8}, Call{0, 10, 20}, Call{0, 30, 25}));
    MPPDataItemInfo info;
    ASSERT_TRUE(reader.dataItemInfo(&info, 4));
    EXPECT_EQ(std::tuple(info.metaIndex, info.metaOffset, info.metaSize, info.dataOffset, info.dataSize),
              std::tuple(3, 16 + 3 * kItemSize, kItemSize, 30, 25));
    // UID 3 comes twice; the first item wins.
    ASSERT_TRUE(reader.dataItemInfo(&info, 3));
    EXPECT_EQ(std::tuple(info.metaIndex, info.dataSize), std::tuple(1, 8));
    EXPECT_THAT(reader.uniqueIDs(), UnorderedElementsAre(1, 3, 4));
}

TEST(KVMPPFixedDataReader, ItemWhoseNextOffsetLiesBehindTheEndIsDropped) {
    StreamFile file = fixedFile(fixedMeta({{0, 0}, {0, 500}, {0, 16}}), dataItem(5, 0, 40));
    TestFixedDataReader reader(file, 0, 0, 0);
    ASSERT_TRUE(reader.open());
    // Item 0 is skipped, item 1 is measured from the older start, and item 2 runs to the end.
    using Call = TestFixedDataReader::Call;
    EXPECT_THAT(reader.calls, ElementsAre(Call{0, 0, 16}, Call{0, 16, 24}));
}

TEST(KVMPPFixedDataReader, ItemsBehindTheHeadersCountAreLeftOversAndHoldNoObjects) {
    // Two items in use; behind them an older copy of UID 2 that starts where UID 2 starts and a deleted
    // row of UID 3. UID 2 runs to the end of the data stream instead of getting the minimum size.
    ByteWriter data;
    data.bytes(dataItem(1, 1, 10)).bytes(dataItem(2, 2, 20)).bytes(dataItem(3, 3, 10));
    StreamFile file =
        fixedFile(fixedMeta({{0, 0}, {0, 10}, {0, 10}, {0, 30}}, kMPPMetaStreamMagicNumber, 2), data.data());
    TestFixedDataReader reader(file, 0, 8, 0);
    ASSERT_TRUE(reader.open());
    EXPECT_EQ(reader.itemCount(), 2);
    using Call = TestFixedDataReader::Call;
    EXPECT_THAT(reader.calls, ElementsAre(Call{0, 0, 10}, Call{0, 10, 30}));
    EXPECT_THAT(reader.uniqueIDs(), UnorderedElementsAre(1, 2));

    // A count of more items than the stream holds, or a negative one, leaves every item of the stream;
    // a count of 0 leaves none.
    for (const int32_t inUse : {9, -2}) {
        StreamFile all =
            fixedFile(fixedMeta({{0, 0}, {0, 10}, {0, 30}}, kMPPMetaStreamMagicNumber, inUse), data.data());
        TestFixedDataReader allReader(all, 0, 8, 0);
        ASSERT_TRUE(allReader.open());
        EXPECT_THAT(allReader.uniqueIDs(), UnorderedElementsAre(1, 2, 3)) << inUse;
    }
    StreamFile none = fixedFile(fixedMeta({{0, 0}, {0, 10}}, kMPPMetaStreamMagicNumber, 0), data.data());
    TestFixedDataReader noneReader(none, 0, 8, 0);
    ASSERT_TRUE(noneReader.open());
    EXPECT_THAT(noneReader.uniqueIDs(), IsEmpty());
}

TEST(KVMPPFixedDataReader, ItemsBelowFirstIndexAndGapsHoldNoObjects) {
    ByteWriter data;
    for (int32_t uid = 0; uid < 7; ++uid) {
        data.bytes(dataItem(uid, uid + 100, 10));
    }
    StreamFile file = fixedFile(
        fixedMeta({{1, 0}, {1, 10}, {1, 20}, {2, 30}, {4, 40}, {0x10004, 50}, {1, 60}}), data.data());
    TestFixedDataReader reader(file, 3, 0, 0);
    ASSERT_TRUE(reader.open());
    EXPECT_EQ(reader.calls.size(), 2u);
    EXPECT_THAT(reader.uniqueIDs(), UnorderedElementsAre(5, 6));
    EXPECT_THAT(reader.nullIDs(), ElementsAre(5));
    EXPECT_EQ(reader.objectIDforUniqueID(6), 106);
    EXPECT_EQ(reader.objectIDforUniqueID(2), -1);
    EXPECT_EQ(*reader.indexMap(), (MPPIndexMap{{5, 5}, {6, 6}}));
}

TEST(KVMPPFixedDataReader, MetaAndDataReadsStayInsideTheObjectsItems) {
    ByteWriter data;
    data.bytes(dataItem(1, 11, 12))
        .u16(0x0258)
        .u16(0x0001)
        .u16(0xFFFF)
        .u16(0x0001)
        .bytes({0x00, 0x00, 0xF8, 0x3F});
    StreamFile file = fixedFile(fixedMeta({{0, 0}, {0, 12}}), data.data());
    TestFixedDataReader reader(file, 0, 0, 0);
    ASSERT_TRUE(reader.open());
    const int32_t uid2 = 0x0258 | (1 << 16); // the second item's first word

    uint8_t flag = 0;
    int16_t word = 0;
    int8_t last = 0;
    EXPECT_TRUE(reader.readMetaUByte(flag, 1, 8));
    EXPECT_EQ(flag, 0xA0);
    EXPECT_TRUE(reader.readMetaShort(word, 1, 9));
    EXPECT_EQ(word, 0x1234);
    EXPECT_FALSE(reader.readMetaByte(last, 1, kItemSize - 1)); // the last byte can't be read
    EXPECT_FALSE(reader.readMetaByte(last, 1, -1));
    EXPECT_FALSE(reader.readMetaByte(last, 42, 0));

    int32_t objectID = 0;
    EXPECT_TRUE(reader.readDataInt(objectID, 1, 4));
    EXPECT_EQ(objectID, 11);
    EXPECT_FALSE(reader.readDataInt(objectID, 1, 9));
    TVDate date;
    EXPECT_TRUE(reader.readDataTimestamp(date, uid2, 0));
    EXPECT_EQ(date, getMPPEpoch().addingSeconds(86400 + 3600));
    LogCapture log;
    EXPECT_FALSE(reader.readDataTimestamp(date, uid2, 2)); // a null day is no error
    EXPECT_FALSE(reader.readDataTimestamp(date, uid2, 6)); // only 6 of the 8 bytes are there
    EXPECT_THAT(log.lines(), IsEmpty());
    uint8_t raw[4] = {};
    EXPECT_TRUE(reader.readDataRawByteArray(raw, 4, 20));
    EXPECT_EQ(raw[3], 0x3F);
}

TEST(KVMPPFixedDataReader, Fixed2ItemsBelongToTheObjectsOfTheFirstPair) {
    ByteWriter data;
    data.bytes(dataItem(21, 1, 10)).bytes(dataItem(22, 2, 10));
    StreamFile file({{"FixedMeta", fixedMeta({{0, 0}, {0, 10}})},
                     {"FixedData", data.data()},
                     {"Fixed2Meta", fixedMeta({{0, 0}, {0, 6}, {0, 12}})},
                     {"Fixed2Data", ByteWriter().u16(0x11).zeros(4).u16(0x22).zeros(10).data()}});
    TestFixedDataReader first(file, 0, 0, 0);
    ASSERT_TRUE(first.open());
    TestFixedDataReader second(file, 0, 0, 0, first.indexMap());
    ASSERT_TRUE(second.open());
    EXPECT_THAT(second.calls, IsEmpty());
    // Item 2 has no object in the first pair and goes under UID 0.
    EXPECT_THAT(second.uniqueIDs(), UnorderedElementsAre(21, 22, 0));
    int16_t value = 0;
    EXPECT_TRUE(second.readDataShort(value, 22, 0));
    EXPECT_EQ(value, 0x22);
}

TEST(KVMPPFixedDataReader, MetaItemSizeNeedsACountThatFillsTheStreamExactly) {
    // The header's count of items in use (1) tells nothing: the size comes from the count given.
    const auto sizeOf = [](int64_t count, size_t itemBytes, size_t trailingBytes = 0) {
        ByteWriter meta;
        meta.u32(kMPPMetaStreamMagicNumber).u32(4).u32(1).u32(0).zeros(itemBytes + trailingBytes);
        StreamFile file({{"Fixed2Meta", meta.data()}});
        auto stream = file.stream("Fixed2Meta");
        const int32_t size = KVMPPFixedDataReader::metaItemSizeForItems(*stream, count, 93);
        EXPECT_EQ(stream->position(), 0u);
        EXPECT_EQ(KVMPPFixedDataReader::metaItemsInStream(*stream, 47), static_cast<int64_t>(itemBytes) / 47);
        return size;
    };
    EXPECT_EQ(sizeOf(3, 3 * 94), 94);
    EXPECT_EQ(sizeOf(5, 5 * 96), 96);
    EXPECT_EQ(sizeOf(3, 3 * 93), 93);
    EXPECT_EQ(sizeOf(3, 3 * 94, 1), 93) << "a remainder leaves the table's size";
    EXPECT_EQ(sizeOf(3, 3 * 86), 93) << "items are never shorter than the table says";
    EXPECT_EQ(sizeOf(0, 3 * 94), 93);
    EXPECT_EQ(sizeOf(-1, 94), 93) << "a negative count";
    EXPECT_EQ(sizeOf(4, 0), 93) << "a header without items";
}

TEST(KVMPPFixedDataReader, StreamErrorsAreLoggedAndAnswerFalse) {
    StreamFile file = fixedFile(fixedMeta({{0, 0}}), dataItem(3, 0, 8));
    TestFixedDataReader reader(file, 0, 0, 16);
    ASSERT_TRUE(reader.open());
    LogCapture log;
    uint32_t value = 0;
    // A refused range is still read, here at the end of the stream, which fails.
    EXPECT_FALSE(reader.readDataUInt(value, 3, 8));
    ASSERT_EQ(log.lines().size(), 1u);
    EXPECT_THAT(log.lines()[0], ::testing::StartsWith("ERROR: "));
    EXPECT_FALSE(reader.readDataRawByteArray(&value, 4, 8));
}

} // namespace
