#pragma once

#include <cstdint>

// Format versions: the format version picks the layout of a file, the application version adjusts
// some reads. Applications 15 and 16 write the layout of format 14.
inline constexpr int32_t kMSPDIVersion_2003 = 9;
inline constexpr int32_t kMSPDIVersion_2007 = 12;
inline constexpr int32_t kMSPDIVersion_2010 = 14;
inline constexpr int32_t kMSPDIVersion_2013 = 15;
inline constexpr int32_t kMSPDIVersion_2016 = 16;

// The resource of the assignment that a task without resources holds.
inline constexpr int32_t kMPPUnassignedResourceUID = -65535;

// The baselines a plan file can hold: the Baseline and baselines 1 to 10.
inline constexpr int32_t kMPPBaselineCount = 11;

// Names at the root of a file of format 14 and later, shared with the writers. Directory names begin
// with three blanks.
inline constexpr const char* k114DirectoryName = "   114";
inline constexpr const char* k214DirectoryName = "   214";
inline constexpr const char* kProjectPropsFileName = "Props14";
// The project property stream in the data directory.
inline constexpr const char* kDataPropsStreamName = "Props";
// The element of a task or resource store's "Props" stream that holds the names the user gave its
// custom fields.
inline constexpr int32_t kFieldAliasesProperty = 0x4400001;

// Streams at the root, the same in every version; their names begin with a control character.
inline constexpr const char* kCompObjFileName = "\001CompObj";
// The name under which a plan file lists its root storage.
inline constexpr const char* kRootEntryName = "Root Entry";
inline constexpr const char* kSummaryInfoFileName = "\005SummaryInformation";
inline constexpr const char* kDocSummaryInfoFileName = "\005DocumentSummaryInformation";

// The storages of the object kinds below the data directory, and the streams in each of them.
inline constexpr const char* kTaskStorageName = "TBkndTask";
inline constexpr const char* kResourceStorageName = "TBkndRsc";
inline constexpr const char* kAssignmentStorageName = "TBkndAssn";
inline constexpr const char* kCalendarStorageName = "TBkndCal";
inline constexpr const char* kConstraintStorageName = "TBkndCons";
inline constexpr const char* kOutlCodeStorageName = "TBkndOutlCode";

inline constexpr const char* kFixedMetaStreamName = "FixedMeta";
inline constexpr const char* kFixedDataStreamName = "FixedData";
inline constexpr const char* kFixed2MetaStreamName = "Fixed2Meta";
inline constexpr const char* kFixed2DataStreamName = "Fixed2Data";
inline constexpr const char* kVarMetaStreamName = "VarMeta";
inline constexpr const char* kVar2DataStreamName = "Var2Data";
