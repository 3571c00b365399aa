#include "MPPImporter/format/MPPFieldCatalog.h"

#include "MPPImporter/format/MPPFieldSamples.h"

#include <gtest/gtest.h>
#include <set>
#include <string>

namespace {

// Per layout, saving application and copy (the field itself, or its first or last numbered copy): the
// value encoded at the field's place of a block (a fixed item, a meta item, a variable data block or an
// entry of one) by the row that the place names reads back from that place; a flag or a bit leaves the
// other bits of its byte alone. Every row is the place of its field in some layout, so no row is
// shadowed by another or lies nowhere.
TEST(MPPFieldCatalog, EveryRowReadsBackWhatItsEncoderWrote) {
    std::set<const MPPFieldRow*> placed;
    for (const MPPFieldRow& row : mppFieldCatalog()) {
        for (int32_t version : kAllLayoutVersions) {
            for (int32_t appVersion : kAllLayoutVersions) {
                for (int32_t number : {0, 1, 10}) {
                    const auto place = mppFieldPlace(row.field, version, appVersion, number);
                    if (!place || place->row != &row) {
                        continue;
                    }
                    placed.insert(&row);
                    // A place in the variable data or the properties is a property number or an entry's
                    // name: the value starts the block stored there.
                    const bool keyed =
                        row.block != MPPFieldBlock::fixed && row.block != MPPFieldBlock::fixedMeta &&
                        row.block != MPPFieldBlock::fixed2 && row.block != MPPFieldBlock::fixed2Meta;
                    const size_t offset = keyed ? 0 : place->position;
                    for (const MPPFieldValue& value : mppFieldSamples(row)) {
                        const size_t size = mppEncodedSize(row, value);
                        std::vector<uint8_t> block(offset + size + 4, 0x5A);
                        const auto at = std::span(block).subspan(offset, size);
                        encodeMPPField(*place, value, at);
                        EXPECT_EQ(decodeMPPField(*place, at), value) << row.name << " in " << version;
                        if (place->test.mask != 0) {
                            EXPECT_EQ(block[offset] & ~place->test.mask, 0x5A & ~place->test.mask)
                                << row.name;
                        }
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

    // Numbered rows hold for the copies only: format 12 keeps baseline 1's cost as a custom field value,
    // format 9 as the entry of the extended fields that bears format 12's number under the task field
    // mark, in the block of property 0xA3.
    const auto custom = mppFieldPlace(MPPField::taskBaselineCost, 12, 12, 1);
    const auto extended = mppFieldPlace(MPPField::taskBaselineCost, 9, 9, 1);
    ASSERT_TRUE(custom && extended);
    EXPECT_EQ(custom->row->block, MPPFieldBlock::custom);
    EXPECT_EQ(custom->position, 484u);
    EXPECT_EQ(extended->position, 0x0B4001E4u);
    EXPECT_EQ(extended->container, 0xA3u);
    EXPECT_EQ(mppFieldPlace(MPPField::taskBaselineCost, 12, 12)->row->block, MPPFieldBlock::fixed);
    EXPECT_FALSE(mppFieldPlace(MPPField::taskName, 14, 14, 1));

    // A copy beyond a field's copies lies nowhere, even where its key is another field's: text 41's key
    // is that of the next type's first field.
    EXPECT_FALSE(mppFieldPlace(MPPField::taskBaselineCost, 14, 14, 11));
    EXPECT_FALSE(mppFieldPlace(MPPField::taskCustomText, 14, 14, 31));
    EXPECT_FALSE(mppFieldPlace(MPPField::taskCustomText, 14, 14, 41));
    EXPECT_TRUE(mppFieldPlace(MPPField::taskCustomText, 14, 14, 30));
}

// A number takes the width of its block.
TEST(MPPFieldCatalog, NumbersAreReadInTheWidthOfTheirBlock) {
    const MPPFieldRow& row = *mppFieldPlace(MPPField::outlineCodeValueNumber, 14, 14)->row;
    EXPECT_EQ(decodeMPPField(row, std::vector<uint8_t>{0xFE}), MPPFieldValue(-2.0));
    EXPECT_EQ(decodeMPPField(row, std::vector<uint8_t>{0x00, 0x80}), MPPFieldValue(-32768.0));
    EXPECT_EQ(decodeMPPField(row, std::vector<uint8_t>{0x40, 0x42, 0x0F, 0x00}), MPPFieldValue(1e6));
    EXPECT_EQ(decodeMPPField(row, std::vector<uint8_t>{1, 2, 3}), MPPFieldValue(0.0));
}

} // namespace
