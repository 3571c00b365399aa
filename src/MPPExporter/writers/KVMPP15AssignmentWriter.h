#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPExporter/writers/MPPObjectStorageWriter.h"

#include <array>
#include <cstdint>
#include <functional>
#include <vector>

class KVMPPAssignment;

// Regenerates the storage "TBkndAssn": one record per assignment number from 1 in the fixed streams,
// one per assignment in the second fixed streams, and in the variable data each assignment's planned
// work, whose timephased block holds the worked stretches of a split task. The property stream is the
// template's. Fields that the readers read are placed by the catalogue.
class KVMPP15AssignmentWriter : public MPPObjectStorageWriter {
public:
    using MPPObjectStorageWriter::MPPObjectStorageWriter;

    // Needs the tasks preprocessed: drops assignments without a task, numbers the others from 1 in ID
    // order, completes their figures from their tasks and makes each one's first baseline its Baseline.
    static void preprocessProject(KVMPPProject& project);

    // The five work figures of the fixed record: units, work, actual work, work again and remaining
    // work, for a material resource in amounts.
    static std::array<double, 5> workFigures(const KVMPPAssignment& assignment);
    // The payload of the planned work element, with the timephased block of the assignment's stretches.
    static std::vector<uint8_t> plannedWork(const KVMPPAssignment& assignment);

private:
    const MPPObjectStorageLayout& storageLayout() const override;

    void writeVar2DataElements() override;
    void writeHeaderElements();
    void writeAssignmentElements(const KVMPPAssignment& assignment);
    void writeNumberedBaselines(const KVMPPAssignment& assignment);

    // The fixed streams hold a record for every number from 1 to the last assignment's: `unassigned`
    // writes the one of a number without an assignment.
    void writeNumberedSlots(const std::function<void(const KVMPPAssignment&)>& assigned,
                            const std::function<void(uint64_t)>& unassigned) const;
    void writeFixedDataRecords() override;
    void writeAssignmentFixedData(const KVMPPAssignment& assignment);
    void writeFixedMetaEntries() override;
    void writeAssignmentFixedMeta(const KVMPPAssignment& assignment);
    void writeFixed2DataRecords() override;
    void writeFixed2MetaEntries() override;
    void writeAssignmentFixed2Meta(const KVMPPAssignment& assignment);

    // The template's property stream.
    void writeProps() override;

    TVDate m_streamDate;
};
