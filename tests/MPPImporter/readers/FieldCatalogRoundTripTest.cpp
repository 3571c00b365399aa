#include "MPPImporter/file/KVMSPIMPP14PropertyList.h"
#include "MPPImporter/file/KVMSPIMPP15PropertyList.h"
#include "MPPImporter/file/KVMSPIMPP16PropertyList.h"
#include "MPPImporter/format/MPPFieldCatalog.h"
#include "MPPImporter/format/MPPFieldSamples.h"
#include "MPPImporter/readers/KVMSPIMPPProjectReader.h"
#include "MPPImporter/readers/KVMSPIMPPTaskReader.h"
#include "MPPImporter/readers/MPPObjectFieldReads.h"
#include "MPPImporter/readers/MPPPropsFieldReads.h"
#include "MPPImporter/readers/TaskReaderFixture.h"
#include "MPPImporter/text/UnicodeText.h"

#include <gtest/gtest.h>
#include <string_view>

namespace {

// One task of the plan: a catalogue row, the copy of its field (0 for the field itself) and the value
// that the task holds there.
struct Case {
    const MPPFieldRow* row;
    int32_t number;
    MPPFieldValue value;
};

// Reads a field by its row into the destination of its kind, and gives what was read as a decoded
// value; none when the read answers false.
std::optional<MPPFieldValue> readBack(const MPPObjectFieldReads& reads, const Case& c, int32_t uid) {
    const auto read = [&]<typename Value>(Value value) -> std::optional<Value> {
        return reads.read(c.row->field, uid, value, nullptr, c.number) ? std::optional(value) : std::nullopt;
    };
    switch (c.row->codec) {
    case MPPFieldCodec::flag:
    case MPPFieldCodec::bit:
        if (auto value = read(false)) {
            return *value;
        }
        break;
    case MPPFieldCodec::float64:
    case MPPFieldCodec::hundredths:
    case MPPFieldCodec::number:
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
    case MPPFieldCodec::int32:
        if (auto value = read(int32_t{0})) {
            return int64_t{*value};
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

// Per task row of the catalogue, layout and copy (the field itself or baseline 1): a plan whose task
// holds a value encoded by the row at its place reads that value back through the row, with the block
// and the codec that the row names; custom field values through the project reader.
TEST(FieldCatalogRoundTrip, EveryTaskRowReadsBackWhatItsEncoderWrote) {
    const std::vector<const KVMSPIMPPPropertyList*> lists = {&KVMSPIMPP14PropertyList::shared(),
                                                             &KVMSPIMPP15PropertyList::shared(),
                                                             &KVMSPIMPP16PropertyList::shared()};
    for (const KVMSPIMPPPropertyList* list : lists) {
        std::vector<Case> cases;
        std::vector<FixtureTask> tasks;
        for (const MPPFieldRow& row : mppFieldCatalog()) {
            const int32_t number = row.copies > 0 ? 1 : 0;
            const auto place = mppFieldPlace(row.field, list->mppVersion(), list->mppVersion(), number);
            if (!std::string_view(row.name).starts_with("task") || !place || place->row != &row) {
                continue;
            }
            for (const MPPFieldValue& value : mppFieldSamples(row, static_cast<int32_t>(tasks.size()) + 1)) {
                FixtureTask task;
                task.uid = static_cast<int32_t>(tasks.size()) + 10;
                task.id = static_cast<int32_t>(tasks.size()) + 1;
                std::vector<uint8_t> bytes(mppEncodedSize(row, value));
                encodeMPPField(*place, value, bytes);
                std::map<MPPFieldBlock, std::map<int32_t, std::vector<uint8_t>>*> blocks = {
                    {MPPFieldBlock::fixed, &task.data},
                    {MPPFieldBlock::fixedMeta, &task.meta},
                    {MPPFieldBlock::fixed2Meta, &task.fixed2Meta},
                    {MPPFieldBlock::var, &task.var},
                    {MPPFieldBlock::custom, &task.var}};
                (*blocks.at(row.block))[static_cast<int32_t>(place->position)] = bytes;
                cases.push_back({&row, number, value});
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

// A project property read by its row into the destination of its kind, as a decoded value; none when
// the read answers false, the null date for an absent date.
std::optional<MPPFieldValue> readProperty(const MPPPropsFieldReads& reads, const MPPFieldRow& row) {
    const auto read = [&]<typename Value>(Value value) -> std::optional<Value> {
        return reads.read(row.field, value, nullptr) ? std::optional(value) : std::nullopt;
    };
    switch (row.codec) {
    case MPPFieldCodec::flag:
        return read(false);
    case MPPFieldCodec::int16:
        if (auto value = read(int16_t{0})) {
            return int64_t{*value};
        }
        break;
    case MPPFieldCodec::int32:
        if (auto value = read(int32_t{0})) {
            return int64_t{*value};
        }
        break;
    case MPPFieldCodec::timestamp:
        return std::optional(read(TVDate{}));
    case MPPFieldCodec::text:
        if (auto value = read(std::string())) {
            return utf16FromUTF8(*value);
        }
        break;
    default:
        break;
    }
    return std::nullopt;
}

// Per Props row of the catalogue, layout and sample: a plan whose Props stream holds the value encoded
// by the row under its property number reads it back through the row.
TEST(FieldCatalogRoundTrip, EveryPropsRowReadsBackWhatItsEncoderWrote) {
    for (const KVMSPIMPPPropertyList* list :
         {static_cast<const KVMSPIMPPPropertyList*>(&KVMSPIMPP14PropertyList::shared()),
          static_cast<const KVMSPIMPPPropertyList*>(&KVMSPIMPP16PropertyList::shared())}) {
        for (size_t sample = 0; sample < 2; ++sample) {
            std::map<uint32_t, std::vector<uint8_t>> entries;
            std::vector<std::pair<const MPPFieldRow*, MPPFieldValue>> cases;
            for (const MPPFieldRow& row : mppFieldCatalog()) {
                const auto place = list->fieldPlace(row.field, list->mppVersion());
                const std::vector<MPPFieldValue> samples = mppFieldSamples(row);
                if (row.block != MPPFieldBlock::props || !place || place->row != &row ||
                    sample >= samples.size()) {
                    continue;
                }
                std::vector<uint8_t> bytes(mppEncodedSize(row, samples[sample]));
                encodeMPPField(row, samples[sample], bytes);
                entries[place->position] = bytes;
                cases.emplace_back(&row, samples[sample]);
            }
            ASSERT_GT(cases.size(), sample == 0 ? 10u : 2u);
            FixtureTask task;
            task.uid = task.id = 1;
            const TaskPlanFixture plan({task}, TaskPlanFixture::propsStream(entries), *list);
            const MPPPropsFieldReads reads(plan.project().propsReader(), *list, list->mppVersion());
            for (const auto& [row, value] : cases) {
                EXPECT_EQ(readProperty(reads, *row), std::optional(value))
                    << row->name << " in " << list->mppVersion();
            }
        }
    }
}

} // namespace
