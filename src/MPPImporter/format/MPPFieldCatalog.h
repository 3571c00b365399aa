#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPImporter/format/MPPValueCodecs.h"

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

// The field catalogue: one row per field of an object kind, telling in which block of the object its
// value lies, under which property key (whose offset or property number per layout the key tables
// give), and how the value is coded. Readers read a field by its row and the writers will write it by
// the same row; a field is added by adding a row. Where layouts differ in block or coding, the field
// has one row per group of layouts, and a layout takes the first of its rows whose key it has. A field
// with numbered copies (baselines 1 to 10) has numbered rows, whose key the copy's number is added to.

// The block of an object that holds a field.
enum class MPPFieldBlock : uint8_t {
    fixed,      // the fixed data item, at the key's offset
    fixedMeta,  // the fixed meta item, at the key's offset
    fixed2,     // the second fixed data item ("Fixed2Data")
    fixed2Meta, // the second fixed meta item ("Fixed2Meta")
    var,        // the variable data block under the key's property number, from its start
    props,      // the project's Props stream, under the key's property number
    custom,     // a custom field value of the variable data under the key's property number: as stored,
                // or in the outline code store where the stored value refers to an outline code
    extended,   // an entry of the task's block of extended fields (format 9, variable data), named by the
                // task field mark and the property number that format 12 gives the key
};

// How a field's bytes become its value.
enum class MPPFieldCodec : uint8_t {
    ubyte,      // unsigned 8-bit
    int16,      // signed 16-bit
    int32,      // signed 32-bit
    float64,    // IEEE double as stored
    timestamp,  // date and time (decodeMPPTimestamp)
    duration,   // tenths of a minute, as microseconds (decodeMPPDuration)
    work,       // thousandths of a minute, as microseconds (decodeMPPWork)
    hundredths, // money and units (decodeMPPHundredths)
    flag,       // a yes-or-no answer of a byte or word (MPPFieldTest)
    text,       // UTF-16 text (decodeMPPText); variable data and Props only
    bytes,      // the whole block; variable data only
    bit,        // a yes-or-no answer of one bit, whose number from the block's start the key gives
    number,     // a number of its block's width as a double: a signed integer of 1, 2 or 4 bytes or a
                // double of 8 (0 for another width); variable data only, written as a double
};

// The test of a flag: set when (value & mask) != 0, where the value is a byte, or a 16-bit word when
// `wide`.
struct MPPFieldTest {
    uint16_t mask = 0;
    bool wide = false;
};

// A set of layouts: the format version, and for format 14 the application that wrote the file
// (14, 15 or 16). The same numbers name the applications that save files.
class MPPLayoutSet {
public:
    constexpr MPPLayoutSet(std::initializer_list<int32_t> versions) {
        for (int32_t version : versions) {
            m_bits |= bit(version);
        }
    }
    constexpr bool contains(int32_t version) const { return (m_bits & bit(version)) != 0; }
    constexpr bool empty() const { return m_bits == 0; }

private:
    static constexpr uint32_t bit(int32_t version) {
        return version >= 0 && version < 32 ? uint32_t{1} << version : 0;
    }
    uint32_t m_bits = 0;
};

inline constexpr MPPLayoutSet kAllLayouts = {9, 12, 14, 15, 16};
inline constexpr int32_t kAllLayoutVersions[] = {9, 12, 14, 15, 16};

