#include "MPPImporter/file/KVMSPIMPPDataDirectoryReader.h"

#include "MPPCommon/storage/SSLRoot.h"
#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/support/TVException.h"
#include "MPPFixtureFile.h"
#include "MPPImporter/file/KVMPPFixedDataReader.h"
#include "MPPImporter/file/KVMPPVarDataReader.h"
#include "MPPImporter/file/KVMSPIMPP14PropertyList.h"
#include "MPPImporter/file/KVMSPIMPP15PropertyList.h"
#include "MPPImporter/file/KVMSPIMPP16PropertyList.h"
#include "MPPImporter/file/KVMSPIMPPReader.h"
#include "StreamFileFixture.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <optional>
#include <utility>
#include <vector>

namespace {

constexpr uint32_t kMagic = 0xFADFADBA;

// A fixed meta stream: its header with the count of items in use (all unless given), then one item per
// (first field, data offset), padded to the size.
MPPFixtureFile::Bytes metaStream(uint32_t itemSize, const std::vector<std::pair<uint32_t, uint32_t>>& items,
                                 std::optional<uint32_t> inUse = std::nullopt) {
    ByteWriter bytes;
    bytes.u32(kMagic).u32(4).u32(inUse.value_or(static_cast<uint32_t>(items.size()))).u32(0);
    for (const auto& [firstField, dataOffset] : items) {
        bytes.u32(firstField).u32(dataOffset).zeros(itemSize - 8);
    }
    return bytes.data();
}

// The payload of a task storage's custom field names: the two sizes, the count 3, and entries for the
// fields of property 51, named "Room", 54, whose name lies outside, and 57, whose name is empty.
MPPFixtureFile::Bytes fieldNames() {
    return ByteWriter()
        .u32(44)
        .u32(44)
        .u32(3)
        .u16(51)
        .u16(0x0B40)
        .u32(32)
        .u16(54)
        .u16(0x0B40)
        .u32(0xFFFF)
        .u16(57)
        .u16(0x0B40)
        .u32(42)
        .bytes({'R', 0, 'o', 0, 'o', 0, 'm', 0, 0, 0, 0, 0})
        .data();
}

// A file of format 14 whose data directory holds a calendar and a task storage: three calendars
// (UIDs 1, 5 and 0, which is none) and, behind the three leading items that are no objects, two
// tasks of 16 bytes (UID then object id), with Fixed2 and variable streams beside them.
MPPFixtureFile planFile() {
    MPPFixtureFile file;
    file.addStream("   114/TBkndCal/FixedMeta", metaStream(10, {{0, 0}, {0, 12}, {0, 24}}));
    file.addStream("   114/TBkndCal/FixedData",
                   ByteWriter().u32(1).zeros(8).u32(5).zeros(8).u32(0).zeros(8).data());
    file.addStream("   114/TBkndTask/FixedMeta",
                   metaStream(47, {{0, 0}, {0, 0}, {0, 0}, {0x20, 0}, {0x20, 16}}));
    file.addStream("   114/TBkndTask/FixedData",
                   ByteWriter().u32(10).u32(1).zeros(8).u32(12).u32(2).zeros(8).data());
    file.addStream("   114/TBkndTask/Fixed2Meta", metaStream(92, {{0, 0}, {0, 0}, {0, 0}, {0, 0}, {0, 4}}));
    file.addStream("   114/TBkndTask/Fixed2Data", ByteWriter().zeros(8).data());
    file.addStream("   114/TBkndTask/VarMeta", ByteWriter().u32(kMagic).zeros(20).data());
    file.addStream("   114/TBkndTask/Var2Data", {});
    file.addStream("   114/TBkndTask/Props", ByteWriter()
                                                 .u32(0)
                                                 .u32(0)
                                                 .u32(0x10101)
                                                 .u16(1)
                                                 .u16(0)
                                                 .u32(static_cast<uint32_t>(fieldNames().size()))
                                                 .u32(0x4400001)
                                                 .u32(0)
                                                 .bytes(fieldNames())
                                                 .data());
    file.addStorage("   114/TBkndOutlCode");
    return file;
}

class KVMSPIMPPDataDirectoryReaderTest : public ::testing::Test {
protected:
    KVMSPIMPPDataDirectoryReaderTest()
        : m_root(planFile().write(m_dir.path(), "plan.mpp").string()),
          m_reader(m_root.rootStorage(), &KVMSPIMPP14PropertyList::shared(), 14),
          m_project(m_reader.rootStorage().childStorageWithName("   114"), "   114", &m_reader) {}

