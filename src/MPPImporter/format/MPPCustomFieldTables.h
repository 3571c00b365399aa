#pragma once

#include "MPPImporter/format/MPPCustomFieldRecord.h"

#include <cstdint>
#include <span>

// The types of custom fields that tasks and resources have.
enum class MPPCustomFieldType { cost, date, duration, finish, number, outlineCode, start, text };

// The custom fields of one type, in the order of their field numbers. Resource fields have one layout
// in all versions; task fields have one in version 9 and another from 12 on.
std::span<const MPPCustomFieldRecord> mppResourceCustomFields(MPPCustomFieldType type);
std::span<const MPPCustomFieldRecord> mppTaskCustomFields(MPPCustomFieldType type, int32_t mppVersion);
