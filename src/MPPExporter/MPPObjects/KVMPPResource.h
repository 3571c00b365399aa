#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPExporter/MPPObjects/KVMPPResourceBaseline.h"
#include "MPPExporter/MPPObjects/MPPCustomFields.h"
#include "MPPExporter/MPPObjects/MPPDeferred.h"
#include "MPPExporter/MPPObjects/MPPGuid.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

class KVMPPCalendar;

// One resource of the plan. Its kind changes only through the three `setResourceType...`
// operations, which keep `type` and the cost flag together. The `get...` operations without a field
// of their own state which resource fields the export leaves at a constant.
class KVMPPResource {
public:
    // A work resource with a random GUID.
    KVMPPResource() = default;
    // The GUID given, or a random one for none.
    explicit KVMPPResource(const std::optional<MPPGuid>& guid) : GUID(guid.value_or(newRandomMPPGuid())) {}

    const MPPGuid& getGUID() const { return GUID; }

    void setResourceTypeWork() { setType(0, false); }
    void setResourceTypeMaterial() { setType(1, false); }
    void setResourceTypeCost() { setType(1, true); }
    // 0 work, 1 material or cost.
    uint64_t getResourceType() const { return _type; }
    bool isCostResource() const { return _isCostType; }

    std::optional<TVDate> getAvailableFrom() const { return availableFromDate; }
    std::optional<TVDate> getAvailableTo() const { return availableToDate; }
    double getStandartRate() const { return standartRate; }
    // Hundredths of a percent: 100 % is 10000.
    double getMaxUnits() const { return maxUnits * 100.0 * 100.0; }
    // Whether the field is set, even to the empty string.
    bool hasInitials() const { return initials.has_value(); }
    bool hasGroup() const { return group.has_value(); }
    bool hasCode() const { return code.has_value(); }
    bool hasNotes() const { return notes.has_value(); }
    bool hasEmailAddress() const { return emailAddress.has_value(); }
    // Whether the custom field at a 1-based position has text; false before post-processing.
    bool hasCustomFieldText(size_t position) const { return customFieldsText.hasText(position); }

    int32_t getStandartRateFormatType() const { return 2; }
    int32_t getOvertimeRateFormatType() const { return 2; }
    int32_t getAccrueAtType() const { return 3; }
    double getOverTimeRate() const { return 0.0; }
    double getOvertimeWork() const { return 0.0; }
    double getRegularWork() const { return 0.0; }
    double getActualOvertimeWork() const { return 0.0; }
    double getPeakUnits() const { return 0.0; }
    double getOvertimeCost() const { return 0.0; }
    double getActualOvertimeCost() const { return 0.0; }
    double getRemainingOvertimeCost() const { return 0.0; }
    bool getBudget() const { return false; }
    bool hasWindowsAccount() const { return false; }
    bool hasMaterialLabel() const { return false; }
    bool hasBookingType() const { return false; }

    MPPGuid GUID = newRandomMPPGuid();
    uint64_t ID = 0;
    std::optional<std::string> name;
    std::optional<std::string> initials;
    // A fraction: 1.0 is 100 %.
    double maxUnits = 1.0;
    double costPerUse = 0;
    double standartRate = 0;
    std::optional<std::string> group;
    std::optional<std::string> code;
    std::optional<std::string> emailAddress;
    std::optional<std::string> notes;
    std::optional<TVDate> availableFromDate;
    std::optional<TVDate> availableToDate;
    MPPCustomFields customFieldsText;
    MPPDeferred<KVMPPCalendar> calendar;
    std::vector<KVMPPResourceBaseline> baselines;
    std::optional<KVMPPResourceBaseline> baseline0;
    // Seconds; units for a material resource.
    double work = 0;
    double actualWork = 0;
    double remainingWork = 0;
    double cost = 0;
    double actualCost = 0;
    double remainingCost = 0;
    double totalUses = 0;
    double actualUses = 0;

private:
    void setType(uint64_t type, bool isCostType) {
        _type = type;
        _isCostType = isCostType;
    }

    uint64_t _type = 0;
    bool _isCostType = false;
};
