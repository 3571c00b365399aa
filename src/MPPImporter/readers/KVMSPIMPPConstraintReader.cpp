#include "MPPImporter/readers/KVMSPIMPPConstraintReader.h"

#include "MPPCommon/storage/SSLStorage.h"
#include "MPPImporter/file/KVMSPIMPPPropertyList.h"
#include "MPPImporter/format/MPPLinkPropertyKeys.h"
#include "MPPImporter/format/MPPMemRead.h"
#include "MPPImporter/readers/KVMSPISinglePredecessorLinkReader.h"

namespace {

constexpr int32_t kMarkSize = 2;

} // namespace

KVMSPIMPPConstraintReader::KVMSPIMPPConstraintReader(std::unique_ptr<SSLStorage> directory, std::string name,
                                                     KVMSPIParentReader* parentReader)
    : KVMSPIMPPDataDirectoryReader(std::move(directory), std::move(name), parentReader) {
    if (KVMPPFixedDataReader* fixed = fixedDataReader()) {
        readLinks(*fixed);
    }
}

KVMSPIMPPConstraintReader::~KVMSPIMPPConstraintReader() = default;

void KVMSPIMPPConstraintReader::readLinks(KVMPPFixedDataReader& fixed) {
    for (const int32_t uid : uniqueIDs()) {
        MPPDataItemInfo info;
        if (!fixed.dataItemInfo(&info, uid) || !isLiveLink(fixed, info) || info.dataSize < 0) {
            continue;
        }
        std::vector<uint8_t> item(static_cast<size_t>(info.dataSize));
        if (fixed.readDataRawByteArray(item.data(), info.dataSize, info.dataOffset)) {
            addLink(item);
        }
    }
}

bool KVMSPIMPPConstraintReader::isLiveLink(KVMPPFixedDataReader& fixed, const MPPDataItemInfo& info) {
    if (info.metaSize < kMarkSize) {
        return true;
    }
    std::vector<uint8_t> meta(static_cast<size_t>(info.metaSize));
    return !fixed.readMetaRawByteArray(meta.data(), info.metaSize, info.metaOffset) ||
           memReadShort(meta.data(), 0) == 0;
}

void KVMSPIMPPConstraintReader::addLink(const std::vector<uint8_t>& item) {
    const KVMSPIMPPPropertyList& list = MPPPropertyList();
    // The field at the key's offset, or `missing` when the version has no such key or the item is too
    // short for it.
    const auto field = [&](int32_t key, size_t size, auto read, auto missing) -> decltype(missing) {
        const auto offset = list.propertyOffset(key);
        if (!offset || *offset + size > item.size()) {
            return missing;
        }
        return static_cast<decltype(missing)>(read(item.data(), static_cast<int32_t>(*offset)));
    };
    const int32_t taskUID = field(kLinkTaskUIDKey, 4, memReadInt, int32_t{-1});
    const int32_t preTaskUID = field(kLinkPredecessorUIDKey, 4, memReadInt, int32_t{-1});
    if (taskUID < 0 || preTaskUID < 0) {
        return;
    }
    const int16_t relType = field(kLinkTypeKey, 2, memReadShort, int16_t{0});
    const int32_t lag = field(kLinkLagKey, 4, memReadInt, int32_t{0});
    const auto lagFormat = static_cast<int16_t>(field(kLinkLagFormatKey, 2, memReadUShort, uint16_t{65535}));
    m_taskPredcessorMap[taskUID].push_back(std::make_shared<KVMSPISinglePredecessorLinkReader>(
        taskUID, preTaskUID, relType, lag, lagFormat, *this));
}
