#include "MPPExporter/Mappers/KVMSPEMapper.h"

#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPExporter/Mappers/KVMSPECalendarMapper.h"
#include "MPPExporter/Mappers/KVMSPEIdMapper.h"
#include "MPPExporter/Mappers/KVMSPEProjectMapper.h"

#include <ctime>

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
      _tvnxBaselines(baselineXMLDocArray.begin(), baselineXMLDocArray.end()), _info(std::move(info)) {}

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

void KVMSPEMapper::map() {
    initialize();
    _constraints.clear();
    _calendarMapper = std::make_unique<KVMSPECalendarMapper>(&KVMSPEMapper::nextCalendarUID);
    const auto root = _tvnxXmlDoc ? _tvnxXmlDoc->rootElement() : nullptr;
    if (root && root->name() == tvnx::element::kScenario) {
        _projectMapper = std::make_unique<KVMSPEProjectMapper>(*this);
        _mppProject = _projectMapper->newProjectFromTVNXScenario(root);
        _projectMapper.reset();
        // Each baseline is saved at the moment of the export; the documents' own dates are not used.
        const TVDate now{static_cast<double>(std::time(nullptr))};
        _mppProject->baselineSaveDates.assign(_tvnxBaselines.size(), now);
    }
    _calendarMapper.reset();
}

void KVMSPEMapper::setIdMapper(std::unique_ptr<KVMSPEIdMapper> idMapper) {
    _idMapper = std::move(idMapper);
}
