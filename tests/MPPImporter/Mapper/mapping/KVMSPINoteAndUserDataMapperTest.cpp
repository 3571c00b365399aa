#include "MPPImporter/Mapper/mapping/KVMSPINoteMapper.h"
#include "MPPImporter/Mapper/mapping/KVMSPIUserDataMapper.h"
#include "MPPImporter/Mapper/mapping/MSPIXmlCharacters.h"

#include <gtest/gtest.h>

namespace {

std::string noteXml(const std::string& text) {
    return KVMSPINoteMapper().newNoteFromMSPNotes(text)->XMLString();
}

TEST(KVMSPINoteAndUserDataMapperTest, EachLineOfANoteIsAParagraph) {
    const auto paragraphs = [](std::initializer_list<const char*> lines) {
        std::string xml = "<note><text>";
        for (const char* line : lines) {
            xml += std::string("<p><run><lit>") + line + "</lit></run></p>";
        }
        return xml + "</text></note>";
    };
    EXPECT_EQ(noteXml(""), "<note><text></text></note>");
    EXPECT_EQ(noteXml("one\ntwo\r\nthree"), paragraphs({"one", "two", "three"}));
    EXPECT_EQ(noteXml("one\rtwo\n"), paragraphs({"one", "two"}));
    EXPECT_EQ(noteXml("a\n\nb\xC2\x85"
                      "c\xE2\x80\xA8"
                      "d\xE2\x80\xA9"
                      "e"),
              paragraphs({"a", "", "b", "c", "d", "e"}));
    EXPECT_EQ(noteXml("tab\there\x08!"), paragraphs({"tab\there!"}));
}

TEST(KVMSPINoteAndUserDataMapperTest, TextsLoseWhatXmlCantHold) {
    const struct {
        std::string text, clean;
    } rows[] = {
        {"plain \t\r\n text", "plain \t\r\n text"},
        {"a\x01\x08\x0B\x10\x1F"
         "b",
         "ab"},
        {"\xEF\xBF\xBF\xEF\xBF\xBE|\xEF\xBF\xBD", "|\xEF\xBF\xBD"},
        {"\xED\xA0\x80 surrogate, \xC0\xAF overlong, \xFF stray, \xE2\x82 cut",
         " surrogate,  overlong,  stray,  cut"},
        {"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(xmlCharacterText(row.text), row.clean) << row.text;
    }
}

TEST(KVMSPINoteAndUserDataMapperTest, CustomFieldsAndTheirDeclarations) {
    MSPIUserDataTOCElements declarations;
    KVMSPIUserDataMapper mapper(declarations);
    EXPECT_EQ(mapper.newUserDataFromDictionary({}), nullptr);
    EXPECT_FALSE(mapper.setUserDataTOCElementsForTag("task-user-data-keys", {}));
    EXPECT_EQ(mapper.newUserDataFromDictionary({{"Text1", "a"}, {"Cost1", "2"}})->XMLString(),
              "<user-data><key>Cost1</key><string>2</string><key>Text1</key><string>a</string></user-data>");

    EXPECT_TRUE(mapper.setUserDataTOCElementsForTag("task-user-data-keys", {{"Text1", "a"}, {"Cost1", "2"}}));
    EXPECT_TRUE(mapper.setUserDataTOCElementsForTag("task-user-data-keys", {{"Flag1", "1"}}));
    EXPECT_TRUE(mapper.setUserDataTOCElementsForTag(std::nullopt, {{"Owner", "me"}}));
    ASSERT_EQ(declarations.size(), 2u);
    // Every name of the objects mapped is declared once, in the order first met.
    EXPECT_TRUE(mapper.setUserDataTOCElementsForTag("task-user-data-keys", {{"Text1", "b"}}));
    EXPECT_EQ(
        declarations.at("task-user-data-keys")->XMLString(),
        "<user-data><key>Cost1</key><null></null><key>Text1</key><null></null><key>Flag1</key><null></null>"
        "</user-data>");
    EXPECT_EQ(declarations.at(kMSPIProjectUserDataTag)->XMLString(),
              "<user-data><key>Owner</key><string>me</string></user-data>");
}

} // namespace
