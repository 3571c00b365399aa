#include "MPPExporter/writers/KVMPP15CalendarWriter.h"

#include "MPPCommon/support/TVException.h"
#include "MPPExporter/MPPObjects/KVMPPProject.h"
#include "MPPExporter/writers/MPPFieldWrites.h"
#include "MPPImporter/format/MPPCalendarPropertyKeys.h"
#include "MPPImporter/format/MPPFieldCatalog.h"
#include "MPPImporter/format/MPPFormatConstants.h"
#include "MPPImporter/format/MPPPropertyKeyTables.h"
#include "MPPImporter/format/MPPValueCodecs.h"
#include "MPPImporter/format/MPPVersionTables.h"
#include "MPPImporter/text/UnicodeText.h"

#include <algorithm>
#include <set>

namespace {

constexpr uint64_t kStandardCalendarID = 1;
constexpr uint64_t kDefaultResourceCalendarID = 2;
constexpr uint64_t kFirstBaseCalendarID = 3;

// The header elements of the fixed streams and the entry sizes of the meta streams.
constexpr MPPObjectStorageLayout kCalendarStorage = {.headerElements = 4,
                                                     .fixed2RecordSize = 48,
                                                     .fixedMetaEntrySize = 10,
                                                     .headerMetaMark = 0x10,
                                                     .fixed2MetaEntrySize = 9,
                                                     .varMetaEnding = 0x0D40};
constexpr size_t kFixedRecordSize = 12;

// The fixed meta entry of a calendar: its count of variable data elements in the high word, and a
// mark of a base or derived calendar with a bit for a data block.
constexpr uint32_t kVarElementsShift = 16;
constexpr uint16_t kBaseCalendarMark = 0x8F;
constexpr uint16_t kDerivedCalendarMark = 0x0E;
constexpr uint16_t kDataBlockMark = 0x40;
// The second fixed meta entry's mark.
constexpr uint8_t kStandardFixed2Mark = 0x1E;
constexpr uint8_t kOtherFixed2Mark = 0x0E;

// Application 16 marks a calendar without resource with -1, application 15 with 0.
int32_t noResource(int32_t layoutVersion) {
    return layoutVersion == kMSPDIVersion_2013 ? 0 : -1;
}

constexpr int32_t kMinutesInDay = 24 * 60;
constexpr TVTimeSpan kMicrosecondsPerMinute = 60 * kMicrosecondsPerSecond;

int32_t minutesOf(const MPPCalendarTime& time) {
    return time.hours() * 60 + time.minutes();
}

void appendNumber(uint32_t value, std::vector<uint8_t>& bytes) {
    const size_t at = bytes.size();
    bytes.resize(at + 4);
    encodeMPPNumber(value, std::span<uint8_t>(bytes).subspan(at, 4));
}

void appendDate(std::optional<TVDate> date, std::vector<uint8_t>& bytes) {
    const size_t at = bytes.size();
    bytes.resize(at + kMPPDateSize);
    encodeMPPDate(KVMPPData::wallClock(date), std::span<uint8_t>(bytes).subspan(at, kMPPDateSize));
}

} // namespace

// Model steps.

void KVMPP15CalendarWriter::preprocessProject(KVMPPProject& project) {
    KVMPPCalendar& standard = *project.standardCalendar;
    standard.name = KVMPPProject::kStandardCalendarName;
    standard.ID = kStandardCalendarID;
    if (!project.calendar.isSet()) {
        project.calendar.setObject(project.standardCalendar);
    }
    // The default resource's calendar was made with the project, before the mapping replaced the
    // standard calendar: it follows the one that is written.
    KVMPPCalendar& defaultCalendar = *project.defaultResource().calendar.object();
    defaultCalendar.ID = kDefaultResourceCalendarID;
    defaultCalendar.baseCalendar.setObject(project.standardCalendar);
    std::erase(project.baseCalendars, project.standardCalendar);
    uint64_t id = kFirstBaseCalendarID;
    for (const auto& calendar : project.baseCalendars) {
        if (calendar->isBaseCalendar) {
            calendar->ID = id++;
        }
    }
    // Every resource has a derived calendar of its own in the file. One that names a base calendar, or
    // shares a calendar with a resource before it, gets its own, so that numbering it leaves the other
    // calendar alone.
    std::set<const KVMPPCalendar*> taken;
    for (const auto& resource : project.resources) {
        std::shared_ptr<KVMPPCalendar> calendar = resource->calendar.sharedObject();
        if (!calendar || calendar->isBaseCalendar) {
            const std::shared_ptr<KVMPPCalendar> base = calendar ? calendar : project.calendar.sharedObject();
            calendar = std::make_shared<KVMPPCalendar>();
            calendar->baseCalendar.setObject(base);
        } else if (taken.contains(calendar.get())) {
            calendar = std::make_shared<KVMPPCalendar>(*calendar);
            calendar->GUID = newRandomMPPGuid();
        }
        if (!calendar->baseCalendar.isSet()) {
            calendar->baseCalendar.setObject(project.calendar.sharedObject());
        }
        calendar->ID = id++;
        calendar->name.reset();
        taken.insert(calendar.get());
        resource->calendar.setObject(calendar);
    }
}

