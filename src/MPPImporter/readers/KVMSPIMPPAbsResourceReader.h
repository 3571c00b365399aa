#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPCommon/support/TVError.h"
#include "MPPImporter/format/MPPResourceAvailabilityPeriod.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class KVMSPISingleExtendedAttribute;
class KVMSPISingleResourceBaselineReader;

// What the project reader and the query layer ask of the resources of a plan. Every field operation
// answers false when the value is absent or unreadable; text operations append to `value`.
class KVMSPIMPPAbsResourceReader {
public:
    virtual ~KVMSPIMPPAbsResourceReader() = default;

    // -1 for the actual plan, else the baseline 0 to 10 that resourceCost and resourceWork follow.
    virtual int32_t baselineNumber() const = 0;
    virtual void setBaselineNumber(int32_t baselineNumber) = 0;

    // The resources' UIDs in ID order.
    virtual const std::vector<int32_t>& uniqueIDs() const = 0;
    virtual bool isValidUID(int32_t uid) const = 0;
    // The resource's row number, -1 if unknown.
    virtual int64_t objectIDforUniqueID(int32_t uid) const = 0;

    virtual bool resourceCost(int32_t uid, double& value, TVError* error = nullptr) = 0;
    virtual bool resourceCostPerUse(int32_t uid, double& value, TVError* error = nullptr) = 0;
    virtual bool resourceID(int32_t uid, int32_t& value, TVError* error = nullptr) = 0;
    // Percent: 100 for one full-time unit.
    virtual bool resourceMaxUnits(int32_t uid, double& value, TVError* error = nullptr) = 0;
    virtual bool resourceStandardRate(int32_t uid, double& value, TVError* error = nullptr) = 0;
    virtual bool resourceType(int32_t uid, int16_t& value, TVError* error = nullptr) = 0;
    // The flag's bit as stored (16 when set, 0 when clear).
    virtual bool resourceIsCostResource(int32_t uid, uint8_t& value, TVError* error = nullptr) = 0;
    virtual bool resourceUID(int32_t uid, int32_t& value, TVError* error = nullptr) = 0;
    virtual bool resourceWork(int32_t uid, TVTimeSpan& value, TVError* error = nullptr) = 0;
    virtual bool resourceAvailableFrom(int32_t uid, TVDate& value, TVError* error = nullptr) = 0;
    virtual bool resourceAvailableTo(int32_t uid, TVDate& value, TVError* error = nullptr) = 0;
    virtual bool resourceEmailAddress(int32_t uid, std::string& value, TVError* error = nullptr) = 0;
    virtual bool resourceName(int32_t uid, std::string& value, TVError* error = nullptr) = 0;
    virtual bool resourceNotes(int32_t uid, std::string& value, TVError* error = nullptr) = 0;
    // Appends the periods of the resource's availability table.
    virtual bool resourceAvailability(int32_t uid, std::vector<MPPResourceAvailabilityPeriod>& value,
                                      TVError* error = nullptr) = 0;
    // The resource's values in baseline `number` (0 to 10), or null where it holds none there.
    virtual const KVMSPISingleResourceBaselineReader* resourceBaseline(int32_t uid, int32_t number) const = 0;
    // Whether baseline `index` (0 to 10) is marked on the resource.
    virtual bool hasBaseline(int32_t uid, int32_t index, bool& value, TVError* error = nullptr) = 0;
    // Appends the resource's custom field values.
    virtual bool resourceCustomFields(int32_t uid,
                                      std::vector<std::unique_ptr<KVMSPISingleExtendedAttribute>>& value,
                                      TVError* error = nullptr) = 0;
};
