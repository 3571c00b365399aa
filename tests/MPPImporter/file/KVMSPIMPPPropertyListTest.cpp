#include "MPPCommon/support/TVException.h"
#include "MPPImporter/file/KVMSPIMPP12PropertyList.h"
#include "MPPImporter/file/KVMSPIMPP14PropertyList.h"
#include "MPPImporter/file/KVMSPIMPP15PropertyList.h"
#include "MPPImporter/file/KVMSPIMPP16PropertyList.h"
#include "MPPImporter/file/KVMSPIMPP9PropertyList.h"

#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

// The tables below are written down from the format description in its own compact form (runs with a
// step, "-" for a missing key) and expanded here, so that a slip in the library's tables shows up.
constexpr int64_t kNo = -1;

const std::vector<const KVMSPIMPPPropertyList*>& allLists() {
    static const std::vector<const KVMSPIMPPPropertyList*> lists = {
        &KVMSPIMPP9PropertyList::shared(), &KVMSPIMPP12PropertyList::shared(),
        &KVMSPIMPP14PropertyList::shared(), &KVMSPIMPP15PropertyList::shared(),
        &KVMSPIMPP16PropertyList::shared()};
    return lists;
}

const KVMSPIMPPPropertyList& listOfVersion(int32_t version) {
    for (const KVMSPIMPPPropertyList* list : allLists()) {
        if (list->mppVersion() == version) {
            return *list;
        }
    }
    throw std::invalid_argument("no list of version " + std::to_string(version));
}

using Column = std::vector<int64_t>;

// A table row: its first key and, per version 9, 12, 14, 15, 16, the values of its keys in order.
struct Row {
    int32_t firstKey;
    std::array<Column, 5> columns;
};

Row single(int32_t key, std::array<int64_t, 5> values) {
    Row row{key, {}};
    for (size_t i = 0; i < 5; ++i) {
        row.columns[i] = {values[i]};
    }
    return row;
}

Column run(int64_t first, int64_t step, int count = 10) {
    Column column;
    for (int i = 0; i < count; ++i) {
        column.push_back(first + step * i);
    }
    return column;
}

Column none(int count = 10) {
    return Column(static_cast<size_t>(count), kNo);
}

Row sameFrom12(int32_t firstKey, const Column& from12) {
    return {firstKey, {none(), from12, from12, from12, from12}};
}

using Expected = std::map<int32_t, uint32_t>;

Expected expand(const std::vector<Row>& rows, size_t column) {
    Expected expected;
    for (const Row& row : rows) {
        const Column& values = row.columns[column];
        for (size_t i = 0; i < values.size(); ++i) {
            if (values[i] != kNo) {
                expected[row.firstKey + static_cast<int32_t>(i)] = static_cast<uint32_t>(values[i]);
            }
        }
    }
    return expected;
}

