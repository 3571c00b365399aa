#include "MPPExporter/MPPObjects/KVMPPProject.h"

const MPPGuid KVMPPProject::kDefaultResourceGuid = {0x7E, 0x8B, 0xCB, 0xA0, 0x8C, 0x2A, 0x6D, 0x43,
                                                    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xFF};

KVMPPProject::KVMPPProject() {
    taskType = 1;
    standardCalendar = std::make_shared<KVMPPCalendar>();
    standardCalendar->name = kStandardCalendarName;
    _defaultResource = std::make_shared<KVMPPResource>(kDefaultResourceGuid);
    auto resourceCalendar = std::make_shared<KVMPPCalendar>(kDefaultResourceGuid);
    resourceCalendar->ID = 1;
    resourceCalendar->baseCalendar.setObject(standardCalendar);
    _defaultResource->calendar.setObject(std::move(resourceCalendar));
}

const std::set<uint64_t>& KVMPPProject::assignmentIDsSet() const {
    if (!_assignmentIDs) {
        _assignmentIDs.emplace();
        for (const auto& assignment : assignments) {
            _assignmentIDs->insert(assignment->ID);
        }
    }
    return *_assignmentIDs;
}

const std::map<uint64_t, KVMPPAssignment*>& KVMPPProject::idToAssignmentMap() const {
    if (!_assignmentsByID) {
        _assignmentsByID.emplace();
        for (const auto& assignment : assignments) {
            _assignmentsByID->emplace(assignment->ID, assignment.get());
        }
    }
    return *_assignmentsByID;
}
