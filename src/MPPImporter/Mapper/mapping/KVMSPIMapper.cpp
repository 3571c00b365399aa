#include "MPPImporter/Mapper/mapping/KVMSPIMapper.h"

#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPCommon/date/DateExtensions.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPCommon/xml/MSPCXMLText.h"
#include "MPPExporter/MPPObjects/KVMSPEScheduleCalendar.h"
#include "MPPImporter/Mapper/mapping/KVMSPIHammockTaskMapper.h"
#include "MPPImporter/Mapper/mapping/KVMSPIIdMapper.h"
#include "MPPImporter/Mapper/mapping/KVMSPIProjectMapper.h"
#include "MPPImporter/Mapper/mapping/MSPIQueryAnswers.h"
#include "MPPImporter/query/adapters/KVMSPIXQAdapters.h"
#include "MPPImporter/readers/KVMSPIMPPProjectReader.h"
#include "MPPImporter/readers/KVMSPIMPPResourceReader.h"
#include "MPPImporter/readers/KVMSPIMPPTaskReader.h"
#include "MPPImporter/readers/KVMSPISingleResourceBaselineReader.h"
#include "MPPImporter/readers/KVMSPISingleTaskBaselineReader.h"

#include <chrono>
#include <cstdlib>

namespace {

using ElementPtr = KVMSPCXMLElement::ElementPtr;

constexpr const char* kDefaultProjectName = "MS Project project";
constexpr const char* kTarvaneAppVerion = "2.x";
constexpr const char* kRightToLeftMark = "\xE2\x80\x8F";
constexpr int64_t kMaxCurrencyDecimals = 5;

ElementPtr firstChildNamed(const KVMSPCXMLElement& element, const std::string& name) {
    const KVMSPCXMLElement::Elements children = element.elementsForName(name);
    return children.empty() ? nullptr : children.front();
}

ElementPtr lastChildNamed(const KVMSPCXMLElement& element, const std::string& name) {
    const KVMSPCXMLElement::Elements children = element.elementsForName(name);
    return children.empty() ? nullptr : children.back();
}

ElementPtr requiredChild(const KVMSPCXMLElement& element, const std::string& name, const char* failure) {
    ElementPtr child = firstChildNamed(element, name);
    tvAssert(child != nullptr, failure);
    return child;
}

void insertBehind(KVMSPCXMLElement& parent, const KVMSPCXMLNode::Ptr& node, const KVMSPCXMLNode& reference) {
    parent.insertChild(node, reference.index() + 1);
}

std::string attributeText(const KVMSPCXMLElement& element, const char* name) {
    const KVMSPCXMLNode::Ptr attribute = element.attributeForName(name);
    return attribute ? attribute->stringValue().value_or(std::string()) : std::string();
}

// The year of the application that saved the plan, by its save version.
const char* yearWordOfSaveVersion(int64_t saveVersion) {
    switch (saveVersion) {
    case 9:
        return "2003";
    case 12:
        return "2007";
    case 14:
        return "2010";
    case 15:
        return "2013";
    default:
        return "";
    }
}

std::string withoutRightToLeftMarks(std::string text) {
    for (size_t found = text.find(kRightToLeftMark); found != std::string::npos;
         found = text.find(kRightToLeftMark, found)) {
        text.erase(found, std::char_traits<char>::length(kRightToLeftMark));
    }
    return text;
}

std::string presentDateText() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return dateDescription(TVDate{std::chrono::duration<double>(now).count()});
}

// Whether any baseline reader of the collection holds data.
template <typename BaselineReaders>
bool anyHasBaselineData(const BaselineReaders& readers) {
    for (const auto& entry : readers) {
        if (entry.second->hasBaselineData()) {
            return true;
        }
    }
    return false;
}

} // namespace

KVMSPIMapper::KVMSPIMapper(KVMSPIMPPReader& mspDocument, DocumentPtr tvnxTemplateXmlDoc,
                           DocumentPtr tvnxTOCXmlDoc, const TVInfoDictionary& info)
    : _mspDocument(mspDocument), _tvnxTemplateXmlDoc(std::move(tvnxTemplateXmlDoc)),
      _tvnxTOCXmlDoc(std::move(tvnxTOCXmlDoc)), _info(info), _mppVersion(mspDocument.version()) {
    if (const int64_t* number = info.numberForKey(kInfoMSPBaselineNumber)) {
        tvAssert(*number >= 0 && *number < tvnx::kBaselineCount,
                 stringWithFormat("Unexpected baseline number in info dictionary: %lld",
                                  static_cast<long long>(*number)));
        _baselineNumber = static_cast<int32_t>(*number);
    }
}

