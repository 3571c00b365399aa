#include "MPPExporter/writers/KVMPP15ProjectPropsWriter.h"

#include "MPPCommon/support/TVException.h"
#include "MPPExporter/MPPObjects/KVMPPProject.h"
#include "MPPExporter/writers/KVMPP15SequentialPropsReader.h"
#include "MPPExporter/writers/KVMPPProps.h"
#include "MPPExporter/writers/MPPFieldWrites.h"
#include "MPPImporter/text/UnicodeText.h"

#include <map>

namespace {

// Property types of the project's settings that the catalogue does not name.
constexpr uint32_t kProjectTitle = 0x2400008;
constexpr uint32_t kProjectAuthor = 0x240000C;
constexpr uint32_t kHonorConstraints = 0x240003A;
constexpr uint32_t kBaseline0SaveDate = 0x2401395;
constexpr uint32_t kFirstBaselineSaveDate = 0x2401396;
constexpr uint32_t kLastBaselineSaveDate = 0x240139F;
constexpr uint32_t kCalendarGuid = 0x24013C2;
constexpr uint32_t kProjectTitleAgain = 0x35400008;
// A block of the application's settings that is kept but for one 2-byte value.
constexpr uint32_t kSettingsBlock = 0x20017;
constexpr size_t kSettingsBlockMarkOffset = 5584;
constexpr uint16_t kSettingsBlockMark = 49;

uint32_t wordAt(const std::array<uint8_t, 12>& header, size_t offset) {
    return static_cast<uint32_t>(header[offset]) | static_cast<uint32_t>(header[offset + 1]) << 8 |
           static_cast<uint32_t>(header[offset + 2]) << 16 | static_cast<uint32_t>(header[offset + 3]) << 24;
}

// The project's settings that the catalogue places in the Props, with their values; the name of the
// standard calendar only where the plan has one, else the template's stays.
std::vector<std::pair<MPPField, MPPFieldValue>> cataloguedSettings(const KVMPPProject& project) {
    std::vector<std::pair<MPPField, MPPFieldValue>> settings = {
        {MPPField::projectStartDate, KVMPPData::wallClock(project.startDate)},
        {MPPField::projectFinishDate, KVMPPData::wallClock(project.endDate)},
        {MPPField::projectScheduleFromStart, project.scheduleFromStart},
        {MPPField::projectCurrencySymbol, utf16FromUTF8(project.currencySymbol)},
        {MPPField::projectCurrencySymbolPosition, int64_t{project.currencySymbolPosition}},
        {MPPField::projectCurrencyDigits, static_cast<int64_t>(project.currencyDigits)},
        {MPPField::projectDurationUnits, int64_t{project.durationFormat}},
        {MPPField::projectWorkUnits, int64_t{project.workFormat}},
        {MPPField::projectMinutesPerDay, static_cast<int64_t>(project.minutesPerDay)},
        {MPPField::projectMinutesPerWeek, static_cast<int64_t>(project.minutesPerWeek)},
        {MPPField::projectWeekStartDay, int64_t{project.weekStartDay}},
        {MPPField::projectDaysPerMonth, static_cast<int64_t>(project.daysPerMonth)},
        {MPPField::projectCurrencyCode, utf16FromUTF8(project.currencyCode)}};
    if (project.standardCalendar && project.standardCalendar->name) {
        settings.emplace_back(MPPField::projectDefaultCalendarName,
                              utf16FromUTF8(*project.standardCalendar->name));
    }
    return settings;
}

} // namespace

std::map<uint32_t, std::vector<uint8_t>>
KVMPP15ProjectPropsWriter::cataloguedValues(const KVMPPProject& project) const {
    std::map<uint32_t, std::vector<uint8_t>> values;
    for (const auto& [field, setting] : cataloguedSettings(project)) {
        values.emplace(mppFieldPropertyNumber(layoutVersion(), field),
                       encodeMPPFieldPayload(layoutVersion(), field, setting));
    }
    return values;
}

bool KVMPP15ProjectPropsWriter::writeDataForProject(const KVMPPProject* project) {
    return regenerate(project, [this] {
        KVMPP15SequentialPropsReader propsReader(templateEntry());
        KVMPPProps data(propsReader.magicHeaderInt());
        data.open();
        const std::map<uint32_t, std::vector<uint8_t>> catalogued = cataloguedValues(this->project());
        while (propsReader.readNextProperty()) {
            writeValueForCurrentlySelectedProperty(propsReader, catalogued, data);
        }
        data.close();
        if (!flushData(data, outputEntry())) {
            throw TVException(kWriteToStreamException, "Attempt to write the project properties failed");
        }
    });
}

void KVMPP15ProjectPropsWriter::writeValueForCurrentlySelectedProperty(
    const KVMPP15SequentialPropsReader& propsReader,
    const std::map<uint32_t, std::vector<uint8_t>>& catalogued, KVMPPProps& data) const {
    const uint32_t size = wordAt(propsReader.curPropertyHeader(), 0);
    const uint32_t ending = wordAt(propsReader.curPropertyHeader(), 8);
    const auto found = catalogued.find(propsReader.curPropertyType());
    const std::optional<std::vector<uint8_t>> value =
        found != catalogued.end() ? std::optional(found->second)
                                  : constructValueForPropertyType(project(), propsReader.curPropertyType(),
                                                                  propsReader.curPropertyData());
    const std::vector<uint8_t>& bytes = value ? *value : propsReader.curPropertyData();
    // A header that held the size twice keeps that form with the new size.
    data.setWriteSizeTwice(size == ending);
    data.startNewElementForType(propsReader.curPropertyType(), ending);
    data.writeData(bytes.data(), bytes.size());
    data.closeCurrentElement();
    if (bytes.size() % 2 != 0) {
        data.write1ByteInteger(0xFF);
    }
}

std::optional<std::vector<uint8_t>>
KVMPP15ProjectPropsWriter::constructValueForPropertyType(const KVMPPProject& project, uint32_t type,
                                                         const std::vector<uint8_t>& original) {
    KVMPPData value;
    const auto text = [&value](const std::string& string) {
        value.writeString(string, kMPPDataEncodingUTF16LE);
    };
    const auto shortValue = [&value](uint64_t number) {
        value.write2ByteInteger(static_cast<uint16_t>(number));
    };
    switch (type) {
    case kProjectTitle:
    case kProjectTitleAgain:
        text(project.title.value_or(""));
        break;
    case kProjectAuthor:
        text(project.summaryInfo.author.value_or(" "));
        break;
    case kHonorConstraints:
        shortValue(project.honorConstraints ? 0 : 1);
        break;
    case kBaseline0SaveDate:
        value.writeDate(project.baseline0SaveDate);
        break;
    case kCalendarGuid:
        if (!project.standardCalendar) {
            return std::nullopt;
        }
        value.writeGUID(project.standardCalendar->getGUID());
        break;
    case kSettingsBlock:
        // Too short a block raises the range failure and the stream is not written.
        value.writeData(original.data(), original.size());
        value.write2ByteInteger(kSettingsBlockMark, kSettingsBlockMarkOffset);
        break;
    default:
        if (type < kFirstBaselineSaveDate || type > kLastBaselineSaveDate) {
            return std::nullopt;
        }
        const size_t index = type - kFirstBaselineSaveDate;
        value.writeDate(index < project.baselineSaveDates.size()
                            ? std::optional(project.baselineSaveDates[index])
                            : std::nullopt);
    }
    return value.data();
}
