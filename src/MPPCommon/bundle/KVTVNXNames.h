#pragma once

#include <array>
#include <string>

// The bundle format in one place: file names, element and attribute names, value forms and the fixed
// queries that the import and the export both use. Paths are written without prefix: documents are
// loaded with their default namespace stripped and written with it put back.

// The default namespace of the table of contents and of every scenario document.
inline constexpr const char* kTarvane2Namespace = "http://schemas.tarvane.example/2";

// Day names of `day-of-week`, index 1 Sunday to 7 Saturday; index 0 stays empty.
inline constexpr std::array<const char*, 8> kTVNXDayOfWeek = {"",          "sunday",   "monday", "tuesday",
                                                              "wednesday", "thursday", "friday", "saturday"};
// Working days of the default week, by the same index.
inline constexpr std::array<bool, 8> kTVNXWorkingDay = {false, false, true, true, true, true, true, false};

namespace tvnx {

// Files and scenario names.
inline constexpr const char* kBundleExtension = "tvnx";
inline constexpr const char* kTOCFileName = "__TOC.xml";
inline constexpr const char* kActualFileName = "Actual.xml";
inline constexpr const char* kActualScenarioName = "Actual";
inline constexpr const char* kBaselineScenarioName = "Baseline";
inline constexpr const char* kScenarioFileExtension = "xml";
inline constexpr int kActualBaselineNumber = -1;
inline constexpr int kBaselineCount = 11;

// "Actual" for the actual plan (-1), "Baseline" for baseline 0, "Baseline1" to "Baseline10" after it.
std::string scenarioNameForBaseline(int baselineNumber);
// The file of a scenario: its name with the extension "xml".
std::string scenarioFileName(const std::string& scenarioName);

namespace element {
// Table of contents.
inline constexpr const char* kProject = "project";
inline constexpr const char* kWindow = "window";
inline constexpr const char* kTitle = "title";
inline constexpr const char* kNextTaskId = "next-task-id";
inline constexpr const char* kNextResourceId = "next-resource-id";
inline constexpr const char* kScenario = "scenario";
inline constexpr const char* kCurrencyFormat = "currency-format";
inline constexpr const char* kDurationFormat = "duration-format";
inline constexpr const char* kEffortFormat = "effort-format";
inline constexpr const char* kUserData = "user-data";
inline constexpr const char* kTaskUserDataKeys = "task-user-data-keys";
inline constexpr const char* kResourceUserDataKeys = "resource-user-data-keys";
inline constexpr const char* kKey = "key";
inline constexpr const char* kString = "string";
inline constexpr const char* kNull = "null";
inline constexpr const char* kEditingScenario = "editing-scenario";
inline constexpr const char* kComparisonScenario = "comparison-scenario";
inline constexpr const char* kTaskView = "task-view";
inline constexpr const char* kOutline = "outline";
inline constexpr const char* kExpandedItems = "expanded-items";

// Scenario document.
inline constexpr const char* kStartDate = "start-date";
inline constexpr const char* kEndDate = "end-date";
inline constexpr const char* kGranularity = "granularity";
inline constexpr const char* kTopResource = "top-resource";
inline constexpr const char* kResource = "resource";
inline constexpr const char* kTopTask = "top-task";
inline constexpr const char* kTask = "task";
inline constexpr const char* kCriticalPath = "critical-path";

// Task.
inline constexpr const char* kType = "type";
inline constexpr const char* kSplit = "split";
inline constexpr const char* kScheduleType = "schedule-type";
inline constexpr const char* kLeveledStart = "leveled-start";
inline constexpr const char* kPreleveledStart = "preleveled-start";
inline constexpr const char* kPreleveledFinish = "preleveled-finish";
inline constexpr const char* kPriority = "priority";
inline constexpr const char* kEffort = "effort";
inline constexpr const char* kCompletionPercentage = "completion-percentage";
inline constexpr const char* kEffortDone = "effort-done";
inline constexpr const char* kLockedStartDate = "locked-start-date";
inline constexpr const char* kLockedEndDate = "locked-end-date";
inline constexpr const char* kRecalculate = "recalculate";
inline constexpr const char* kStaticCost = "static-cost";
inline constexpr const char* kChildTask = "child-task";
inline constexpr const char* kNote = "note";
inline constexpr const char* kPrerequisiteTask = "prerequisite-task";
inline constexpr const char* kStartNoEarlierThan = "start-no-earlier-than";
inline constexpr const char* kStartNoLaterThan = "start-no-later-than";
inline constexpr const char* kEndNoEarlierThan = "end-no-earlier-than";
inline constexpr const char* kEndNoLaterThan = "end-no-later-than";
inline constexpr const char* kAssignment = "assignment";
inline constexpr const char* kStartConstraintDate = "start-constraint-date";
inline constexpr const char* kEndConstraintDate = "end-constraint-date";
inline constexpr const char* kDuration = "duration";
inline constexpr const char* kActualDuration = "actual-duration";
inline constexpr const char* kElapsedLevelingDelay = "elapsed-leveling-delay";
inline constexpr const char* kTotalCost = "total-cost";
inline constexpr const char* kCostDone = "cost-done";
inline constexpr const char* kSplittable = "splittable";
inline constexpr const char* kIsResourceDependency = "is-resource-dependency";
inline constexpr const char* kLeadTime = "lead-time";

// Resource.
inline constexpr const char* kName = "name";
inline constexpr const char* kCostPerUse = "cost-per-use";
inline constexpr const char* kCostPerHour = "cost-per-hour";
inline constexpr const char* kUnitsAvailable = "units-available";
inline constexpr const char* kSchedule = "schedule";
inline constexpr const char* kEmailAddress = "email-address";
inline constexpr const char* kChildResource = "child-resource";
inline constexpr const char* kEfficiency = "efficiency";
inline constexpr const char* kTotalUses = "total-uses";
inline constexpr const char* kActualUses = "actual-uses";
inline constexpr const char* kHourlyCostDone = "hourly-cost-done";
inline constexpr const char* kTotalHours = "total-hours";

// Schedule.
inline constexpr const char* kScheduleDay = "schedule-day";
inline constexpr const char* kFlattenedScheduleDay = "flattened-schedule-day";
inline constexpr const char* kScheduleStart = "schedule-start";
inline constexpr const char* kScheduleEnd = "schedule-end";
inline constexpr const char* kCalendar = "calendar";
inline constexpr const char* kTimeSpan = "time-span";
inline constexpr const char* kEvent = "event";

// Note.
inline constexpr const char* kText = "text";
inline constexpr const char* kParagraph = "p";
inline constexpr const char* kRun = "run";
inline constexpr const char* kLiteral = "lit";
} // namespace element

namespace attribute {
inline constexpr const char* kId = "id";
inline constexpr const char* kIdref = "idref";
inline constexpr const char* kIdrefs = "idrefs";
inline constexpr const char* kName = "name";
inline constexpr const char* kFilename = "filename";
inline constexpr const char* kFixedEnd = "fixed-end";
inline constexpr const char* kHoursPerDay = "hours-per-day";
inline constexpr const char* kHoursPerWeek = "hours-per-week";
inline constexpr const char* kHoursPerMonth = "hours-per-month";
inline constexpr const char* kHoursPerYear = "hours-per-year";
inline constexpr const char* kKind = "kind";
inline constexpr const char* kExternal = "external";
inline constexpr const char* kIsPercentage = "is-percentage";
inline constexpr const char* kUnits = "units";
inline constexpr const char* kDayOfWeek = "day-of-week";
inline constexpr const char* kDate = "date";
inline constexpr const char* kStartTime = "start-time";
inline constexpr const char* kEndTime = "end-time";
inline constexpr const char* kEditable = "editable";
inline constexpr const char* kOvertime = "overtime";
inline constexpr const char* kStart = "start";
inline constexpr const char* kEnd = "end";
inline constexpr const char* kRrule = "rrule";
} // namespace attribute

namespace value {
// Ids.
inline constexpr const char* kTaskIdFormat = "t%s";
inline constexpr const char* kResourceIdFormat = "r%s";
inline constexpr const char* kTopTaskId = "t-1";
inline constexpr const char* kTopResourceId = "r-1";

// Number forms; readers accept each of them.
inline constexpr const char* kWholeSecondsFormat = "%d";
inline constexpr const char* kSecondsFormat = "%.02f";
inline constexpr const char* kFractionFormat = "%.02f";
inline constexpr const char* kPreciseFormat = "%f";
inline constexpr const char* kAmountFormat = "%0.2f";
inline constexpr const char* kSecondsOfDayFormat = "%d";

// Flags.
inline constexpr const char* kYes = "yes";
inline constexpr const char* kNo = "no";
inline constexpr const char* kTrue = "true";
inline constexpr const char* kFalse = "false";

// Task `type` and `schedule-type`, `recalculate`, scenario `granularity`.
inline constexpr const char* kTaskTypeTask = "task";
inline constexpr const char* kTaskTypeMilestone = "milestone";
inline constexpr const char* kTaskTypeGroup = "group";
inline constexpr const char* kTaskTypeHammock = "hammock";
inline constexpr const char* kScheduleTypeAsap = "asap";
inline constexpr const char* kScheduleTypeAlap = "alap";
inline constexpr const char* kRecalculateDuration = "duration";
inline constexpr const char* kRecalculateEffort = "effort";
inline constexpr const char* kRecalculateUnits = "units";
inline constexpr const char* kGranularityDays = "days";
inline constexpr const char* kGranularityHours = "hours";

// Dependency `kind`; a missing or unknown kind reads as finish-to-start.
inline constexpr const char* kDependencyFinishToStart = "FS";
inline constexpr const char* kDependencyStartToFinish = "SF";
inline constexpr const char* kDependencyStartToStart = "SS";
inline constexpr const char* kDependencyFinishToFinish = "FF";

// Resource `type`: the capital letter belongs to the value, unlike the task type "group".
inline constexpr const char* kResourceTypeStaff = "Staff";
inline constexpr const char* kResourceTypeEquipment = "Equipment";
inline constexpr const char* kResourceTypeMaterial = "Material";
inline constexpr const char* kResourceTypeGroup = "Group";

// Exception calendars as import writes them.
inline constexpr const char* kCalendarOvertime = "Overtime";
inline constexpr const char* kCalendarTimeOff = "Time Off";

// Comments of a scenario document.
inline constexpr const char* kResourcesComment = "  Resources  ";
inline constexpr const char* kTasksComment = "  Tasks  ";
inline constexpr const char* kCriticalPathComment = "  Critical Path  ";
inline constexpr const char* kProjectScheduleComment = "  Project Schedule  ";

// Extended POSIX expression that splits the currency sample into blanks, digits, decimals, blanks.
inline constexpr const char* kCurrencyFormatPattern =
    "([[:space:]]*)([[:digit:],]+)([.][[:digit:]]+)*([[:space:]]*)";
} // namespace value

// The settings section of `project`, in the order in which its elements must stand.
inline constexpr std::array<const char*, 19> kGanttSettings = {
    "date-display",        "numbering-style",      "no-numbers",       "auto-level",
    "critical-path-slack", "currency-format",      "duration-format",  "effort-format",
    "base-style",          "column-title-style",   "note-style",       "standard-task-style",
    "overdue-task-style",  "completed-task-style", "group-task-style", "milestone-task-style",
    "resource-style",      "not-editable-style",   "named-styles"};

namespace query {
// Against the root of the table of contents.
inline constexpr const char* kProject = "project";
inline constexpr const char* kWindow = "window";
inline constexpr const char* kProjectTitle = "project/title";
inline constexpr const char* kCurrencyFormat = "//project/currency-format";
inline constexpr const char* kTaskUserDataKeys = "project/task-user-data-keys/user-data/key";
inline constexpr const char* kResourceUserDataKeys = "project/resource-user-data-keys/user-data/key";
// Against `project`, with the scenario name.
inline constexpr const char* kScenarioByName = "scenario[@name='%s']";
// Against the `scenario` root, with ids.
inline constexpr const char* kTaskById = "task[@id='%s']";
inline constexpr const char* kResourceById = "resource[@id='%s']";
inline constexpr const char* kChildTaskReferences = "task/child-task[@idref='%s']";
inline constexpr const char* kPrerequisites = "task/prerequisite-task";
// With the resource id, then the task id.
inline constexpr const char* kAssignment = "//assignment[@idref='%s' and ../@id='%s']";
} // namespace query

} // namespace tvnx