bool KVMPP15CalendarWriter::calendarDataShouldBeWritten(const KVMPPCalendar& calendar) {
    if (!calendar.baseCalendar.isSet()) {
        return true;
    }
    for (int64_t day = 1; day <= MPPCalendarDataBlock::kDaysInWeek; ++day) {
        if (calendar.defaultWorkWeek.workRangesForDay(day)) {
            return true;
        }
    }
    return !calendar.exceptions.empty() || !calendar.workWeeks.empty();
}

std::vector<MPPWorkingTimeRange>
KVMPP15CalendarWriter::recordRanges(const std::vector<KVMPPCalendarTimeRange>& ranges) {
    if (ranges.size() > MPPCalendarDataBlock::kMaxWorkingRanges) {
        throw TVException(kTooManyRangesException,
                          "Not more than 5 time ranges can be written to a calendar");
    }
    std::vector<MPPWorkingTimeRange> result;
    for (const KVMPPCalendarTimeRange& range : ranges) {
        const int32_t start = minutesOf(range.start());
        int32_t end = minutesOf(range.end());
        // A range that ends at midnight runs to the end of its day, as the files hold it. A range that
        // ends before it starts has no length: it is kept where it starts.
        if (end == 0) {
            end = kMinutesInDay;
        } else if (end < start) {
            end = start;
        }
        result.push_back({start * kMicrosecondsPerMinute, end * kMicrosecondsPerMinute});
    }
    return result;
}

// Streams.

const MPPObjectStorageLayout& KVMPP15CalendarWriter::storageLayout() const {
    return kCalendarStorage;
}

std::vector<KVMPP15CalendarWriter::Element> KVMPP15CalendarWriter::elements() const {
    std::vector<Element> result = {
        {Kind::standard, project().standardCalendar.get(), nullptr},
        {Kind::defaultResource, project().defaultResource().calendar.object(), &project().defaultResource()},
    };
    for (const auto& calendar : project().baseCalendars) {
        if (calendar->isBaseCalendar) {
            result.push_back({Kind::base, calendar.get(), nullptr});
        }
    }
    for (const auto& resource : project().resources) {
        result.push_back({Kind::resource, resource->calendar.object(), resource.get()});
    }
    for (const Element& element : result) {
        tvAssert(element.calendar != nullptr,
                 "Every calendar of the file exists once the model is prepared.");
    }
    return result;
}

uint32_t KVMPP15CalendarWriter::varElementsCount(const Element& element) const {
    if (element.kind == Kind::defaultResource) {
        return 0;
    }
    const bool named = element.calendar->name && !element.calendar->name->empty();
    return (named ? 1u : 0u) + (calendarDataShouldBeWritten(*element.calendar) ? 1u : 0u);
}

void KVMPP15CalendarWriter::writeVar2DataElements() {
    for (const Element& element : elements()) {
        if (element.kind == Kind::defaultResource) {
            continue;
        }
        const KVMPPCalendar& calendar = *element.calendar;
        const auto id = static_cast<uint32_t>(calendar.ID);
        if (calendar.name && !calendar.name->empty()) {
            m_elements->addField(id, MPPField::calendarName, utf16FromUTF8(*calendar.name));
        }
        if (calendarDataShouldBeWritten(calendar)) {
            m_elements->addField(id, MPPField::calendarData, calendarData(calendar));
        }
    }
}

void KVMPP15CalendarWriter::appendWeekDays(const KVMPPCalendarWorkWeek& week,
                                           std::vector<uint8_t>& bytes) const {
    for (int64_t day = 1; day <= MPPCalendarDataBlock::kDaysInWeek; ++day) {
        const auto& ranges = week.workRangesForDay(day);
        const std::vector<MPPWorkingTimeRange> held =
            ranges ? recordRanges(*ranges) : std::vector<MPPWorkingTimeRange>();
        const size_t at = bytes.size();
        bytes.resize(at + MPPCalendarDataBlock::kDayRecordSize);
        MPPCalendarDataBlock::encodeDayRecord(ranges ? &held : nullptr,
                                              std::span<uint8_t>(bytes).subspan(at));
    }
}

