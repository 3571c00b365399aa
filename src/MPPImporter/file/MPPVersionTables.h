#pragma once

#include "MPPImporter/file/MPPDataStreamParams.h"

#include <array>
#include <cstdint>

// Everything about one format version's layout that is a plain value: names of the version's
// storages and Props stream, the stream layouts per object kind, minimum item sizes and the task flag
// masks. The property lists read their answers from here.
struct MPPVersionTables {
    int32_t mppVersion = 0;
    // Column of this version in the property key tables.
    int keyColumn = 0;

    const char* ole2PropsName = "";
    const char* ole2AppDirectoryName = "";
    const char* ole2DataDirectoryName = "";

    MPPDataStreamParams assignmentStreams;
    MPPDataStreamParams calendarStreams;
    MPPDataStreamParams constraintStreams;
    MPPDataStreamParams outlcodeStreams;
    MPPDataStreamParams resourceStreams;
    MPPDataStreamParams taskStreams;

    int32_t resourceMinExpectedSize = 0;
    int32_t resourceFixedDataMinItemSize = 0;
    int32_t taskMinExpectedSize = 0;
    int32_t taskFixedDataMinItemSize = 0;
    int32_t calendarFixedDataMinItemSize = 0;
    int32_t calendarWeekDayWorkingTimesOffset = 0;

    // The bit of task flag n (1 to 20) in the FixedMeta byte that the offset key 215 + n points at.
    std::array<uint8_t, 20> taskFlagMask{};
    // The bits of a task's marks: effort-driven and milestone in the FixedMeta bytes of their keys,
    // manual in the Fixed2Meta byte of its key.
    uint8_t taskEffortDrivenBit = 0;
    uint8_t taskMilestoneBit = 0;
    uint8_t taskManualBit = 0;

    // The Fixed2 meta items of this version are at least as long as the stream layouts say, and their
    // true length, which differs between files, is taken from the stream's header.
    bool fixed2MetaItemSizeFromStream = false;
};

// The tables of version 9, 12, 14, 15 or 16; none for any other number.
const MPPVersionTables* mppVersionTables(int32_t version);