const std::vector<Row>& propertyIDRows() {
    static const std::vector<Row> rows = {
        single(0, {9, 50, 50, 50, 50}),
        single(2, {7, 49, 49, 49, 49}),
        single(22, {3, 8, 8, 8, 8}),
        single(23, {1, 1, 1, 1, 1}),
        single(31, {1, 22, 22, 22, 22}),
        single(32, {kNo, 8, 8, 8, 8}),
        single(33, {kNo, 23, 23, 23, 23}),
        single(34, {kNo, 22, 22, 22, 22}),
        single(35, {0x24013BB, 0x24013BB, 0x24013BB, 0x24013BB, 0x24013BB}),
        single(36, {0x2400012, 0x2400012, 0x2400012, 0x2400012, 0x2400012}),
        single(37, {0x2400011, 0x2400011, 0x2400011, 0x2400011, 0x2400011}),
        single(38, {0x2400010, 0x2400010, 0x2400010, 0x2400010, 0x2400010}),
        single(39, {0x240138F, 0x240138F, 0x240138F, 0x240138F, 0x240138F}),
        single(40, {0x2401388, 0x2401388, 0x2401388, 0x2401388, 0x2401388}),
        single(41, {0x240000E, 0x240000E, 0x240000E, 0x240000E, 0x240000E}),
        single(42, {0x2400015, 0x2400015, 0x2400015, 0x2400015, 0x2400015}),
        single(43, {0x240001D, 0x240001D, 0x240001D, 0x240001D, 0x240001D}),
        single(44, {0x240001E, 0x240001E, 0x240001E, 0x240001E, 0x240001E}),
        single(45, {0x2400003, 0x2400003, 0x2400003, 0x2400003, 0x2400003}),
        single(46, {0x2400002, 0x2400002, 0x2400002, 0x2400002, 0x2400002}),
        single(47, {0x2400004, 0x2400004, 0x2400004, 0x2400004, 0x2400004}),
        single(48, {0x2400025, 0x2400025, 0x2400025, 0x2400025, 0x2400025}),
        single(49, {0x2400016, 0x2400016, 0x2400016, 0x2400016, 0x2400016}),
        single(63, {kNo, kNo, 276, 276, 276}),
        {65, {run(145, 4), run(343, 10), run(343, 10), run(343, 10), run(343, 10)}},
        {77, {run(144, 4), run(342, 10), run(342, 10), run(342, 10), run(342, 10)}},
        single(88, {kNo, 68, 68, 68, 68}),
        sameFrom12(90, run(350, 10)),
        single(101, {6, 35, 35, 35, 35}),
        single(102, {1, 1, 1, 1, 1}),
        single(103, {124, 20, 20, 20, 20}),
        single(109, {kNo, kNo, 6, 6, 6}),
        single(111, {kNo, kNo, 27, 27, 27}),
        single(113, {kNo, kNo, 44, 44, 44}),
        single(115, {kNo, kNo, 43, 43, 43}),
        sameFrom12(119, {484, 495, 506, 517, 528, 546, 557, 568, 579, 590}),
        sameFrom12(131, {487, 498, 509, 520, 531, 549, 560, 571, 582, 593}),
        sameFrom12(143, {483, 494, 505, 516, 527, 545, 556, 567, 578, 589}),
        sameFrom12(155, {482, 493, 504, 515, 526, 544, 555, 566, 577, 588}),
        sameFrom12(167, {485, 496, 507, 518, 529, 547, 558, 569, 580, 591}),
        single(193, {kNo, kNo, 1287, 1287, 1287}),
        single(212, {kNo, kNo, 1286, 1286, 1286}),
        single(239, {11, 14, 14, 14, 14}),
        single(240, {144, 15, 15, 15, 15}),
        single(247, {kNo, kNo, kNo, 370, 370}),
        single(248, {kNo, kNo, kNo, 369, 369}),
        single(250, {kNo, kNo, 1285, 1285, 1285}),
        single(254, {kNo, 22, 22, 22, 22}),
        single(255, {1, 22, 22, 22, 22}),
    };
    return rows;
}