// The fields of the catalogue.
enum class MPPField : uint16_t {
    taskTotalCost,
    taskActualCost,
    taskRemainingCost,
    taskActualWork,
    taskRemainingWork,
    taskConstraintDate,
    taskConstraintType,
    taskDuration,
    taskEarlyFinish,
    taskEarlyStart,
    taskStart,
    taskFinish,
    taskLateStart,
    taskLateFinish,
    taskActualStart,
    taskActualFinish,
    taskScheduledStart,
    taskScheduledFinish,
    taskEstimated,
    taskFixedCost,
    taskFixedCostAccrual,
    taskID,
    taskOleLink,
    taskOutlineLevel,
    taskParentUID,
    taskPercentComplete,
    taskPercentWorkComplete,
    taskPriority,
    taskType,
    taskWork,
    taskName,
    taskNotes,
    taskPinnedDuration,
    taskPinnedFinish,
    taskPinnedStart,
    taskPreLeveledFinish,
    taskPreLeveledStart,
    taskBaselineCost,
    taskBaselineDuration,
    taskBaselineFinish,
    taskBaselineStart,
    taskBaselineWork,
    taskEffortDriven,
    taskMilestone,
    taskExpanded,
    taskHammockMark,
    taskHammockSide,
    taskManual,
    resourceCost,
    resourceWork,
    resourceCostPerUse,
    resourceID,
    resourceMaxUnits,
    resourceStandardRate,
    resourceType,
    resourceUID,
    resourceAvailableFrom,
    resourceAvailableTo,
    resourceEmailAddress,
    resourceName,
    resourceNotes,
    resourceAvailability,
    calendarBaseUID,
    calendarResourceUID,
    calendarName,
    // The block of a calendar's week days and exceptions.
    calendarData,
    linkTaskUID,
    linkPredecessorUID,
    linkType,
    linkLag,
    linkLagFormat,
    assignmentFinish,
    assignmentResourceUID,
    assignmentStart,
    assignmentTaskUID,
    assignmentUnits,
    assignmentWork,
    assignmentActualWork,
    assignmentRemainingWork,
    assignmentCost,
    assignmentTimephasedWork,
    assignmentBaselineStart,
    assignmentBaselineFinish,
    assignmentBaselineWork,
    assignmentBaselineCost,
    resourceBaselineCost,
    resourceBaselineWork,
    // Custom fields, numbered from 1 per type (outline code fields, whose values refer to the outline
    // code store, are not among them).
    taskCustomCost,
    taskCustomDate,
    taskCustomDuration,
    taskCustomFinish,
    taskCustomNumber,
    taskCustomStart,
    taskCustomText,
    resourceCustomCost,
    resourceCustomDate,
    resourceCustomDuration,
    resourceCustomFinish,
    resourceCustomNumber,
    resourceCustomStart,
    resourceCustomText,
    // The value list of an outline code, by the outline code's UID: its value in the form of the
    // custom field that refers to it, and the code's own text.
    outlineCodeValueNumber,
    outlineCodeValueInteger,
    outlineCodeValueDate,
    outlineCodeValueText,
    outlineCodeData,
    projectCurrencyCode,
    projectCurrencyDigits,
    projectCurrencySymbolPosition,
    projectCurrencySymbol,
    projectDaysPerMonth,
    projectDefaultCalendarName,
    projectDurationUnits,
    projectMinutesPerDay,
    projectMinutesPerWeek,
    projectFinishDate,
    projectStartDate,
    projectScheduleFromStart,
    projectWeekStartDay,
    projectWorkUnits,
    // Task flags 1 to 20 (mppTaskFlagField).
    taskFlag1,
    taskFlag2,
    taskFlag3,
    taskFlag4,
    taskFlag5,
    taskFlag6,
    taskFlag7,
    taskFlag8,
    taskFlag9,
    taskFlag10,
    taskFlag11,
    taskFlag12,
    taskFlag13,
    taskFlag14,
    taskFlag15,
    taskFlag16,
    taskFlag17,
    taskFlag18,
    taskFlag19,
    taskFlag20,
    resourceCostResource,
    resourceBaselineMark,
};

inline constexpr int32_t kMPPTaskFlagCount = 20;

// The field of task flag `number` (1 to 20).
constexpr MPPField mppTaskFlagField(int32_t number) {
    return static_cast<MPPField>(static_cast<int32_t>(MPPField::taskFlag1) + number - 1);
}

