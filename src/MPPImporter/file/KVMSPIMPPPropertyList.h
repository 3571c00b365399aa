#pragma once

#include "MPPImporter/format/MPPCustomFieldTables.h"
#include "MPPImporter/format/MPPDataStreamParams.h"
#include "MPPImporter/format/MPPFieldCatalog.h"
#include "MPPImporter/format/MPPPropertyKeyTables.h"
#include "MPPImporter/format/MPPVersionTables.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

class KVMPPDataReader;
class SSLStream;

// What differs between MPP format versions: stream names, stream layouts per object kind, minimum
// sizes, the numbers and offsets under which properties are stored, custom field numbers and the way
// UIDs are read. Readers ask with the system's own property keys and never use a file number
// directly. There is one shared, immutable instance per version; a reader holds a pointer to it.
class KVMSPIMPPPropertyList {
public:
    virtual ~KVMSPIMPPPropertyList() = default;
    KVMSPIMPPPropertyList(const KVMSPIMPPPropertyList&) = delete;
    KVMSPIMPPPropertyList& operator=(const KVMSPIMPPPropertyList&) = delete;

    // The custom fields of one type, in the order of their field numbers.
    using CustomFields = std::span<const MPPCustomFieldRecord>;

    int32_t mppVersion() const { return m_tables.mppVersion; }

    std::string ole2PropsName() const { return m_tables.ole2PropsName; }
    std::string ole2AppDirectoryName() const { return m_tables.ole2AppDirectoryName; }
    std::string ole2DataDirectoryName() const { return m_tables.ole2DataDirectoryName; }
    std::string ole2PSummaryInfoName() const;
    std::string ole2DocSummaryInfoName() const;
    std::string ole2CompObjName() const;

    MPPDataStreamParams assignmentDataStreamParams() const { return m_tables.assignmentStreams; }
    MPPDataStreamParams calendarDataStreamParams() const { return m_tables.calendarStreams; }
    MPPDataStreamParams constraintDataStreamParams() const { return m_tables.constraintStreams; }
    MPPDataStreamParams outlcodeDataStreamParams() const { return m_tables.outlcodeStreams; }
    MPPDataStreamParams resourceDataStreamParams() const { return m_tables.resourceStreams; }
    MPPDataStreamParams taskDataStreamParams() const { return m_tables.taskStreams; }

    int32_t resourceMinExpectedSize() const { return m_tables.resourceMinExpectedSize; }
    int32_t taskMinExpectedSize() const { return m_tables.taskMinExpectedSize; }
    int32_t calendarFixedDataMinItemSize() const { return m_tables.calendarFixedDataMinItemSize; }
    int32_t resourceFixedDataMinItemSize() const { return m_tables.resourceFixedDataMinItemSize; }
    int32_t taskFixedDataMinItemSize() const { return m_tables.taskFixedDataMinItemSize; }
    int32_t calendarWeekDayWorkingTimesOffset() const { return m_tables.calendarWeekDayWorkingTimesOffset; }
    // taskMinExpectedSize of the list of that application version; 0 for a version without a list.
    static int32_t taskMinExpectedSizeForAppVersion(int32_t appVersion);
    // The smallest resource item that holds a resource in a file of this list saved by `appVersion`.
    // Applications 15 and 16 keep the layout of an older format but cut its items to their own
    // 172 bytes, so a downgraded file is measured by its application's list.
    int32_t resourceMinItemSizeForAppVersion(int32_t appVersion) const;
    // How much higher than this list a file saved by `appVersion` numbers its resources' variable data:
    // format 9 files of applications 15 and 16 keep every resource property 2 higher (the name under
    // 3, not 1).
    int32_t resourceVarDataNumberingShiftForAppVersion(int32_t appVersion) const;
    std::array<uint8_t, 20> taskFlagMask() const { return m_tables.taskFlagMask; }
    // True if the Fixed2 meta item size of a file is to be measured from its stream.
    bool fixed2MetaItemSizeFromStream() const { return m_tables.fixed2MetaItemSizeFromStream; }

    // Where a catalogue field, or its copy `number` (1 and up), lies in a file of this list saved by
    // `appVersion`, by the keys of this list, which may mix those of the key tables; none where it holds
    // no such field.
    std::optional<MPPFieldPlace> fieldPlace(MPPField field, int32_t appVersion, int32_t number = 0) const;

    // The property number of a key, none if this version has no such key.
    std::optional<uint32_t> propertyID(int32_t key) const { return propertyInfo(key, m_propertyIDs); }
    // The same for the key `groupKey + index`; index must be 1 or more.
    std::optional<uint32_t> propertyID(int32_t groupKey, int32_t index) const;
    // The byte offset of a key, none if this version has no such key.
    std::optional<uint32_t> propertyOffset(int32_t key) const { return propertyInfo(key, m_propertyOffsets); }
    const MPPPropertyTable& propertyIDs() const { return m_propertyIDs; }
    const MPPPropertyTable& propertyOffsets() const { return m_propertyOffsets; }
    static std::optional<uint32_t> propertyInfo(int32_t key, const MPPPropertyTable& table);