const std::vector<Row>& propertyOffsetRows() {
    static const Column flags9 = {37, 37, 37, 38, 38, 38, 38, 38, 38, 38,
                                  38, 39, 39, 39, 39, 39, 39, 39, 39, 40};
    static const Column flags14 = {35, 35, 36, 36, 36, 36, 36, 36, 36, 36,
                                   37, 37, 37, 37, 37, 37, 37, 37, 38, 38};
    static const Column presence15 = {77, 78, 79, 80, 81, 82, 83, 84, 84, 85, 86};
    static const std::vector<Row> rows = {
        single(1, {16, 16, 16, 56, 56}),
        single(3, {8, 8, 8, 8, 8}),
        single(4, {12, 12, 12, 52, 52}),
        single(5, {4, 4, 4, 4, 4}),
        single(6, {0, 0, 0, 0, 0}),
        single(7, {54, 54, 46, 12, 12}),
        single(8, {62, 62, 70, 20, 20}),
        single(9, {70, 70, 62, 28, 28}),
        single(10, {86, 86, 78, 44, 44}),
        single(11, {kNo, kNo, 86, 68, 68}),
        single(12, {kNo, kNo, kNo, 94, 94}),
        single(13, {4, 4, 4, 0, 0}),
        single(14, {64, 92, 92, 92, 92}),
        single(15, {kNo, 88, 88, 88, 88}),
        single(16, {kNo, 4, 4, 4, 4}),
        single(17, {6, 14, 14, 14, 14}),
        single(18, {12, 20, 20, 20, 20}),
        single(19, {24, 32, 32, 32, 32}),
        single(21, {420, 420, 420, 420, 420}),
        single(24, {8, 8, 8, 4, 4}),
        single(25, {0, 0, 0, 8, 8}),
        single(26, {4, 4, 4, 4, 4}),
        single(27, {12, 12, 12, 12, 12}),
        single(28, {8, 8, 8, 8, 8}),
        single(29, {14, 14, 14, 18, 18}),
        single(30, {16, 16, 16, 14, 14}),
        single(50, {148, 148, 148, 40, 40}),
        single(51, {68, 68, 68, 48, 48}),
        single(52, {140, 140, 140, 40, 40}),
        single(53, {84, 84, 84, 72, 72}),
        single(54, {4, 4, 4, 0, 0}),
        single(55, {44, 44, 44, 8, 8}),
        single(56, {28, 28, 28, 16, 16}),
        single(57, {14, 14, 14, 170, 170}),
        single(58, {kNo, 8, 8, 8, 8}),
        single(59, {0, 0, 0, 4, 4}),
        single(60, {52, 52, 52, 48, 48}),
        single(61, {kNo, kNo, 20, 158, 158}),
        single(62, {kNo, kNo, 24, 162, 162}),
        single(104, {kNo, kNo, kNo, 32, 32}),
        single(105, {216, 216, 166, 40, 40}),
        single(106, {kNo, kNo, kNo, 56, 56}),
        // Application 14's task items hold the actual work, the start and the early dates elsewhere
        // than formats 9 and 12 do: read from its files.
        single(107, {184, 184, 184, 16, 16}),
        single(108, {kNo, kNo, kNo, 24, 24}),
        single(110, {232, 232, kNo, kNo, kNo}),
        single(112, {74, 74, kNo, kNo, kNo}),
        single(114, {108, 108, kNo, kNo, kNo}),
        single(116, {104, 104, kNo, kNo, kNo}),
        single(117, {176, 176, 176, kNo, kNo}),
        {178, {none(11), none(11), {76, 77, 78, 79, 79, 80, 81, 82, 83, 84, kNo}, presence15, presence15}},
        single(189, {112, 112, 80, 66, 66}),
        single(190, {80, 80, 56, 64, 64}),
        single(191, {200, 200, 150, kNo, kNo}),
        single(192, {60, 60, 42, 84, 84}),
        single(194, {8, 8, 68, 108, 108}),
        single(195, {88, 88, 114, 104, 104}),
        single(196, {88, 88, 64, 104, 104}),
        single(197, {8, 8, 8, 108, 108}),
        single(198, {12, 12, 12, 112, 112}),
        single(199, {152, 152, 110, 116, 116}),
        single(200, {kNo, kNo, kNo, 96, 96}),
        single(201, {kNo, kNo, kNo, 100, 100}),
        single(202, {kNo, kNo, kNo, 120, 120}),
        single(203, {kNo, kNo, kNo, 124, 124}),
        single(204, {kNo, kNo, kNo, 96, 96}),
        single(205, {kNo, kNo, kNo, 100, 100}),
        single(206, {11, 11, 11, 13, 13}),
        single(207, {kNo, kNo, kNo, 8, 8}),
        single(208, {kNo, kNo, kNo, 9, 9}),
        single(209, {kNo, kNo, 8, 10, 10}),
        single(210, {64, 64, 46, 164, 164}),
        single(211, {12, 12, 12, kNo, kNo}),
        single(213, {208, 208, 158, 48, 48}),
        single(214, {128, 128, 96, 166, 166}),
        {216, {flags9, flags9, flags14, flags14, flags14}},
        single(237, {4, 4, 4, 0, 0}),
        single(238, {kNo, kNo, 8, 8, 8}),
        single(241, {kNo, kNo, kNo, 169, 169}),
        single(242, {kNo, kNo, kNo, 170, 170}),
        single(243, {40, 40, 40, 172, 172}),
        single(244, {36, 36, 36, 142, 142}),
        single(245, {122, 122, 90, 92, 92}),
        single(246, {124, 124, 92, 94, 94}),
        single(247, {140, 140, 140, kNo, kNo}),
        single(248, {136, 136, 136, kNo, kNo}),
        single(249, {120, 120, 88, 78, 78}),
        single(251, {126, 126, 94, 140, 140}),
        single(252, {0, 0, 0, 4, 4}),
        single(253, {168, 168, 126, 8, 8}),
    };
    return rows;
}

