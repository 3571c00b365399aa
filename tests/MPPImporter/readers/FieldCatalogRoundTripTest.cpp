#include "MPPImporter/file/KVMSPIMPP14PropertyList.h"
#include "MPPImporter/file/KVMSPIMPP15PropertyList.h"
#include "MPPImporter/file/KVMSPIMPP16PropertyList.h"
#include "MPPImporter/format/MPPFieldCatalog.h"
#include "MPPImporter/format/MPPFieldSamples.h"
#include "MPPImporter/readers/KVMSPIMPPTaskReader.h"
#include "MPPImporter/readers/MPPObjectFieldReads.h"
#include "MPPImporter/readers/TaskReaderFixture.h"
#include "MPPImporter/text/UnicodeText.h"

#include <gtest/gtest.h>
#include <string_view>

namespace {

// One task of the plan: a catalogue row and the value that the task holds there.
struct Case {
    const MPPFieldRow* row;
    MPPFieldValue value;
};

// Reads a field by its row into the destination of its kind, and gives what was read as a decoded
// value; none when the read answers false.
std::optional<MPPFieldValue> readBack(const MPPObjectFieldReads& reads, const Case& c, int32_t uid) {
    const auto read = [&]<typename Value>(Value value) -> std::optional<Value> {
        return reads.read(c.row->field, uid, value, nullptr) ? std::optional(value) : std::nullopt;
    };
    switch (c.row->codec) {
    case MPPFieldCodec::flag:
        if (auto value = read(false)) {
            return *value;
        }
        break;
    case MPPFieldCodec::float64:
    case MPPFieldCodec::hundredths:
        if (auto value = read(0.0)) {
            return *value;
        }
        break;
    case MPPFieldCodec::timestamp:
        if (auto value = read(TVDate{})) {
            return std::optional(*value);
        }
        return std::optional<TVDate>();
    case MPPFieldCodec::text:
        if (auto value = read(std::string())) {
            return utf16FromUTF8(*value);
        }
        break;
    case MPPFieldCodec::bytes:
        if (auto value = read(std::vector<uint8_t>())) {
            return *value;
        }
        break;
    default:
        if (auto value = read(int64_t{0})) {
            return *value;
        }
        break;
    }
    return std::nullopt;
}

// Per task row of the catalogue and layout: a plan whose task holds a value encoded
// by the row at its place reads that value back through the row, with the block and the codec that
// the row names.
TEST(FieldCatalogRoundTrip, EveryTaskRowReadsBackWhatItsEncoderWrote) {
    const std::vector<const KVMSPIMPPPropertyList*> lists = {&KVMSPIMPP14PropertyList::shared(),
                                                             &KVMSPIMPP15PropertyList::shared(),
                                                             &KVMSPIMPP16PropertyList::shared()};
    for (const KVMSPIMPPPropertyList* list : lists) {
        std::vector<Case> cases;
        std::vector<FixtureTask> tasks;
        for (const MPPFieldRow& row : mppFieldCatalog()) {
            const auto place = mppFieldPlace(row.field, list->mppVersion(), list->mppVersion());
            if (!std::string_view(row.name).starts_with("task") || !place || place->row != &row) {
                continue;
            }
            for (const MPPFieldValue& value : mppFieldSamples(row, static_cast<int32_t>(tasks.size()) + 1)) {
                FixtureTask task;
                task.uid = static_cast<int32_t>(tasks.size()) + 10;
                task.id = static_cast<int32_t>(tasks.size()) + 1;
                std::vector<uint8_t> bytes(mppEncodedSize(row, value));
                encodeMPPField(row, value, bytes);
                std::map<MPPFieldBlock, std::map<int32_t, std::vector<uint8_t>>*> blocks = {
                    {MPPFieldBlock::fixed, &task.data},
                    {MPPFieldBlock::fixedMeta, &task.meta},
                    {MPPFieldBlock::fixed2Meta, &task.fixed2Meta},
                    {MPPFieldBlock::var, &task.var}};
                (*blocks.at(row.block))[static_cast<int32_t>(place->position)] = bytes;
                cases.push_back({&row, value});
                tasks.push_back(task);
            }
        }
        ASSERT_GT(cases.size(), 40u);
        const TaskPlanFixture plan(tasks, TaskPlanFixture::propsStream({}), *list);
        const MPPObjectFieldReads reads(plan.tasks());
        for (size_t i = 0; i < cases.size(); ++i) {
            const std::optional<MPPFieldValue> read = readBack(reads, cases[i], tasks[i].uid);
            EXPECT_EQ(read, std::optional(cases[i].value))
                << cases[i].row->name << " in " << list->mppVersion();
        }
    }
}

} // namespace
