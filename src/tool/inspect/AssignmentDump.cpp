#include "tool/inspect/AssignmentDump.h"

#include "MPPImporter/readers/KVMSPIMPPAbsAssignmentReader.h"
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

} // namespace

nlohmann::ordered_json AssignmentDump::of(AssignmentReader& reader) {
    nlohmann::ordered_json assignments = nlohmann::ordered_json::array();
    for (int32_t uid : reader.uniqueIDs()) {
        assignments.push_back(dumpObject(uid, [&](nlohmann::ordered_json& assignment) {
            addAssignmentFields(reader, uid, assignment);
            assignment["timephasedData"] = phases(reader, uid);
        }));
    }
    return assignments;
}