// Compares every key a table could hold, so that extra keys fail as well as wrong ones.
void expectTable(const Expected& expected, const KVMSPIMPPPropertyList& list, bool offsets) {
    for (int32_t key = -1; key <= 300; ++key) {
        const std::optional<uint32_t> actual = offsets ? list.propertyOffset(key) : list.propertyID(key);
        const auto found = expected.find(key);
        const std::optional<uint32_t> wanted =
            found == expected.end() ? std::nullopt : std::optional<uint32_t>(found->second);
        EXPECT_EQ(actual, wanted) << "version " << list.mppVersion() << (offsets ? " offset" : " id")
                                  << " key " << key;
    }
    EXPECT_EQ((offsets ? list.propertyOffsets() : list.propertyIDs()).size(), expected.size());
}

TEST(KVMSPIMPPPropertyListTest, PropertyNumbersAndOffsetsOfEveryVersion) {
    for (size_t column = 0; column < allLists().size(); ++column) {
        expectTable(expand(propertyIDRows(), column), *allLists()[column], false);
        expectTable(expand(propertyOffsetRows(), column), *allLists()[column], true);
    }
}

TEST(KVMSPIMPPPropertyListTest, GroupKeysCountFromOne) {
    const KVMSPIMPPPropertyList& list = KVMSPIMPP14PropertyList::shared();
    EXPECT_EQ(list.propertyID(118, 10), list.propertyID(128));
    EXPECT_EQ(list.propertyID(118, 1), std::optional<uint32_t>(484));
    EXPECT_THROW((void)list.propertyID(118, 0), TVException);
}