    KVMSPIMPPDataDirectoryReader readerOf(const std::string& name) {
        return KVMSPIMPPDataDirectoryReader(m_project.directory().childStorageWithName(name), name,
                                            &m_project);
    }

    testsupport::TempDir m_dir;
    SSLRoot m_root;
    KVMSPIMPPReader m_reader;
    KVMSPOLE2DirectoryReader m_project;
};

std::vector<int32_t> sorted(std::vector<int32_t> values) {
    std::sort(values.begin(), values.end());
    return values;
}

TEST_F(KVMSPIMPPDataDirectoryReaderTest, CalendarUIDsComeFromTheCalendarUIDReader) {
    KVMSPIMPPDataDirectoryReader calendars = readerOf("TBkndCal");
    ASSERT_NE(calendars.fixedDataReader(), nullptr);
    EXPECT_EQ(calendars.fixed2DataReader(), nullptr);
    EXPECT_EQ(calendars.varDataReader(), nullptr);
    EXPECT_EQ(sorted(calendars.uniqueIDs()), (std::vector<int32_t>{1, 5}));
    EXPECT_TRUE(calendars.isValidUID(5));
    EXPECT_FALSE(calendars.isValidUID(0));
    EXPECT_EQ(calendars.parentReader(), &m_project);
    EXPECT_EQ(calendars.version(), 14);
    EXPECT_EQ(&calendars.MPPPropertyList(), &KVMSPIMPP14PropertyList::shared());
}

TEST_F(KVMSPIMPPDataDirectoryReaderTest, TaskStorageOpensAllThreeStreamPairs) {
    KVMSPIMPPDataDirectoryReader tasks = readerOf("TBkndTask");
    ASSERT_NE(tasks.fixedDataReader(), nullptr);
    EXPECT_NE(tasks.fixed2DataReader(), nullptr);
    EXPECT_NE(tasks.varDataReader(), nullptr);
    EXPECT_EQ(sorted(tasks.uniqueIDs()), (std::vector<int32_t>{10, 12}));
    EXPECT_EQ(tasks.objectIDforUniqueID(12), 2);
    EXPECT_EQ(tasks.objectIDforUniqueID(11), -1);
}

// Only a field whose name the storage holds whole is named.
TEST_F(KVMSPIMPPDataDirectoryReaderTest, TaskStorageNamesItsCustomFields) {
    KVMSPIMPPDataDirectoryReader tasks = readerOf("TBkndTask");
    ASSERT_NE(tasks.fieldAlias(51), nullptr);
    EXPECT_EQ(*tasks.fieldAlias(51), "Room");
    EXPECT_EQ(tasks.fieldAlias(54), nullptr);
    EXPECT_EQ(tasks.fieldAlias(57), nullptr);
}

TEST_F(KVMSPIMPPDataDirectoryReaderTest, StorageWithoutStreamsOrOfUnknownKind) {
    KVMSPIMPPDataDirectoryReader outlineCodes = readerOf("TBkndOutlCode");
    EXPECT_EQ(outlineCodes.fixedDataReader(), nullptr);
    EXPECT_TRUE(outlineCodes.uniqueIDs().empty());
    EXPECT_FALSE(outlineCodes.isValidUID(1));
    EXPECT_EQ(outlineCodes.objectIDforUniqueID(1), -1);

    try {
        KVMSPIMPPDataDirectoryReader unknown(m_project.directory().childStorageWithName("TBkndOutlCode"),
                                             "TBkndFoo", &m_project);
        FAIL() << "no assertion";
    } catch (const TVException& exception) {
        EXPECT_EQ(exception.reason(), "Unexpected stream name 'TBkndFoo'.");
    }
}

// Application 16 writes Fixed2 meta items longer than the 93 bytes of its tables; the first table's
// count of items tells their length, as the Fixed2 table holds one item for each. Two tasks (UIDs 10
// and 12, object id first) behind three leading items, and a left-over item behind the five in use;
// each Fixed2 item marked at offset 80.
MPPFixtureFile application16TaskFile(uint32_t fixed2ItemSize) {
    constexpr uint32_t kItemsInUse = 5;
    ByteWriter fixed2Meta;
    fixed2Meta.u32(kMagic).u32(4).u32(kItemsInUse).u32(0);
    for (uint32_t index = 0; index <= kItemsInUse; ++index) {
        fixed2Meta.u32(0).u32(index < 4 ? 0 : 4).zeros(72).u8(static_cast<uint8_t>(0xB0 + index));
        fixed2Meta.zeros(fixed2ItemSize - 81);
    }
    MPPFixtureFile file;
    file.addStream("   114/TBkndTask/FixedMeta",
                   metaStream(47, {{0, 0}, {0, 0}, {0, 0}, {0x20, 0}, {0x20, 16}, {0x20, 16}}, kItemsInUse));
    file.addStream("   114/TBkndTask/FixedData",
                   ByteWriter().u32(1).u32(10).zeros(8).u32(2).u32(12).zeros(8).data());
    file.addStream("   114/TBkndTask/Fixed2Meta", fixed2Meta.data());
    file.addStream("   114/TBkndTask/Fixed2Data", ByteWriter().zeros(8).data());
    return file;
}

// The Fixed2 meta item size that a reader of `list` and `appVersion` takes for the file, and the
// marks it reads for the two tasks.
std::pair<int32_t, std::vector<uint8_t>>
fixed2ItemsOf(const MPPFixtureFile& file, const KVMSPIMPPPropertyList& list, int32_t appVersion) {
    testsupport::TempDir dir;
    SSLRoot root(file.write(dir.path(), "plan.mpp").string());
    KVMSPIMPPReader fileReader(root.rootStorage(), &list, appVersion);
    KVMSPOLE2DirectoryReader project(fileReader.rootStorage().childStorageWithName("   114"), "   114",
                                     &fileReader);
    KVMSPIMPPDataDirectoryReader tasks(project.directory().childStorageWithName("TBkndTask"), "TBkndTask",
                                       &project);
    KVMPPFixedDataReader* fixed2 = tasks.fixed2DataReader();
    EXPECT_NE(fixed2, nullptr);
    if (fixed2 == nullptr) {
        return {};
    }
    std::vector<uint8_t> marks;
    for (const int32_t uid : {10, 12}) {
        uint8_t mark = 0;
        EXPECT_TRUE(fixed2->readMetaUByte(mark, uid, 80)) << uid;
        marks.push_back(mark);
    }
    return {fixed2->metaStreamItemSize(), marks};
}

TEST(KVMSPIMPPDataDirectoryReaderFixed2, Application16MeasuresItsFixed2MetaItems) {
    const std::vector<uint8_t> marks = {0xB3, 0xB4};
    for (const uint32_t itemSize : {93u, 94u, 96u}) {
        EXPECT_EQ(fixed2ItemsOf(application16TaskFile(itemSize), KVMSPIMPP16PropertyList::shared(), 16),
                  std::make_pair(static_cast<int32_t>(itemSize), marks));
    }
    // Application 15 keeps the size of its tables.
    EXPECT_EQ(fixed2ItemsOf(application16TaskFile(93), KVMSPIMPP15PropertyList::shared(), 15).first, 93);
}

} // namespace