KVMSPIMapper::~KVMSPIMapper() = default;

KVMSPIMapperFactory KVMSPIMapper::factory() {
    KVMSPIXQAdapters::install();
    return [](KVMSPIMPPReader& reader, const DocumentPtr& templateDoc, const DocumentPtr& tocDoc,
              const TVInfoDictionary& info) -> std::unique_ptr<KVMSPIMapperInterface> {
        return std::make_unique<KVMSPIMapper>(reader, templateDoc, tocDoc, info);
    };
}

const KVMSPIIdMapper& KVMSPIMapper::idMapper() const {
    tvAssert(_idMapper != nullptr, "The id mapper is set before any object is mapped.");
    return *_idMapper;
}

void KVMSPIMapper::setIdMapper(std::unique_ptr<KVMSPIIdMapper> idMapper) {
    _idMapper = std::move(idMapper);
}

void KVMSPIMapper::setScheduleCalendar(std::unique_ptr<KVMSPEScheduleCalendar> scheduleCalendar) {
    _scheduleCalendar = std::move(scheduleCalendar);
}

void KVMSPIMapper::setHammockMapper(std::unique_ptr<KVMSPIHammockTaskMapper> hammockMapper) {
    _hammockMapper = std::move(hammockMapper);
}

void KVMSPIMapper::expandGroupTask(const KVMSPCXMLElement& task) {
    const std::string id = attributeText(task, tvnx::attribute::kId);
    if (expandedTaskIDsString) {
        expandedTaskIDsString->append(" ").append(id);
    } else {
        expandedTaskIDsString = id;
    }
}

void KVMSPIMapper::map() {
    _mspProject = dynamic_cast<KVMSPIMPPProjectReader*>(_mspDocument.projectReader());
    tvAssert(_mspProject != nullptr, "The MPP document has no project data to map.");
    _mspProject->setBaselineNumber(_baselineNumber);
    if (isBaselineScenario()) {
        if (!hasBaselineData()) {
            tvLog(stringWithFormat("    NO DATA FOUND IN THE PROJECT FOR BASELINE %d", _baselineNumber));
            return;
        }
        tvLog(stringWithFormat("  Mapping scenario for baseline %d ...", _baselineNumber));
    }
    const std::string* projectName = _info.stringForKey(kInfoMSPProjectName);
    _importedProjectName = projectName ? *projectName : kDefaultProjectName;
    readProjectSettings();

    _projectMapper = std::make_unique<KVMSPIProjectMapper>(*this, &_mspTaskMaxId, &_mspResourceMaxId,
                                                           _userDataTOCElements);
    const ElementPtr scenario = _projectMapper->newScenarioFromMSPProject(*_mspProject);
    _userDataChanged = _projectMapper->userDataChanged();
    _mspProjectName = _projectMapper->mspProjectName();
    if (scenario == nullptr) {
        return;
    }
    tvLog("  Finished mapping.");
    tvLog("  Start updating Tarvane document bundle ...");
    _tvnxXmlDoc = KVMSPCXMLDocument::initWithRootElement(scenario);
    _tvnxXmlDoc->setVersion("1.0");
    _tvnxXmlDoc->setCharacterEncoding("UTF-8");
    _tvnxXmlDoc->setStandalone(false);
    addHeaderComments(*scenario);
    const std::string scenarioId = KFXMLCreateID();
    scenario->setAttributeWithName(tvnx::attribute::kId, scenarioId);
    updateTOC(scenarioId);
    tvLog("  Finished updating Tarvane document bundle.");
}

// Resources and tasks decide. The baseline documents hold no values of assignments, so a baseline
// that only assignments hold would make a document that merely repeats the plan.
bool KVMSPIMapper::hasBaselineData() const {
    const auto* resources = dynamic_cast<const KVMSPIMPPResourceReader*>(_mspProject->resourceReader());
    const auto* tasks = dynamic_cast<const KVMSPIMPPTaskReader*>(_mspProject->taskReader());
    return (resources && anyHasBaselineData(resources->readersForBaseline(_baselineNumber))) ||
           (tasks && anyHasBaselineData(tasks->readersForBaseline(_baselineNumber)));
}

