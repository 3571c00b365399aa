#include "MPPImporter/Mapper/utilities/MSPExtendedAttributeDictionary.h"

#include "MPPCommon/date/DateTestSupport.h"
#include "MPPCommon/storage/SSLRoot.h"
#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/xml/KVMSPCXMLElement.h"
#include "MPPImporter/file/KVMSPIMPP14PropertyList.h"
#include "MPPImporter/file/KVMSPIMPPDataDirectoryReader.h"
#include "MPPImporter/file/KVMSPIMPPReader.h"
#include "MPPImporter/readers/KVMSPISingleExtendedAttribute.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>
#include <memory>

namespace {

using Attribute = KVMSPISingleExtendedAttribute;
using Dictionary = std::map<std::string, std::string>;

// An empty task storage of a format 14 file: the collection reader that extended attributes name as
// their data provider.
class ExtendedAttributeDictionaryTest : public ::testing::TestWithParam<const char*> {
protected:
    ExtendedAttributeDictionaryTest()
        : m_root(SSLRoot::forWritingToFile((m_dir.path() / "plan.mpp").string())),
          m_file(m_root->rootStorage(), &KVMSPIMPP14PropertyList::shared(), 14),
          m_tasks(m_file.rootStorage().createChildStorageWithName("TBkndTask"), "TBkndTask", &m_file) {}

    std::shared_ptr<KVMSPIXQuery> answer(std::unique_ptr<Attribute> attribute) {
        return std::shared_ptr<KVMSPIXQuery>(std::move(attribute));
    }

    SystemZoneScope m_zone{GetParam()};
    testsupport::TempDir m_dir;
    std::unique_ptr<SSLRoot> m_root;
    KVMSPIMPPReader m_file;
    KVMSPIMPPDataDirectoryReader m_tasks;
};

TEST_P(ExtendedAttributeDictionaryTest, DateFieldsBecomeThePlatformTextOfTheirWallClock) {
    // A file's date is its wall clock held as a UTC instant; the dictionary shows that wall clock,
    // labelled with the system zone's offset.
    const TVDate fileDate = utcInstant(2026, 2, 6, 8, 30);
    const Dictionary dictionary = newDictionaryWithMSPExtendedAttributes(
        {answer(Attribute::withTimestamp(fileDate, "Review", m_tasks))});
    const std::map<std::string, std::string> offsets = {
        {"UTC", "+0000"}, {"America/New_York", "-0500"}, {"Asia/Kolkata", "+0530"}};
    EXPECT_EQ(dictionary, (Dictionary{{"Review", "2026-02-06 08:30:00 " + offsets.at(GetParam())}}));
}

TEST_P(ExtendedAttributeDictionaryTest, OtherFieldsKeepTheirValueText) {
    const Dictionary dictionary = newDictionaryWithMSPExtendedAttributes({
        answer(Attribute::withDouble(2.5, "Cost code", m_tasks)),
        answer(Attribute::withDuration(90 * 60 * kMicrosecondsPerSecond, "Buffer", m_tasks)),
        answer(Attribute::withOutlCode("1.2", "Phase", m_tasks)),
        answer(Attribute::withString("2026-02-06T08:30:00", "Note", m_tasks)),
    });
    EXPECT_EQ(dictionary, (Dictionary{{"Cost code", "2.500000"},
                                      {"Buffer", "1:30:00"},
                                      {"Phase", "1.2"},
                                      {"Note", "2026-02-06T08:30:00"}}));
}

TEST_P(ExtendedAttributeDictionaryTest, AnswersOfOtherClassesAreSkippedAndLaterNamesWin) {
    const KVMSPIXQuery::Objects answers = {
        answer(Attribute::withString("first", "Owner", m_tasks)),
        KVMSPCXMLElement::initWithName("ExtendedAttribute", "not a field"),
        answer(Attribute::withString("second", "Owner", m_tasks)),
    };
    EXPECT_EQ(newDictionaryWithMSPExtendedAttributes(answers), (Dictionary{{"Owner", "second"}}));
    EXPECT_TRUE(newDictionaryWithMSPExtendedAttributes({}).empty());
}

INSTANTIATE_TEST_SUITE_P(Zones, ExtendedAttributeDictionaryTest, ::testing::ValuesIn(kTestZones));

} // namespace
