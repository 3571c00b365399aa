#include "MPPImporter/readers/KVMSPIMPPResourceReader.h"

#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/file/KVMPPFixedDataReader.h"
#include "MPPImporter/file/KVMPPVarDataReader.h"
#include "MPPImporter/file/KVMSPIMPPPropertyList.h"
#include "MPPImporter/format/MPPResourceAvailabilityTable.h"
#include "MPPImporter/format/MPPResourcePropertyKeys.h"
#include "MPPImporter/format/MPPValueCodecs.h"
#include "MPPImporter/readers/KVMSPIMPPAbsAssignmentReader.h"
#include "MPPImporter/readers/KVMSPIMPPAbsProjectReader.h"
#include "MPPImporter/readers/KVMSPIMPPResourceCustomFieldReader.h"
#include "MPPImporter/readers/KVMSPISingleExtendedAttribute.h"
#include "MPPImporter/readers/KVMSPISingleResourceBaselineReader.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <unordered_map>

KVMSPIMPPResourceReader::KVMSPIMPPResourceReader(std::unique_ptr<SSLStorage> directory, std::string name,
                                                 KVMSPIParentReader* parentReader)
    : KVMSPIMPPDataDirectoryReader(std::move(directory), std::move(name), parentReader), m_reads(*this),
      m_uniqueIDs(KVMSPIMPPDataDirectoryReader::uniqueIDs()) {
    sortUniqueIDsByResourceID();
    m_project = dynamic_cast<const KVMSPIMPPAbsProjectReader*>(parentReader);
    if (m_project != nullptr) {
        m_baselineNumber = m_project->baselineNumber();
    }
    tvLog("      Reading Resources baselines...");
    readBaselines();
}

KVMSPIMPPResourceReader::~KVMSPIMPPResourceReader() = default;

void KVMSPIMPPResourceReader::sortUniqueIDsByResourceID() {
    std::unordered_map<int32_t, std::optional<int32_t>> ids;
    for (const int32_t uid : m_uniqueIDs) {
        int32_t id = 0;
        ids[uid] = resourceID(uid, id) ? std::optional<int32_t>(id) : std::nullopt;
    }
    std::stable_sort(m_uniqueIDs.begin(), m_uniqueIDs.end(), [&ids](int32_t first, int32_t second) {
        const auto& firstID = ids[first];
        const auto& secondID = ids[second];
        if (!firstID || !secondID) {
            tvLog(stringWithFormat("RESOURCE SORT ERROR: resource1UID=%d resource2UID=%d", first, second));
            return false;
        }
        return *firstID < *secondID;
    });
}

void KVMSPIMPPResourceReader::readBaselines() {
    for (int32_t number = 0; number < kMPPBaselineCount; ++number) {
        bool marked = false;
        if (!hasBaseline(0, number, marked) || !marked) {
            tvLog(stringWithFormat("        No baseline %d", number));
            continue;
        }
        BaselineReaders readers;
        for (const int32_t uid : m_uniqueIDs) {
            auto reader = std::make_unique<KVMSPISingleResourceBaselineReader>(uid, number, *this);
            if (reader->hasBaselineData()) {
                readers.emplace(uid, std::move(reader));
            }
        }
        m_baselineReaders[number] = std::move(readers);
    }
}

const KVMSPIMPPResourceReader::BaselineReaders&
KVMSPIMPPResourceReader::readersForBaseline(int32_t baselineNumber) const {
    tvAssert(baselineNumber >= 0 && baselineNumber < kMPPBaselineCount,
             stringWithFormat("Invalid baseline number: %ld", static_cast<long>(baselineNumber)));
    return m_baselineReaders[baselineNumber];
}

const KVMSPISingleResourceBaselineReader* KVMSPIMPPResourceReader::selectedBaseline(int32_t uid) const {
    return m_baselineNumber < kMPPBaselineCount ? resourceBaseline(uid, m_baselineNumber) : nullptr;
}