struct MPPFieldRow {
    MPPField field;
    // The field's name in tests and diagnostics.
    const char* name;
    MPPLayoutSet layouts;
    MPPFieldBlock block;
    // The property key, whose offset or property number per layout the key tables give.
    int32_t key;
    MPPFieldCodec codec;
    MPPFieldTest test = {};
    // The applications whose files the row holds for; empty for any. Rows for some applications come
    // before the row of the same layouts for any.
    MPPLayoutSet savedBy = {};
    // Bytes added to the key's offset in the files the row holds for.
    int32_t shift = 0;
    // How many numbered copies of the field the row holds for (1 and up, added to the key); 0 for a row
    // of the field itself.
    int32_t copies = 0;

    constexpr bool holds(int32_t version, int32_t appVersion, int32_t number = 0) const {
        return layouts.contains(version) && (savedBy.empty() || savedBy.contains(appVersion)) &&
               (number > 0 ? number <= copies : copies == 0);
    }
};

// Where a field lies in one layout: its row, and the offset (fixed blocks) or the property number
// (variable data and Props) of its key there; for a row of one bit, the offset of the bit's byte.
struct MPPFieldPlace {
    const MPPFieldRow* row = nullptr;
    uint32_t position = 0;
    // The test of a flag or a bit at this place: the row's test, or the bit's mask in its byte.
    MPPFieldTest test = {};
    // For an entry of extended fields, the property number of their block in the variable data.
    uint32_t container = 0;
};

std::span<const MPPFieldRow> mppFieldCatalog();

// Where a key lies in a layout: its property number (variable data and Props) or its offset; none
// where the layout has no such key.
using MPPKeyPosition = std::function<std::optional<uint32_t>(bool propertyNumber, int32_t key)>;

// The place of `field`, or of its copy `number` (1 and up), in layout `version` of a file saved by
// application `appVersion`: that of the first row that holds for them and whose key the layout has, so
// that a field kept in different blocks by different layouts has a row for each. None where no such
// row's key lies in the layout.
std::optional<MPPFieldPlace> mppFieldPlace(MPPField field, int32_t version, int32_t appVersion,
                                           const MPPKeyPosition& keyPosition, int32_t number = 0);
// The same with the keys of the key tables.
std::optional<MPPFieldPlace> mppFieldPlace(MPPField field, int32_t version, int32_t appVersion,
                                           int32_t number = 0);

// The bytes that a row's value takes in its block; 0 for text, whole blocks and numbers, whose size is
// the block's.
size_t mppFieldSize(const MPPFieldRow& row);

// A decoded value: flags as bool; integers, durations and work (in microseconds) as int64_t; doubles
// and hundredths as double; dates as an optional TVDate (none for the null date); text as UTF-16.
using MPPFieldValue =
    std::variant<bool, int64_t, double, std::optional<TVDate>, std::u16string, std::vector<uint8_t>>;

// The bytes that `value` takes when encoded by the row: text with its NUL, a whole block as it is, a
// number as a double.
size_t mppEncodedSize(const MPPFieldRow& row, const MPPFieldValue& value);

// Decodes the value of a row from the bytes at its place; `bytes` holds at least mppFieldSize(row).
// A row of one bit is decoded by its place, which knows the bit.
MPPFieldValue decodeMPPField(const MPPFieldRow& row, MPPConstBytes bytes);
MPPFieldValue decodeMPPField(const MPPFieldPlace& place, MPPConstBytes bytes);
// Encodes a value of the row's kind at its place; a flag sets or clears only its bits and leaves the
// rest of its byte as it is. Text and whole blocks need a span of their encoded size.
void encodeMPPField(const MPPFieldRow& row, const MPPFieldValue& value, MPPMutableBytes bytes);
void encodeMPPField(const MPPFieldPlace& place, const MPPFieldValue& value, MPPMutableBytes bytes);
