#include "MPPImporter/format/MPPFieldCatalog.h"

#include "MPPImporter/format/MPPFieldSamples.h"

#include <gtest/gtest.h>
#include <set>
#include <string>

namespace {

// Per layout and saving application: the value encoded at the field's place of a block (a fixed
// item, a meta item or a variable data block) by the row that the place names reads back from that
// place; a flag or a bit leaves the other bits of its byte alone. Every row is the place of its field in some
// layout, so no row is shadowed by another or lies nowhere.
TEST(MPPFieldCatalog, EveryRowReadsBackWhatItsEncoderWrote) {
    std::set<const MPPFieldRow*> placed;
    for (const MPPFieldRow& row : mppFieldCatalog()) {
        for (int32_t version : kAllLayoutVersions) {
            for (int32_t appVersion : kAllLayoutVersions) {
                const auto place = mppFieldPlace(row.field, version, appVersion);
                if (!place || place->row != &row) {
                    continue;
                }
                placed.insert(&row);
                // A variable data or property row's place is a property number: its value starts
                // the block stored under that number.
                const bool keyed = row.block == MPPFieldBlock::var || row.block == MPPFieldBlock::props;
                const size_t offset = keyed ? 0 : place->position;
                for (const MPPFieldValue& value : mppFieldSamples(row)) {
                    const size_t size = mppEncodedSize(row, value);
                    std::vector<uint8_t> block(offset + size + 4, 0x5A);
                    const auto at = std::span(block).subspan(offset, size);
                    encodeMPPField(*place, value, at);
                    EXPECT_EQ(decodeMPPField(*place, at), value) << row.name << " in " << version;
                    if (place->test.mask != 0) {
                        EXPECT_EQ(block[offset] & ~place->test.mask, 0x5A & ~place->test.mask) << row.name;
                    }
                }
            }
        }
    }
    for (const MPPFieldRow& row : mppFieldCatalog()) {
        EXPECT_TRUE(placed.contains(&row)) << row.name << " lies in no layout";
    }
}

TEST(MPPFieldCatalog, RowsHoldForTheirLayoutsAndApplicationsOnly) {
    EXPECT_FALSE(mppFieldPlace(MPPField::taskManual, 9, 9)); // format 9 has no manual tasks
    EXPECT_FALSE(mppFieldPlace(MPPField::taskName, 13, 13));
    // A row for the files of some applications holds for those only.
    const auto cut = mppFieldPlace(MPPField::resourceCostPerUse, 12, 15);
    const auto whole = mppFieldPlace(MPPField::resourceCostPerUse, 12, 12);
    ASSERT_TRUE(cut && whole);
    EXPECT_NE(cut->row, whole->row);
    EXPECT_EQ(mppFieldPlace(MPPField::resourceCostPerUse, 15, 15)->row, whole->row);
}

} // namespace
