#include "MPPCommon/date/DateTestSupport.h"
#include "MPPCommon/support/TVException.h"
#include "MPPExporter/writers/KVMPP15VarMeta.h"
#include "MPPExporter/writers/KVMPPFixedMeta.h"
#include "MPPExporter/writers/KVMPPProps.h"
#include "MPPExporter/writers/KVMPPSummaryInfoData.h"
#include "MPPImporter/format/MPPValueCodecs.h"
#include "MPPImporter/text/RTFPlainTextReader.h"

#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace {

using Bytes = std::vector<uint8_t>;

// The exception name and reason that `action` raises, "none" if it raises nothing.
template <typename Action>
std::string raised(Action action) {
    try {
        action();
    } catch (const TVException& exception) {
        return exception.name() + ": " + exception.reason();
    }
    return "none";
}

Bytes bytesOf(const KVMPPData& block) {
    return block.data();
}

// The instant whose wall clock in the system zone is `seconds` after the MPP epoch.
TVDate wallClockAfterEpoch(double seconds) {
    const TVDate utc = getMPPEpoch().addingSeconds(seconds);
    return utc.addingSeconds(-TVTimeZone::systemTimeZone().secondsFromGMT(utc));
}

TEST(KVMPPData, DatesAreTheWallClockOfTheSystemZoneTimeFirst) {
    for (const char* zone : kTestZones) {
        SystemZoneScope scope(zone);
        KVMPPData block;
        block.writeDate(wallClockAfterEpoch(0));
        block.writeDate(wallClockAfterEpoch(kSecondsPerDay + 8 * 3600));
        block.writeDate(std::nullopt);
        block.writeDaysFromDate(wallClockAfterEpoch(2 * kSecondsPerDay + 3599));
        block.writeDaysFromDate(std::nullopt);
        EXPECT_EQ(bytesOf(block),
                  (Bytes{0, 0, 0, 0, 0xC0, 0x12, 1, 0, 0xFF, 0xFF, 0xFF, 0xFF, 2, 0, 0xFF, 0xFF}))
            << zone;
        block.writeDaysFromDate(wallClockAfterEpoch(5 * kSecondsPerDay), 0);
        EXPECT_EQ(block.data()[0], 5) << zone;
    }
}

TEST(KVMPPData, DurationsAreTenthsOfAMinuteOrTenthsOfTheUnitAtAnOffset) {
    KVMPPData block;
    block.writeDuration(3600.0, 7);
    block.writeDuration(3600.0, 99);
    block.writeDuration(-59.0, 5);
    EXPECT_EQ(bytesOf(block), (Bytes{0x58, 2, 0, 0, 0x58, 2, 0, 0, 0xF7, 0xFF, 0xFF, 0xFF}));

    block.writeDuration(3600.0, 5, 0); // an hour in hours: 10 tenths
    block.writeDuration(3600.0, 13, 4);
    block.writeDuration(86400.0 * 3, 21, 8);
    EXPECT_EQ(bytesOf(block), (Bytes{10, 0, 0, 0, 0, 0, 0, 0, 30, 0, 0, 0}));

    // A duration that is no number, or too long for the word, holds to 0 or the word's bound.
    block.writeDuration(std::nan(""), 5, 0);
    block.writeDuration(1e300, 5, 4);
    block.writeDuration(-1e300, 7);
    EXPECT_EQ(bytesOf(block), (Bytes{0, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0x7F, 30, 0, 0, 0, 0, 0, 0, 0x80}));
}

TEST(KVMPPData, SpecialDatesFillThreeOffsetsOfATemplateElement) {
    SystemZoneScope scope("America/New_York");
    KVMPPData block;
    block.writeZeroesBlockOfSize(342);
    block.writeSpecialDate(std::nullopt);
    EXPECT_EQ(bytesOf(block), Bytes(342, 0));
    // 1984-01-12 09:00 of the zone: 60 minutes after the base, written in tenths of a minute.
    block.writeSpecialDate(wallClockAfterEpoch(12 * kSecondsPerDay + 9 * 3600));
    Bytes expected(342, 0);
    encodeMPPNumber(int32_t{600}, std::span(expected).subspan(306));
    encodeMPPNumber(int32_t{600 + 705600}, std::span(expected).subspan(322));
    encodeMPPNumber(int32_t{600 + 173314}, std::span(expected).subspan(338));
    EXPECT_EQ(bytesOf(block), expected);
}

