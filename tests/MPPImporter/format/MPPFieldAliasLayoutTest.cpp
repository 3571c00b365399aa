#include "MPPImporter/format/MPPFieldAliasLayout.h"

#include "MPPImporter/format/MPPValueCodecs.h"

#include <gtest/gtest.h>

namespace {

using Bytes = std::vector<uint8_t>;

uint32_t wordAt(const Bytes& bytes, size_t at) {
    return decodeMPPNumber<uint32_t>(std::span(bytes).subspan(at));
}

// What the writer encodes, the reader decodes; the words lie where the application's files hold them:
// both sizes count from the second size to the end of the names, and name offsets from the second size.
TEST(MPPFieldAliasLayout, EncodedNamesDecodeAndLieWhereTheFilesHoldThem) {
    const std::vector<MPPFieldAlias> aliases = {{51, 0x0B40, u"Room"}, {57, 0x0B40, u"Z\u00FCrich"}};
    const Bytes payload = encodeMPPFieldAliases(aliases);
    EXPECT_EQ(decodeMPPFieldAliases(payload), aliases);

    const size_t namesEnd = 12 + 2 * 8 + 2 * (4 + 1) + 2 * (6 + 1);
    ASSERT_EQ(payload.size(), namesEnd + 32);
    EXPECT_EQ(wordAt(payload, 0), namesEnd - 4);
    EXPECT_EQ(wordAt(payload, 4), namesEnd - 4);
    EXPECT_EQ(wordAt(payload, 8), 2u);
    EXPECT_EQ(wordAt(payload, 12), 0x0B400033u) << "property 51, then the mark";
    EXPECT_EQ(wordAt(payload, 16), 24u);
    EXPECT_EQ(wordAt(payload, 24), 34u);
    EXPECT_EQ(decodeMPPText(std::span(payload).subspan(28)), u"Room");
    EXPECT_EQ(Bytes(payload.end() - 32, payload.end()),
              (Bytes{8, 0, 0, 0, 8, 0, 0, 0, 0, 0, 0, 0, 8, 0, 0, 0,
                     8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));

    // Cut payloads: a count beyond the entries ends at the last whole one, a name that isn't whole gives
    // none, and so does an empty one; nothing is read outside the payload.
    EXPECT_TRUE(decodeMPPFieldAliases(std::span(payload).first(11)).empty());
    EXPECT_TRUE(decodeMPPFieldAliases(std::span(payload).first(27)).empty());
    EXPECT_TRUE(decodeMPPFieldAliases(std::span(payload).first(36)).empty())
        << "the first name cut before its NUL";
    EXPECT_EQ(decodeMPPFieldAliases(std::span(payload).first(38)).size(), 1u);
    EXPECT_TRUE(
        decodeMPPFieldAliases(encodeMPPFieldAliases(std::vector<MPPFieldAlias>{{60, 0, u""}})).empty());
}

// Format 9's list: a name for each place, empty ones too; a last name without its NUL is left out.
TEST(MPPFieldAliasLayout, NameListsHoldANameForEachPlace) {
    const Bytes list = {0, 0, 'A', 0, 'b', 0, 0, 0, 0, 0, 'C', 0};
    EXPECT_EQ(decodeMPPFieldNameList(list), (std::vector<std::u16string>{u"", u"Ab", u""}));
    EXPECT_TRUE(decodeMPPFieldNameList(std::span(list).first(1)).empty());
}

} // namespace
