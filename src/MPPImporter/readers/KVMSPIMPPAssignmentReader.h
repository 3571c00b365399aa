#pragma once

#include "MPPImporter/file/KVMSPIMPPDataDirectoryReader.h"
#include "MPPImporter/format/MPPFormatConstants.h"
#include "MPPImporter/readers/KVMSPIMPPAbsAssignmentReader.h"
#include "MPPImporter/readers/MPPObjectFieldReads.h"

#include <array>
#include <map>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

// The assignments of the "TBkndAssn" storage, answered field by field by UID. At open it decodes the
// timephased work block of each assignment into its phases, laid on the standard calendar from the
// assignment's start, and reads each assignment's baselines.
class KVMSPIMPPAssignmentReader : public KVMSPIMPPDataDirectoryReader, public KVMSPIMPPAbsAssignmentReader {
public:
    KVMSPIMPPAssignmentReader(std::unique_ptr<SSLStorage> directory, std::string name,
                              KVMSPIParentReader* parentReader);
    ~KVMSPIMPPAssignmentReader() override;

    using BaselineReaders = std::map<int32_t, std::unique_ptr<KVMSPISingleAssignmentBaselineReader>>;

    int32_t baselineNumber() const override { return m_baselineNumber; }
    void setBaselineNumber(int32_t baselineNumber) override { m_baselineNumber = baselineNumber; }

    const std::vector<int32_t>& uniqueIDs() const override {
        return KVMSPIMPPDataDirectoryReader::uniqueIDs();
    }
    const KVMSPITimephasedDataMap& assignmentTimephasedDataMap() const override {
        return m_timephasedDataMap;
    }
    // The baseline readers of the assignments that hold data in baseline `baselineNumber`; a number
    // above 10 is an assertion failure.
    const BaselineReaders& readersForBaseline(int32_t baselineNumber) const;
    const KVMSPISingleAssignmentBaselineReader* assignmentBaseline(int32_t uid,
                                                                   int32_t number) const override;

    bool assignmentFinish(int32_t uid, TVDate& value, TVError* error = nullptr) override;
    bool assignmentResourceUID(int32_t uid, int32_t& value, TVError* error = nullptr) override;
    bool assignmentStart(int32_t uid, TVDate& value, TVError* error = nullptr) override;
    bool assignmentTaskUID(int32_t uid, int32_t& value, TVError* error = nullptr) override;
    bool assignmentUnits(int32_t uid, double& value, TVError* error = nullptr) override;
    bool assignmentWork(int32_t uid, double& value, TVError* error = nullptr) override;
    bool assignmentActualWork(int32_t uid, double& value, TVError* error = nullptr) override;
    bool assignmentRemainingWork(int32_t uid, double& value, TVError* error = nullptr) override;
    bool assignmentCost(int32_t uid, double& value, TVError* error = nullptr) override;
    bool assignmentUID(int32_t uid, int32_t& value, TVError* error = nullptr) override;

    // Whose assignments an owner index answers: a task's or a resource's.
    enum class Owner { task, resource };
    // The UIDs of the valid assignments of the task or resource, in the collection's order. The index
    // is made on first use: the import asks it once per task and once per resource, and walking every
    // assignment for each of them made a plan of thousands of tasks take minutes.
    const std::vector<int32_t>& assignmentsOf(Owner owner, int32_t ownerUID);

private:
    // A work field of the assignment, in seconds.
    bool readSeconds(MPPField field, int32_t uid, double& value, TVError* error);
    void decodeTimephasedData();
    // Reads the baselines of every assignment, each of its own marks: an assignment's baseline may be
    // saved where its task's is not.
    void readBaselines();

    MPPObjectFieldReads m_reads;
    int32_t m_baselineNumber = -1;
    KVMSPITimephasedDataMap m_timephasedDataMap;
    std::array<BaselineReaders, kMPPBaselineCount> m_baselineReaders;
    std::optional<std::array<std::unordered_map<int32_t, std::vector<int32_t>>, 2>> m_assignmentsByOwner;
};
