#include "MPPExporter/writers/KVMPP15ConsstraintWriter.h"

#include "MPPCommon/support/TVException.h"
#include "MPPExporter/MPPObjects/KVMPPProject.h"
#include "MPPExporter/writers/MPPFieldWrites.h"
#include "MPPImporter/format/MPPFormatConstants.h"

#include <array>

namespace {

// The fixed streams have no header elements, and the storage no variable data.
constexpr MPPObjectStorageLayout kLinkStorage = {};
constexpr size_t kLinkRecordSize = 20;
constexpr uint16_t kLiveLinkMark = 0;
constexpr uint16_t kMetaEnding = 0xDD;
constexpr uint8_t kFixed2MetaEnding = 7;
// The lag formats of the interchange vocabulary: days, and percent.
constexpr int64_t kLagFormatDays = 7;
constexpr int64_t kLagFormatPercent = 19;

const KVMPPTask& linkedTask(const MPPDeferred<KVMPPTask>& reference) {
    const KVMPPTask* task = reference.object();
    tvAssert(task != nullptr, "A task link without its task reached the writer.");
    return *task;
}

} // namespace

const MPPObjectStorageLayout& KVMPP15ConsstraintWriter::storageLayout() const {
    return kLinkStorage;
}

void KVMPP15ConsstraintWriter::writeFixedDataRecords() {
    uint32_t uid = 0;
    for (const auto& link : project().constraints) {
        writeLinkFixedData(*link, ++uid);
    }
}

void KVMPP15ConsstraintWriter::writeLinkFixedData(const KVMPPConstraint& link, uint32_t uid) {
    std::array<uint8_t, kLinkRecordSize> record{};
    const auto put = [&](MPPField field, int64_t value) {
        putMPPField(layoutVersion(), record, MPPFieldBlock::fixed, field, value);
    };
    // The reader keys links by this word: each link has its own, where a model link's ID is 0 for all.
    encodeMPPNumber(uid, std::span(record));
    put(MPPField::linkPredecessorUID, static_cast<int64_t>(linkedTask(link.task2).ID));
    put(MPPField::linkTaskUID, static_cast<int64_t>(linkedTask(link.task1).ID));
    put(MPPField::linkType, link.constraintType);
    put(MPPField::linkLag,
        truncatedMPPInteger<int64_t>(link.isPercentage ? link.lag * 100.0 : link.lag / 6.0));
    put(MPPField::linkLagFormat, link.isPercentage ? kLagFormatPercent : kLagFormatDays);
    m_fixedData->writeRecord(record);
}

void KVMPP15ConsstraintWriter::writeFixedMetaEntries() {
    for (size_t i = 0; i < project().constraints.size(); ++i) {
        m_fixedMeta->writeNextElementStartWithInt(kLiveLinkMark);
        m_fixedMeta->write2ByteInteger(kMetaEnding);
    }
}

void KVMPP15ConsstraintWriter::writeFixed2DataRecords() {
    for (const auto& link : project().constraints) {
        m_fixed2Data->startNewElement();
        m_fixed2Data->writeGUID(link->getGUID());
        m_fixed2Data->writeGUID(linkedTask(link->task2).getGUID());
        m_fixed2Data->writeGUID(linkedTask(link->task1).getGUID());
        m_fixed2Data->closeCurrentElement();
    }
}

void KVMPP15ConsstraintWriter::writeFixed2MetaEntries() {
    for (size_t i = 0; i < project().constraints.size(); ++i) {
        m_fixed2Meta->writeNextElementStartWithInt(0);
        m_fixed2Meta->write1ByteInteger(kFixed2MetaEnding);
    }
}
