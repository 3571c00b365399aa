#include "MPPImporter/readers/KVMSPIMPPAssignmentReader.h"

#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/format/MPPAssignmentPropertyKeys.h"
#include "MPPImporter/readers/KVMSPIMPPAbsProjectReader.h"
#include "MPPImporter/readers/KVMSPISingleAssignmentBaselineReader.h"
#include "MPPImporter/readers/KVMSPISingleTimephasedDataReader.h"
#include "MPPImporter/readers/MPPTimephasedWorkDecoder.h"

namespace {

// Work in thousandths of a minute as seconds, not rounded to whole microseconds.
double seconds(double work) {
    return work * 0.06;
}

} // namespace

KVMSPIMPPAssignmentReader::KVMSPIMPPAssignmentReader(std::unique_ptr<SSLStorage> directory, std::string name,
                                                     KVMSPIParentReader* parentReader)
    : KVMSPIMPPDataDirectoryReader(std::move(directory), std::move(name), parentReader), m_reads(*this) {
    if (const auto* project = dynamic_cast<const KVMSPIMPPAbsProjectReader*>(parentReader)) {
        m_baselineNumber = project->baselineNumber();
    }
    decodeTimephasedData();
    readBaselines();
}

KVMSPIMPPAssignmentReader::~KVMSPIMPPAssignmentReader() = default;

void KVMSPIMPPAssignmentReader::decodeTimephasedData() {
    for (const int32_t uid : uniqueIDs()) {
        std::vector<uint8_t> block;
        TVDate start;
        if (!m_reads.read(MPPField::assignmentTimephasedWork, uid, block, nullptr) || block.empty() ||
            !assignmentStart(uid, start)) {
            continue;
        }
        const auto phases = MPPTimephasedWorkDecoder(block.data(), block.size()).decode(start);
        if (phases.empty()) {
            continue;
        }
        auto& readers = m_timephasedDataMap[uid];
        for (const MPPTimephasedPhase& phase : phases) {
            readers.push_back(std::make_shared<KVMSPISingleTimephasedDataReader>(uid, phase.start, phase.end,
                                                                                 phase.seconds, *this));
        }
    }
}

void KVMSPIMPPAssignmentReader::readBaselines() {
    for (int32_t number = 0; number < kMPPBaselineCount; ++number) {
        BaselineReaders readers;
        for (const int32_t uid : uniqueIDs()) {
            auto reader = std::make_unique<KVMSPISingleAssignmentBaselineReader>(uid, number, *this);
            if (reader->hasBaselineData()) {
                readers.emplace(uid, std::move(reader));
            }
        }
        tvLog(readers.empty() ? stringWithFormat("        No baseline %d", number)
                              : stringWithFormat("        Found Baseline(%d) data", number));
        m_baselineReaders[number] = std::move(readers);
    }
}

const KVMSPIMPPAssignmentReader::BaselineReaders&
KVMSPIMPPAssignmentReader::readersForBaseline(int32_t baselineNumber) const {
    tvAssert(baselineNumber >= 0 && baselineNumber < kMPPBaselineCount,
             stringWithFormat("Invalid baseline number: %ld", static_cast<long>(baselineNumber)));
    return m_baselineReaders[baselineNumber];
}

const KVMSPISingleAssignmentBaselineReader*
KVMSPIMPPAssignmentReader::assignmentBaseline(int32_t uid, int32_t number) const {
    const BaselineReaders& readers = readersForBaseline(number);
    const auto found = readers.find(uid);
    return found == readers.end() ? nullptr : found->second.get();
}

bool KVMSPIMPPAssignmentReader::readSeconds(MPPField field, int32_t uid, double& value, TVError* error) {
    double stored = 0;
    if (!m_reads.read(field, uid, stored, error)) {
        return false;
    }
    value = seconds(stored);
    return true;
}

bool KVMSPIMPPAssignmentReader::assignmentFinish(int32_t uid, TVDate& value, TVError* error) {
    return m_reads.read(MPPField::assignmentFinish, uid, value, error);
}

bool KVMSPIMPPAssignmentReader::assignmentResourceUID(int32_t uid, int32_t& value, TVError* error) {
    return m_reads.read(MPPField::assignmentResourceUID, uid, value, error);
}

bool KVMSPIMPPAssignmentReader::assignmentStart(int32_t uid, TVDate& value, TVError* error) {
    return m_reads.read(MPPField::assignmentStart, uid, value, error);
}

bool KVMSPIMPPAssignmentReader::assignmentTaskUID(int32_t uid, int32_t& value, TVError* error) {
    return m_reads.read(MPPField::assignmentTaskUID, uid, value, error);
}

bool KVMSPIMPPAssignmentReader::assignmentUnits(int32_t uid, double& value, TVError* error) {
    return m_reads.read(MPPField::assignmentUnits, uid, value, error);
}

bool KVMSPIMPPAssignmentReader::assignmentWork(int32_t uid, double& value, TVError* error) {
    return readSeconds(MPPField::assignmentWork, uid, value, error);
}

bool KVMSPIMPPAssignmentReader::assignmentActualWork(int32_t uid, double& value, TVError* error) {
    return readSeconds(MPPField::assignmentActualWork, uid, value, error);
}

bool KVMSPIMPPAssignmentReader::assignmentRemainingWork(int32_t uid, double& value, TVError* error) {
    return readSeconds(MPPField::assignmentRemainingWork, uid, value, error);
}

bool KVMSPIMPPAssignmentReader::assignmentCost(int32_t uid, double& value, TVError* error) {
    return m_reads.read(MPPField::assignmentCost, uid, value, error);
}

bool KVMSPIMPPAssignmentReader::assignmentUID(int32_t uid, int32_t& value, TVError* /*error*/) {
    value = uid;
    return true;
}

const std::vector<int32_t>& KVMSPIMPPAssignmentReader::assignmentsOf(Owner owner, int32_t ownerUID) {
    if (!m_assignmentsByOwner) {
        auto& [byTask, byResource] = m_assignmentsByOwner.emplace();
        for (const int32_t uid : uniqueIDs()) {
            int32_t value = -1;
            if (!isValidUID(uid)) {
                continue;
            }
            if (assignmentTaskUID(uid, value)) {
                byTask[value].push_back(uid);
            }
            if (assignmentResourceUID(uid, value)) {
                byResource[value].push_back(uid);
            }
        }
    }
    static const std::vector<int32_t> kNone;
    const auto& index = (*m_assignmentsByOwner)[owner == Owner::task ? 0 : 1];
    const auto found = index.find(ownerUID);
    return found != index.end() ? found->second : kNone;
}
