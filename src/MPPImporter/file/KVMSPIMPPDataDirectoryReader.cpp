#include "MPPImporter/file/KVMSPIMPPDataDirectoryReader.h"

#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/storage/SSLStream.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/file/KVMPPFixedDataReader.h"
#include "MPPImporter/file/KVMPPVarDataReader.h"
#include "MPPImporter/file/KVMSPIMPPPropertyList.h"
#include "MPPImporter/file/KVMSPIPropsReader.h"
#include "MPPImporter/format/MPPFieldAliasLayout.h"
#include "MPPImporter/format/MPPFormatConstants.h"
#include "MPPImporter/text/UnicodeText.h"

#include <array>
#include <utility>

namespace {

struct KindEntry {
    const char* storageName;
    MPPDataStreamParams (KVMSPIMPPPropertyList::*streamParams)() const;
};

// In the order in which a storage name is tested.
constexpr std::array<KindEntry, 6> kKinds = {{
    {kAssignmentStorageName, &KVMSPIMPPPropertyList::assignmentDataStreamParams},
    {kCalendarStorageName, &KVMSPIMPPPropertyList::calendarDataStreamParams},
    {kConstraintStorageName, &KVMSPIMPPPropertyList::constraintDataStreamParams},
    {kOutlCodeStorageName, &KVMSPIMPPPropertyList::outlcodeDataStreamParams},
    {kResourceStorageName, &KVMSPIMPPPropertyList::resourceDataStreamParams},
    {kTaskStorageName, &KVMSPIMPPPropertyList::taskDataStreamParams},
}};

// The bytes of a property of the storage's "Props" stream; none where the stream or the property is
// missing. The custom field names are only names: a stream that doesn't read as properties costs them
// and nothing else.
std::vector<uint8_t> propsPayload(SSLStorage& storage, int32_t property) {
    std::unique_ptr<SSLStream> stream = storage.childStreamWithName(kDataPropsStreamName);
    if (!stream) {
        return {};
    }
    try {
        KVMSPIPropsReader props(std::move(stream));
        int32_t size = 0;
        if (!props.getPropertySize(&size, property) || size <= 0) {
            return {};
        }
        std::vector<uint8_t> payload(static_cast<size_t>(size));
        if (props.readPropertyByteArray(payload.data(), static_cast<uint32_t>(size), property, false)) {
            return payload;
        }
    } catch (const TVException& exception) {
        tvLog(stringWithFormat("      WARNING: custom field names not read: %s", exception.reason().c_str()));
    }
    return {};
}

size_t kindIndexOfStorage(const std::string& name) {
    for (size_t i = 0; i < kKinds.size(); ++i) {
        if (name == kKinds[i].storageName) {
            return i;
        }
    }
    tvAssert(false, stringWithFormat("Unexpected stream name '%s'.", name.c_str()));
    return kKinds.size();
}

} // namespace

KVMSPIMPPDataDirectoryReader::KVMSPIMPPDataDirectoryReader(std::unique_ptr<SSLStorage> directory,
                                                           std::string name, KVMSPIParentReader* parentReader)
    : KVMSPOLE2DirectoryReader(std::move(directory), std::move(name), parentReader) {
    const size_t kindIndex = kindIndexOfStorage(this->name());
    m_kind = static_cast<Kind>(kindIndex);
    const MPPDataStreamParams params = (MPPPropertyList().*kKinds[kindIndex].streamParams)();

    SSLStorage& storage = this->directory();
    std::unique_ptr<SSLStream> fixedMeta = storage.childStreamWithName(kFixedMetaStreamName);
    std::unique_ptr<SSLStream> fixedData = storage.childStreamWithName(kFixedDataStreamName);
    std::unique_ptr<SSLStream> fixed2Meta = storage.childStreamWithName(kFixed2MetaStreamName);
    std::unique_ptr<SSLStream> fixed2Data = storage.childStreamWithName(kFixed2DataStreamName);
    std::unique_ptr<SSLStream> varMeta = storage.childStreamWithName(kVarMetaStreamName);
    std::unique_ptr<SSLStream> varData = storage.childStreamWithName(kVar2DataStreamName);

    const auto firstIndex = static_cast<int64_t>(params.firstFixedIndex);
    // The Fixed2 meta table holds one item per item of the first table, in use or left over.
    const int64_t fixedItems = fixedMeta
                                   ? KVMPPFixedDataReader::metaItemsInStream(
                                         *fixedMeta, static_cast<int32_t>(params.fixed.metaStreamItemSize))
                                   : 0;
    if (params.hasFixedStream && fixedMeta && fixedData) {
        m_fixedDataReader = std::make_unique<KVMPPFixedDataReader>(
            std::move(fixedMeta), kFixedMetaStreamName, static_cast<int32_t>(params.fixed.metaStreamItemSize),
            params.fixed.metaStreamMagicNumber, nullptr, firstIndex, std::move(fixedData),
            kFixedDataStreamName, static_cast<int32_t>(params.fixed.dataStreamMinItemSize),
            static_cast<int32_t>(params.fixed.dataStreamMaxItemSize), this);
        m_fixedDataReader->open();
    }
    // The Fixed2 items belong to the objects of the fixed items of the same index; their own minimum
    // and maximum sizes are not used. Without a first reader that built its index map there is nothing
    // to attach them to.
    if (params.hasFixed2Stream && fixed2Meta && fixed2Data && m_fixedDataReader &&
        m_fixedDataReader->indexMap()) {
        auto fixed2ItemSize = static_cast<int32_t>(params.fixed2.metaStreamItemSize);
        if (MPPPropertyList().fixed2MetaItemSizeFromStream()) {
            fixed2ItemSize =
                KVMPPFixedDataReader::metaItemSizeForItems(*fixed2Meta, fixedItems, fixed2ItemSize);
        }
        m_fixed2DataReader = std::make_unique<KVMPPFixedDataReader>(
            std::move(fixed2Meta), kFixed2MetaStreamName, fixed2ItemSize, params.fixed2.metaStreamMagicNumber,
            m_fixedDataReader->indexMap(), firstIndex, std::move(fixed2Data), kFixed2DataStreamName, 0, 0,
            this);
        m_fixed2DataReader->open();
    }
    if (params.hasVarStream && varMeta && varData) {
        m_varDataReader = std::make_unique<KVMPPVarDataReader>(
            std::move(varMeta), kVarMetaStreamName, static_cast<int32_t>(params.var.metaStreamItemSize),
            params.var.metaStreamMagicNumber, std::move(varData), kVar2DataStreamName, this);
        m_varDataReader->open();
    }
    if (m_kind == Kind::task || m_kind == Kind::resource) {
        readFieldAliases();
    }
}

