#include "MPPImporter/file/KVMSPIPropsReader.h"

#include "MPPCommon/support/TVException.h"
#include "StreamFileFixture.h"

#include <gtest/gtest.h>

namespace {

const std::vector<uint8_t> kSummaryID = {0xE0, 0x85, 0x9F, 0xF2, 0xF9, 0x4F, 0x68, 0x10,
                                         0xAB, 0x91, 0x08, 0x00, 0x2B, 0x27, 0xB3, 0xD9};
const std::vector<uint8_t> kDocSummaryID = {0x02, 0xD5, 0xCD, 0xD5, 0x9C, 0x2E, 0x1B, 0x10,
                                            0x93, 0x97, 0x08, 0x00, 0x2B, 0x2C, 0xF9, 0xAE};
const std::vector<uint8_t> kUserDefinedID = {0x05, 0xD5, 0xCD, 0xD5, 0x9C, 0x2E, 0x1B, 0x10,
                                             0x93, 0x97, 0x08, 0x00, 0x2B, 0x2C, 0xF9, 0xAE};

std::vector<uint8_t> bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

// A Props stream: a 16-byte header with the entry count at 12, then size, number, a spare word and
// the data of each entry, padded to an even length.
struct PropsEntry {
    uint32_t number;
    std::vector<uint8_t> data;
    uint32_t declaredSize;
};

std::vector<uint8_t> propsStream(const std::vector<PropsEntry>& entries) {
    ByteWriter w;
    w.zeros(12).u16(static_cast<uint16_t>(entries.size())).u16(0);
    for (const auto& entry : entries) {
        w.u32(entry.declaredSize).u32(entry.number).u32(0).bytes(entry.data);
        if (entry.data.size() % 2 != 0) {
            w.u8(0xEE);
        }
    }
    return w.data();
}

PropsEntry entry(uint32_t number, std::vector<uint8_t> data) {
    auto size = static_cast<uint32_t>(data.size());
    return {number, std::move(data), size};
}

// Property values as a property set holds them: a type word, then the value, padded to 4 bytes.
std::vector<uint8_t> shortValue(uint16_t value) {
    return ByteWriter().u32(2).u16(value).u16(0).data();
}
std::vector<uint8_t> intValue(uint32_t value) {
    return ByteWriter().u32(3).u32(value).data();
}
std::vector<uint8_t> narrowString(std::string_view text) {
    ByteWriter w;
    w.u32(30).u32(static_cast<uint32_t>(text.size() + 1)).bytes(bytesOf(text)).u8(0);
    while (w.data().size() % 4 != 0) {
        w.u8(0);
    }
    return w.data();
}
std::vector<uint8_t> dictionary(const std::vector<std::pair<uint32_t, std::string>>& names) {
    ByteWriter w;
    w.u32(static_cast<uint32_t>(names.size()));
    for (const auto& [number, name] : names) {
        w.u32(number).u32(static_cast<uint32_t>(name.size() + 1)).bytes(bytesOf(name)).u8(0);
    }
    return w.data();
}

struct Section {
    std::vector<uint8_t> formatID;
    std::vector<std::pair<uint32_t, std::vector<uint8_t>>> properties;
};

std::vector<uint8_t> sectionBytes(const Section& section) {
    ByteWriter values;
    ByteWriter pairs;
    uint32_t valueOffset = 8 + 8 * static_cast<uint32_t>(section.properties.size());
    for (const auto& [number, value] : section.properties) {
        pairs.u32(number).u32(valueOffset + static_cast<uint32_t>(values.data().size()));
        values.bytes(value);
    }
    return ByteWriter()
        .u32(valueOffset + static_cast<uint32_t>(values.data().size()))
        .u32(static_cast<uint32_t>(section.properties.size()))
        .bytes(pairs.data())
        .bytes(values.data())
        .data();
}

// A property set stream with the given sections; `sectionCount` can claim another number of them.
std::vector<uint8_t> propertySet(const std::vector<Section>& sections, int sectionCount = -1) {
    ByteWriter w;
    w.u8(0xFE).u8(0xFF).zeros(22).u32(sectionCount < 0 ? static_cast<uint32_t>(sections.size())
                                                       : sectionCount);
    uint32_t offset = 28 + 20 * static_cast<uint32_t>(sections.size());
    std::vector<uint8_t> bodies;
    for (const auto& section : sections) {
        auto body = sectionBytes(section);
        w.bytes(section.formatID).u32(offset + static_cast<uint32_t>(bodies.size()));
        bodies.insert(bodies.end(), body.begin(), body.end());
    }
    return w.bytes(bodies).data();
}

class PropsReaderTest : public ::testing::Test {
protected:
    KVMSPIPropsReader& reader(const std::vector<uint8_t>& bytes, const std::string& name = "Props14") {
        m_file = std::make_unique<StreamFile>(std::map<std::string, std::vector<uint8_t>>{{name, bytes}});
        m_reader = std::make_unique<KVMSPIPropsReader>(m_file->stream(name));
        return *m_reader;
    }