void KVMSPIMapper::readProjectSettings() {
    KVMSPIMPPProjectReader& project = *_mspProject;
    for (const auto& [name, field] : {std::pair{"SaveVersion", &_mspSaveVersion},
                                      {"MinutesPerDay", &_mspMinutesPerDay},
                                      {"MinutesPerWeek", &_mspMinutesPerWeek},
                                      {"DaysPerMonth", &_mspDaysPerMonth},
                                      {"WeekStartDay", &_mspWeekStartDay},
                                      {"DurationFormat", &_mspDurationFormat}}) {
        if (const auto value = queryInt(project, name)) {
            *field = *value;
        }
    }
    if (!isBaselineScenario()) {
        _currencyDigits = queryInt(project, "CurrencyDigits").value_or(2);
        const auto symbol = queryString(project, "CurrencySymbol");
        _currencySymbol = symbol ? withoutRightToLeftMarks(*symbol) : "$";
        _currencySymbolPosition = queryInt(project, "CurrencySymbolPosition").value_or(0);
    }
}

// The second comment is inserted ahead of the first, so that it stands first.
void KVMSPIMapper::addHeaderComments(KVMSPCXMLElement& scenario) const {
    const std::string baseline =
        isBaselineScenario() ? stringWithFormat(" (Baseline %d)", _baselineNumber) : std::string();
    scenario.insertComment(stringWithFormat("  Imported MS Project %s: '%s'%s  ",
                                            yearWordOfSaveVersion(_mspSaveVersion),
                                            _importedProjectName.c_str(), baseline.c_str()),
                           0);
    scenario.insertComment(stringWithFormat("  %s: Tarvane %s %s Importer.  ", presentDateText().c_str(),
                                            kTarvaneAppVerion, _importedFormat.c_str()),
                           0);
}

void KVMSPIMapper::updateTOC(const std::string& scenarioId) {
    using namespace tvnx::element;
    const ElementPtr root = _tvnxTOCXmlDoc->rootElement();
    tvAssert(root != nullptr, "Failed to get 'scenario/project' element from TOC XML DOM");
    const KVMSPCXMLNode::Nodes namespaces = root->namespaces();
    if (!namespaces.empty()) {
        tvLog(stringWithFormat("xmlns: %s", namespaces.front()->description().c_str()));
    }
    const ElementPtr window =
        requiredChild(*root, kWindow, "Failed to get 'scenario/window' element from TOC XML DOM");
    const ElementPtr project =
        requiredChild(*root, kProject, "Failed to get 'scenario/project' element from TOC XML DOM");

    scenarioEntry(*project)->setAttributeWithName(tvnx::attribute::kId, scenarioId);
    raiseNextId(*project, kNextTaskId, _mspTaskMaxId,
                "Failed to get 'project/next-task-id' element from TOC XML DOM");
    raiseNextId(*project, kNextResourceId, _mspResourceMaxId,
                "Failed to get 'project/next-resource-id' element from TOC XML DOM");
    if (isBaselineScenario()) {
        updateComparisonScenario(*window, scenarioId);
    } else {
        updateActualScenarioTOC(*project, *window, scenarioId);
    }
    addExpandedItems(*window);
}

KVMSPIMapper::ElementPtr KVMSPIMapper::scenarioEntry(KVMSPCXMLElement& project) const {
    using namespace tvnx;
    const std::string* name = _info.stringForKey(kInfoTVNXScenarioName);
    tvAssert(name != nullptr && !name->empty(), "No scenario name provided in info dictionary.");
    for (const ElementPtr& entry : project.elementsForName(element::kScenario)) {
        if (attributeText(*entry, attribute::kName) == *name) {
            return entry;
        }
    }
    ElementPtr reference = lastChildNamed(project, element::kScenario);
    if (reference == nullptr) {
        reference = firstChildNamed(project, element::kNextResourceId);
    }
    tvAssert(reference != nullptr, "Failed to find insertion point for 'scenario' element in TOC XML DOM.");
    const ElementPtr entry = KVMSPCXMLElement::initWithName(element::kScenario);
    entry->setAttributeWithName(attribute::kId, std::string());
    entry->setAttributeWithName(attribute::kName, *name);
    entry->setAttributeWithName(attribute::kFilename, scenarioFileName(*name));
    insertBehind(project, entry, *reference);
    return entry;
}

