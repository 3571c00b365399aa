#include "MPPImporter/format/MPPFieldCatalog.h"

#include <gtest/gtest.h>
#include <set>
#include <string>

namespace {

// A value of the row's kind that no field holds by chance, and for flags both answers.
std::vector<MPPFieldValue> samples(const MPPFieldRow& row) {
    switch (row.codec) {
    case MPPFieldCodec::ubyte:
        return {int64_t{0xA5}};
    case MPPFieldCodec::int16:
        return {int64_t{-1234}};
    case MPPFieldCodec::int32:
        return {int64_t{-123456789}};
    case MPPFieldCodec::float64:
    case MPPFieldCodec::hundredths:
        return {1234.5};
    case MPPFieldCodec::timestamp:
        return {std::optional(getMPPEpoch().addingSeconds(100 * 86400.0 + 8 * 3600)),
                std::optional<TVDate>()};
    case MPPFieldCodec::duration:
        return {int64_t{-90 * kMicrosecondsPerSecond}};
    case MPPFieldCodec::work:
        return {int64_t{8 * 3600 * kMicrosecondsPerSecond}};
    case MPPFieldCodec::flag:
        return {true, false};
    case MPPFieldCodec::text:
        return {std::u16string(u"Name \u20AC")};
    case MPPFieldCodec::bytes:
        return {std::vector<uint8_t>{1, 2, 3}};
    }
    return {};
}

size_t encodedSize(const MPPFieldRow& row, const MPPFieldValue& value) {
    if (const auto* text = std::get_if<std::u16string>(&value)) {
        return 2 * (text->size() + 1);
    }
    if (const auto* block = std::get_if<std::vector<uint8_t>>(&value)) {
        return block->size();
    }
    return mppFieldSize(row);
}

// Per row, layout and group member: the value encoded at the field's place of a block (a fixed
// item, a meta item or a variable data block) reads back from that place; a flag leaves the other
// bits of its byte alone. Every field lies somewhere in some layout, and no two rows of a field
// claim the same layout.
TEST(MPPFieldCatalog, EveryRowReadsBackWhatItsEncoderWrote) {
    std::set<std::string> placed;
    for (const MPPFieldRow& row : mppFieldCatalog()) {
        for (int32_t version : kAllLayoutVersions) {
            for (int32_t index = 0; index < row.count; ++index) {
                const auto place = mppFieldPlace(row.field, version, index);
                if (!place || place->row != &row) {
                    EXPECT_FALSE(place && row.layouts.contains(version)) << row.name << " in " << version;
                    continue;
                }
                placed.insert(row.name);
                for (const MPPFieldValue& value : samples(row)) {
                    const size_t size = encodedSize(row, value);
                    std::vector<uint8_t> block(place->position + size + 4, 0x5A);
                    const auto at = std::span(block).subspan(place->position, size);
                    encodeMPPField(row, value, at);
                    EXPECT_EQ(decodeMPPField(row, at), value) << row.name << " in " << version;
                    if (row.test.mask != 0) {
                        EXPECT_EQ(block[place->position] & ~row.test.mask, 0x5A & ~row.test.mask) << row.name;
                    }
                }
            }
        }
    }
    for (const MPPFieldRow& row : mppFieldCatalog()) {
        EXPECT_TRUE(placed.contains(row.name)) << row.name << " lies in no layout";
    }
}

TEST(MPPFieldCatalog, FieldsOutsideALayoutOrGroupHaveNoPlace) {
    EXPECT_FALSE(mppFieldPlace(MPPField::taskManual, 9)); // format 9 has no manual tasks
    EXPECT_FALSE(mppFieldPlace(MPPField::taskName, 13));
    EXPECT_FALSE(mppFieldPlace(MPPField::taskHasBaseline, 14, 11));
    EXPECT_FALSE(mppFieldPlace(MPPField::taskHasBaseline, 14, -1));
}

} // namespace