TEST(KVMSPIMPPPropertyListTest, VersionsNamesAndSizes) {
    const std::vector<int32_t> versions = {9, 12, 14, 15, 16};
    const std::vector<std::string> props = {"Props9", "Props12", "Props14", "Props14", "Props14"};
    const std::vector<std::string> data = {"   19", "   112", "   114", "   114", "   114"};
    const std::vector<std::string> app = {"   29", "   212", "   214", "   214", "   214"};
    const std::vector<int32_t> resourceMin = {188, 188, 188, 172, 172};
    const std::vector<int32_t> taskMin = {240, 240, 206, 194, 194};
    const std::vector<int32_t> weekDayOffset = {4, 0, 0, 0, 0};
    for (size_t i = 0; i < versions.size(); ++i) {
        const KVMSPIMPPPropertyList& list = *allLists()[i];
        EXPECT_EQ(list.mppVersion(), versions[i]);
        EXPECT_EQ(list.ole2PropsName(), props[i]);
        EXPECT_EQ(list.ole2DataDirectoryName(), data[i]);
        EXPECT_EQ(list.ole2AppDirectoryName(), app[i]);
        EXPECT_EQ(list.ole2CompObjName(), "\001CompObj");
        EXPECT_EQ(list.ole2PSummaryInfoName(), "\005SummaryInformation");
        EXPECT_EQ(list.ole2DocSummaryInfoName(), "\005DocumentSummaryInformation");
        EXPECT_EQ(list.resourceMinExpectedSize(), resourceMin[i]);
        EXPECT_EQ(list.resourceFixedDataMinItemSize(), resourceMin[i]);
        EXPECT_EQ(list.taskMinExpectedSize(), taskMin[i]);
        EXPECT_EQ(list.taskFixedDataMinItemSize(), taskMin[i]);
        EXPECT_EQ(list.calendarFixedDataMinItemSize(), 12);
        EXPECT_EQ(list.calendarWeekDayWorkingTimesOffset(), weekDayOffset[i]);
    }
    EXPECT_EQ(KVMSPIMPPPropertyList::taskMinExpectedSizeForAppVersion(13), 0);
    EXPECT_EQ(KVMSPIMPPPropertyList::taskMinExpectedSizeForAppVersion(16), 194);
    EXPECT_EQ(KVMSPIMPPPropertyList::taskMinExpectedSizeForAppVersion(9), 240);
}

TEST(KVMSPIMPPPropertyListTest, TaskFlagMasks) {
    const std::array<uint8_t, 20> older = {0x20, 0x40, 0x80, 1, 2, 4,    8,    0x10, 0x20, 0x40,
                                           0x80, 1,    2,    4, 8, 0x10, 0x20, 0x40, 0x80, 1};
    const std::array<uint8_t, 20> newer = {0x40, 0x80, 1, 2, 4,    8,    0x10, 0x20, 0x40, 0x80,
                                           1,    2,    4, 8, 0x10, 0x20, 0x40, 0x80, 1,    2};
    for (size_t i = 0; i < allLists().size(); ++i) {
        EXPECT_EQ(allLists()[i]->taskFlagMask(), i < 2 ? older : newer) << allLists()[i]->mppVersion();
    }
}

// One row of the stream layout table; magic numbers follow from the kind and version.
struct StreamRow {
    std::vector<int32_t> versions;
    bool props, fixed;
    uint32_t item, min, max;
    bool fixed2;
    uint32_t item2, min2, max2;
    uint64_t first;
    bool var;
    uint32_t varItem;
};

MPPDataStreamParams expectedParams(const StreamRow& row, bool outlineCodeBefore15) {
    const uint32_t magic = 0xFADFADBA;
    const uint32_t fixedMagic = outlineCodeBefore15 ? 0 : magic;
    return {row.props,
            row.fixed,
            {fixedMagic, row.item, row.min, row.max},
            row.fixed2,
            {fixedMagic, row.item2, row.min2, row.max2},
            row.first,
            row.var,
            {magic, row.varItem}};
}

