#include "MPPExporter/Mappers/KVMSPEMapper.h"

#include "MPPExporter/Mappers/KVMSPEIdMapper.h"

namespace {

// The counters of the whole process; one export runs at a time, and `initialize` restarts them.
struct Counters {
    int64_t taskID = 0;
    int64_t resourceID = 0;
    int64_t assignmentUID = 1;
    int64_t calendarUID = 1;
};
Counters gCounters;

} // namespace

KVMSPEMapper::KVMSPEMapper(DocumentPtr tvnxXmlDoc, DocumentPtr tvnxTOCXmlDoc,
                           std::vector<DocumentPtr> baselineXMLDocArray, TVInfoDictionary info)
    : _tvnxXmlDoc(std::move(tvnxXmlDoc)), _tvnxTOCXmlDoc(std::move(tvnxTOCXmlDoc)),
      _tvnxBaselines(std::move(baselineXMLDocArray)), _info(std::move(info)) {}

KVMSPEMapper::~KVMSPEMapper() = default;

void KVMSPEMapper::initialize() {
    gCounters = Counters{};
}

int64_t KVMSPEMapper::nextTaskID() {
    return gCounters.taskID++;
}

int64_t KVMSPEMapper::nextResourceID() {
    return gCounters.resourceID++;
}

int64_t KVMSPEMapper::nextAssignmentUID() {
    return gCounters.assignmentUID++;
}

int64_t KVMSPEMapper::nextCalendarUID() {
    return gCounters.calendarUID++;
}

void KVMSPEMapper::setIdMapper(std::unique_ptr<KVMSPEIdMapper> idMapper) {
    _idMapper = std::move(idMapper);
}