const KVMSPISingleResourceBaselineReader* KVMSPIMPPResourceReader::resourceBaseline(int32_t uid,
                                                                                    int32_t number) const {
    const BaselineReaders& readers = readersForBaseline(number);
    const auto found = readers.find(uid);
    return found == readers.end() ? nullptr : found->second.get();
}

bool KVMSPIMPPResourceReader::isValidUID(int32_t uid) const {
    MPPDataItemInfo info;
    return fixedDataReader() != nullptr && fixedDataReader()->dataItemInfo(&info, uid) &&
           info.dataSize >= MPPPropertyList().resourceMinItemSizeForAppVersion(appVersion());
}

int64_t KVMSPIMPPResourceReader::objectIDforUniqueID(int32_t uid) const {
    return KVMSPIMPPDataDirectoryReader::objectIDforUniqueID(uid);
}

bool KVMSPIMPPResourceReader::resourceCost(int32_t uid, double& value, TVError* error) {
    if (m_baselineNumber < 0) {
        return m_reads.read(MPPField::resourceCost, uid, value, error);
    }
    const KVMSPISingleResourceBaselineReader* baseline = selectedBaseline(uid);
    if (baseline == nullptr || !baseline->hasCost()) {
        return false;
    }
    value = baseline->resourceCost();
    return true;
}

// Applications 15 and 16 leave the stored work of some resources at zero although their assignments
// hold work: the application sums the assignments up at open, as its interchange files show, and no
// stream of the file keeps the total. A resource without stored work takes that sum.
bool KVMSPIMPPResourceReader::resourceWork(int32_t uid, TVTimeSpan& value, TVError* error) {
    if (m_baselineNumber < 0) {
        if (!m_reads.read(MPPField::resourceWork, uid, value, error)) {
            return false;
        }
        const double assigned = assignedWork(uid) * static_cast<double>(kMicrosecondsPerSecond);
        // A sum beyond the range of a time span comes from a damaged file and is left out.
        if (value == 0 && std::abs(assigned) < 9.0e18) {
            value = static_cast<TVTimeSpan>(assigned);
        }
        return true;
    }
    const KVMSPISingleResourceBaselineReader* baseline = selectedBaseline(uid);
    if (baseline == nullptr || !baseline->hasWork()) {
        return false;
    }
    value = mppWorkTimeSpan(baseline->resourceWork());
    return true;
}

double KVMSPIMPPResourceReader::assignedWork(int32_t uid) {
    if (!m_assignedWork) {
        m_assignedWork.emplace();
        KVMSPIMPPAbsAssignmentReader* assignments =
            m_project != nullptr ? m_project->assignmentReader() : nullptr;
        for (const int32_t assignment :
             assignments != nullptr ? assignments->uniqueIDs() : std::vector<int32_t>{}) {
            int32_t resource = 0;
            double work = 0;
            if (assignments->assignmentResourceUID(assignment, resource) &&
                assignments->assignmentWork(assignment, work) && std::isfinite(work)) {
                (*m_assignedWork)[resource] += work;
            }
        }
    }
    const auto found = m_assignedWork->find(uid);
    return found == m_assignedWork->end() ? 0 : found->second;
}

bool KVMSPIMPPResourceReader::resourceCostPerUse(int32_t uid, double& value, TVError* error) {
    return m_reads.read(MPPField::resourceCostPerUse, uid, value, error);
}

bool KVMSPIMPPResourceReader::resourceID(int32_t uid, int32_t& value, TVError* error) {
    return m_reads.read(MPPField::resourceID, uid, value, error);
}

bool KVMSPIMPPResourceReader::resourceMaxUnits(int32_t uid, double& value, TVError* error) {
    return m_reads.read(MPPField::resourceMaxUnits, uid, value, error);
}

bool KVMSPIMPPResourceReader::resourceStandardRate(int32_t uid, double& value, TVError* error) {
    return m_reads.read(MPPField::resourceStandardRate, uid, value, error);
}

