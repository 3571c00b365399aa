#include "MPPImporter/file/KVMSPIMPPPropertyList.h"

#include "MPPCommon/storage/SSLStream.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/file/KVMPPDataReader.h"
#include "MPPImporter/format/MPPCalendarPropertyKeys.h"
#include "MPPImporter/format/MPPFormatConstants.h"

#include <utility>

namespace {

// Low half of the first meta field of a task that is only a placeholder row.
constexpr int32_t kNullTaskMark = 4;

bool holdsNoTaskObject(int32_t metaFirstField) {
    return metaFirstField < 16;
}

// Reads the two integers at the start of an object's fixed data item, its UID and its object id in
// the order given, and hands out the object id when asked; -1 when the stream fails.
int32_t readUIDAndObjectID(SSLStream& stream, bool uidFirst, int64_t* objectID, const char* domain,
                           KVMPPDataReader& caller) {
    const int32_t first = stream.readInt();
    if (!caller.checkError(stream, domain)) {
        return -1;
    }
    const int32_t second = stream.readInt();
    if (!caller.checkError(stream, domain)) {
        return -1;
    }
    if (objectID != nullptr) {
        *objectID = uidFirst ? second : first;
    }
    return uidFirst ? first : second;
}

} // namespace

KVMSPIMPPPropertyList::KVMSPIMPPPropertyList(const MPPVersionTables& tables)
    : KVMSPIMPPPropertyList(tables, mppPropertyIDTable(tables.keyColumn),
                            mppPropertyOffsetTable(tables.keyColumn)) {}

KVMSPIMPPPropertyList::KVMSPIMPPPropertyList(const MPPVersionTables& tables, MPPPropertyTable propertyIDs,
                                             MPPPropertyTable propertyOffsets)
    : m_tables(tables), m_propertyIDs(std::move(propertyIDs)), m_propertyOffsets(std::move(propertyOffsets)) {
}

std::string KVMSPIMPPPropertyList::ole2PSummaryInfoName() const {
    return kSummaryInfoFileName;
}

std::string KVMSPIMPPPropertyList::ole2DocSummaryInfoName() const {
    return kDocSummaryInfoFileName;
}

std::string KVMSPIMPPPropertyList::ole2CompObjName() const {
    return kCompObjFileName;
}

int32_t KVMSPIMPPPropertyList::taskMinExpectedSizeForAppVersion(int32_t appVersion) {
    const MPPVersionTables* tables = mppVersionTables(appVersion);
    return tables != nullptr ? tables->taskMinExpectedSize : 0;
}

int32_t KVMSPIMPPPropertyList::resourceMinItemSizeForAppVersion(int32_t appVersion) const {
    const MPPVersionTables* tables = mppVersionTables(appVersion);
    if (appVersion == mppVersion() || tables == nullptr) {
        return resourceFixedDataMinItemSize();
    }
    return tables->resourceMinExpectedSize;
}

int32_t KVMSPIMPPPropertyList::resourceVarDataNumberingShiftForAppVersion(int32_t appVersion) const {
    constexpr int32_t kFormat9ShiftOfLaterApplications = 2;
    return mppVersion() == kMSPDIVersion_2003 && appVersion >= kMSPDIVersion_2013
               ? kFormat9ShiftOfLaterApplications
               : 0;
}

std::optional<MPPFieldPlace> KVMSPIMPPPropertyList::fieldPlace(MPPField field, int32_t appVersion,
                                                               int32_t number) const {
    return mppFieldPlace(
        field, mppVersion(), appVersion,
        [this](bool propertyNumber, int32_t key) -> std::optional<uint32_t> {
            if (!propertyNumber) {
                return propertyOffset(key);
            }
            if (const auto custom = mppCustomFieldProperty(
                    key, [this](MPPCustomFieldType type) { return task(type); },
                    [this](MPPCustomFieldType type) { return resource(type); })) {
                return custom;
            }
            return propertyID(key);
        },
        number);
}

std::optional<uint32_t> KVMSPIMPPPropertyList::propertyID(int32_t groupKey, int32_t index) const {
    tvAssert(index >= 1, stringWithFormat("Incorect group property index nummber %d. Must be >= 1.", index));
    return propertyID(groupKey + index);
}

std::optional<uint32_t> KVMSPIMPPPropertyList::propertyInfo(int32_t key, const MPPPropertyTable& table) {
    const auto found = table.find(key);
    if (found == table.end()) {
        return std::nullopt;
    }
    return found->second;
}

int32_t KVMSPIMPPPropertyList::readUIDAt(SSLStream& stream, int32_t offset, const char* errorDomain,
                                         KVMPPDataReader& caller) {
    stream.seekFromStart(offset);
    if (!caller.checkError(stream, errorDomain)) {
        return -1;
    }
    const int32_t uid = stream.readInt();
    caller.checkError(stream, errorDomain);
    return uid;
}