void KVMSPIMPPDataDirectoryReader::readFieldAliases() {
    for (const MPPFieldAlias& alias :
         decodeMPPFieldAliases(propsPayload(directory(), kFieldAliasesProperty))) {
        m_fieldAliases.emplace(listPropertyOfStored(alias.property), utf8FromUTF16(alias.name));
    }
    readFieldNameList();
}

// Format 9 lists the names in the data directory's "Props", by the place of each field.
void KVMSPIMPPDataDirectoryReader::readFieldNameList() {
    const bool task = m_kind == Kind::task;
    const auto listProperty = mppFieldNameListProperty(task, MPPPropertyList().mppVersion());
    const auto* project = dynamic_cast<const KVMSPOLE2DirectoryReader*>(parentReader());
    if (!listProperty || project == nullptr) {
        return;
    }
    const std::vector<std::u16string> names =
        decodeMPPFieldNameList(propsPayload(project->directory(), *listProperty));
    for (int32_t type = 0; type <= static_cast<int32_t>(MPPCustomFieldType::text); ++type) {
        const auto fieldType = static_cast<MPPCustomFieldType>(type);
        const auto fields = task ? MPPPropertyList().taskCustomFields(fieldType)
                                 : MPPPropertyList().resourceCustomFields(fieldType);
        for (size_t index = 0; index < fields.size(); ++index) {
            const auto place = mppFieldNameListPlace(task, fieldType, static_cast<int32_t>(index) + 1);
            if (place && *place < names.size() && !names[*place].empty()) {
                m_fieldAliases.emplace(static_cast<int32_t>(fields[index].propertyNumber),
                                       utf8FromUTF16(names[*place]));
            }
        }
    }
}

const std::string* KVMSPIMPPDataDirectoryReader::fieldAlias(int32_t property) const {
    const auto found = m_fieldAliases.find(property);
    return found == m_fieldAliases.end() ? nullptr : &found->second;
}

KVMSPIMPPDataDirectoryReader::~KVMSPIMPPDataDirectoryReader() = default;

const std::vector<int32_t>& KVMSPIMPPDataDirectoryReader::uniqueIDs() const {
    static const std::vector<int32_t> none;
    return m_fixedDataReader ? m_fixedDataReader->uniqueIDs() : none;
}

bool KVMSPIMPPDataDirectoryReader::isValidUID(int32_t uid) const {
    return m_fixedDataReader && m_fixedDataReader->dataItemInfo(nullptr, uid);
}

int64_t KVMSPIMPPDataDirectoryReader::objectIDforUniqueID(int32_t uid) const {
    return m_fixedDataReader ? m_fixedDataReader->objectIDforUniqueID(uid) : -1;
}

int32_t KVMSPIMPPDataDirectoryReader::listPropertyOfStored(int32_t stored) const {
    return m_kind == Kind::resource
               ? stored - MPPPropertyList().resourceVarDataNumberingShiftForAppVersion(appVersion())
               : stored;
}

int32_t KVMSPIMPPDataDirectoryReader::objectUIDFromStream(SSLStream& stream, int32_t metaFirstField,
                                                          int32_t dataItemOffset, int32_t dataItemSize,
                                                          int64_t* objectID, bool* isNull,
                                                          KVMPPDataReader& caller) const {
    const KVMSPIMPPPropertyList& list = MPPPropertyList();
    switch (m_kind) {
    case Kind::assignment:
        return list.assignmentUIDFromStream(stream, metaFirstField, dataItemOffset, dataItemSize, caller);
    case Kind::calendar:
        return list.calendarUIDFromStream(stream, metaFirstField, dataItemOffset, dataItemSize, caller);
    case Kind::constraint:
        return list.constraintUIDFromStream(stream, metaFirstField, dataItemOffset, dataItemSize, caller);
    case Kind::resource:
        return list.resourceUIDFromStream(stream, metaFirstField, dataItemOffset, dataItemSize, appVersion(),
                                          objectID, caller);
    case Kind::task:
        return list.taskUIDFromStream(stream, metaFirstField, dataItemOffset, dataItemSize, appVersion(),
                                      objectID, isNull, caller);
    case Kind::outlineCode:
        break;
    }
    return -1;
}
