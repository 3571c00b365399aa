#pragma once

#include <cstdint>

// Layout of one fixed stream pair ("FixedMeta"/"FixedData" or "Fixed2Meta"/"Fixed2Data").
struct MPPFixedStreamParams {
    uint32_t metaStreamMagicNumber = 0;
    uint32_t metaStreamItemSize = 0;
    // Size of a data item when the offsets in the meta stream give none.
    uint32_t dataStreamMinItemSize = 0;
    // Upper limit of a data item; 0 for none.
    uint32_t dataStreamMaxItemSize = 0;

    constexpr bool operator==(const MPPFixedStreamParams&) const = default;
};

// Layout of the variable stream pair ("VarMeta"/"Var2Data").
struct MPPVarStreamParams {
    uint32_t metaStreamMagicNumber = 0;
    uint32_t metaStreamItemSize = 0;

    constexpr bool operator==(const MPPVarStreamParams&) const = default;
};

// Which streams of an object kind's storage are read in a format version, and how they are laid out.
struct MPPDataStreamParams {
    bool hasPropsStream = false;
    bool hasFixedStream = false;
    MPPFixedStreamParams fixed;
    bool hasFixed2Stream = false;
    MPPFixedStreamParams fixed2;
    // Meta items below this index hold no objects.
    uint64_t firstFixedIndex = 0;
    bool hasVarStream = false;
    MPPVarStreamParams var;

    constexpr bool operator==(const MPPDataStreamParams&) const = default;
};
