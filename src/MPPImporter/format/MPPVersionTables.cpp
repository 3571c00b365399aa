#include "MPPImporter/format/MPPVersionTables.h"

#include "MPPImporter/format/MPPFormatConstants.h"

namespace {

constexpr uint32_t kMagic = 0xFADFADBA;

constexpr MPPFixedStreamParams fixedStream(uint32_t itemSize, uint32_t minItemSize, uint32_t maxItemSize,
                                           uint32_t magic = kMagic) {
    return {magic, itemSize, minItemSize, maxItemSize};
}

// A fixed stream slot that the kind doesn't use: only the magic number is set.
constexpr MPPFixedStreamParams kUnusedFixed = fixedStream(0, 0, 0);
// Outline codes have no fixed streams before version 15, and not even a magic number there.
constexpr MPPFixedStreamParams kNoFixed = fixedStream(0, 0, 0, 0);

constexpr MPPDataStreamParams streams(bool hasProps, bool hasFixed, MPPFixedStreamParams fixed,
                                      bool hasFixed2, MPPFixedStreamParams fixed2, uint64_t firstFixedIndex,
                                      bool hasVar, uint32_t varItemSize) {
    return {hasProps, hasFixed, fixed, hasFixed2, fixed2, firstFixedIndex, hasVar, {kMagic, varItemSize}};
}

constexpr std::array<uint8_t, 20> kFlagMask9 = {0x20, 0x40, 0x80, 0x01, 0x02, 0x04, 0x08, 0x10, 0x20, 0x40,
                                                0x80, 0x01, 0x02, 0x04, 0x08, 0x10, 0x20, 0x40, 0x80, 0x01};
constexpr std::array<uint8_t, 20> kFlagMask14 = {0x40, 0x80, 0x01, 0x02, 0x04, 0x08, 0x10, 0x20, 0x40, 0x80,
                                                 0x01, 0x02, 0x04, 0x08, 0x10, 0x20, 0x40, 0x80, 0x01, 0x02};
// Applications 15 and 16 keep flags 1 to 10 in two bytes from bit 1 on, and flags 11 to 20 likewise.
constexpr std::array<uint8_t, 20> kFlagMask15 = {0x02, 0x04, 0x08, 0x10, 0x20, 0x40, 0x80, 0x01, 0x02, 0x04,
                                                 0x02, 0x04, 0x08, 0x10, 0x20, 0x40, 0x80, 0x01, 0x02, 0x04};

constexpr MPPVersionTables kTables9 = {
    .mppVersion = kMSPDIVersion_2003,
    .keyColumn = 0,
    .ole2PropsName = "Props9",
    .ole2AppDirectoryName = "   29",
    .ole2DataDirectoryName = "   19",
    .assignmentStreams = streams(false, true, fixedStream(34, 0, 0), false, kUnusedFixed, 0, true, 8),
    .calendarStreams = streams(false, true, fixedStream(10, 12, 12), false, kUnusedFixed, 0, true, 8),
    .constraintStreams = streams(false, true, fixedStream(10, 20, 20), false, kUnusedFixed, 0, false, 8),
    .outlcodeStreams = streams(false, false, kNoFixed, false, kNoFixed, 0, true, 8),
    .resourceStreams = streams(true, true, fixedStream(37, 188, 0), false, kUnusedFixed, 3, true, 8),
    .taskStreams = streams(true, true, fixedStream(47, 240, 768), false, kUnusedFixed, 3, true, 8),
    .resourceMinExpectedSize = 188,
    .resourceFixedDataMinItemSize = 188,
    .taskMinExpectedSize = 240,
    .taskFixedDataMinItemSize = 240,
    .calendarFixedDataMinItemSize = 12,
    .calendarWeekDayWorkingTimesOffset = 4,
    .taskFlagMask = kFlagMask9,
};

constexpr MPPVersionTables kTables12 = {
    .mppVersion = kMSPDIVersion_2007,
    .keyColumn = 1,
    .ole2PropsName = "Props12",
    .ole2AppDirectoryName = "   212",
    .ole2DataDirectoryName = "   112",
    .assignmentStreams = streams(false, true, fixedStream(34, 0, 0), false, kUnusedFixed, 0, true, 12),
    .calendarStreams = streams(false, true, fixedStream(10, 12, 12), false, kUnusedFixed, 0, true, 12),
    .constraintStreams = streams(false, true, fixedStream(10, 20, 20), false, kUnusedFixed, 0, false, 12),
    .outlcodeStreams = streams(false, false, kNoFixed, false, kNoFixed, 0, true, 12),
    .resourceStreams = streams(true, true, fixedStream(37, 188, 0), true, fixedStream(49, 0, 0), 3, true, 12),
    .taskStreams = streams(true, true, fixedStream(47, 240, 768), true, fixedStream(86, 0, 0), 3, true, 12),
    .resourceMinExpectedSize = 188,
    .resourceFixedDataMinItemSize = 188,
    .taskMinExpectedSize = 240,
    .taskFixedDataMinItemSize = 240,
    .calendarFixedDataMinItemSize = 12,
    .calendarWeekDayWorkingTimesOffset = 0,
    .taskFlagMask = kFlagMask9,
};

constexpr MPPVersionTables kTables14 = {
    .mppVersion = kMSPDIVersion_2010,
    .keyColumn = 2,
    .ole2PropsName = kProjectPropsFileName,
    .ole2AppDirectoryName = k214DirectoryName,
    .ole2DataDirectoryName = k114DirectoryName,
    .assignmentStreams = kTables12.assignmentStreams,
    .calendarStreams = kTables12.calendarStreams,
    .constraintStreams = kTables12.constraintStreams,
    .outlcodeStreams = kTables12.outlcodeStreams,
    .resourceStreams = streams(true, true, fixedStream(37, 188, 0), true, fixedStream(50, 0, 0), 3, true, 12),
    .taskStreams = streams(true, true, fixedStream(47, 206, 768), true, fixedStream(92, 0, 0), 3, true, 12),
    .resourceMinExpectedSize = 188,
    .resourceFixedDataMinItemSize = 188,
    .taskMinExpectedSize = 206,
    .taskFixedDataMinItemSize = 206,
    .calendarFixedDataMinItemSize = 12,
    .calendarWeekDayWorkingTimesOffset = 0,
    .taskFlagMask = kFlagMask14,
};

constexpr MPPVersionTables kTables15 = {
    .mppVersion = kMSPDIVersion_2013,
    .keyColumn = 3,
    .ole2PropsName = kProjectPropsFileName,
    .ole2AppDirectoryName = k214DirectoryName,
    .ole2DataDirectoryName = k114DirectoryName,
    .assignmentStreams =
        streams(true, true, fixedStream(34, 110, 110), true, fixedStream(53, 48, 48), 0, true, 12),
    .calendarStreams =
        streams(false, true, fixedStream(10, 12, 12), true, fixedStream(9, 48, 48), 0, true, 12),
    .constraintStreams = kTables12.constraintStreams,
    .outlcodeStreams = streams(false, true, fixedStream(10, 0, 0), false, kUnusedFixed, 0, true, 12),
    .resourceStreams =
        streams(true, true, fixedStream(37, 172, 0), true, fixedStream(50, 40, 40), 3, true, 12),
    .taskStreams = streams(true, true, fixedStream(47, 194, 768), true, fixedStream(93, 0, 0), 3, true, 12),
    .resourceMinExpectedSize = 172,
    .resourceFixedDataMinItemSize = 172,
    .taskMinExpectedSize = 194,
    .taskFixedDataMinItemSize = 194,
    .calendarFixedDataMinItemSize = 12,
    .calendarWeekDayWorkingTimesOffset = 0,
    .taskFlagMask = kFlagMask15,
};

// Application 16 writes what 15 writes, except that its later releases lengthen the Fixed2 meta items
// (tasks 94 or 96 bytes, resources 51, calendars 10) without moving the fields in them.
constexpr MPPVersionTables tables16() {
    MPPVersionTables tables = kTables15;
    tables.mppVersion = kMSPDIVersion_2016;
    tables.keyColumn = 4;
    tables.fixed2MetaItemSizeFromStream = true;
    return tables;
}
constexpr MPPVersionTables kTables16 = tables16();

} // namespace

const MPPVersionTables* mppVersionTables(int32_t version) {
    for (const MPPVersionTables* tables : {&kTables9, &kTables12, &kTables14, &kTables15, &kTables16}) {
        if (tables->mppVersion == version) {
            return tables;
        }
    }
    return nullptr;
}
