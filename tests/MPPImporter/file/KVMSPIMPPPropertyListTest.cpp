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
#include <set>
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

    // Name, notes, baseline 0 start, duration and work, and the extended fields of baselines 1 to 10.
    for (const auto& [key, number] : std::vector<std::pair<int32_t, uint32_t>>{
             {239, 26}, {240, 159}, {115, 9}, {111, 7}, {396, 14}, {256, 178}}) {
        EXPECT_EQ(from14.propertyID(key), number) << "key " << key;
    }
    EXPECT_EQ(from14.propertyOffset(196), 106u) << "the start at application 14's offset";
    EXPECT_EQ(from14.taskTextCustomFields().front().propertyNumber, 29);
    EXPECT_EQ(from14.taskTextCustomFields().front().fieldName, "TASK_TEXT1");
    EXPECT_EQ(from14.mppVersion(), 9);
}

TEST(KVMSPIMPPPropertyListTest, GroupKeysCountFromOneAndUnknownVersionsHaveNoSizes) {
    const KVMSPIMPPPropertyList& list = KVMSPIMPP14PropertyList::shared();
    EXPECT_EQ(list.propertyID(118, 10), list.propertyID(128));
    EXPECT_EQ(list.propertyID(118, 1), list.propertyID(119));
    EXPECT_THROW((void)list.propertyID(118, 0), TVException);
    EXPECT_EQ(KVMSPIMPPPropertyList::taskMinExpectedSizeForAppVersion(13), 0);
    EXPECT_EQ(KVMSPIMPPPropertyList::taskMinExpectedSizeForAppVersion(16),
              KVMSPIMPP16PropertyList::shared().taskMinExpectedSize());
}

// Every custom field table of a kind names its fields PREFIX1 to PREFIXn in order, and no two fields
// of a kind share a property number, which would read one field's value as the other's.
TEST(KVMSPIMPPPropertyListTest, CustomFieldsAreNumberedInOrderAndNeverShareANumber) {
    using L = KVMSPIMPPPropertyList;
    const std::vector<std::pair<std::string, L::CustomFields (L::*)() const>> tables = {
        {"RESOURCE_COST", &L::resourceCostCustomFields},
        {"RESOURCE_DATE", &L::resourceDateCustomFields},
        {"RESOURCE_DURATION", &L::resourceDurationCustomFields},
        {"RESOURCE_FINISH", &L::resourceFinishCustomFields},
        {"RESOURCE_NUMBER", &L::resourceNumberCustomFields},
        {"RESOURCE_OUTLINECODE", &L::resourceOutlineCodeCustomFields},
        {"RESOURCE_START", &L::resourceStartCustomFields},
        {"RESOURCE_TEXT", &L::resourceTextCustomFields},
        {"TASK_COST", &L::taskCostCustomFields},
        {"TASK_DATE", &L::taskDateCustomFields},
        {"TASK_DURATION", &L::taskDurationCustomFields},
        {"TASK_FINISH", &L::taskFinishCustomFields},
        {"TASK_NUMBER", &L::taskNumberCustomFields},
        {"TASK_OUTLINECODE", &L::taskOutlineCodeCustomFields},
        {"TASK_START", &L::taskStartCustomFields},
        {"TASK_TEXT", &L::taskTextCustomFields},
    };
    for (const KVMSPIMPPPropertyList* list : allLists()) {
        std::map<std::string, std::set<int64_t>> numbersOfKind;
        for (const auto& [prefix, table] : tables) {
            const auto fields = (list->*table)();
            EXPECT_GE(fields.size(), 10u) << prefix;
            std::set<int64_t>& numbers = numbersOfKind[prefix.substr(0, prefix.find('_'))];
            for (size_t i = 0; i < fields.size(); ++i) {
                EXPECT_EQ(fields[i].fieldName, prefix + std::to_string(i + 1));
                EXPECT_TRUE(numbers.insert(fields[i].propertyNumber).second)
                    << "version " << list->mppVersion() << ": " << fields[i].fieldName;
            }
        }
    }
}

TEST(KVMSPIMPPPropertyListTest, DowngradedCopiesOfApplications15And16) {
    // Their resource items are cut to 172 bytes.
    EXPECT_EQ(listOfVersion(12).resourceMinItemSizeForAppVersion(15), 172);
    EXPECT_EQ(listOfVersion(9).resourceMinItemSizeForAppVersion(14), 188);
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

} // namespace
