#include "MPPImporter/query/frame/KVMSPIXQValue.h"
#include "MPPImporter/readers/KVMSPISingleObjectReaderBase.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

// The UID the predicate names, or none when the text gives no predicate.
std::optional<int32_t> uidOf(const std::optional<std::string>& text) {
    int32_t uid = -7;
    KVMSPIXQPredicate predicate = KVMSPISingleObjectReaderBase::uidPredicateWithString(text, &uid);
    if (!predicate) {
        EXPECT_EQ(uid, -7) << "no predicate, but the UID was written";
        return std::nullopt;
    }
    return uid;
}

} // namespace

TEST(FramePredicateTest, UidPredicateReadsTheValueFromTheFirstCharacter) {
    EXPECT_EQ(uidOf("UID=12"), 12);
    EXPECT_EQ(uidOf("UID=0"), 0);
    EXPECT_EQ(uidOf("UID=7 and Name=\"x\""), 7);
    EXPECT_EQ(uidOf("UID=99999999999"), std::numeric_limits<int32_t>::max());
}

TEST(FramePredicateTest, OtherTextsGiveNoUidPredicate) {
    EXPECT_EQ(uidOf(std::nullopt), std::nullopt);
    EXPECT_EQ(uidOf(""), std::nullopt);
    EXPECT_EQ(uidOf("UID="), std::nullopt);
    EXPECT_EQ(uidOf("UID=-1"), std::nullopt);
    EXPECT_EQ(uidOf("ResourceUID=2"), std::nullopt);
    EXPECT_EQ(uidOf(" UID=1"), std::nullopt);
    EXPECT_EQ(uidOf("uid=1"), std::nullopt);
    EXPECT_FALSE(KVMSPISingleObjectReaderBase::predicateWithString("TaskUID=3"));
}

TEST(FramePredicateTest, BaseOfSimpleReadersTakesNoPredicate) {
    int32_t uid = -7;
    EXPECT_FALSE(KVMSPISimpleObjectReaderBase::predicateWithString("UID=1"));
    EXPECT_FALSE(KVMSPISimpleObjectReaderBase::uidPredicateWithString("UID=1", &uid));
    EXPECT_EQ(uid, -7);
}

TEST(FramePredicateTest, TestOnAnObjectThatIsNoReaderRaises) {
    KVMSPIXQPredicate predicate = KVMSPISingleObjectReaderBase::predicateWithString("UID=1");
    ASSERT_TRUE(predicate);
    KVMSPIXQValue notAReader("1");
    try {
        predicate(notAReader);
        FAIL() << "no assertion";
    } catch (const TVException& exception) {
        EXPECT_EQ(exception.reason(), "Unexpected object in predicate block.");
    }
}