// A free assignment slot is marked 2 in the low half of its meta entry's first field. Format 9 copies
// saved by later applications leave other bits in the high half, which the fixed data reader's test of
// the whole field misses; the slot's data is an empty record that still carries a UID.
int32_t KVMSPIMPPPropertyList::assignmentUIDFromStream(SSLStream& stream, int32_t metaFirstField,
                                                       int32_t dataItemOffset, int32_t /*dataItemSize*/,
                                                       KVMPPDataReader& caller) const {
    constexpr uint32_t kFreeSlotMark = 2;
    if ((static_cast<uint32_t>(metaFirstField) & 0xFFFF) == kFreeSlotMark) {
        return -1;
    }
    return readUIDAt(stream, dataItemOffset, "MSPIMPPPropertyList.assignmentUIDFromStream", caller);
}

int32_t KVMSPIMPPPropertyList::constraintUIDFromStream(SSLStream& stream, int32_t /*metaFirstField*/,
                                                       int32_t dataItemOffset, int32_t /*dataItemSize*/,
                                                       KVMPPDataReader& caller) const {
    return readUIDAt(stream, dataItemOffset, "MSPIMPPPropertyList.constraintUIDFromStream", caller);
}

int32_t KVMSPIMPPPropertyList::calendarUIDFromStream(SSLStream& stream, int32_t /*metaFirstField*/,
                                                     int32_t dataItemOffset, int32_t dataItemSize,
                                                     KVMPPDataReader& caller) const {
    const char* domain = "MSPIMPPPropertyList.calendarUIDFromStream";
    stream.seekFromStart(dataItemOffset);
    if (!caller.checkError(stream, domain) || dataItemSize < calendarFixedDataMinItemSize()) {
        return -1;
    }
    // Every version has the key; a calendar's UID stands at its offset.
    stream.seekFromCurrentPos(static_cast<int32_t>(propertyOffset(kCalendarUIDKey).value_or(0)));
    if (!caller.checkError(stream, domain)) {
        return -1;
    }
    const int32_t uid = stream.readInt();
    if (!caller.checkError(stream, domain) || uid == 0) {
        return -1;
    }
    return uid;
}

int32_t KVMSPIMPPPropertyList::resourceUIDFromStream(SSLStream& stream, int32_t /*metaFirstField*/,
                                                     int32_t dataItemOffset, int32_t dataItemSize,
                                                     int32_t appVersion, int64_t* objectID,
                                                     KVMPPDataReader& caller) const {
    const char* domain = "MSPIMPPPropertyList.resourceUIDFromStream";
    stream.seekFromStart(dataItemOffset);
    if (!caller.checkError(stream, domain) || dataItemSize < resourceMinItemSizeForAppVersion(appVersion)) {
        return -1;
    }
    // Files of version 15 put the object id before the UID; version 16 is read like the older ones.
    return readUIDAndObjectID(stream, mppVersion() != kMSPDIVersion_2013, objectID, domain, caller);
}

KVMSPIMPPPropertyList::TaskUIDRules KVMSPIMPPPropertyList::taskUIDRules() const {
    return {holdsNoTaskObject, 16, "MSPIMPPPropertyList.taskUIDFromStream"};
}

int32_t KVMSPIMPPPropertyList::taskUIDFromStream(SSLStream& stream, int32_t metaFirstField,
                                                 int32_t dataItemOffset, int32_t dataItemSize,
                                                 int32_t appVersion, int64_t* objectID, bool* isNull,
                                                 KVMPPDataReader& caller) const {
    const TaskUIDRules rules = taskUIDRules();
    const bool nullTask = (metaFirstField & 0xFFFF) == kNullTaskMark;
    if (isNull != nullptr) {
        *isNull = nullTask;
    }
    stream.seekFromStart(dataItemOffset);
    if (!caller.checkError(stream, rules.errorDomain)) {
        return -1;
    }

    const char* domain = rules.errorDomain;
    bool uidFirst = true;
    if (nullTask) {
        tvAssert(dataItemSize >= 4, "Not enough data to read task UID.");
        domain = "MSPIMPP9PropertyList.taskUIDFromStream";
    } else {
        if (rules.holdsNoObject(metaFirstField)) {
            return -1;
        }
        const int32_t minSize = appVersion == mppVersion() ? taskFixedDataMinItemSize()
                                                           : taskMinExpectedSizeForAppVersion(appVersion);
        if (dataItemSize != rules.alwaysReadItemSize && dataItemSize < minSize) {
            return -1;
        }
        // The layouts of applications 15 and 16 put the object id before the UID; their copies in
        // formats 9 and 12 keep the UID first.
        uidFirst = mppVersion() != kMSPDIVersion_2013 && mppVersion() != kMSPDIVersion_2016;
    }

    return readUIDAndObjectID(stream, uidFirst, objectID, domain, caller);
}