// The ids only ever grow, so that no baseline lowers what the actual plan set.
void KVMSPIMapper::raiseNextId(KVMSPCXMLElement& project, const char* name, int64_t maxId,
                               const char* failure) const {
    const ElementPtr nextId = requiredChild(project, name, failure);
    const std::string text = nextId->stringValue().value_or(std::string());
    if (std::strtoll(text.c_str(), nullptr, 10) <= maxId) {
        nextId->setStringValue(stringWithFormat("%lld", static_cast<long long>(maxId + 1)));
    }
}

// Every baseline with data names itself, so the last one mapped is the one compared with.
void KVMSPIMapper::updateComparisonScenario(KVMSPCXMLElement& window, const std::string& scenarioId) {
    using namespace tvnx::element;
    if (!_isFirstBaseline) {
        return;
    }
    ElementPtr comparison = firstChildNamed(window, kComparisonScenario);
    if (comparison == nullptr) {
        const ElementPtr editing = requiredChild(window, kEditingScenario,
                                                 "Failed to get 'window/editing-scenario' from TOC XML DOM.");
        comparison = KVMSPCXMLElement::initWithName(kComparisonScenario);
        insertBehind(window, comparison, *editing);
    }
    comparison->setStringValue(scenarioId);
    _isFirstBaseline = false;
}

void KVMSPIMapper::updateActualScenarioTOC(KVMSPCXMLElement& project, KVMSPCXMLElement& window,
                                           const std::string& scenarioId) {
    using namespace tvnx;
    ElementPtr title = firstChildNamed(project, element::kTitle);
    if (title == nullptr) {
        title = project.insertChildElementWithName(element::kTitle, 0);
    }
    title->setStringValue(_mspProjectName);

    const ElementPtr currencyFormat = getGanttSettingsElement(element::kCurrencyFormat, project);
    tvAssert(currencyFormat != nullptr,
             "Failed to get/create 'project/currency-format' element from TOC XML DOM");
    currencyFormat->setStringValue(
        currencyFormatSample(_currencySymbol, _currencySymbolPosition, _currencyDigits));

    requiredChild(window, element::kEditingScenario,
                  "Failed to get 'window/editing-scenario' from TOC XML DOM.")
        ->setStringValue(scenarioId);
    if (_userDataChanged) {
        updateTOCUserData();
    }

    const Hours hours = hoursFromMinutesPerDay(_mspMinutesPerDay, _mspMinutesPerWeek, _mspDaysPerMonth);
    for (const auto& [name, failure] :
         {std::pair{element::kDurationFormat, "Failed to get 'project/duration-format' from TOC XML DOM."},
          {element::kEffortFormat, "Failed to get 'project/effort-format' from TOC XML DOM."}}) {
        const ElementPtr format = requiredChild(project, name, failure);
        for (const auto& [attributeName, value] : {std::pair{attribute::kHoursPerDay, hours.perDay},
                                                   {attribute::kHoursPerWeek, hours.perWeek},
                                                   {attribute::kHoursPerMonth, hours.perMonth},
                                                   {attribute::kHoursPerYear, hours.perYear}}) {
            format->setAttributeWithName(attributeName,
                                         stringWithFormat("%lld", static_cast<long long>(value)));
        }
    }
}

// One element for each mapped scenario, with that scenario's open groups. A template without the
// outline has no place for them.
void KVMSPIMapper::addExpandedItems(KVMSPCXMLElement& window) const {
    using namespace tvnx::element;
    const ElementPtr taskView = firstChildNamed(window, kTaskView);
    const ElementPtr outline = taskView ? firstChildNamed(*taskView, kOutline) : nullptr;
    if (outline == nullptr) {
        tvLog("    !!! WARNING: The template's table of contents has no 'window/task-view/outline'.");
        return;
    }
    outline->addChildElementWithName(kExpandedItems)
        ->setAttributeWithName(tvnx::attribute::kIdrefs, expandedTaskIDsString.value_or(std::string()));
}

KVMSPIMapper::ElementPtr
KVMSPIMapper::getLastElementBeforeGanttSettingsInProjectTOC(KVMSPCXMLElement& project) const {
    ElementPtr last = lastChildNamed(project, tvnx::element::kScenario);
    if (last == nullptr) {
        last = firstChildNamed(project, tvnx::element::kNextResourceId);
    }
    tvAssert(last != nullptr, "Failed to find element preceeding TOC Project Gantt Settings section.");
    return last;
}

