#pragma once

#include "MPPCommon/support/TVInfoDictionary.h"
#include "MPPImporter/Mapper/mapping/KVMSPIMapperInterface.h"
#include "MPPImporter/Mapper/mapping/KVMSPIUserDataMapper.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

class KVMSPEScheduleCalendar;
class KVMSPIHammockTaskMapper;
class KVMSPIIdMapper;
class KVMSPIMPPProjectReader;
class KVMSPIProjectMapper;

// Maps the reader tree of one plan into one scenario document, the actual plan or one baseline, and
// brings the shared table of contents up to date. The import makes a mapper for each scenario; all of
// them share the reader and the table of contents. Everything it asks of the plan goes through path
// queries; the scenario body is built by the project mapper.
class KVMSPIMapper : public KVMSPIMapperInterface {
public:
    using DocumentPtr = KVMSPCXMLDocument::DocumentPtr;
    using ElementPtr = KVMSPCXMLElement::ElementPtr;

    // The baseline comes from kInfoMSPBaselineNumber (0 to 10; an assertion failure otherwise), the
    // actual plan without it. The reader and the info dictionary must outlive the mapper.
    KVMSPIMapper(KVMSPIMPPReader& mspDocument, DocumentPtr tvnxTemplateXmlDoc, DocumentPtr tvnxTOCXmlDoc,
                 const TVInfoDictionary& info);
    ~KVMSPIMapper() override;

    // What the import is handed to make its mappers; it installs the query layer's adapters.
    static KVMSPIMapperFactory factory();

    // Builds the scenario and updates the table of contents; a baseline without data in the plan
    // gives no document and leaves the table of contents alone. Once per mapper.
    void map() override;
    DocumentPtr tvnxXmlDoc() const override { return _tvnxXmlDoc; }

    // Records the id of a group task for the outline's open items.
    void expandGroupTask(const KVMSPCXMLElement& task);
    bool isBaselineScenario() const { return _baselineNumber >= 0; }

    const std::string& importedProjectName() const { return _importedProjectName; }
    const std::string& mspProjectName() const { return _mspProjectName; }
    // Set at the start of `map`; null before, and for a file without a project reader.
    KVMSPIMPPProjectReader* mspProject() const { return _mspProject; }
    int64_t mspSaveVersion() const { return _mspSaveVersion; }
    const DocumentPtr& tvnxTOCXmlDoc() const { return _tvnxTOCXmlDoc; }
    const DocumentPtr& tvnxTemplateXmlDoc() const { return _tvnxTemplateXmlDoc; }
    int32_t baselineNumber() const { return _baselineNumber; }
    KVMSPIProjectMapper* projectMapper() const { return _projectMapper.get(); }
    int32_t mppVersion() const { return _mppVersion; }

    int64_t mspStandardCalendarUID() const { return _mspStandardCalendarUID; }
    void setMspStandardCalendarUID(int64_t uid) { _mspStandardCalendarUID = uid; }
    bool mspScheduleFromStart() const { return _mspScheduleFromStart; }
    void setMspScheduleFromStart(bool scheduleFromStart) { _mspScheduleFromStart = scheduleFromStart; }
    const KVMSPIIdMapper& idMapper() const;
    void setIdMapper(std::unique_ptr<KVMSPIIdMapper> idMapper);
    // The project calendar; none until the project mapper set it.
    const KVMSPEScheduleCalendar* scheduleCalendar() const { return _scheduleCalendar.get(); }
    void setScheduleCalendar(std::unique_ptr<KVMSPEScheduleCalendar> scheduleCalendar);
    KVMSPIHammockTaskMapper* hammockMapper() const { return _hammockMapper.get(); }
    void setHammockMapper(std::unique_ptr<KVMSPIHammockTaskMapper> hammockMapper);

    // The sample of a number in the project's currency: the symbol ahead (position 0, or 2 with a
    // blank) or behind (1, or 3 with a blank) "1,234" and up to five decimals "56789".
    static std::string currencyFormatSample(const std::string& symbol, int64_t position, int64_t digits);
    // Hours per day, week, month and year from the plan's minutes per day and week and days per month;
    // a negative (unread) value takes the default of 8, 40 and 160 hours.
    struct Hours {
        int64_t perDay, perWeek, perMonth, perYear;
    };
    static Hours hoursFromMinutesPerDay(int64_t minutesPerDay, int64_t minutesPerWeek, int64_t daysPerMonth);

private:
    // Whether any task or resource holds data in the baseline being mapped.
    bool hasBaselineData() const;
    void readProjectSettings();
    void addHeaderComments(KVMSPCXMLElement& scenario) const;
    void updateTOC(const std::string& scenarioId);
    // The scenario's entry in the project of the table of contents, made when missing.
    ElementPtr scenarioEntry(KVMSPCXMLElement& project) const;
    void raiseNextId(KVMSPCXMLElement& project, const char* name, int64_t maxId, const char* failure) const;
    void updateComparisonScenario(KVMSPCXMLElement& window, const std::string& scenarioId);
    void updateActualScenarioTOC(KVMSPCXMLElement& project, KVMSPCXMLElement& window,
                                 const std::string& scenarioId);
    void addExpandedItems(KVMSPCXMLElement& window) const;

    // The settings section of the project: its order, and elements made in their place.
    ElementPtr getLastElementBeforeGanttSettingsInProjectTOC(KVMSPCXMLElement& project) const;
    // `nameIndex` is an index of the settings list, or kNoNameIndex for the whole list.
    ElementPtr getPrevGanttSettingsElementForNameIndex(size_t nameIndex, KVMSPCXMLElement& project) const;
    ElementPtr getGanttSettingsElement(const std::string& name, KVMSPCXMLElement& project) const;
    void updateTOCUserData();

    static constexpr size_t kNoNameIndex = SIZE_MAX;

    std::string _importedFormat = "MPP";
    std::string _importedProjectName;
    std::string _mspProjectName;
    KVMSPIMPPReader& _mspDocument;
    DocumentPtr _tvnxTemplateXmlDoc;
    DocumentPtr _tvnxTOCXmlDoc;
    DocumentPtr _tvnxXmlDoc;
    const TVInfoDictionary& _info;
    KVMSPIMPPProjectReader* _mspProject = nullptr;
    int64_t _mspSaveVersion = 9;
    int64_t _mspMinutesPerDay = -1;
    int64_t _mspMinutesPerWeek = -1;
    int64_t _mspDaysPerMonth = -1;
    int64_t _mspWeekStartDay = -1;
    int64_t _mspDurationFormat = -1;
    int64_t _mspStandardCalendarUID = -1;
    bool _mspScheduleFromStart = true;
    std::string _currencySymbol = "$";
    int64_t _currencyDigits = 2;
    int64_t _currencySymbolPosition = 0;
    std::unique_ptr<KVMSPIProjectMapper> _projectMapper;
    std::unique_ptr<KVMSPIIdMapper> _idMapper;
    std::unique_ptr<KVMSPEScheduleCalendar> _scheduleCalendar;
    std::unique_ptr<KVMSPIHammockTaskMapper> _hammockMapper;
    int32_t _baselineNumber = -1;
    bool _isFirstBaseline = true;
    bool _userDataChanged = false;
    MSPIUserDataTOCElements _userDataTOCElements;
    int64_t _mspTaskMaxId = 0;
    int64_t _mspResourceMaxId = 0;
    int32_t _mppVersion = 0;
    std::optional<std::string> expandedTaskIDsString;
};
