#include "MPPImporter/file/KVMPPVarDataReader.h"

#include "MPPCommon/support/TVException.h"
#include "MPPImporter/format/MPPStreamLayout.h"
#include "StreamFileFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct VarItem {
    int32_t uid;
    int32_t property;
    int32_t dataOffset;
};

std::vector<uint8_t> varMeta(const std::vector<VarItem>& items, int32_t count) {
    ByteWriter meta;
    meta.u32(kMPPMetaStreamMagicNumber).u32(4).u32(static_cast<uint32_t>(count)).zeros(8).u32(0);
    for (const auto& item : items) {
        meta.u32(static_cast<uint32_t>(item.uid)).u32(static_cast<uint32_t>(item.dataOffset));
        meta.u16(static_cast<uint16_t>(item.property)).u16(0x0B40);
    }
    return meta.data();
}

std::vector<uint8_t> varMeta(const std::vector<VarItem>& items) {
    return varMeta(items, static_cast<int32_t>(items.size()));
}

// A reader whose file has the given format version.
class TestVarDataReader : public KVMPPVarDataReader {
public:
    TestVarDataReader(StreamFile& file, int32_t version)
        : KVMPPVarDataReader(file.stream("VarMeta"), "VarMeta", version == 9 ? 8 : 12,
                             kMPPMetaStreamMagicNumber, file.stream("Var2Data"), "Var2Data", nullptr),
          m_version(version) {}

protected:
    int32_t mppVersion() const override { return m_version; }

private:
    int32_t m_version;
};

StreamFile varFile(const std::vector<uint8_t>& meta, const std::vector<uint8_t>& data) {
    return StreamFile({{"VarMeta", meta}, {"Var2Data", data}});
}

TEST(KVMPPVarDataReader, Version9ItemsHold24BitUidAndUnsigned8BitProperty) {
    ByteWriter meta;
    meta.u32(kMPPMetaStreamMagicNumber).u32(4).u32(2).zeros(8).u32(0);
    meta.bytes({0x39, 0x30, 0x00, 0x05, 0x10, 0x00, 0x00, 0x00});
    meta.bytes({0x01, 0x00, 0x00, 0x90, 0x00, 0x00, 0x00, 0x00});
    ByteWriter data;
    data.u32(2).u16(0xBEEF).zeros(10).u32(4).u32(0xCAFEF00D);
    StreamFile file = varFile(meta.data(), data.data());
    TestVarDataReader reader(file, 9);
    ASSERT_TRUE(reader.open());
    EXPECT_EQ(reader.itemCount(), 2);
    uint32_t value = 0;
    EXPECT_TRUE(reader.readDataUInt(value, 12345, 5, 0));
    EXPECT_EQ(value, 0xCAFEF00Du);
    // The property byte is unsigned: task notes stand under 144 (0x90).
    EXPECT_TRUE(reader.hasDataForObjectUID(1, 144));
    EXPECT_FALSE(reader.hasDataForObjectUID(1, -112));
}

TEST(KVMPPVarDataReader, EmptyBlocksAreAbsentAndFirstOfARepeatedPairWins) {
    ByteWriter data;
    data.u32(0).u32(static_cast<uint32_t>(-3)).u32(6).u16(0x0102).u32(0x11223344).u32(2).u16(0xFFFF);
    // Blocks: 0 empty, 4 negative, 8 six bytes, 18 two bytes.
    StreamFile file =
        varFile(varMeta({{30, 1, 0}, {31, 1, 4}, {20, 7, 8}, {20, 7, 18}, {10, 2, 18}}), data.data());
    TestVarDataReader reader(file, 14);
    ASSERT_TRUE(reader.open());
    EXPECT_FALSE(reader.hasDataForObjectUID(30, 1));
    EXPECT_FALSE(reader.hasDataForObjectUID(31, 1));
    EXPECT_THAT(reader.uidArray(), ElementsAre(10, 20));
    int32_t size = 0;
    ASSERT_TRUE(reader.getDataSize(size, 20, 7));
    EXPECT_EQ(size, 6);
    int32_t value = 0;
    EXPECT_TRUE(reader.readDataInt(value, 20, 7, 2));
    EXPECT_EQ(value, 0x11223344);
    EXPECT_FALSE(reader.readDataInt(value, 20, 7, 3));
    EXPECT_FALSE(reader.readDataInt(value, 20, 7, -1));
    EXPECT_FALSE(reader.readDataInt(value, 20, 8, 0));
    int32_t where = 0, remaining = 0;
    EXPECT_TRUE(reader.validateObjectUID(20, 7, 1, 2, &where, &remaining));
    EXPECT_EQ(where, 13);
    EXPECT_EQ(remaining, 5);
}