TEST(KVMSPIMPPPropertyListTest, StreamLayoutsOfEveryKind) {
    using Getter = MPPDataStreamParams (KVMSPIMPPPropertyList::*)() const;
    const std::vector<std::pair<Getter, std::vector<StreamRow>>> kinds = {
        {&KVMSPIMPPPropertyList::assignmentDataStreamParams,
         {{{9}, 0, 1, 34, 0, 0, 0, 0, 0, 0, 0, 1, 8},
          {{12, 14}, 0, 1, 34, 0, 0, 0, 0, 0, 0, 0, 1, 12},
          {{15, 16}, 1, 1, 34, 110, 110, 1, 53, 48, 48, 0, 1, 12}}},
        {&KVMSPIMPPPropertyList::calendarDataStreamParams,
         {{{9}, 0, 1, 10, 12, 12, 0, 0, 0, 0, 0, 1, 8},
          {{12, 14}, 0, 1, 10, 12, 12, 0, 0, 0, 0, 0, 1, 12},
          {{15, 16}, 0, 1, 10, 12, 12, 1, 9, 48, 48, 0, 1, 12}}},
        {&KVMSPIMPPPropertyList::constraintDataStreamParams,
         {{{9}, 0, 1, 10, 20, 20, 0, 0, 0, 0, 0, 0, 8},
          {{12, 14, 15, 16}, 0, 1, 10, 20, 20, 0, 0, 0, 0, 0, 0, 12}}},
        {&KVMSPIMPPPropertyList::outlcodeDataStreamParams,
         {{{9}, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 8},
          {{12, 14}, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 12},
          {{15, 16}, 0, 1, 10, 0, 0, 0, 0, 0, 0, 0, 1, 12}}},
        {&KVMSPIMPPPropertyList::resourceDataStreamParams,
         {{{9}, 1, 1, 37, 188, 0, 0, 0, 0, 0, 3, 1, 8},
          {{12}, 1, 1, 37, 188, 0, 1, 49, 0, 0, 3, 1, 12},
          {{14}, 1, 1, 37, 188, 0, 1, 50, 0, 0, 3, 1, 12},
          {{15, 16}, 1, 1, 37, 172, 0, 1, 50, 40, 40, 3, 1, 12}}},
        {&KVMSPIMPPPropertyList::taskDataStreamParams,
         {{{9}, 1, 1, 47, 240, 768, 0, 0, 0, 0, 3, 1, 8},
          {{12}, 1, 1, 47, 240, 768, 1, 86, 0, 0, 3, 1, 12},
          {{14}, 1, 1, 47, 206, 768, 1, 92, 0, 0, 3, 1, 12},
          {{15, 16}, 1, 1, 47, 194, 768, 1, 93, 0, 0, 3, 1, 12}}},
    };
    for (size_t kind = 0; kind < kinds.size(); ++kind) {
        int rowsSeen = 0;
        for (const StreamRow& row : kinds[kind].second) {
            for (int32_t version : row.versions) {
                const KVMSPIMPPPropertyList& list = listOfVersion(version);
                const bool outlineCodeBefore15 = kind == 3 && version < 15;
                EXPECT_EQ((list.*kinds[kind].first)(), expectedParams(row, outlineCodeBefore15))
                    << "kind " << kind << " version " << version;
                ++rowsSeen;
            }
        }
        EXPECT_EQ(rowsSeen, 5);
    }
}

// "fields a to b: numbers c to d by step", as the format description writes a run of custom fields.
struct FieldRun {
    int firstField, lastField;
    int64_t firstNumber, lastNumber, step;
};

void expectCustomFields(std::span<const MPPCustomFieldRecord> actual, const std::string& prefix, int rows,
                        const std::vector<FieldRun>& runs) {
    ASSERT_EQ(actual.size(), static_cast<size_t>(rows)) << prefix;
    for (const FieldRun& run : runs) {
        ASSERT_EQ(run.lastNumber - run.firstNumber, (run.lastField - run.firstField) * run.step) << prefix;
        for (int field = run.firstField; field <= run.lastField; ++field) {
            const MPPCustomFieldRecord& record = actual[static_cast<size_t>(field - 1)];
            EXPECT_EQ(record.fieldName, prefix + std::to_string(field));
            EXPECT_EQ(record.propertyNumber, run.firstNumber + (field - run.firstField) * run.step)
                << record.fieldName;
        }
    }
}