TEST(KVMPPData, GuidsStringsAndOverwritesKeepToTheirBounds) {
    KVMPPData block;
    block.writeGUID({});
    block.writeString("", kMPPDataEncodingUTF16LE);
    EXPECT_EQ(bytesOf(block), Bytes(18, 0));

    KVMPPData text;
    text.writeString("A\xC3\xA9\xF0\x9F\x98\x80", kMPPDataEncodingUTF16LE); // A, é, an emoji
    EXPECT_EQ(bytesOf(text), (Bytes{0x41, 0, 0xE9, 0, 0x3D, 0xD8, 0x00, 0xDE, 0, 0}));
    KVMPPData ascii;
    ascii.writeString("A\xC3\xA9\xF0\x9F\x98\x80", kMPPDataEncodingASCII);
    EXPECT_EQ(bytesOf(ascii), (Bytes{'A', '?', '?', 0, 0}));

    KVMPPData fields;
    fields.writeZeroesBlockOfSize(8);
    EXPECT_EQ(raised([&] { fields.writeInteger(1, 5); }),
              "NSRangeException: Attempt to write to data at wrong offset");
    EXPECT_EQ(raised([&] { fields.write2ByteInteger(1, 7); }),
              "NSRangeException: Attempt to write to data at wrong offset");
    EXPECT_EQ(raised([&] { fields.write1ByteInteger(1, 8); }),
              "NSRangeException: Attempt to write to data at wrong offset");
    fields.writeInteger(0x04030201, 4);
    fields.write1ByteInteger(9, 7);
    EXPECT_EQ(bytesOf(fields), (Bytes{0, 0, 0, 0, 1, 2, 3, 9}));
}

TEST(KVMPPData, RtfNotesWrapThePlainTextLineByLine) {
    KVMPPData block;
    block.writeRtfString("one\ntwo\n", kMPPDataEncodingASCII);
    const std::string written(block.data().begin(), block.data().end());
    const std::string expected =
        "{\\rtf1\\ansi\\ansicpg1251\\deff0\\deflang1049{\\fonttbl{\\f0\\fswiss\\fprq2\\fcharset0 Arial;}"
        "{\\f1\\fswiss\\fprq2\\fcharset204{\\*\\fname Arial;}Arial CYR;}}\r\n"
        "{\\*\\generator Riched2012.0.6413.1000;}\\viewkind4\\uc1\r\n"
        "\\pard\\f0\\fs16\\lang1033 one\\par\r\ntwo\\f1\\lang1049\\par\r\n}\r\n";
    EXPECT_EQ(written, expected + std::string(1, '\0'));
}

// A note read back is the note written: as many paragraphs, RTF specials and letters beyond ASCII kept.
TEST(KVMPPData, RtfNotesReadBackAsWritten) {
    for (const std::string notes :
         {"one\ntwo\n", "braces {a} and \\back\\slash\n", "Größe – Этап 2 ✓ 𝄞\n", "\n\nthird\n"}) {
        KVMPPData block;
        block.writeRtfString(notes, kMPPDataEncodingASCII);
        const std::string written(block.data().begin(), block.data().end() - 1);
        EXPECT_EQ(RTFPlainTextReader::plainText(written).value_or("(not RTF)"), notes);
    }
}

TEST(KVMPPOffsetMarkedData, ElementsMustBeOpenedAndClosedInTurn) {
    KVMPPFixedData block;
    EXPECT_EQ(raised([&] { block.closeCurrentElement(); }),
              "OffsetMarkedDataException: Attempt to close an already closed element");
    EXPECT_EQ(block.startNewElement(), 0u);
    EXPECT_EQ(raised([&] { block.startNewElement(); }),
              "OffsetMarkedDataException: Attempt to create a new element while the current element is not "
              "closed");
    EXPECT_EQ(raised([&] { block.clearBuffer(); }),
              "OffsetMarkedDataException: Attempt to clear buffer while element is not closed");
    block.writeZeroesBlockOfSize(10);
    block.closeCurrentElement();

    // Clearing keeps the count of bytes and the offsets of elements.
    block.clearBuffer();
    EXPECT_EQ(block.dataSize(), 0u);
    EXPECT_EQ(block.cumulativeDataSize(), 10u);
    EXPECT_EQ(block.startNewElement(), 1u);
    block.closeCurrentElement();
    EXPECT_EQ(block.offsetOfElementAtIndex(0), 0u);
    EXPECT_EQ(block.offsetOfElementAtIndex(1), 10u);
    EXPECT_EQ(raised([&] { block.offsetOfElementAtIndex(2); }), "NSRangeException: Index out of bounds");
}

