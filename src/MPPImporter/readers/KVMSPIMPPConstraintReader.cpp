#include "MPPImporter/readers/KVMSPIMPPConstraintReader.h"

#include "MPPCommon/storage/SSLStorage.h"
#include "MPPImporter/file/KVMSPIMPPPropertyList.h"
#include "MPPImporter/format/MPPFieldCatalog.h"
#include "MPPImporter/format/MPPMemRead.h"
#include "MPPImporter/readers/KVMSPISinglePredecessorLinkReader.h"
#include "MPPImporter/readers/MPPObjectFieldReads.h"

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
    const MPPObjectFieldReads reads(*this);
    // The field of the link's catalogue row in the item, or `missing` when the layout has no such field
    // or the item is too short for it.
    const auto field = [&](MPPField name, auto missing) -> decltype(missing) {
        const auto place = reads.place(name);
        if (!place || place->position + mppFieldSize(*place->row) > item.size()) {
            return missing;
        }
        const MPPFieldValue value = decodeMPPField(*place->row, std::span(item).subspan(place->position));
        return static_cast<decltype(missing)>(std::get<int64_t>(value));
    };
    const int32_t taskUID = field(MPPField::linkTaskUID, int32_t{-1});
    const int32_t preTaskUID = field(MPPField::linkPredecessorUID, int32_t{-1});
    if (taskUID < 0 || preTaskUID < 0) {
        return;
    }
    const int16_t relType = field(MPPField::linkType, int16_t{0});
    const int32_t lag = field(MPPField::linkLag, int32_t{0});
    const int16_t lagFormat = field(MPPField::linkLagFormat, int16_t{-1});
    m_taskPredcessorMap[taskUID].push_back(std::make_shared<KVMSPISinglePredecessorLinkReader>(
        taskUID, preTaskUID, relType, lag, lagFormat, *this));
}