    CustomFields resourceCostCustomFields() const { return resource(MPPCustomFieldType::cost); }
    CustomFields resourceDateCustomFields() const { return resource(MPPCustomFieldType::date); }
    CustomFields resourceDurationCustomFields() const { return resource(MPPCustomFieldType::duration); }
    CustomFields resourceFinishCustomFields() const { return resource(MPPCustomFieldType::finish); }
    CustomFields resourceNumberCustomFields() const { return resource(MPPCustomFieldType::number); }
    CustomFields resourceOutlineCodeCustomFields() const { return resource(MPPCustomFieldType::outlineCode); }
    CustomFields resourceStartCustomFields() const { return resource(MPPCustomFieldType::start); }
    CustomFields resourceTextCustomFields() const { return resource(MPPCustomFieldType::text); }
    CustomFields taskCustomFields(MPPCustomFieldType type) const { return task(type); }
    CustomFields resourceCustomFields(MPPCustomFieldType type) const { return resource(type); }
    CustomFields taskCostCustomFields() const { return task(MPPCustomFieldType::cost); }
    CustomFields taskDateCustomFields() const { return task(MPPCustomFieldType::date); }
    CustomFields taskDurationCustomFields() const { return task(MPPCustomFieldType::duration); }
    CustomFields taskFinishCustomFields() const { return task(MPPCustomFieldType::finish); }
    CustomFields taskNumberCustomFields() const { return task(MPPCustomFieldType::number); }
    CustomFields taskOutlineCodeCustomFields() const { return task(MPPCustomFieldType::outlineCode); }
    CustomFields taskStartCustomFields() const { return task(MPPCustomFieldType::start); }
    CustomFields taskTextCustomFields() const { return task(MPPCustomFieldType::text); }

    // UID readers: the UID of the fixed data item at `dataItemOffset` of `stream`, -1 if it holds no
    // object. Seek and read failures go to the caller's processError.
    int32_t assignmentUIDFromStream(SSLStream& stream, int32_t metaFirstField, int32_t dataItemOffset,
                                    int32_t dataItemSize, KVMPPDataReader& caller) const;
    int32_t calendarUIDFromStream(SSLStream& stream, int32_t metaFirstField, int32_t dataItemOffset,
                                  int32_t dataItemSize, KVMPPDataReader& caller) const;
    // A link's own UID comes first in every layout, the predecessor's UID behind it.
    int32_t constraintUIDFromStream(SSLStream& stream, int32_t metaFirstField, int32_t dataItemOffset,
                                    int32_t dataItemSize, KVMPPDataReader& caller) const;
    // Also gives the object id through `objectID` when given.
    int32_t resourceUIDFromStream(SSLStream& stream, int32_t metaFirstField, int32_t dataItemOffset,
                                  int32_t dataItemSize, int32_t appVersion, int64_t* objectID,
                                  KVMPPDataReader& caller) const;
    // Also gives the object id and whether the meta entry marks a null task.
    int32_t taskUIDFromStream(SSLStream& stream, int32_t metaFirstField, int32_t dataItemOffset,
                              int32_t dataItemSize, int32_t appVersion, int64_t* objectID, bool* isNull,
                              KVMPPDataReader& caller) const;

protected:
    explicit KVMSPIMPPPropertyList(const MPPVersionTables& tables);
    // A layout whose numbers and offsets are not those of one version's column.
    KVMSPIMPPPropertyList(const MPPVersionTables& tables, MPPPropertyTable propertyIDs,
                          MPPPropertyTable propertyOffsets);

    // The task custom fields of one type; the version's table unless a layout numbers them otherwise.
    virtual CustomFields task(MPPCustomFieldType type) const {
        return mppTaskCustomFields(type, mppVersion());
    }

    // How a task item that isn't a null task is told apart: which first fields hold no object, the
    // item size that is always read, and the error domain.
    struct TaskUIDRules {
        bool (*holdsNoObject)(int32_t metaFirstField);
        int32_t alwaysReadItemSize;
        const char* errorDomain;
    };
    virtual TaskUIDRules taskUIDRules() const;

    // Seeks to `offset` and reads a 32-bit UID; a read error is reported and the value read returned.
    static int32_t readUIDAt(SSLStream& stream, int32_t offset, const char* errorDomain,
                             KVMPPDataReader& caller);

private:
    CustomFields resource(MPPCustomFieldType type) const {
        return mppResourceCustomFields(type, mppVersion());
    }

    const MPPVersionTables& m_tables;
    const MPPPropertyTable m_propertyIDs;
    const MPPPropertyTable m_propertyOffsets;
};
