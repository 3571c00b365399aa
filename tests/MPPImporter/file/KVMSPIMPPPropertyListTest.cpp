#include "MPPCommon/support/TVException.h"
#include "MPPImporter/file/KVMSPIClassFactory.h"
#include "MPPImporter/file/KVMSPIMPP12PropertyList.h"
#include "MPPImporter/file/KVMSPIMPP14PropertyList.h"
#include "MPPImporter/file/KVMSPIMPP15PropertyList.h"
#include "MPPImporter/file/KVMSPIMPP16PropertyList.h"
#include "MPPImporter/file/KVMSPIMPP9From14PropertyList.h"
#include "MPPImporter/file/KVMSPIMPP9PropertyList.h"

#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

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

// Application 14 saves some format 9 and 12 files with its own 206-byte task items; the numbers below
// are those of such files (mpp9task-from14.mpp, mpp9baseline-from14.mpp).
TEST(KVMSPIMPPPropertyListTest, TaskLayoutOfApplication14InOlderFormats) {
    const auto layout = [](int32_t format, int32_t app, int32_t summaryItemSize) {
        return &KVMSPIClassFactory::taskLayout(listOfVersion(format), app, summaryItemSize);
    };
    const KVMSPIMPPPropertyList& from14 = KVMSPIMPP9From14PropertyList::shared();
    EXPECT_EQ(layout(9, 14, 206), &from14);
    EXPECT_EQ(layout(12, 14, 206), &KVMSPIMPP14PropertyList::shared());
    EXPECT_EQ(layout(9, 14, 264), &listOfVersion(9)) << "the format's own items";
    EXPECT_EQ(layout(12, 12, 206), &listOfVersion(12)) << "a short item of the format's own application";
    EXPECT_EQ(layout(9, 15, 206), &listOfVersion(9));
    EXPECT_EQ(layout(14, 14, 206), &listOfVersion(14));
    EXPECT_EQ(layout(9, 14, 16), &listOfVersion(9)) << "too short for any task";

    // Name, notes, baseline 0 start and duration, and the extended fields of baselines 1 to 10.
    for (const auto& [key, number] :
         std::vector<std::pair<int32_t, uint32_t>>{{239, 26}, {240, 159}, {115, 9}, {111, 7}, {256, 178}}) {
        EXPECT_EQ(from14.propertyID(key), number) << "key " << key;
    }
    EXPECT_EQ(from14.propertyOffset(196), 106u) << "the start at application 14's offset";
    EXPECT_EQ(from14.taskTextCustomFields().front().propertyNumber, 29);
    EXPECT_EQ(from14.taskTextCustomFields().front().fieldName, "TASK_TEXT1");
    EXPECT_EQ(from14.mppVersion(), 9);
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

// From version 12 on, a custom field that shares its number with a resource's name, notes, mail
// address, availability or baseline values would read that value as a field. (Version 9 numbers the
// resource's own properties differently and shares the field table of the later versions.)
TEST(KVMSPIMPPPropertyListTest, ResourceCustomFieldNumbersAreDistinctFromResourceProperties) {
    constexpr int32_t kAvailability = 63, kEmailAddress = 101, kName = 102, kNotes = 103;
    constexpr int32_t kBaselineCostGroup = 64, kBaselineWorkGroup = 76;
    for (const KVMSPIMPPPropertyList* list : std::span(allLists()).subspan(1)) {
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

TEST(KVMSPIMPPPropertyListTest, ResourceCustomFieldsAreTheSameInEveryVersion) {
    for (const KVMSPIMPPPropertyList* list : allLists()) {
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
