#pragma once

#include "MPPImporter/file/KVMSPIMPPDataDirectoryReader.h"
#include "MPPImporter/format/MPPFormatConstants.h"
#include "MPPImporter/readers/KVMSPIMPPAbsResourceReader.h"
#include "MPPImporter/readers/MPPObjectFieldReads.h"

#include <array>
#include <map>
#include <memory>
#include <optional>
#include <unordered_map>

class KVMSPIMPPAbsProjectReader;
class KVMSPISingleResourceBaselineReader;

// The resources of the "TBkndRsc" storage, answered field by field by UID. At open it sorts the UIDs
// by resource ID and reads the baselines that the resource with UID 0 marks.
class KVMSPIMPPResourceReader : public KVMSPIMPPDataDirectoryReader, public KVMSPIMPPAbsResourceReader {
public:
    using BaselineReaders = std::map<int32_t, std::unique_ptr<KVMSPISingleResourceBaselineReader>>;

    KVMSPIMPPResourceReader(std::unique_ptr<SSLStorage> directory, std::string name,
                            KVMSPIParentReader* parentReader);
    ~KVMSPIMPPResourceReader() override;

    int32_t baselineNumber() const override { return m_baselineNumber; }
    void setBaselineNumber(int32_t baselineNumber) override { m_baselineNumber = baselineNumber; }
    // The baseline readers of the resources that hold data in baseline `baselineNumber`; a number
    // above 10 is an assertion failure.
    const BaselineReaders& readersForBaseline(int32_t baselineNumber) const;

    const std::vector<int32_t>& uniqueIDs() const override { return m_uniqueIDs; }
    // Known, and with an item of at least the version's minimum resource size.
    bool isValidUID(int32_t uid) const override;
    int64_t objectIDforUniqueID(int32_t uid) const override;
    const MPPObjectFieldReads& fieldReads() const { return m_reads; }

    bool resourceCost(int32_t uid, double& value, TVError* error = nullptr) override;
    bool resourceCostPerUse(int32_t uid, double& value, TVError* error = nullptr) override;
    bool resourceID(int32_t uid, int32_t& value, TVError* error = nullptr) override;
    bool resourceMaxUnits(int32_t uid, double& value, TVError* error = nullptr) override;
    bool resourceStandardRate(int32_t uid, double& value, TVError* error = nullptr) override;
    bool resourceType(int32_t uid, int16_t& value, TVError* error = nullptr) override;
    bool resourceIsCostResource(int32_t uid, uint8_t& value, TVError* error = nullptr) override;
    bool resourceUID(int32_t uid, int32_t& value, TVError* error = nullptr) override;
    bool resourceWork(int32_t uid, TVTimeSpan& value, TVError* error = nullptr) override;
    bool resourceAvailableFrom(int32_t uid, TVDate& value, TVError* error = nullptr) override;
    bool resourceAvailableTo(int32_t uid, TVDate& value, TVError* error = nullptr) override;
    bool resourceEmailAddress(int32_t uid, std::string& value, TVError* error = nullptr) override;
    bool resourceName(int32_t uid, std::string& value, TVError* error = nullptr) override;
    bool resourceNotes(int32_t uid, std::string& value, TVError* error = nullptr) override;
    bool resourceAvailability(int32_t uid, std::vector<MPPResourceAvailabilityPeriod>& value,
                              TVError* error = nullptr) override;
    const KVMSPISingleResourceBaselineReader* resourceBaseline(int32_t uid, int32_t number) const override;
    bool hasBaseline(int32_t uid, int32_t index, bool& value, TVError* error = nullptr) override;
    bool resourceCustomFields(int32_t uid, std::vector<std::unique_ptr<KVMSPISingleExtendedAttribute>>& value,
                              TVError* error = nullptr) override;

private:
    // The baseline reader of the resource in the selected baseline, if it has data there.
    const KVMSPISingleResourceBaselineReader* selectedBaseline(int32_t uid) const;
    void sortUniqueIDsByResourceID();
    void readBaselines();
    // The work of the resource's assignments in the actual plan, in seconds; read once.
    double assignedWork(int32_t uid);

    MPPObjectFieldReads m_reads;
    const KVMSPIMPPAbsProjectReader* m_project = nullptr;
    std::optional<std::unordered_map<int32_t, double>> m_assignedWork;
    std::vector<int32_t> m_uniqueIDs;
    int32_t m_baselineNumber = -1;
    std::array<BaselineReaders, kMPPBaselineCount> m_baselineReaders;
};