KVMSPIMapper::ElementPtr
KVMSPIMapper::getPrevGanttSettingsElementForNameIndex(size_t nameIndex, KVMSPCXMLElement& project) const {
    for (size_t index = std::min(nameIndex, tvnx::kGanttSettings.size()); index-- > 0;) {
        if (ElementPtr element = firstChildNamed(project, tvnx::kGanttSettings[index])) {
            return element;
        }
    }
    ElementPtr previous = getLastElementBeforeGanttSettingsInProjectTOC(project);
    tvAssert(previous != nullptr,
             "Failed to find preceeding element to insert element into TOC Project Gantt Settings section.");
    return previous;
}

KVMSPIMapper::ElementPtr KVMSPIMapper::getGanttSettingsElement(const std::string& name,
                                                               KVMSPCXMLElement& project) const {
    if (ElementPtr element = firstChildNamed(project, name)) {
        return element;
    }
    const auto found = std::find(tvnx::kGanttSettings.begin(), tvnx::kGanttSettings.end(), name);
    if (found == tvnx::kGanttSettings.end()) {
        return nullptr;
    }
    const ElementPtr previous = getPrevGanttSettingsElementForNameIndex(
        static_cast<size_t>(found - tvnx::kGanttSettings.begin()), project);
    const ElementPtr element = KVMSPCXMLElement::initWithName(name);
    insertBehind(project, element, *previous);
    return element;
}

// The declarations stand behind the settings section: project data first, then the keys of tasks and
// of resources. Existing containers keep their declarations and get the new one beside them.
void KVMSPIMapper::updateTOCUserData() {
    using namespace tvnx::element;
    const ElementPtr root = _tvnxTOCXmlDoc->rootElement();
    const ElementPtr project = root ? firstChildNamed(*root, kProject) : nullptr;
    tvAssert(project != nullptr, "Failed to find 'project' element in TOC XML DOM.");
    ElementPtr position;
    const auto entry = [this](const std::string& tag) {
        const auto found = _userDataTOCElements.find(tag);
        return found == _userDataTOCElements.end() ? nullptr : found->second;
    };
    if (const ElementPtr projectData = entry(kMSPIProjectUserDataTag)) {
        if (firstChildNamed(*project, kUserData) == nullptr) {
            insertBehind(*project, projectData,
                         *getPrevGanttSettingsElementForNameIndex(kNoNameIndex, *project));
            position = projectData;
        }
    }
    for (const auto& [tag, failure] :
         {std::pair{kTaskUserDataKeys,
                    "Failed to locate/make 'task-user-data-keys' child of 'project' in TOC XML DOM."},
          {kResourceUserDataKeys,
           "Failed to locate/make 'resource-user-data-keys' child of 'project' in TOC XML DOM."}}) {
        const ElementPtr declaration = entry(tag);
        if (declaration == nullptr) {
            continue;
        }
        ElementPtr container = firstChildNamed(*project, tag);
        if (container == nullptr) {
            if (position == nullptr) {
                position = getPrevGanttSettingsElementForNameIndex(kNoNameIndex, *project);
            }
            container = KVMSPCXMLElement::initWithName(tag);
            insertBehind(*project, container, *position);
            position = container;
        }
        tvAssert(container != nullptr, failure);
        container->addChild(declaration);
    }
}

std::string KVMSPIMapper::currencyFormatSample(const std::string& symbol, int64_t position, int64_t digits) {
    std::string sample;
    if (position == 0) {
        sample += symbol;
    } else if (position == 2) {
        sample.append(" ").append(symbol);
    }
    sample += "1,234";
    if (digits >= 1) {
        sample += ".";
        for (int64_t digit = 0; digit < std::min(digits, kMaxCurrencyDecimals); ++digit) {
            sample += static_cast<char>('5' + digit);
        }
    }
    if (position == 1) {
        sample += symbol;
    } else if (position == 3) {
        sample.append(" ").append(symbol);
    }
    return sample;
}

KVMSPIMapper::Hours KVMSPIMapper::hoursFromMinutesPerDay(int64_t minutesPerDay, int64_t minutesPerWeek,
                                                         int64_t daysPerMonth) {
    Hours hours{};
    hours.perDay = minutesPerDay < 0 ? 8 : minutesPerDay / 60;
    hours.perWeek = minutesPerWeek < 0 ? 40 : minutesPerWeek / 60;
    hours.perMonth = daysPerMonth < 0 ? 160 : daysPerMonth * hours.perDay;
    hours.perYear = 12 * hours.perMonth;
    return hours;
}