std::vector<uint8_t> KVMPP15CalendarWriter::calendarData(const KVMPPCalendar& calendar) {
    const auto layout = MPPCalendarDataBlock::Layout::forVersion(*mppVersionTables(layoutVersion()));
    std::vector<uint8_t> bytes;
    appendWeekDays(calendar.defaultWorkWeek, bytes);
    appendNumber(static_cast<uint32_t>(calendar.exceptions.size()), bytes);
    for (const KVMPPCalendarException& exception : calendar.exceptions) {
        const std::vector<uint8_t> record = MPPCalendarDataBlock::encodeSingleException(
            layout, KVMPPData::wallClock(exception.startDate), KVMPPData::wallClock(exception.endDate),
            recordRanges(exception.workRanges), m_exceptionCounter++,
            utf16FromUTF8(exception.name.value_or("")));
        bytes.insert(bytes.end(), record.begin(), record.end());
    }
    appendNumber(static_cast<uint32_t>(calendar.workWeeks.size()), bytes);
    for (const KVMPPCalendarWorkWeek& week : calendar.workWeeks) {
        appendWeekDays(week, bytes);
        appendDate(week.startDate, bytes);
        appendDate(week.endDate, bytes);
        appendNumber(m_weekCounter++, bytes);
        appendNumber(0, bytes);
        MPPCalendarDataBlock::appendSizedName(utf16FromUTF8(week.name.value_or("")), bytes);
    }
    return bytes;
}

void KVMPP15CalendarWriter::writeFixedDataRecords() {
    const int32_t column = mppVersionTables(layoutVersion())->keyColumn;
    const auto uidOffset = mppPropertyOffset(column, kCalendarUIDKey);
    tvAssert(uidOffset.has_value(), "The calendar layout has no fixed record.");
    for (const Element& element : elements()) {
        const KVMPPCalendar* base = element.calendar->baseCalendar.object();
        const int64_t resource = element.resource != nullptr ? static_cast<int64_t>(element.resource->ID)
                                                             : noResource(layoutVersion());
        std::array<uint8_t, kFixedRecordSize> record{};
        encodeMPPNumber(static_cast<uint32_t>(element.calendar->ID),
                        std::span(record).subspan(*uidOffset, 4));
        putMPPField(layoutVersion(), record, MPPFieldBlock::fixed, MPPField::calendarBaseUID,
                    base != nullptr ? static_cast<int64_t>(base->ID) : int64_t{0});
        putMPPField(layoutVersion(), record, MPPFieldBlock::fixed, MPPField::calendarResourceUID, resource);
        m_fixedData->writeRecord(record);
    }
}

void KVMPP15CalendarWriter::writeFixedMetaEntries() {
    for (const Element& element : elements()) {
        const bool isBase = element.kind == Kind::standard || element.kind == Kind::base;
        const bool hasData =
            element.kind != Kind::defaultResource && calendarDataShouldBeWritten(*element.calendar);
        m_fixedMeta->writeNextElementStartWithInt(varElementsCount(element) << kVarElementsShift);
        m_fixedMeta->write2ByteInteger(static_cast<uint16_t>(
            (isBase ? kBaseCalendarMark : kDerivedCalendarMark) | (hasData ? kDataBlockMark : 0)));
    }
}

void KVMPP15CalendarWriter::writeFixed2DataRecords() {
    for (const Element& element : elements()) {
        const KVMPPCalendar* base = element.calendar->baseCalendar.object();
        m_fixed2Data->startNewElement();
        m_fixed2Data->writeGUID(element.calendar->getGUID());
        m_fixed2Data->writeGUID(element.resource != nullptr
                                    ? std::span<const uint8_t>(element.resource->getGUID())
                                    : std::span<const uint8_t>());
        m_fixed2Data->writeGUID(base != nullptr ? std::span<const uint8_t>(base->getGUID())
                                                : std::span<const uint8_t>());
        m_fixed2Data->closeCurrentElement();
    }
}

void KVMPP15CalendarWriter::writeFixed2MetaEntries() {
    for (const Element& element : elements()) {
        m_fixed2Meta->writeNextElementStartWithInt(0);
        m_fixed2Meta->write1ByteInteger(element.kind == Kind::standard ? kStandardFixed2Mark
                                                                       : kOtherFixed2Mark);
    }
}
