#include "MPPCommon/support/TVException.h"
#include "MPPImporter/file/KVMPPDataReader.h"
#include "MPPImporter/file/KVMSPIMPP14PropertyList.h"
#include "MPPImporter/file/KVMSPIMPP15PropertyList.h"
#include "MPPImporter/file/KVMSPIMPP16PropertyList.h"
#include "MPPImporter/file/KVMSPIMPP9PropertyList.h"
#include "StreamFileFixture.h"

#include <gtest/gtest.h>

namespace {

// A data reader that only serves as the UID readers' error sink.
class ErrorSink : public KVMPPDataReader {
public:
    ErrorSink() : KVMPPDataReader(nullptr, "FixedMeta", nullptr, "FixedData", nullptr) {}
    bool open() override { return true; }
};

// A data stream whose item at offset 0 begins with the integers 7, 8, 9, 0, 11; 300 bytes in all.
class KVMSPIMPPPropertyListUIDTest : public ::testing::Test {
protected:
    KVMSPIMPPPropertyListUIDTest()
        : m_file({{"FixedData", ByteWriter().u32(7).u32(8).u32(9).u32(0).u32(11).zeros(280).data()}}),
          m_stream(m_file.stream("FixedData")) {}

    struct TaskUID {
        int32_t uid;
        int64_t objectID;
        bool isNull;
    };
    TaskUID task(const KVMSPIMPPPropertyList& list, int32_t firstField, int32_t size, int32_t appVersion) {
        TaskUID result{0, -1, false};
        result.uid = list.taskUIDFromStream(*m_stream, firstField, 0, size, appVersion, &result.objectID,
                                            &result.isNull, m_caller);
        return result;
    }

    StreamFile m_file;
    std::unique_ptr<SSLStream> m_stream;
    ErrorSink m_caller;
    LogCapture m_log;
};

const KVMSPIMPPPropertyList& list9 = KVMSPIMPP9PropertyList::shared();
const KVMSPIMPPPropertyList& list14 = KVMSPIMPP14PropertyList::shared();
const KVMSPIMPPPropertyList& list15 = KVMSPIMPP15PropertyList::shared();
const KVMSPIMPPPropertyList& list16 = KVMSPIMPP16PropertyList::shared();

TEST_F(KVMSPIMPPPropertyListUIDTest, TaskItemsAreToldApartByTheirMetaFirstField) {
    // A null task is read UID first, whatever the application.
    auto nullTask = task(list15, 0x10004, 194, 15);
    EXPECT_EQ(nullTask.uid, 7);
    EXPECT_EQ(nullTask.objectID, 8);
    EXPECT_TRUE(nullTask.isNull);
    EXPECT_THROW(task(list14, 4, 3, 14), TVException);

    EXPECT_EQ(task(list14, 3, 206, 14).uid, -1);
    auto normal = task(list14, 0x20, 206, 14);
    EXPECT_EQ(normal.uid, 7);
    EXPECT_EQ(normal.objectID, 8);
    EXPECT_FALSE(normal.isNull);

    // Applications 15 and 16 store the object id first.
    EXPECT_EQ(task(list15, 0x20, 194, 15).uid, 8);
    EXPECT_EQ(task(list15, 0x20, 194, 15).objectID, 7);
    EXPECT_EQ(task(list16, 0x20, 194, 16).uid, 8);
    EXPECT_EQ(task(list9, 0x20, 240, 15).uid, 8);
}

TEST_F(KVMSPIMPPPropertyListUIDTest, TaskItemsBelowTheMinimumSizeHoldNoObject) {
    EXPECT_EQ(task(list14, 0x20, 205, 14).uid, -1);
    EXPECT_EQ(task(list14, 0x20, 16, 14).uid, 7) << "a 16-byte item is always read";
    // A downgraded file is measured by its application's list.
    EXPECT_EQ(task(list14, 0x20, 206, 12).uid, -1);
    EXPECT_EQ(task(list14, 0x20, 240, 12).uid, 7);
    EXPECT_EQ(task(list14, 0x20, 100, 13).uid, 7) << "no list for 13, so no minimum";

    // Format 9 skips first fields 2 and 6 only, and always reads an 8-byte item.
    EXPECT_EQ(task(list9, 2, 240, 9).uid, -1);
    EXPECT_EQ(task(list9, 6, 240, 9).uid, -1);
    EXPECT_EQ(task(list9, 3, 240, 9).uid, 7);
    EXPECT_EQ(task(list9, 0x20, 8, 9).uid, 7);
    EXPECT_EQ(task(list9, 0x20, 16, 9).uid, -1);
}

TEST_F(KVMSPIMPPPropertyListUIDTest, ReadFailuresGoToTheCaller) {
    const int32_t end = 300;
    EXPECT_EQ(list14.calendarUIDFromStream(*m_stream, 0, end, 12, m_caller), -1);
    EXPECT_EQ(list14.taskUIDFromStream(*m_stream, 0x20, end, 16, 14, nullptr, nullptr, m_caller), -1);
    list14.assignmentUIDFromStream(*m_stream, 0, end, 34, m_caller);
    const std::vector<std::string> domains = {"MSPIMPPPropertyList.calendarUIDFromStream",
                                              "MSPIMPPPropertyList.taskUIDFromStream",
                                              "MSPIMPPPropertyList.assignmentUIDFromStream"};
    ASSERT_EQ(m_log.lines().size(), domains.size());
    for (size_t i = 0; i < domains.size(); ++i) {
        EXPECT_NE(m_log.lines()[i].find("ERROR: "), std::string::npos);
        EXPECT_NE(m_log.lines()[i].find(domains[i]), std::string::npos) << m_log.lines()[i];
    }
}

} // namespace
