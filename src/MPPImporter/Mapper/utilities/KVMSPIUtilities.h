#pragma once

#include "MPPCommon/date/MSPCDateComponents.h"
#include "MPPCommon/date/TVCalendar.h"
#include "MPPCommon/support/TVFileURL.h"
#include "MPPImporter/format/MPPDataStreamParams.h"

#include <cstdint>
#include <optional>
#include <string>

class KVMSPCXMLDocument;
class KVMSPEScheduleCalendar;

// The ISO text layer of the mappers: parsing and rendering of ISO 8601 dates and durations over a
// components record, and the conversions between the three date forms (MSPDI text, wall clock
// without a zone; TVNX text, with a zone; MPP date, an instant) and the duration forms. Empty input
// gives none. Texts that can't be what the caller promises raise the internal-inconsistency
// exception naming the text.
class KVMSPIUtilities {
public:
    // An ISO 8601 duration text, to tell its parse from the date-time parse.
    struct ISODuration {
        const std::string& text;
    };

    // Fill `components` from the text; returns the unit flags found, or kMSPCParseFailed.
    static TVCalendarUnits updateDateTimeComponents(MSPCDateComponents& components,
                                                    const std::string& isoDateTime);
    static TVCalendarUnits updateDateTimeComponents(MSPCDateComponents& components, ISODuration isoDuration);
    // Renders the units named by `unitFlags`; none for kMSPCParseFailed.
    static std::optional<std::string> stringFromComponents(const MSPCDateComponents& components,
                                                           TVCalendarUnits unitFlags);
    // A new record, or none when the text holds no date or time.
    static std::optional<MSPCDateComponents> componentsFromISODateTime(const std::string& text);
    // The instant of a record read in the system zone.
    static std::optional<TVDate> dateFromComponents(const MSPCDateComponents& components);

    static bool isIsoiDateTime(const std::string& text);
    static bool isTvnxDateTime(const std::string& text);
    static bool isMspdiDateTime(const std::string& text);
    static bool isMspdiDuration(const std::string& text);

    // MSPDI text labelled with the system zone's offset; the wall clock stays.
    static std::optional<std::string> mspdiToTvnxDateTime(const std::string& text);
    // Seconds after midnight of the time in the text, as decimal text.
    static std::optional<std::string> mspdiToTvnxTimeOnly(const std::string& text);
    // The platform's text of the wall clock, "yyyy-MM-dd HH:mm:ss" labelled with the system zone's
    // offset ("+0000" in UTC), so that the wall clock stays whatever the machine's zone.
    static std::optional<std::string> mspdiDateTimeToString(const std::string& text);
    static std::optional<TVDate> mspdiToMppDateTime(const std::string& text);
    // The instant of TVNX text in its own zone (the system zone when it has none).
    static std::optional<TVDate> tvnxToMppDateTime(const std::string& text);
    // TVNX text moved to the system zone's wall clock, the zone dropped; `calendarUnits` (when not 0)
    // limits the units rendered.
    static std::optional<std::string> tvnxToMspdiDateTime(const std::string& text);
    static std::optional<std::string> tvnxToMspdiDateTime(const std::string& text,
                                                          TVCalendarUnits calendarUnits);
    static std::optional<std::string> tvnxToMspdiDateOnly(const std::string& text);
    static std::optional<std::string> tvnxToMspdiDateStartTime(const std::string& text);
    static std::optional<std::string> tvnxToMspdiDateEndTime(const std::string& text);
    // An instant as the wall clock of the calendar's zone, labelled with the system zone's offset.
    static std::optional<std::string> mppToTvnxDateTime(TVDate date);
    static std::optional<std::string> mppToTvnxDateTime(TVDate date, const TVCalendar& calendar);
    static std::optional<std::string> mppToMspdiDateTime(TVDate date);
    // -1, 0 or 1; texts that are empty compare by length.
    static int compareMspdiDateTime(const std::string& first, const std::string& second);

    // Working time on ISO text, quiet about text that isn't a date: none or false. Only the standard
    // calendar is supported; a calendar passed in is reported in the log and ignored.
    // The date of the text moved by `duration` seconds of working time, as TVNX text.
    static std::optional<std::string> isoDateTime(const std::string& text, double duration, bool forward,
                                                  const KVMSPEScheduleCalendar* calendar);
    // The same with a TVNX duration text, whose integer value is the seconds.
    static std::optional<std::string> isoDateTime(const std::string& text, const std::string& tvnxDuration,
                                                  bool forward, const KVMSPEScheduleCalendar* calendar);
    static bool isWorkingDay(const std::string& text, const KVMSPEScheduleCalendar* calendar);

    // Seconds of the hours, minutes and seconds of an MSPDI duration; -1 for empty text.
    static int64_t mspdiDurationInSecs(const std::string& text);
    static std::optional<std::string> mspdiToTvnxDuration(const std::string& text);
    // Seconds of a strict "PThhHmmMssS" text; 0.0 for anything else.
    static double mspdiToMppDuration(const std::string& text);
    static std::string mppToTvnxDuration(double seconds);
    static std::string mppToMspdiDuration(double seconds);
    static std::optional<std::string> tvnxToMspdiDuration(const std::string& text);

    // Writes the document, pretty printed, as "<dumpName>_dump(<dumpNumber>).xml" into the folder
    // "TVMSPDIFilterDump" of the working folder; no name gives "TVMSPDIFilter", a number below 1 no
    // "(n)". Problems are logged, never raised.
    static void dumpXMLDocument(const KVMSPCXMLDocument& document, const TVFileURL& workingFolderUrl,
                                const std::string& dumpName, int dumpNumber = 0);
    // One field a line, for logs.
    static std::string stringFromDataStreamParams(const MPPDataStreamParams& params);
    // Whether `other` has the has-flags of Props and Fixed of `params`, and its values in each stream
    // group that `params` has.
    static bool dataStreamParams(const MPPDataStreamParams& params, const MPPDataStreamParams& other);
};
