#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPCommon/support/TVError.h"

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

class KVMSPISingleAssignmentBaselineReader;
class KVMSPISingleTimephasedDataReader;

// Assignment UID to the phases of its timephased work, in the order of the file's records.
using KVMSPITimephasedDataMap =
    std::unordered_map<int32_t, std::vector<std::shared_ptr<KVMSPISingleTimephasedDataReader>>>;

// What the project reader and the query layer ask of the assignments of a plan. Every field operation
// answers false when the value is absent or unreadable.
class KVMSPIMPPAbsAssignmentReader {
public:
    virtual ~KVMSPIMPPAbsAssignmentReader() = default;

    // -1 for the actual plan, else 0 to 10. No field follows it: an assignment's baselines are answered
    // by assignmentBaseline.
    virtual int32_t baselineNumber() const = 0;
    virtual void setBaselineNumber(int32_t baselineNumber) = 0;

    virtual const std::vector<int32_t>& uniqueIDs() const = 0;
    virtual const KVMSPITimephasedDataMap& assignmentTimephasedDataMap() const = 0;
    // The assignment's values in baseline `number` (0 to 10), or null where it holds none there.
    virtual const KVMSPISingleAssignmentBaselineReader* assignmentBaseline(int32_t uid,
                                                                           int32_t number) const = 0;

    virtual bool assignmentFinish(int32_t uid, TVDate& value, TVError* error = nullptr) = 0;
    virtual bool assignmentResourceUID(int32_t uid, int32_t& value, TVError* error = nullptr) = 0;
    virtual bool assignmentStart(int32_t uid, TVDate& value, TVError* error = nullptr) = 0;
    virtual bool assignmentTaskUID(int32_t uid, int32_t& value, TVError* error = nullptr) = 0;
    // Percent: 100 for one full-time unit.
    virtual bool assignmentUnits(int32_t uid, double& value, TVError* error = nullptr) = 0;
    // Work values in seconds.
    virtual bool assignmentWork(int32_t uid, double& value, TVError* error = nullptr) = 0;
    virtual bool assignmentActualWork(int32_t uid, double& value, TVError* error = nullptr) = 0;
    virtual bool assignmentRemainingWork(int32_t uid, double& value, TVError* error = nullptr) = 0;
    virtual bool assignmentCost(int32_t uid, double& value, TVError* error = nullptr) = 0;
    virtual bool assignmentUID(int32_t uid, int32_t& value, TVError* error = nullptr) = 0;
};