TEST(KVMPPVar2Data, ElementsCarryTheirPayloadLengthAndAreFoundByTypeAndID) {
    KVMPPVar2Data block;
    block.startNewElementWithType(0x0E, 1);
    block.writeString("ab", kMPPDataEncodingUTF16LE);
    block.closeCurrentElement();
    block.clearBuffer();
    block.startNewElement();
    block.writeInteger(7);
    block.closeCurrentElement();
    block.startNewElementWithType(0x0F, 1);
    block.closeCurrentElement();
    EXPECT_EQ(bytesOf(block), (Bytes{4, 0, 0, 0, 7, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(block.offsetOfElementWithType(0x0E, 1), 0u);
    EXPECT_EQ(block.offsetOfElementWithType(0x0F, 1), 18u);
    EXPECT_EQ(block.numberOfElementsForID(1), 2u);
    EXPECT_EQ(block.numberOfElementsForID(2), 0u);
    EXPECT_EQ(raised([&] { block.offsetOfElementWithType(0x0E, 2); }),
              "NSRangeException: No data in Var2Data for (type, id) pair specified");
}

TEST(KVMPPMeta, FixedMetaListsEveryElementOnceAfterItsHeader) {
    KVMPPFixedData data;
    for (int i = 0; i < 2; ++i) {
        data.startNewElement();
        data.writeZeroesBlockOfSize(6);
        data.closeCurrentElement();
    }
    data.clearBuffer();
    KVMPPFixedMeta meta(data);
    meta.writeMetaHeader();
    meta.writeNextElementStartWithInt(4);
    meta.writeNextElementStartWithInt(0x80000);
    EXPECT_EQ(bytesOf(meta), (Bytes{0xBA, 0xAD, 0xDF, 0xFA, 4, 0, 0, 0, 2, 0, 0, 0, 12, 0, 0, 0, //
                                    4,    0,    0,    0,    0, 0, 0, 0, 0, 0, 8, 0, 6,  0, 0, 0}));
    EXPECT_EQ(meta.curElementIndex(), 2u);
    EXPECT_EQ(raised([&] { meta.writeNextElementStartWithInt(4); }),
              "NSRangeException: Attempt to write too many elements into FixedMeta");
}

TEST(KVMPPMeta, VarMetaEntriesFollowTheFilingOrTheElementOrder) {
    KVMPPVar2Data data;
    data.startNewElement();
    data.closeCurrentElement();
    data.startNewElementWithType(0x0E, 3);
    data.writeInteger(0);
    data.closeCurrentElement();
    KVMPP15VarMeta meta(data, 0x0B40);
    meta.writeMetaHeader();
    meta.writeNextElementMetaWithID(3, 0x33);
    meta.writeElementMetaWithType(0x0E, 3);
    EXPECT_EQ(bytesOf(meta),
              (Bytes{0xBA, 0xAD, 0xDF, 0xFA, 0, 0, 0, 0, 2,    0, 0,    0,   0, 0, 0,    0, 0,    0,
                     0,    0,    12,   0,    0, 0, 3, 0, 0,    0, 0,    0,   0, 0, 0x33, 0, 0x40, 0x0B, //
                     3,    0,    0,    0,    4, 0, 0, 0, 0x0E, 0, 0x40, 0x0B}));
    EXPECT_EQ(raised([&] { meta.writeNextElementMetaWithID(3, 0x36); }),
              "NSRangeException: Attempt to write too many elements into VarMeta");
    EXPECT_EQ(raised([&] { meta.writeElementMetaWithType(0x0E, 3); }),
              "NSRangeException: Attempt to write too many elements into VarMeta");
}

TEST(KVMPPProps, HeaderCountsSizesAndElementsAtClose) {
    KVMPPProps props;
    props.open();
    props.startNewElementForType(0x4400000, 2);
    props.write2ByteInteger(0);
    props.closeCurrentElement();
    props.clearBuffer(); // kept while open: the header is written over at close
    props.setWriteSizeTwice(true);
    props.startNewElementForType(0x4400001, 0);
    props.writeInteger(9);
    props.closeCurrentElement();
    props.close();
    EXPECT_EQ(bytesOf(props), (Bytes{42, 0, 0, 0, 42, 0, 0,    0, 0x74, 0x69, 0x01, 0, 2, 0, 0, 0, //
                                     2,  0, 0, 0, 0,  0, 0x40, 4, 2,    0,    0,    0, 0, 0,       //
                                     4,  0, 0, 0, 1,  0, 0x40, 4, 4,    0,    0,    0, 9, 0, 0, 0}));
    props.clearBuffer();
    EXPECT_EQ(props.dataSize(), 0u);
}

TEST(KVMPPSummaryInfoData, SectionSizeAndCountAreFilledAtClose) {
    KVMPPSummaryInfoData info;
    info.openDoc();
    EXPECT_FALSE(info.closed());
    info.writeZeroesBlockOfSize(8);
    info.close(1);
    const Bytes& bytes = info.data();
    ASSERT_EQ(bytes.size(), 64u);
    EXPECT_EQ((Bytes(bytes.begin(), bytes.begin() + 8)), (Bytes{0xFE, 0xFF, 0, 0, 0x05, 0x01, 0x02, 0}));
    EXPECT_EQ(decodeMPPNumber<uint32_t>(std::span(bytes).subspan(24)), 1u);
    EXPECT_EQ((Bytes(bytes.begin() + 28, bytes.begin() + 32)), (Bytes{0x02, 0xD5, 0xCD, 0xD5}));
    EXPECT_EQ(decodeMPPNumber<uint32_t>(std::span(bytes).subspan(44)), 48u);
    EXPECT_EQ(decodeMPPNumber<uint32_t>(std::span(bytes).subspan(48)), 16u);
    EXPECT_EQ(decodeMPPNumber<uint16_t>(std::span(bytes).subspan(52)), 1u);
    EXPECT_TRUE(info.closed());
}

} // namespace
