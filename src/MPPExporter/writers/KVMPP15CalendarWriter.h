#pragma once

#include "MPPExporter/MPPObjects/KVMPPCalendarTimeRange.h"
#include "MPPExporter/writers/MPPObjectStorageWriter.h"
#include "MPPImporter/format/MPPCalendarDataBlock.h"

#include <cstdint>
#include <vector>

class KVMPPCalendar;
class KVMPPCalendarWorkWeek;
class KVMPPResource;

// Name of the exception of a day or exception with more working ranges than a record holds.
inline constexpr const char* kTooManyRangesException = "TooManyRangesException";

// Regenerates the storage "TBkndCal": the project's standard calendar, the default resource's
// calendar, the base calendars and one calendar per resource, in this order in every stream. Each
// calendar has a fixed record (its UID, its base's and its resource's) and, in the variable data, its
// name and its data block of week days, exceptions and dated weeks, laid out by the same calendar
// data block that the readers read.
class KVMPP15CalendarWriter : public MPPObjectStorageWriter {
public:
    using MPPObjectStorageWriter::MPPObjectStorageWriter;

    // Numbers the calendars as the streams order them: the standard calendar 1 (named "Standard" and
    // the project's calendar unless it has one), the default resource's 2, the base calendars from 3
    // and then each resource's own calendar, unnamed. A resource without a calendar of its own gets one
    // derived from the project's calendar.
    static void preprocessProject(KVMPPProject& project);
    // Whether a calendar has a data block: a base calendar always, a derived one when it states a day,
    // an exception or a dated week.
    static bool calendarDataShouldBeWritten(const KVMPPCalendar& calendar);
    // The working ranges of a list of the model in the form that the records hold.
    static std::vector<MPPWorkingTimeRange> recordRanges(const std::vector<KVMPPCalendarTimeRange>& ranges);

private:
    enum class Kind { standard, defaultResource, base, resource };
    struct Element {
        Kind kind;
        const KVMPPCalendar* calendar;
        const KVMPPResource* resource;
    };

    std::vector<Element> elements() const;
    // The variable data elements of a calendar: its name and its data block.
    uint32_t varElementsCount(const Element& element) const;

    const MPPObjectStorageLayout& storageLayout() const override;

    void writeVar2DataElements() override;
    std::vector<uint8_t> calendarData(const KVMPPCalendar& calendar);
    void appendWeekDays(const KVMPPCalendarWorkWeek& week, std::vector<uint8_t>& bytes) const;

    void writeFixedDataRecords() override;
    void writeFixedMetaEntries() override;
    void writeFixed2DataRecords() override;
    void writeFixed2MetaEntries() override;

    // The running numbers that the application gives exceptions and dated weeks. They count within one
    // export: a batch of plans must not make one plan's file depend on the plans before it.
    uint32_t m_exceptionCounter = 0;
    uint32_t m_weekCounter = 0x15;
};