    std::unique_ptr<StreamFile> m_file;
    std::unique_ptr<KVMSPIPropsReader> m_reader;
};

} // namespace

TEST_F(PropsReaderTest, PropsStreamIndexesEntriesWithPaddingAndReplacement) {
    auto& props =
        reader(propsStream({entry(7, {0x01, 0x02, 0x03}), entry(8, ByteWriter().u32(0x11223344).data()),
                            entry(7, {0xAB, 0xCD})}));
    EXPECT_EQ(props.name(), "Props14");
    EXPECT_EQ(props.propertyNumbers(false), (std::vector<int32_t>{7, 8}));
    int32_t size = 0;
    ASSERT_TRUE(props.getPropertySize(&size, 7));
    EXPECT_EQ(size, 2);
    uint16_t later = 0;
    ASSERT_TRUE(props.readPropertyUShort(later, 7, false));
    EXPECT_EQ(later, 0xCDAB);
    // The odd-sized first entry is padded, so the second one is found at its place.
    int32_t value = 0;
    ASSERT_TRUE(props.readPropertyInt(value, 8, false));
    EXPECT_EQ(value, 0x11223344);
}

TEST_F(PropsReaderTest, PropsStreamStopsAtAnEntryOfSizeZeroOrOneTooLarge) {
    auto& props = reader(propsStream({entry(1, {1, 0}), entry(2, {}), entry(3, {3, 0})}));
    EXPECT_EQ(props.propertyNumbers(false), (std::vector<int32_t>{1}));
    auto& hostile =
        reader(propsStream({entry(1, {1, 0}), PropsEntry{2, {2, 0}, 0x7FFFFFF0}, entry(3, {3, 0})}));
    EXPECT_EQ(hostile.propertyNumbers(false), (std::vector<int32_t>{1}));
    // A count beyond the entries that are there ends at the stream's end.
    auto bytes = propsStream({entry(1, {1, 0})});
    bytes[12] = 0xFF;
    bytes[13] = 0x7F;
    EXPECT_EQ(reader(bytes).propertyNumbers(false), (std::vector<int32_t>{1}));
}

TEST_F(PropsReaderTest, TypedReadsRefuseWiderEntriesAndReadNarrowerOnesAtFullWidth) {
    auto& props = reader(propsStream({entry(1, {0x05, 0x00}), entry(2, ByteWriter().u32(9).u32(1).data()),
                                      entry(3, {0xFF}), entry(4, {1, 2, 3, 4, 5})}));
    int8_t byte = 0;
    uint8_t ubyte = 0;
    int16_t shortValue = 0;
    int32_t intValue = 0;
    double doubleValue = 0;
    EXPECT_FALSE(props.readPropertyByte(byte, 1, false));
    EXPECT_TRUE(props.readPropertyByte(byte, 3, false));
    EXPECT_EQ(byte, -1);
    EXPECT_TRUE(props.readPropertyUByte(ubyte, 3, false));
    EXPECT_EQ(ubyte, 0xFF);
    EXPECT_FALSE(props.readPropertyInt(intValue, 2, false));
    EXPECT_TRUE(props.readPropertyDouble(doubleValue, 2, false));
    // Shorts have no limit; a 2-byte entry read as an int takes the following bytes too.
    EXPECT_TRUE(props.readPropertyShort(shortValue, 4, false));
    EXPECT_EQ(shortValue, 0x0201);
    EXPECT_TRUE(props.readPropertyInt(intValue, 1, false));
    EXPECT_EQ(intValue & 0xFFFF, 5);
    EXPECT_NE(intValue, 5);
    // Missing entries and the other map.
    EXPECT_FALSE(props.readPropertyInt(intValue, 99, false));
    EXPECT_FALSE(props.readPropertyShort(shortValue, 1, true));
    uint8_t block[5] = {};
    EXPECT_TRUE(props.readPropertyByteArray(block, sizeof block, 4, false));
    EXPECT_EQ(block[4], 5);
}

