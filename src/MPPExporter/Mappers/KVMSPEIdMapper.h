#pragma once

#include <string>

// Translates the bundle's task and resource ids ("t12", "r3") into the UIDs of the plan file, as
// strings. The document's top task and top resource become UID 0.
class KVMSPEIdMapper {
public:
    // Ids that don't begin with their letter are internal errors.
    KVMSPEIdMapper(std::string topResourceId, std::string topTaskId);

    // The empty id gives the empty UID; the top id gives "0"; an id whose tail reads as an integer
    // below 1 gives the empty UID; any other gives its tail unchanged, leading zeros and all. An id
    // without its letter is an internal error.
    std::string resourceUIDFromTvnxResourceId(const std::string& tvnxId) const;
    std::string taskUIDFromTvnxId(const std::string& tvnxId) const;

    const std::string& topResourceId() const { return _topResourceId; }
    const std::string& topTaskId() const { return _topTaskId; }

private:
    std::string _topResourceId;
    std::string _topTaskId;
};
