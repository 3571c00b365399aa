#include "MPPCommon/shared/MSPCBoolValue.h"

#include <gtest/gtest.h>

TEST(MSPCBoolValueTest, WordsAndIntegersAreReadAroundWhiteSpaceAndCase) {
    for (const char* text :
         {"true", " YES\n", "1", "-3", "0010", "99999999999999999999", "\u00A0yes\u2028"}) {
        EXPECT_TRUE(boolValueFromString(text)) << text;
    }
    for (const char* text : {"\tFalse ", "no", "+0", "000"}) {
        TVError error;
        EXPECT_FALSE(boolValueFromString(text, &error)) << text;
        EXPECT_TRUE(error.domain.empty()) << text;
    }
}

TEST(MSPCBoolValueTest, AnythingElseIsFalseWithCode2NamingTheTextAsGiven) {
    for (const char* text : {"", " maybe ", "1.5", "12abc", "1 2", "+", "0x10"}) {
        TVError error;
        EXPECT_FALSE(boolValueFromString(text, &error)) << text;
        EXPECT_EQ(std::tie(error.domain, error.code), std::make_tuple("TVMSPFilter.GeneralErrorDomain", 2));
        EXPECT_EQ(error.localizedDescription(),
                  std::string("Failed to get boolean value from string: \"") + text + "\"");
    }
}
