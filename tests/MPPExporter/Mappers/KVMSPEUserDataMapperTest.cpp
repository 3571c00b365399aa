#include "MPPExporter/Mappers/KVMSPEUserDataMapper.h"

#include <gtest/gtest.h>

namespace {

TEST(UserDataMapperTest, EachKeyWithItsStringBecomesAnAttributeAndKeysWithoutOneAreLeftOut) {
    TVError error;
    const auto userData = KVMSPCXMLElement::initWithXMLString(
        "<user-data><key>Room</key><string>2.14</string><key>Contractor</key><null/>"
        "<!-- note --><key>PO "
        "number</key>\n<string></string><string>stray</string><key>Last</key></user-data>",
        &error);
    ASSERT_TRUE(userData);
    std::string text;
    for (const KVMPPExtendedAttribute& attribute :
         KVMSPEUserDataMapper::newExtendedAttributesFromUserData(*userData)) {
        EXPECT_FALSE(attribute.isValidAttribute());
        text += *attribute.alias + "=" + *attribute.value + ";";
    }
    EXPECT_EQ(text, "Room=2.14;PO number=;");
}

} // namespace
