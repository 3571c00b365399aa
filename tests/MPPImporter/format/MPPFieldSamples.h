#pragma once

#include "MPPImporter/format/MPPFieldCatalog.h"

#include <vector>

// Values of a catalogue row's kind that no field holds by chance, the null date among the dates and
// both answers of a flag. A row of the task ID gives `id`: tasks are sorted by it, so each keeps
// its own.
inline std::vector<MPPFieldValue> mppFieldSamples(const MPPFieldRow& row, int32_t id = 1) {
    switch (row.codec) {
    case MPPFieldCodec::ubyte:
        return {int64_t{0xA5}};
    case MPPFieldCodec::int16:
        return {int64_t{-1234}};
    case MPPFieldCodec::int32:
        return {int64_t{row.field == MPPField::taskID ? id : -123456789}};
    case MPPFieldCodec::float64:
    case MPPFieldCodec::hundredths:
    case MPPFieldCodec::number:
        return {-1234.5};
    case MPPFieldCodec::timestamp:
        return {std::optional(getMPPEpoch().addingSeconds(100 * 86400.0 + 8 * 3600)),
                std::optional<TVDate>()};
    case MPPFieldCodec::duration:
        return {int64_t{-90 * kMicrosecondsPerSecond}};
    case MPPFieldCodec::work:
        return {int64_t{8 * 3600 * kMicrosecondsPerSecond}};
    case MPPFieldCodec::flag:
    case MPPFieldCodec::bit:
        return {true, false};
    case MPPFieldCodec::text:
        return {std::u16string(u"Name \u20AC")};
    case MPPFieldCodec::bytes:
        return {std::vector<uint8_t>{1, 2, 3}};
    }
    return {};
}
