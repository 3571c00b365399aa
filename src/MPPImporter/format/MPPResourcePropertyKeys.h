#pragma once

#include <cstdint>

// The property keys of resource fields, which the version's property list turns into an offset in the
// resource's fixed or second fixed meta item, or into a property number of its variable data.
enum MPPResourcePropertyKey : int32_t {
    // Baseline 0, fixed data of formats 9 and 12 and of application 14's files.
    kResourceBaselineCostKey = 50,
    kResourceBaselineWorkKey = 51,
    kResourceCostKey = 52,
    kResourceCostPerUseKey = 53,
    kResourceIDKey = 54,
    kResourceMaxUnitsKey = 55,
    kResourceStandardRateKey = 56,
    kResourceTypeKey = 57,
    kResourceIsCostResourceKey = 58,
    kResourceUIDKey = 59,
    kResourceWorkKey = 60,
    kResourceAvailableFromKey = 61,
    kResourceAvailableToKey = 62,
    kResourceAvailabilityKey = 63,
    // Baselines 1 to 10: the baseline number is added to these group keys.
    kResourceBaselineCostGroupKey = 64,
    kResourceBaselineWorkGroupKey = 76,
    // The marks that a baseline is set, properties of the variable data: baseline 0 under its own
    // key, baseline n under the group key plus n.
    kResourceBaselineZeroKey = 88,
    kResourceBaselineGroupKey = 89,
    kResourceEmailAddressKey = 101,
    kResourceNameKey = 102,
    kResourceNotesKey = 103,
    // Baseline 0, variable data of the files of applications 15 and 16.
    kResourceBaselineWorkVarKey = 394,
    kResourceBaselineCostVarKey = 395,
};
