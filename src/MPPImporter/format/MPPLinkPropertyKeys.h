#pragma once

#include <cstdint>

// The property keys of task links (offsets in a constraint's fixed item) and of outline code values
// (property numbers of the outline code store's variable data).
enum MPPLinkPropertyKey : int32_t {
    kLinkPredecessorUIDKey = 26,
    kLinkTypeKey = 27,
    kLinkTaskUIDKey = 28,
    kLinkLagFormatKey = 29,
    kLinkLagKey = 30,
    kOutlCodeDataKey = 31,
    kOutlCodeValueListDescriptionKey = 32,
    kOutlCodeValueListUnknownKey = 33,
    kOutlCodeValueListValueKey = 34,
};
