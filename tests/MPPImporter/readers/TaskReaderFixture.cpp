#include "TaskReaderFixture.h"

#include "MPPImporter/file/KVMSPIMPP14PropertyList.h"
#include "MPPImporter/file/StreamFileFixture.h"
#include "MPPImporter/format/MPPFormatConstants.h"
#include "MPPImporter/readers/KVMSPIMPPProjectReader.h"
#include "MPPImporter/readers/KVMSPIMPPTaskReader.h"

#include <cstring>

namespace {

constexpr uint32_t kMagic = 0xFADFADBA;
constexpr uint32_t kFirstFieldOfTask = 0x20;
constexpr int32_t kDataItemSize = 206;
constexpr int32_t kMetaItemSize = 47;
constexpr int32_t kFixed2ItemSize = 96;
// Items before the first object's index hold no object.
constexpr int32_t kLeadingItems = 3;

std::vector<uint8_t> item(int32_t size, const std::map<int32_t, std::vector<uint8_t>>& patches) {
    std::vector<uint8_t> bytes(static_cast<size_t>(size), 0);
    for (const auto& [offset, value] : patches) {
        std::copy(value.begin(), value.end(), bytes.begin() + offset);
    }
    return bytes;
}

// The meta and data streams of a fixed pair whose items all have the same sizes.
void addFixedPair(MPPFixtureFile& file, const std::string& prefix, int32_t metaSize,
                  const std::vector<std::vector<uint8_t>>& metaItems,
                  const std::vector<std::vector<uint8_t>>& dataItems) {
    ByteWriter meta;
    meta.u32(kMagic).u32(4).u32(static_cast<uint32_t>(kLeadingItems + metaItems.size())).u32(0);
    for (int32_t i = 0; i < kLeadingItems; ++i) {
        meta.zeros(static_cast<size_t>(metaSize));
    }
    ByteWriter data;
    for (size_t i = 0; i < metaItems.size(); ++i) {
        std::vector<uint8_t> metaItem = metaItems[i];
        const uint32_t offset = static_cast<uint32_t>(data.data().size());
        std::memcpy(metaItem.data() + 4, &offset, 4);
        meta.bytes(metaItem);
        data.bytes(dataItems[i]);
    }
    file.addStream(prefix + "Meta", meta.data());
    file.addStream(prefix + "Data", data.data());
}

} // namespace

std::vector<uint8_t> le16(uint16_t value) {
    return ByteWriter().u16(value).data();
}

std::vector<uint8_t> le32(uint32_t value) {
    return ByteWriter().u32(value).data();
}

std::vector<uint8_t> leDouble(double value) {
    std::vector<uint8_t> bytes(8);
    std::memcpy(bytes.data(), &value, 8);
    return bytes;
}

std::vector<uint8_t> mppTimestamp(uint16_t day, uint16_t tenthsOfMinute) {
    return ByteWriter().u16(tenthsOfMinute).u16(day).data();
}

MPPFixtureFile::Bytes TaskPlanFixture::propsStream(const std::map<uint32_t, std::vector<uint8_t>>& entries) {
    ByteWriter w;
    w.zeros(12).u16(static_cast<uint16_t>(entries.size())).u16(0);
    for (const auto& [number, data] : entries) {
        w.u32(static_cast<uint32_t>(data.size())).u32(number).u32(0).bytes(data);
        if (data.size() % 2 != 0) {
            w.u8(0);
        }
    }
    return w.data();
}

TaskPlanFixture::TaskPlanFixture(const std::vector<FixtureTask>& tasks, const MPPFixtureFile::Bytes& props)
    : TaskPlanFixture(tasks, props, KVMSPIMPP14PropertyList::shared()) {}

TaskPlanFixture::TaskPlanFixture(const std::vector<FixtureTask>& tasks, const MPPFixtureFile::Bytes& props,
                                 const KVMSPIMPPPropertyList& list) {
    // Applications 15 and 16 store the ID first and the UID after it.
    const bool idFirst = list.mppVersion() >= kMSPDIVersion_2013;
    const auto fixed2MetaItemSize =
        static_cast<int32_t>(list.taskDataStreamParams().fixed2.metaStreamItemSize);
    MPPFixtureFile file;
    std::vector<std::vector<uint8_t>> metaItems, dataItems, fixed2MetaItems, fixed2Items;
    ByteWriter varMeta;
    ByteWriter varData;
    int32_t varCount = 0;
    ByteWriter varItems;
    for (const FixtureTask& task : tasks) {
        std::map<int32_t, std::vector<uint8_t>> meta = task.meta;
        meta[0] = le32(kFirstFieldOfTask);
        metaItems.push_back(item(kMetaItemSize, meta));
        std::map<int32_t, std::vector<uint8_t>> data = task.data;
        data[idFirst ? 4 : 0] = le32(static_cast<uint32_t>(task.uid));
        data[idFirst ? 0 : 4] = le32(static_cast<uint32_t>(task.id));
        dataItems.push_back(item(kDataItemSize, data));
        fixed2MetaItems.push_back(item(fixed2MetaItemSize, task.fixed2Meta));
        fixed2Items.push_back(item(kFixed2ItemSize, {}));
        for (const auto& [property, block] : task.var) {
            varItems.u32(static_cast<uint32_t>(task.uid))
                .u32(static_cast<uint32_t>(varData.data().size()))
                .u16(static_cast<uint16_t>(property))
                .u16(0x0B40);
            varData.u32(static_cast<uint32_t>(block.size())).bytes(block);
            ++varCount;
        }
    }
    addFixedPair(file, "   114/TBkndTask/Fixed", kMetaItemSize, metaItems, dataItems);
    addFixedPair(file, "   114/TBkndTask/Fixed2", fixed2MetaItemSize, fixed2MetaItems, fixed2Items);
    varMeta.u32(kMagic).u32(4).u32(static_cast<uint32_t>(varCount)).zeros(8).u32(0).bytes(varItems.data());
    file.addStream("   114/TBkndTask/VarMeta", varMeta.data());
    file.addStream("   114/TBkndTask/Var2Data", varData.data());
    file.addStream("   114/Props", props);
    m_root = SSLRoot::rootWithFilename(file.write(m_dir.path(), "plan.mpp").string());
    m_reader = std::make_unique<KVMSPIMPPReader>(m_root->rootStorage(), &list, list.mppVersion(),
                                                 KVMSPIMPPProjectReader::projectReaderFactory());
}

KVMSPIMPPProjectReader& TaskPlanFixture::project() const {
    return dynamic_cast<KVMSPIMPPProjectReader&>(*m_reader->projectReader());
}

KVMSPIMPPTaskReader& TaskPlanFixture::tasks() const {
    return dynamic_cast<KVMSPIMPPTaskReader&>(*project().taskReader());
}