TEST(KVMSPIMPPPropertyListTest, DowngradedCopiesOfApplications15And16) {
    constexpr int32_t kCostPerUse = 53, kMaxUnits = 55;
    // Their resource items are cut to 172 bytes, 8 of them in front of the cost per use.
    EXPECT_EQ(listOfVersion(12).resourceMinItemSizeForAppVersion(15), 172);
    EXPECT_EQ(listOfVersion(9).resourceMinItemSizeForAppVersion(14), 188);
    EXPECT_EQ(listOfVersion(12).propertyOffsetForAppVersion(kCostPerUse, 15), 76u);
    EXPECT_EQ(listOfVersion(9).propertyOffsetForAppVersion(kCostPerUse, 16), 76u);
    EXPECT_EQ(listOfVersion(12).propertyOffsetForAppVersion(kCostPerUse, 14), 84u);
    EXPECT_EQ(listOfVersion(15).propertyOffsetForAppVersion(kCostPerUse, 15), 72u);
    EXPECT_EQ(listOfVersion(12).propertyOffsetForAppVersion(kMaxUnits, 15), 44u);
    // Format 9 copies number the resources' variable data 2 higher; format 12 copies don't.
    EXPECT_EQ(listOfVersion(9).resourceVarDataNumberingShiftForAppVersion(15), 2);
    EXPECT_EQ(listOfVersion(9).resourceVarDataNumberingShiftForAppVersion(14), 0);
    EXPECT_EQ(listOfVersion(12).resourceVarDataNumberingShiftForAppVersion(16), 0);
}

// A custom field that shares its number with a resource's name, notes, mail address, availability or
// baseline values would read that value as a field.
TEST(KVMSPIMPPPropertyListTest, ResourceCustomFieldNumbersAreDistinctFromResourceProperties) {
    constexpr int32_t kAvailability = 63, kEmailAddress = 101, kName = 102, kNotes = 103;
    constexpr int32_t kBaselineCostGroup = 64, kBaselineWorkGroup = 76;
    for (const KVMSPIMPPPropertyList* list : allLists()) {
        std::map<int64_t, std::string> owners;
        const auto claim = [&](int64_t number, const std::string& owner) {
            const auto [found, inserted] = owners.emplace(number, owner);
            EXPECT_TRUE(inserted) << "version " << list->mppVersion() << ": " << owner << " and "
                                  << found->second << " share " << number;
        };
        for (const int32_t key : {kAvailability, kEmailAddress, kName, kNotes}) {
            if (const auto number = list->propertyID(key)) {
                claim(*number, "key " + std::to_string(key));
            }
        }
        for (int32_t index = 1; index <= 10; ++index) {
            for (const int32_t group : {kBaselineCostGroup, kBaselineWorkGroup}) {
                claim(*list->propertyID(group, index), "baseline key " + std::to_string(group + index));
            }
        }
        for (const auto& table : {list->resourceCostCustomFields(), list->resourceDateCustomFields(),
                                  list->resourceDurationCustomFields(), list->resourceFinishCustomFields(),
                                  list->resourceNumberCustomFields(), list->resourceOutlineCodeCustomFields(),
                                  list->resourceStartCustomFields(), list->resourceTextCustomFields()}) {
            for (const MPPCustomFieldRecord& record : table) {
                claim(record.propertyNumber, record.fieldName);
            }
        }
    }
}

TEST(KVMSPIMPPPropertyListTest, ResourceCustomFieldsFromVersion12On) {
    for (const KVMSPIMPPPropertyList* list : std::span(allLists()).subspan(1)) {
        expectCustomFields(list->resourceCostCustomFields(), "RESOURCE_COST", 10,
                           {{1, 3, 123, 125, 1}, {4, 10, 166, 172, 1}});
        expectCustomFields(list->resourceDateCustomFields(), "RESOURCE_DATE", 10, {{1, 10, 173, 182, 1}});
        expectCustomFields(list->resourceDurationCustomFields(), "RESOURCE_DURATION", 10,
                           {{1, 3, 117, 119, 1}, {4, 10, 183, 189, 1}});
        expectCustomFields(list->resourceFinishCustomFields(), "RESOURCE_FINISH", 10,
                           {{1, 5, 107, 111, 1}, {6, 10, 190, 194, 1}});
        expectCustomFields(list->resourceNumberCustomFields(), "RESOURCE_NUMBER", 20,
                           {{1, 5, 112, 116, 1}, {6, 20, 205, 219, 1}});
        expectCustomFields(list->resourceOutlineCodeCustomFields(), "RESOURCE_OUTLINECODE", 10,
                           {{1, 10, 279, 297, 2}});
        expectCustomFields(list->resourceStartCustomFields(), "RESOURCE_START", 10,
                           {{1, 5, 102, 106, 1}, {6, 10, 220, 224, 1}});
        expectCustomFields(list->resourceTextCustomFields(), "RESOURCE_TEXT", 30,
                           {{1, 2, 8, 9, 1}, {3, 5, 30, 32, 1}, {6, 10, 97, 101, 1}, {11, 30, 225, 244, 1}});
    }
}

