#include "MPPImporter/format/MPPCustomFieldTables.h"

#include "MPPImporter/format/MPPFormatConstants.h"

#include <array>
#include <string>
#include <vector>

namespace {

// A run of consecutive field numbers whose property numbers start at `firstNumber` and grow by `step`.
struct Run {
    int count = 0;
    int64_t firstNumber = 0;
    int64_t step = 1;
};

// The fields of one type: its name part ("COST") and up to four runs, numbered from 1 on.
struct FieldLayout {
    const char* typeName;
    std::array<Run, 4> runs;
};

constexpr size_t kTypeCount = 8;
using KindLayout = std::array<FieldLayout, kTypeCount>;

// In the order of MPPCustomFieldType. Version 9 files number the resource fields on their own: text,
// start, finish, number and duration fields follow each other from 10 on, then dates, outline codes
// and costs, clear of the notes under 124.
constexpr KindLayout kResourceLayout9 = {{
    {"COST", {{{10, 125}}}},
    {"DATE", {{{10, 103}}}},
    {"DURATION", {{{10, 80}}}},
    {"FINISH", {{{10, 50}}}},
    {"NUMBER", {{{20, 60}}}},
    {"OUTLINECODE", {{{10, 113}}}},
    {"START", {{{10, 40}}}},
    {"TEXT", {{{30, 10}}}},
}};

constexpr KindLayout kResourceLayout12 = {{
    {"COST", {{{3, 123}, {7, 166}}}},
    {"DATE", {{{10, 173}}}},
    {"DURATION", {{{3, 117}, {7, 183}}}},
    {"FINISH", {{{5, 107}, {5, 190}}}},
    {"NUMBER", {{{5, 112}, {15, 205}}}},
    {"OUTLINECODE", {{{10, 279, 2}}}},
    {"START", {{{5, 102}, {5, 220}}}},
    {"TEXT", {{{2, 8}, {3, 30}, {5, 97}, {20, 225}}}},
}};

constexpr KindLayout kTaskLayout9 = {{
    {"COST", {{{10, 134}}}},
    {"DATE", {{{10, 80}}}},
    {"DURATION", {{{10, 55, 2}}}},
    {"FINISH", {{{10, 25, 2}}}},
    {"NUMBER", {{{10, 45}, {10, 110}}}},
    {"OUTLINECODE", {{{10, 123}}}},
    {"START", {{{10, 24, 2}}}},
    {"TEXT", {{{10, 14}, {20, 90}}}},
}};

constexpr KindLayout kTaskLayout12 = {{
    {"COST", {{{3, 106}, {7, 258}}}},
    {"DATE", {{{10, 265}}}},
    {"DURATION", {{{3, 103}, {7, 275}}}},
    {"FINISH", {{{5, 53, 3}, {5, 283, 2}}}},
    {"NUMBER", {{{5, 87}, {15, 302}}}},
    {"OUTLINECODE", {{{10, 417, 2}}}},
    {"START", {{{5, 52, 3}, {5, 282, 2}}}},
    {"TEXT", {{{6, 51, 3}, {4, 67}, {20, 317}}}},
}};

// The places of the names in format 9's lists, per type in the order of MPPCustomFieldType, as the
// application's files hold them: runs of consecutive fields, numbered from 1 on.
using NamePlaces = std::array<std::array<Run, 2>, kTypeCount>;

constexpr NamePlaces kTaskNamePlaces9 = {{
    {{{10, 278}}},
    {{{10, 184}}},
    {{{10, 159, 2}}},
    {{{10, 129, 2}}},
    {{{10, 149}, {10, 214}}},
    {{{10, 227}}},
    {{{10, 128, 2}}},
    {{{10, 118}, {20, 194}}},
}};

constexpr NamePlaces kResourceNamePlaces9 = {{
    {{{10, 207}}},
    {{{10, 145}}},
    {{{10, 122}}},
    {{{10, 92}}},
    {{{20, 102}}},
    {{{10, 155}}},
    {{{10, 82}}},
    {{{30, 52}}},
}};

constexpr int32_t kTaskFieldNameListProperty9 = 0x100001;
constexpr int32_t kResourceFieldNameListProperty9 = 0x100002;

using KindTables = std::array<std::vector<MPPCustomFieldRecord>, kTypeCount>;

KindTables buildTables(const std::string& kindName, const KindLayout& layout) {
    KindTables tables;
    for (size_t type = 0; type < kTypeCount; ++type) {
        const FieldLayout& fields = layout[type];
        int fieldNumber = 1;
        for (const Run& run : fields.runs) {
            for (int i = 0; i < run.count; ++i) {
                tables[type].push_back({run.firstNumber + i * run.step,
                                        kindName + "_" + fields.typeName + std::to_string(fieldNumber++)});
            }
        }
    }
    return tables;
}

std::span<const MPPCustomFieldRecord> tableOfType(const KindTables& tables, MPPCustomFieldType type) {
    return tables.at(static_cast<size_t>(type));
}

} // namespace

std::span<const MPPCustomFieldRecord> mppResourceCustomFields(MPPCustomFieldType type, int32_t mppVersion) {
    static const KindTables tables9 = buildTables("RESOURCE", kResourceLayout9);
    static const KindTables tables12 = buildTables("RESOURCE", kResourceLayout12);
    return tableOfType(mppVersion == kMSPDIVersion_2003 ? tables9 : tables12, type);
}

std::span<const MPPCustomFieldRecord> mppTaskCustomFields(MPPCustomFieldType type, int32_t mppVersion) {
    static const KindTables tables9 = buildTables("TASK", kTaskLayout9);
    static const KindTables tables12 = buildTables("TASK", kTaskLayout12);
    return tableOfType(mppVersion == kMSPDIVersion_2003 ? tables9 : tables12, type);
}

std::optional<MPPCustomFieldOfKey> mppCustomFieldOfKey(int32_t key) {
    constexpr int32_t kKeysPerKind = kCustomFieldKeysPerType * static_cast<int32_t>(kTypeCount);
    for (const int32_t kindKey : {kTaskCustomFieldKey, kResourceCustomFieldKey}) {
        const int32_t offset = key - kindKey;
        if (offset >= 0 && offset < kKeysPerKind && offset % kCustomFieldKeysPerType != 0) {
            return MPPCustomFieldOfKey{kindKey == kTaskCustomFieldKey,
                                       static_cast<MPPCustomFieldType>(offset / kCustomFieldKeysPerType),
                                       offset % kCustomFieldKeysPerType};
        }
    }
    return std::nullopt;
}

std::optional<int32_t> mppFieldNameListProperty(bool task, int32_t mppVersion) {
    if (mppVersion != kMSPDIVersion_2003) {
        return std::nullopt;
    }
    return task ? kTaskFieldNameListProperty9 : kResourceFieldNameListProperty9;
}

std::optional<size_t> mppFieldNameListPlace(bool task, MPPCustomFieldType type, int32_t number) {
    int32_t first = 1;
    for (const Run& run : (task ? kTaskNamePlaces9 : kResourceNamePlaces9).at(static_cast<size_t>(type))) {
        if (number >= first && number < first + run.count) {
            return static_cast<size_t>(run.firstNumber + (number - first) * run.step);
        }
        first += run.count;
    }
    return std::nullopt;
}
