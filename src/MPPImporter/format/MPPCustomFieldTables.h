#pragma once

#include "MPPImporter/format/MPPCustomFieldRecord.h"

#include <cstdint>
#include <optional>
#include <span>

// The types of custom fields that tasks and resources have.
enum class MPPCustomFieldType { cost, date, duration, finish, number, outlineCode, start, text };

// The custom fields of one type, in the order of their field numbers. Task and resource fields each
// have one layout in version 9 and another from 12 on.
std::span<const MPPCustomFieldRecord> mppResourceCustomFields(MPPCustomFieldType type, int32_t mppVersion);
std::span<const MPPCustomFieldRecord> mppTaskCustomFields(MPPCustomFieldType type, int32_t mppVersion);

// The property keys of custom fields, which the custom field tables turn into property numbers: field
// `number` of a type lies at mppCustomFieldKey(kind key, type) + number.
inline constexpr int32_t kTaskCustomFieldKey = 1000;
inline constexpr int32_t kResourceCustomFieldKey = 1400;
inline constexpr int32_t kCustomFieldKeysPerType = 40;

constexpr int32_t mppCustomFieldKey(int32_t kindKey, MPPCustomFieldType type) {
    return kindKey + kCustomFieldKeysPerType * static_cast<int32_t>(type);
}

// The custom field that a key names: tasks' or resources', its type and its number from 1.
struct MPPCustomFieldOfKey {
    bool task = false;
    MPPCustomFieldType type = MPPCustomFieldType::cost;
    int32_t number = 0;
};
std::optional<MPPCustomFieldOfKey> mppCustomFieldOfKey(int32_t key);

// The property number of a custom field key in the fields `tasks` or `resources` give for a type; none
// for another key or a number beyond the fields.
template <typename TaskFields, typename ResourceFields>
std::optional<uint32_t> mppCustomFieldProperty(int32_t key, TaskFields tasks, ResourceFields resources) {
    const auto field = mppCustomFieldOfKey(key);
    if (!field) {
        return std::nullopt;
    }
    const std::span<const MPPCustomFieldRecord> fields =
        field->task ? tasks(field->type) : resources(field->type);
    if (static_cast<size_t>(field->number) > fields.size()) {
        return std::nullopt;
    }
    return static_cast<uint32_t>(fields[static_cast<size_t>(field->number - 1)].propertyNumber);
}

// Format 9 keeps the names that the user gave custom fields in the data directory's "Props" instead, as
// one list of names for tasks and one for resources (decodeMPPFieldNameList), under the property that
// this gives; none for the other versions.
std::optional<int32_t> mppFieldNameListProperty(bool task, int32_t mppVersion);
// The place in such a list of the name of field `number` of a type; none for a number beyond the fields.
std::optional<size_t> mppFieldNameListPlace(bool task, MPPCustomFieldType type, int32_t number);