bool KVMSPIMPPResourceReader::resourceType(int32_t uid, int16_t& value, TVError* error) {
    return m_reads.read(MPPField::resourceType, uid, value, error);
}

// Answers the mark's bit, 16, for a cost resource.
bool KVMSPIMPPResourceReader::resourceIsCostResource(int32_t uid, uint8_t& value, TVError* error) {
    constexpr uint8_t kCostResourceBit = 16;
    bool marked = false;
    if (!m_reads.read(MPPField::resourceCostResource, uid, marked, error)) {
        return false;
    }
    value = marked ? kCostResourceBit : 0;
    return true;
}

bool KVMSPIMPPResourceReader::resourceUID(int32_t uid, int32_t& value, TVError* error) {
    return m_reads.read(MPPField::resourceUID, uid, value, error);
}

bool KVMSPIMPPResourceReader::resourceAvailableFrom(int32_t uid, TVDate& value, TVError* error) {
    return m_reads.read(MPPField::resourceAvailableFrom, uid, value, error);
}

bool KVMSPIMPPResourceReader::resourceAvailableTo(int32_t uid, TVDate& value, TVError* error) {
    return m_reads.read(MPPField::resourceAvailableTo, uid, value, error);
}

bool KVMSPIMPPResourceReader::resourceEmailAddress(int32_t uid, std::string& value, TVError* error) {
    return m_reads.read(MPPField::resourceEmailAddress, uid, value, error);
}

bool KVMSPIMPPResourceReader::resourceName(int32_t uid, std::string& value, TVError* error) {
    return m_reads.read(MPPField::resourceName, uid, value, error);
}

bool KVMSPIMPPResourceReader::resourceNotes(int32_t uid, std::string& value, TVError* error) {
    return m_reads.read(MPPField::resourceNotes, uid, value, error);
}

bool KVMSPIMPPResourceReader::resourceAvailability(int32_t uid,
                                                   std::vector<MPPResourceAvailabilityPeriod>& value,
                                                   TVError* error) {
    std::vector<uint8_t> bytes;
    if (!m_reads.read(MPPField::resourceAvailability, uid, bytes, error)) {
        return false;
    }
    MPPResourceAvailabilityTable(bytes.data(), bytes.size()).appendPeriods(value);
    return true;
}

// A resource holds a baseline when its variable data holds one of the baseline's blocks: the mark
// (baseline 0, and 1 to 10 where timephased baseline data is kept), or the cost or work of baselines 1
// to 10. The files set the marks of baselines 1 to 10 only with timephased data, so the values count
// too; the Fixed2 meta item's baseline bits agree with this wherever the files set them.
bool KVMSPIMPPResourceReader::hasBaseline(int32_t uid, int32_t index, bool& value, TVError* /*error*/) {
    if (index < 0 || index >= kMPPBaselineCount || varDataReader() == nullptr) {
        return false;
    }
    const KVMSPIMPPPropertyList& list = MPPPropertyList();
    const auto mark = m_reads.place(MPPField::resourceBaselineMark);
    const std::vector<std::optional<uint32_t>> properties =
        index == 0 ? std::vector{mark ? std::optional(mark->position) : std::nullopt}
                   : std::vector{list.propertyID(kResourceBaselineGroupKey, index),
                                 list.propertyID(kResourceBaselineCostGroupKey, index),
                                 list.propertyID(kResourceBaselineWorkGroupKey, index)};
    value = std::any_of(properties.begin(), properties.end(), [&](const auto& property) {
        return property && varDataReader()->hasDataForObjectUID(uid, static_cast<int32_t>(*property));
    });
    return true;
}

bool KVMSPIMPPResourceReader::resourceCustomFields(
    int32_t uid, std::vector<std::unique_ptr<KVMSPISingleExtendedAttribute>>& value, TVError* error) {
    return KVMSPIMPPResourceCustomFieldReader(uid, *this).customFields(value, error);
}
