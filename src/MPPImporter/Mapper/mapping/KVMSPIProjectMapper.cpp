#include "MPPImporter/Mapper/mapping/KVMSPIProjectMapper.h"

#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPCommon/date/TVCalendar.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPCommon/support/TVPath.h"
#include "MPPImporter/Mapper/mapping/KVMSPIHammockTaskMapper.h"
#include "MPPImporter/Mapper/mapping/KVMSPIIdMapper.h"
#include "MPPImporter/Mapper/mapping/KVMSPIMapper.h"
#include "MPPImporter/Mapper/mapping/MSPIQueryAnswers.h"
#include "MPPImporter/Mapper/utilities/KVMSPIUtilities.h"
#include "MPPImporter/readers/KVMSPIMPPProjectReader.h"

#include <chrono>

namespace {

using ElementPtr = KVMSPCXMLElement::ElementPtr;

// Today at the given time of day in the system zone, as MSPDI text.
std::optional<std::string> todayAt(int64_t hour, int64_t minute, int64_t second) {
    const TVCalendar calendar;
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    auto fields = calendar.components(kTVCalendarUnitEra | kTVCalendarUnitYear | kTVCalendarUnitMonth |
                                          kTVCalendarUnitDay,
                                      TVDate{std::chrono::duration<double>(now).count()});
    if (!fields) {
        return std::nullopt;
    }
    fields->hour = hour;
    fields->minute = minute;
    fields->second = second;
    const auto date = calendar.dateFromComponents(*fields);
    return date ? KVMSPIUtilities::mppToMspdiDateTime(*date) : std::nullopt;
}

// The date of the project, or today at the given time when the plan has none.
std::string requiredProjectDate(KVMSPIXQuery& project, const char* name, int64_t hour, int64_t minute,
                                int64_t second, const char* failure) {
    std::optional<std::string> date = queryString(project, name);
    if (!date || date->empty()) {
        date = todayAt(hour, minute, second);
    }
    tvAssert(date && !date->empty(), failure);
    return *date;
}

} // namespace

KVMSPIProjectMapper::KVMSPIProjectMapper(KVMSPIMapper& mapper, int64_t* mspTaskMaxId,
                                         int64_t* mspResourceMaxId,
                                         MSPIUserDataTOCElements& userDataTOCElements)
    : KVMSPIObjectMapperBase(mapper), _mspTaskMaxId(mspTaskMaxId), _mspResourceMaxId(mspResourceMaxId),
      _userDataTOCElements(userDataTOCElements) {}

std::string KVMSPIProjectMapper::getTempSplitTaskID() {
    return stringWithFormat("split-%lld", static_cast<long long>(++_splitTaskID));
}

KVMSPIProjectMapper::ElementPtr
KVMSPIProjectMapper::newScenarioFromMSPProject(KVMSPIMPPProjectReader& project) {
    using namespace tvnx;
    const ElementPtr templateRoot = _mapper.tvnxTemplateXmlDoc()->rootElement();
    const std::string templateRootName =
        templateRoot ? templateRoot->name().value_or(std::string()) : std::string();
    tvAssert(templateRootName == element::kScenario,
             stringWithFormat("*** ERROR: Invalid root element of template: '%s'. Must be 'scenario'.",
                              templateRootName.c_str()));
    const ElementPtr scenario = KVMSPCXMLElement::initWithName(element::kScenario);
    scenario->addNamespace(KVMSPCXMLNode::namespaceWithName("", kTarvane2Namespace));
    _mspProjectName = projectName(project);
    _mapper.setIdMapper(std::make_unique<KVMSPIIdMapper>());
    _mapper.setHammockMapper(std::make_unique<KVMSPIHammockTaskMapper>());
    addProjectDates(project, *scenario);

    scenario->addComment(value::kResourcesComment);
    tvLog("    Adding top resource ......");
    addTopResourceToScenario(project, *scenario);

    scenario->addComment(value::kTasksComment);
    scenario->addChildElementWithName(element::kTopTask)
        ->setAttributeWithName(attribute::kIdref, value::kTopTaskId);
    const ElementPtr topTask = scenario->addChildElementWithName(element::kTask);
    topTask->setAttributeWithName(attribute::kId, value::kTopTaskId);
    topTask->addChildElementWithName(element::kType, value::kTaskTypeGroup);

    scenario->addComment(value::kCriticalPathComment);
    for (const ElementPtr& criticalPath : templateRoot->elementsForName(element::kCriticalPath)) {
        const auto copy = std::dynamic_pointer_cast<KVMSPCXMLElement>(criticalPath->copyWithZone());
        copy->detach();
        scenario->addChild(copy);
    }
    return scenario;
}

std::string KVMSPIProjectMapper::projectName(KVMSPIMPPProjectReader& project) const {
    if (const auto title = queryString(project, "Title"); title && !title->empty()) {
        return *title;
    }
    if (const auto name = queryString(project, "Name"); name && !name->empty()) {
        return deletingPathExtension(*name);
    }
    return _mapper.importedProjectName();
}

void KVMSPIProjectMapper::addProjectDates(KVMSPIMPPProjectReader& project, KVMSPCXMLElement& scenario) {
    using namespace tvnx;
    TVError error;
    const bool scheduleFromStart = project.boolValueForXQuery("ScheduleFromStart", &error);
    if (error.domain.empty()) {
        _mspScheduleFromStart = scheduleFromStart;
    }
    _mapper.setMspScheduleFromStart(scheduleFromStart);
    std::optional<std::string> date;
    if (!_mspScheduleFromStart) {
        scenario.setAttributeWithName(attribute::kFixedEnd, value::kTrue);
        _mspFinishDate =
            requiredProjectDate(project, "FinishDate", 23, 59, 59,
                                "Failed to find finish date for the project scheduled from end.");
        date = KVMSPIUtilities::mspdiToTvnxDateTime(*_mspFinishDate);
    } else {
        _mspStartDate = requiredProjectDate(
            project, "StartDate", 0, 0, 0, "Failed to find start date for the project scheduled from start.");
        date = KVMSPIUtilities::mspdiToTvnxDateTime(*_mspStartDate);
    }
    if (date) {
        scenario.addChildElementWithName(_mspScheduleFromStart ? element::kStartDate : element::kEndDate,
                                         *date);
    }
    if (const auto workFormat = queryInt(project, "WorkFormat")) {
        if (*workFormat >= 3 && *workFormat <= 5) {
            scenario.addChildElementWithName(element::kGranularity, value::kGranularityDays);
        } else if (*workFormat == 2) {
            scenario.addChildElementWithName(element::kGranularity, value::kGranularityHours);
        }
    }
}

void KVMSPIProjectMapper::addTopResourceToScenario(KVMSPIMPPProjectReader&, KVMSPCXMLElement& scenario) {
    using namespace tvnx;
    scenario.addChildElementWithName(element::kTopResource)
        ->setAttributeWithName(attribute::kIdref, value::kTopResourceId);
    const ElementPtr topResource = KVMSPCXMLElement::initWithName(element::kResource);
    topResource->setAttributeWithName(attribute::kId, value::kTopResourceId);
    topResource->addChildElementWithName(element::kType, value::kResourceTypeGroup);
    scenario.addChild(topResource);
}