TEST(KVMPPVarDataReader, ReadAsDoubleFollowsTheBlockSize) {
    ByteWriter data;
    data.u32(2).u16(0xFFFF);                        // at 0, two bytes
    data.u32(4).u32(static_cast<uint32_t>(-70000)); // at 6, four bytes
    data.u32(8).u32(0).u32(0x3FF80000);             // at 14, eight bytes
    data.u32(3).u16(1).u8(0);                       // at 26, three bytes
    StreamFile file = varFile(varMeta({{1, 1, 0}, {1, 2, 6}, {1, 3, 14}, {1, 4, 26}}), data.data());
    TestVarDataReader reader(file, 12);
    ASSERT_TRUE(reader.open());
    double value = 0;
    EXPECT_TRUE(reader.readDataAsDouble(value, 1, 1, 0));
    EXPECT_EQ(value, -1.0);
    EXPECT_TRUE(reader.readDataAsDouble(value, 1, 2, 0));
    EXPECT_EQ(value, -70000.0);
    EXPECT_TRUE(reader.readDataAsDouble(value, 1, 3, 0));
    EXPECT_EQ(value, 1.5);
    value = 42;
    EXPECT_TRUE(reader.readDataAsDouble(value, 1, 4, 0));
    EXPECT_EQ(value, 42);
    EXPECT_FALSE(reader.readDataAsDouble(value, 1, 5, 0));
}

TEST(KVMPPVarDataReader, TimestampIsNullOnlyWhenBothWordsAre) {
    ByteWriter data;
    data.u32(4).u16(0xFFFF).u16(0xFFFF).u32(4).u16(0xFFFF).u16(0x0001);
    StreamFile file = varFile(varMeta({{1, 1, 0}, {1, 2, 8}}), data.data());
    TestVarDataReader reader(file, 16);
    ASSERT_TRUE(reader.open());
    TVDate date;
    EXPECT_FALSE(reader.readDataTimestamp(date, 1, 1, 0));
    ASSERT_TRUE(reader.readDataTimestamp(date, 1, 2, 0));
    EXPECT_EQ(date, getMPPEpoch().addingSeconds(86400 + 0xFFFF * 6));
}

TEST(KVMPPVarDataReader, UnicodeReadsTheRestOfTheBlock) {
    const std::string rtf = "{\\rtf1\\ansi Note\\par}";
    ByteWriter data;
    data.u32(10).u16('-').u16('N').u16('a').u16('m').u16(0);
    data.u32(static_cast<uint32_t>(rtf.size())).bytes(std::vector<uint8_t>(rtf.begin(), rtf.end()));
    // A size word far beyond the stream: the read takes what the stream holds.
    data.u32(0x7FFFFFF0).u16('x').u16(0);
    StreamFile file = varFile(
        varMeta({{1, 14, 0}, {1, 15, 14}, {2, 14, 18 + static_cast<int32_t>(rtf.size())}}), data.data());
    TestVarDataReader reader(file, 14);
    ASSERT_TRUE(reader.open());
    std::string name;
    EXPECT_TRUE(reader.readDataUnicode(&name, 1, 14, 2));
    EXPECT_EQ(name, "Nam");
    std::string note;
    EXPECT_TRUE(reader.readDataUnicode(&note, 1, 15, 0));
    EXPECT_EQ(note, "Note\n");
    EXPECT_TRUE(reader.readDataUnicode(nullptr, 1, 15, 0));
    std::string huge;
    EXPECT_TRUE(reader.readDataUnicode(&huge, 2, 14, 0));
    EXPECT_EQ(huge, "x");
    int32_t size = 0;
    ASSERT_TRUE(reader.getDataSize(size, 2, 14));
    EXPECT_EQ(size, 4);
    EXPECT_FALSE(reader.readDataUnicode(&huge, 3, 14, 0));
}

TEST(KVMPPVarDataReader, CountBeyondTheStreamStopsAtTheEndWithOneError) {
    ByteWriter data;
    data.u32(2).u16(7).u32(2).u16(8);
    StreamFile file = varFile(varMeta({{1, 1, 0}, {2, 1, 6}, {3, 1, 600}}, 0x7FFFFFFF), data.data());
    TestVarDataReader reader(file, 14);
    LogCapture log;
    ASSERT_TRUE(reader.open());
    EXPECT_THAT(reader.uidArray(), ElementsAre(1, 2));
    // One error for the block behind the data's end and one for the first missing meta item.
    EXPECT_EQ(log.lines().size(), 2u);
}

TEST(KVMPPVarDataReader, WrongMagicCountZeroAndUnknownVersion) {
    auto meta = varMeta({{1, 1, 0}});
    meta[0] = 0;
    StreamFile wrongMagic = varFile(meta, ByteWriter().u32(1).u8(1).data());
    LogCapture log;
    EXPECT_FALSE(TestVarDataReader(wrongMagic, 14).open());
    EXPECT_THAT(log.lines(), IsEmpty());

    StreamFile empty = varFile(varMeta({}), {});
    TestVarDataReader emptyReader(empty, 14);
    EXPECT_TRUE(emptyReader.open());
    EXPECT_THAT(emptyReader.uidArray(), IsEmpty());

    StreamFile file = varFile(varMeta({{1, 1, 0}}), ByteWriter().u32(1).u8(1).data());
    EXPECT_THROW(TestVarDataReader(file, 13).open(), TVException);
}

} // namespace