TEST_F(PropsReaderTest, PropsStreamTextAndTimestampReads) {
    auto& props = reader(propsStream({entry(1, bytesOf(std::string("Caf\xC3\xA9\0junk", 10))),
                                      entry(2, ByteWriter().u16('H').u16(0x20AC).u16(0).u16('x').data()),
                                      entry(3, ByteWriter().u16(600).u16(1).data()),
                                      entry(4, ByteWriter().u16(0).u16(0xFFFF).data())}));
    std::string text = "<";
    EXPECT_TRUE(props.readPropertyUTF8(text, 1, false));
    EXPECT_EQ(text, "<Caf\u00E9");
    text.clear();
    EXPECT_TRUE(props.readPropertyUnicode(text, 2, false));
    EXPECT_EQ(text, "H\u20AC");
    std::optional<TVDate> date;
    EXPECT_TRUE(props.readPropertyTimestamp(date, 3, false));
    ASSERT_TRUE(date.has_value());
    EXPECT_EQ(date->secondsSince(getMPPEpoch()), 86400 + 3600);
    EXPECT_TRUE(props.readPropertyTimestamp(date, 4, false));
    EXPECT_FALSE(date.has_value());
}

TEST_F(PropsReaderTest, SummaryInformationCodePageAndNarrowStrings) {
    std::string longTitle(50, 'T');
    auto& summary = reader(propertySet({{kSummaryID,
                                         {{1, shortValue(1252)},
                                          {2, narrowString(longTitle)},
                                          {3, narrowString("Short")},
                                          {4, narrowString("A\x01"
                                                           "b\xE9")},
                                          {0x1000005, intValue(1)}}}}),
                           "\005SummaryInformation");
    EXPECT_EQ(summary.propertyNumbers(false), (std::vector<int32_t>{1, 2, 3, 4}));
    int16_t codePage = 0;
    int32_t size = -1;
    ASSERT_TRUE(summary.readPropertyShort(codePage, 1, false));
    EXPECT_EQ(codePage, 1252);
    ASSERT_TRUE(summary.getPropertySize(&size, 1));
    EXPECT_EQ(size, 0);
    // Strings record their type word as size: 30 bytes are read at once, the rest up to the NUL.
    ASSERT_TRUE(summary.getPropertySize(&size, 2));
    EXPECT_EQ(size, 30);
    std::string text;
    ASSERT_TRUE(summary.readPropertyLPSTR(text, 2, false, 1252));
    EXPECT_EQ(text, longTitle);
    text.clear();
    ASSERT_TRUE(summary.readPropertyLPSTR(text, 3, false, 1252));
    EXPECT_EQ(text, "Short");
    text.clear();
    ASSERT_TRUE(summary.readPropertyLPSTR(text, 4, false, 1252));
    EXPECT_EQ(text, "Ab\u00E9");
    // 65001 arrives as a negative 16-bit value; bytes that aren't UTF-8 fail and append nothing.
    text = "kept";
    EXPECT_FALSE(summary.readPropertyLPSTR(text, 4, false, static_cast<int16_t>(65001)));
    EXPECT_FALSE(summary.readPropertyLPSTR(text, 3, false, 12345));
    EXPECT_EQ(text, "kept");
    ASSERT_TRUE(summary.readPropertyLPSTR(text, 3, false, static_cast<int16_t>(65001)));
    EXPECT_EQ(text, "keptShort");
}

