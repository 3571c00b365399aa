#include "tool/inspect/ResourceDump.h"

#include "MPPImporter/readers/KVMSPIMPPAbsResourceReader.h"
#include "MPPImporter/readers/KVMSPISingleResourceBaselineReader.h"
#include "tool/inspect/CustomFieldDump.h"
#include "tool/inspect/ReaderFieldDump.h"

namespace {

using R = KVMSPIMPPAbsResourceReader;

constexpr int32_t kBaselineCount = 11;

void addFields(R& reader, int32_t uid, nlohmann::ordered_json& resource) {
    ReaderFieldDump<R, int32_t>(reader, resource, uid)
        .field("resourceUID", &R::resourceUID)
        .field("resourceID", &R::resourceID)
        .field("resourceName", &R::resourceName)
        .field("resourceType", &R::resourceType)
        .field("resourceIsCostResource", &R::resourceIsCostResource)
        .field("resourceMaxUnits", &R::resourceMaxUnits)
        .field("resourceStandardRate", &R::resourceStandardRate)
        .field("resourceCostPerUse", &R::resourceCostPerUse)
        .field("resourceCost", &R::resourceCost)
        .field("resourceWork", &R::resourceWork)
        .field("resourceAvailableFrom", &R::resourceAvailableFrom)
        .field("resourceAvailableTo", &R::resourceAvailableTo)
        .field("resourceEmailAddress", &R::resourceEmailAddress)
        .field("resourceNotes", &R::resourceNotes);
}

nlohmann::ordered_json availability(R& reader, int32_t uid) {
    std::vector<MPPResourceAvailabilityPeriod> periods;
    reader.resourceAvailability(uid, periods, nullptr);
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const auto& period : periods) {
        list.push_back({{"start", DumpValue::of(period.start)},
                        {"end", DumpValue::of(period.end)},
                        {"units", period.units}});
    }
    return list;
}

// The resource's values in each baseline that holds it: work as a time span, cost as stored.
nlohmann::ordered_json resourceBaselines(const R& reader, int32_t uid) {
    nlohmann::ordered_json list = nlohmann::ordered_json::object();
    for (int32_t number = 0; number < kBaselineCount; ++number) {
        if (const KVMSPISingleResourceBaselineReader* baseline = reader.resourceBaseline(uid, number)) {
            nlohmann::ordered_json values = nlohmann::ordered_json::object();
            if (baseline->hasWork()) {
                values["work"] = DumpValue::ofSeconds(baseline->resourceWork() * 0.06);
            }
            if (baseline->hasCost()) {
                values["cost"] = baseline->resourceCost();
            }
            list[std::to_string(number)] = values;
        }
    }
    return list;
}

} // namespace

nlohmann::ordered_json ResourceDump::of(R& reader) {
    nlohmann::ordered_json resources = nlohmann::ordered_json::array();
    for (int32_t uid : reader.uniqueIDs()) {
        resources.push_back(dumpObject(uid, [&](nlohmann::ordered_json& resource) {
            addFields(reader, uid, resource);
            resource["resourceAvailability"] = availability(reader, uid);
            resource["hasBaseline"] = numberedFlags(0, kBaselineCount - 1, [&](int32_t index, bool& value) {
                return reader.hasBaseline(uid, index, value, nullptr);
            });
            resource["resourceBaselines"] = resourceBaselines(reader, uid);
            resource["resourceCustomFields"] = CustomFieldDump::of(
                [&](auto& fields) { return reader.resourceCustomFields(uid, fields, nullptr); });
        }));
    }
    return resources;
}
