#include "MPPImporter/format/MPPFieldCatalog.h"

#include "MPPImporter/format/MPPFieldSamples.h"

#include <gtest/gtest.h>
#include <set>
#include <string>

namespace {

// Per row and layout: the value encoded at the field's place of a block (a fixed
// item, a meta item or a variable data block) reads back from that place; a flag leaves the other
// bits of its byte alone. Every field lies somewhere in some layout, and no two rows of a field
// claim the same layout.
TEST(MPPFieldCatalog, EveryRowReadsBackWhatItsEncoderWrote) {
    std::set<std::string> placed;
    for (const MPPFieldRow& row : mppFieldCatalog()) {
        for (int32_t version : kAllLayoutVersions) {
            const auto place = mppFieldPlace(row.field, version);
            if (!place || place->row != &row) {
                EXPECT_FALSE(place && row.layouts.contains(version)) << row.name << " in " << version;
                continue;
            }
            placed.insert(row.name);
            for (const MPPFieldValue& value : mppFieldSamples(row)) {
                const size_t size = mppEncodedSize(row, value);
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
    for (const MPPFieldRow& row : mppFieldCatalog()) {
        EXPECT_TRUE(placed.contains(row.name)) << row.name << " lies in no layout";
    }
}

TEST(MPPFieldCatalog, FieldsOutsideALayoutHaveNoPlace) {
    EXPECT_FALSE(mppFieldPlace(MPPField::taskManual, 9)); // format 9 has no manual tasks
    EXPECT_FALSE(mppFieldPlace(MPPField::taskName, 13));
}

} // namespace
