#pragma once

#include <nlohmann/json.hpp>

class KVMPPProject;

// The export model of a plan as JSON, for checking a mapping apart from the writers: the project's
// settings, then its tasks, resources, assignments, calendars and links in list order. Objects refer
// to each other by ID; dates are ISO 8601 text in UTC, times of day minutes after midnight, durations
// and work seconds. Random GUIDs and the moment of the export are left out, so that two exports of
// one bundle print the same.
class MPPProjectJSON {
public:
    static nlohmann::ordered_json projectToJSON(const KVMPPProject& project);
};
