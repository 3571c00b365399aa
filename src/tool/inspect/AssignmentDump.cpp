#include "tool/inspect/AssignmentDump.h"

#include "MPPImporter/format/MPPFormatConstants.h"
#include "MPPImporter/readers/KVMSPIMPPAbsAssignmentReader.h"
#include "MPPImporter/readers/KVMSPISingleAssignmentBaselineReader.h"
#include "MPPImporter/readers/KVMSPISingleTimephasedDataReader.h"
#include "tool/inspect/ReaderFieldDump.h"

namespace {

using AssignmentReader = KVMSPIMPPAbsAssignmentReader;

void addAssignmentFields(AssignmentReader& reader, int32_t uid, nlohmann::ordered_json& assignment) {
    ReaderFieldDump<AssignmentReader, int32_t>(reader, assignment, uid)
        .field("assignmentUID", &AssignmentReader::assignmentUID)
        .field("assignmentTaskUID", &AssignmentReader::assignmentTaskUID)
        .field("assignmentResourceUID", &AssignmentReader::assignmentResourceUID)
        .field("assignmentUnits", &AssignmentReader::assignmentUnits)
        .secondsField("assignmentWork", &AssignmentReader::assignmentWork)
        .secondsField("assignmentActualWork", &AssignmentReader::assignmentActualWork)
        .secondsField("assignmentRemainingWork", &AssignmentReader::assignmentRemainingWork)
        .field("assignmentCost", &AssignmentReader::assignmentCost)
        .field("assignmentStart", &AssignmentReader::assignmentStart)
        .field("assignmentFinish", &AssignmentReader::assignmentFinish);
}

nlohmann::ordered_json phases(const AssignmentReader& reader, int32_t uid) {
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    const auto found = reader.assignmentTimephasedDataMap().find(uid);
    if (found == reader.assignmentTimephasedDataMap().end()) {
        return list;
    }
    for (const auto& phase : found->second) {
        list.push_back({{"startDate", DumpValue::of(phase->startDate())},
                        {"endDate", DumpValue::of(phase->endDate())},
                        {"duration", DumpValue::ofSeconds(phase->duration())}});
    }
    return list;
}

// The assignment's values in each baseline that holds it: work as a time span, cost as stored.
nlohmann::ordered_json assignmentBaselines(const AssignmentReader& reader, int32_t uid) {
    nlohmann::ordered_json list = nlohmann::ordered_json::object();
    for (int32_t number = 0; number < kMPPBaselineCount; ++number) {
        const KVMSPISingleAssignmentBaselineReader* baseline = reader.assignmentBaseline(uid, number);
        if (baseline == nullptr) {
            continue;
        }
        nlohmann::ordered_json values = nlohmann::ordered_json::object();
        if (baseline->hasStart()) {
            values["start"] = DumpValue::of(baseline->start());
        }
        if (baseline->hasFinish()) {
            values["finish"] = DumpValue::of(baseline->finish());
        }
        if (baseline->hasWork()) {
            values["work"] = DumpValue::ofSeconds(baseline->work() * 0.06);
        }
        if (baseline->hasCost()) {
            values["cost"] = baseline->cost();
        }
        list[std::to_string(number)] = values;
    }
    return list;
}

} // namespace

nlohmann::ordered_json AssignmentDump::of(AssignmentReader& reader) {
    nlohmann::ordered_json assignments = nlohmann::ordered_json::array();
    for (int32_t uid : reader.uniqueIDs()) {
        assignments.push_back(dumpObject(uid, [&](nlohmann::ordered_json& assignment) {
            addAssignmentFields(reader, uid, assignment);
            assignment["timephasedData"] = phases(reader, uid);
            assignment["assignmentBaselines"] = assignmentBaselines(reader, uid);
        }));
    }
    return assignments;
}
