#include "MPPImporter/query/frame/KVMSPIXQValue.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>

TEST(FrameValueTest, NumbersKeepTheShortestTextThatReadsBack) {
    EXPECT_EQ(KVMSPIXQValue(50.0).text(), "50");
    EXPECT_EQ(KVMSPIXQValue(0.1).text(), "0.1");
    EXPECT_EQ(KVMSPIXQValue(-12.5).text(), "-12.5");
    for (const double number : {1.0 / 3.0, 2.0 / 3.0 * 1e-7, 123456789.123456789, 5e300}) {
        SCOPED_TRACE(number);
        KVMSPIXQValue value(number);
        EXPECT_EQ(std::strtod(value.text().c_str(), nullptr), number);
        EXPECT_EQ(value.floatValueForXQuery(".", nullptr), number);
    }
}

TEST(FrameValueTest, AnswersItsTextInEachKind) {
    KVMSPIXQValue units(37.5);
    EXPECT_EQ(units.stringValueForXQuery(".", nullptr), "37.5");
    EXPECT_EQ(units.intValueForXQuery(".", nullptr), 37);
    EXPECT_TRUE(units.boolValueForXQuery(".", nullptr));

    KVMSPIXQValue date("2024-01-05T08:00:00");
    EXPECT_EQ(date.stringValueForXQuery(".", nullptr), "2024-01-05T08:00:00");
    EXPECT_EQ(date.intValueForXQuery(".", nullptr), 2024);
    EXPECT_EQ(date.floatValueForXQuery(".", nullptr), 0.0);

    EXPECT_EQ(KVMSPIXQValue(1e30).intValueForXQuery(".", nullptr), std::numeric_limits<int64_t>::max());
    EXPECT_EQ(KVMSPIXQValue(-2.9).intValueForXQuery(".", nullptr), -2);
    EXPECT_FALSE(KVMSPIXQValue(0.0).boolValueForXQuery(".", nullptr));
    EXPECT_TRUE(KVMSPIXQValue("true").boolValueForXQuery(".", nullptr));
    EXPECT_FALSE(KVMSPIXQValue("").boolValueForXQuery(".", nullptr));
    EXPECT_EQ(KVMSPIXQValue("nan").floatValueForXQuery(".", nullptr), 0.0);
}

TEST(FrameValueTest, AnythingButItselfIsNotPorted) {
    KVMSPIXQValue value(2.0);
    const KVMSPIXQueryConstants constants;
    TVError error;
    EXPECT_FALSE(value.stringValueForXQuery("Units", &error).has_value());
    EXPECT_EQ(error.code, 100);
    EXPECT_EQ(error.domain, "TVMSPFilter.GeneralErrorDomain");
    EXPECT_NE(error.localizedDescription().find("Units"), std::string::npos);

    error = {};
    EXPECT_EQ(value.intValueForXQuery("..", constants, &error), 0);
    EXPECT_EQ(error.code, 100);
    error = {};
    EXPECT_TRUE(value.objectsForXQuery(".", &error).empty());
    EXPECT_EQ(error.code, 100);
    error = {};
    EXPECT_EQ(value.singleObjectForXQuery(".", constants, &error), nullptr);
    EXPECT_EQ(error.code, 100);
    EXPECT_EQ(value.floatValueForXQuery(".", constants, nullptr), 2.0);
}