TEST_F(PropsReaderTest, AnyStreamThatBeginsWithTheByteOrderMarkIsAPropertySet) {
    auto& props = reader(propertySet({{kSummaryID, {{2, narrowString("Named Props")}}}}), "Props9");
    std::string text;
    ASSERT_TRUE(props.readPropertyLPSTR(text, 2, false, 1252));
    EXPECT_EQ(text, "Named Props");
}

TEST_F(PropsReaderTest, DocumentSummaryWithUserDefinedSection) {
    auto& props = reader(propertySet({{kDocSummaryID, {{14, narrowString("Manager")}, {3, intValue(77)}}},
                                      {kUserDefinedID,
                                       {{0, dictionary({{2, "Client"}, {3, "Budget"}})},
                                        {2, narrowString("ACME")},
                                        {3, intValue(1000)}}}}),
                         "\005DocumentSummaryInformation");
    EXPECT_TRUE(props.propertyNumbers(false).empty());
    EXPECT_EQ(props.propertyNumbers(true), (std::vector<int32_t>{2, 3, 14}));
    std::string text;
    ASSERT_TRUE(props.readPropertyLPSTR(text, 14, true, 1252));
    EXPECT_EQ(text, "Manager");
    int32_t number = 0;
    ASSERT_TRUE(props.getCustomProperty(&number, "Client"));
    EXPECT_EQ(number, 2);
    EXPECT_FALSE(props.getCustomProperty(&number, "Missing"));
    text.clear();
    ASSERT_TRUE(props.readPropertyLPSTR(text, number, true, 1252));
    EXPECT_EQ(text, "ACME");
    int32_t size = 0;
    int32_t type = 0;
    ASSERT_TRUE(props.getCustomPropertySize(&size, &type, 3));
    EXPECT_EQ(type, 3);
    EXPECT_EQ(size, 0);
    // A user-defined value that is no string is located at its type word.
    int32_t value = 0;
    ASSERT_TRUE(props.readPropertyInt(value, 3, true));
    EXPECT_EQ(value, 3);
}

TEST_F(PropsReaderTest, MalformedPropertySetsAreAssertionFailures) {
    auto expectAssertion = [&](const std::vector<uint8_t>& bytes, const std::string& reason) {
        try {
            reader(bytes);
            ADD_FAILURE() << "no assertion for " << reason;
        } catch (const TVException& e) {
            EXPECT_EQ(e.name(), kInternalInconsistencyException);
            EXPECT_EQ(e.reason(), reason);
        }
    };
    Section summary{kSummaryID, {{2, narrowString("x")}}};
    expectAssertion(propertySet({summary}, 3), "Incorrect Section Count value: 3");
    expectAssertion(propertySet({summary}, 0), "Incorrect Section Count value: 0");
    expectAssertion(propertySet({summary, summary}),
                    "Incorrect second section format ID in Document Summary Info.");
    expectAssertion(propertySet({{kSummaryID, {{0, dictionary({{2, "x"}})}}}}),
                    "Do not expect dictionary property in SummaryInfo / DocumentSummaryInfo property set.");
    expectAssertion(
        propertySet({{kDocSummaryID, {}},
                     {kUserDefinedID, {{0, dictionary({{2, "a"}})}, {0, dictionary({{3, "b"}})}}}}),
        "Expect only one dictionary per section.");
}

TEST_F(PropsReaderTest, DamagedSectionsLeaveAPartialIndex) {
    auto bytes = propertySet({{kSummaryID, {{2, narrowString("Title")}, {3, narrowString("Subject")}}}});
    // The second pair's value offset points far behind the section: that pair is skipped.
    bytes[48 + 8 + 8 + 4] = 0xFF;
    bytes[48 + 8 + 8 + 5] = 0xFF;
    EXPECT_EQ(reader(bytes).propertyNumbers(false), (std::vector<int32_t>{2}));
    // A section that claims to be huge is read as far as the stream goes.
    bytes[48 + 3] = 0x7F;
    EXPECT_EQ(reader(bytes).propertyNumbers(false), (std::vector<int32_t>{2}));
    // A section offset behind the stream indexes nothing and logs the read error.
    bytes[44] = 0xF0;
    bytes[45] = 0xFF;
    LogCapture log;
    EXPECT_TRUE(reader(bytes).propertyNumbers(false).empty());
    EXPECT_FALSE(log.lines().empty());
}
