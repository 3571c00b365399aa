#pragma once

#include "MPPImporter/format/MPPCustomFieldRecord.h"

#include <cstdint>
#include <span>

// The types of custom fields that tasks and resources have.
enum class MPPCustomFieldType { cost, date, duration, finish, number, outlineCode, start, text };

// The custom fields of one type, in the order of their field numbers. Task and resource fields each
// have one layout in version 9 and another from 12 on.
std::span<const MPPCustomFieldRecord> mppResourceCustomFields(MPPCustomFieldType type, int32_t mppVersion);
std::span<const MPPCustomFieldRecord> mppTaskCustomFields(MPPCustomFieldType type, int32_t mppVersion);
