#include "tool/inspect/ResourceDump.h"

#include "MPPImporter/format/MPPFormatConstants.h"
#include "MPPImporter/readers/KVMSPIMPPAbsResourceReader.h"
#include "MPPImporter/readers/KVMSPISingleResourceBaselineReader.h"
#include "tool/inspect/CustomFieldDump.h"
#include "tool/inspect/ReaderFieldDump.h"

namespace {

using ResourceReader = KVMSPIMPPAbsResourceReader;

void addResourceFields(ResourceReader& reader, int32_t uid, nlohmann::ordered_json& resource) {
    ReaderFieldDump<ResourceReader, int32_t>(reader, resource, uid)
        .field("resourceUID", &ResourceReader::resourceUID)
        .field("resourceID", &ResourceReader::resourceID)
        .field("resourceName", &ResourceReader::resourceName)
        .field("resourceType", &ResourceReader::resourceType)
        .field("resourceIsCostResource", &ResourceReader::resourceIsCostResource)
        .field("resourceMaxUnits", &ResourceReader::resourceMaxUnits)
        .field("resourceStandardRate", &ResourceReader::resourceStandardRate)
        .field("resourceCostPerUse", &ResourceReader::resourceCostPerUse)
        .field("resourceCost", &ResourceReader::resourceCost)
        .field("resourceWork", &ResourceReader::resourceWork)
        .field("resourceAvailableFrom", &ResourceReader::resourceAvailableFrom)
        .field("resourceAvailableTo", &ResourceReader::resourceAvailableTo)
        .field("resourceEmailAddress", &ResourceReader::resourceEmailAddress)
        .field("resourceNotes", &ResourceReader::resourceNotes);
}

nlohmann::ordered_json availability(ResourceReader& reader, int32_t uid) {
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
nlohmann::ordered_json resourceBaselines(const ResourceReader& reader, int32_t uid) {
    nlohmann::ordered_json list = nlohmann::ordered_json::object();
    for (int32_t number = 0; number < kMPPBaselineCount; ++number) {
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

nlohmann::ordered_json ResourceDump::of(ResourceReader& reader) {
    nlohmann::ordered_json resources = nlohmann::ordered_json::array();
    for (int32_t uid : reader.uniqueIDs()) {
        resources.push_back(dumpObject(uid, [&](nlohmann::ordered_json& resource) {
            addResourceFields(reader, uid, resource);
            resource["resourceAvailability"] = availability(reader, uid);
            resource["hasBaseline"] =
                numberedFlags(0, kMPPBaselineCount - 1, [&](int32_t index, bool& value) {
                    return reader.hasBaseline(uid, index, value, nullptr);
                });
            resource["resourceBaselines"] = resourceBaselines(reader, uid);
            resource["resourceCustomFields"] = CustomFieldDump::of(
                [&](auto& fields) { return reader.resourceCustomFields(uid, fields, nullptr); });
        }));
    }
    return resources;
}