TEST(KVMSPIMPPPropertyListTest, TaskCustomFieldsOfVersion9) {
    const KVMSPIMPPPropertyList& list = KVMSPIMPP9PropertyList::shared();
    expectCustomFields(list.taskCostCustomFields(), "TASK_COST", 10, {{1, 10, 134, 143, 1}});
    expectCustomFields(list.taskDateCustomFields(), "TASK_DATE", 10, {{1, 10, 80, 89, 1}});
    expectCustomFields(list.taskDurationCustomFields(), "TASK_DURATION", 10, {{1, 10, 55, 73, 2}});
    expectCustomFields(list.taskFinishCustomFields(), "TASK_FINISH", 10, {{1, 10, 25, 43, 2}});
    expectCustomFields(list.taskNumberCustomFields(), "TASK_NUMBER", 20,
                       {{1, 10, 45, 54, 1}, {11, 20, 110, 119, 1}});
    expectCustomFields(list.taskOutlineCodeCustomFields(), "TASK_OUTLINECODE", 10, {{1, 10, 123, 132, 1}});
    expectCustomFields(list.taskStartCustomFields(), "TASK_START", 10, {{1, 10, 24, 42, 2}});
    expectCustomFields(list.taskTextCustomFields(), "TASK_TEXT", 30,
                       {{1, 10, 14, 23, 1}, {11, 30, 90, 109, 1}});
}

TEST(KVMSPIMPPPropertyListTest, TaskCustomFieldsFromVersion12On) {
    for (const KVMSPIMPPPropertyList* list : std::span(allLists()).subspan(1)) {
        expectCustomFields(list->taskCostCustomFields(), "TASK_COST", 10,
                           {{1, 3, 106, 108, 1}, {4, 10, 258, 264, 1}});
        expectCustomFields(list->taskDateCustomFields(), "TASK_DATE", 10, {{1, 10, 265, 274, 1}});
        expectCustomFields(list->taskDurationCustomFields(), "TASK_DURATION", 10,
                           {{1, 3, 103, 105, 1}, {4, 10, 275, 281, 1}});
        expectCustomFields(list->taskFinishCustomFields(), "TASK_FINISH", 10,
                           {{1, 5, 53, 65, 3}, {6, 10, 283, 291, 2}});
        expectCustomFields(list->taskNumberCustomFields(), "TASK_NUMBER", 20,
                           {{1, 5, 87, 91, 1}, {6, 20, 302, 316, 1}});
        expectCustomFields(list->taskOutlineCodeCustomFields(), "TASK_OUTLINECODE", 10,
                           {{1, 10, 417, 435, 2}});
        expectCustomFields(list->taskStartCustomFields(), "TASK_START", 10,
                           {{1, 5, 52, 64, 3}, {6, 10, 282, 290, 2}});
        expectCustomFields(list->taskTextCustomFields(), "TASK_TEXT", 30,
                           {{1, 6, 51, 66, 3}, {7, 10, 67, 70, 1}, {11, 30, 317, 336, 1}});
    }
}

} // namespace
