#include "MPPExporter/Mappers/KVMSPEIdMapper.h"

#include "MPPCommon/date/StringExtensions.h"
#include "MPPCommon/support/TVException.h"

namespace {

std::string uidFromId(const std::string& tvnxId, char letter, const std::string& topId, const char* kind) {
    if (tvnxId.empty()) {
        return "";
    }
    tvAssert(tvnxId.front() == letter, std::string("Invalid format of TVNX ") + kind +
                                           " ID (must begin with '" + letter + "'): " + tvnxId);
    if (tvnxId == topId) {
        return "0";
    }
    std::string tail = tvnxId.substr(1);
    return intValue(tail) < 1 ? "" : tail;
}

void checkTopId(const std::string& topId, char letter, const char* kind) {
    tvAssert(!topId.empty() && topId.front() == letter, std::string("Invalid format of TVNX top ") + kind +
                                                            " ID (must begin with '" + letter +
                                                            "'): " + topId);
}

} // namespace

KVMSPEIdMapper::KVMSPEIdMapper(std::string topResourceId, std::string topTaskId)
    : _topResourceId(std::move(topResourceId)), _topTaskId(std::move(topTaskId)) {
    checkTopId(_topResourceId, 'r', "Resource");
    checkTopId(_topTaskId, 't', "Task");
}

std::string KVMSPEIdMapper::resourceUIDFromTvnxResourceId(const std::string& tvnxId) const {
    return uidFromId(tvnxId, 'r', _topResourceId, "Resource");
}

std::string KVMSPEIdMapper::taskUIDFromTvnxId(const std::string& tvnxId) const {
    return uidFromId(tvnxId, 't', _topTaskId, "Task");
}
