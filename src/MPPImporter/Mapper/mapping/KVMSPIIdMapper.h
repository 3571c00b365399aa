#pragma once

#include <string>

// Forms the ids of the bundle from the UIDs of a plan: "t<UID>" for a task, "r<UID>" for a resource.
class KVMSPIIdMapper {
public:
    // The empty text gives the empty id; a negative UID is an assertion failure.
    std::string taskIdFromMspdiUID(const std::string& uid) const;
    std::string resourceIdFromMspdiUID(const std::string& uid) const;
};
