#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPExporter/writers/KVMPPWriter.h"
#include "MPPExporter/writers/MPPVarElementList.h"

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <vector>

class KVMPPAssignment;

// Regenerates the storage "TBkndAssn": one record per assignment number from 1 in the fixed streams,
// one per assignment in the second fixed streams, and in the variable data each assignment's planned
// work, whose timephased block holds the worked stretches of a split task. The property stream is the
// template's. Fields that the readers read are placed by the catalogue.
class KVMPP15AssignmentWriter : public KVMPPWriter {
public:
    using KVMPPWriter::KVMPPWriter;

    bool writeDataForProject(const KVMPPProject* project) override;

    // Needs the tasks preprocessed: drops assignments without a task, numbers the others from 1 in ID
    // order, completes their figures from their tasks and makes each one's first baseline its Baseline.
    static void preprocessProject(KVMPPProject& project);

    // The five work figures of the fixed record: units, work, actual work, work again and remaining
    // work, for a material resource in amounts.
    static std::array<double, 5> workFigures(const KVMPPAssignment& assignment);
    // The payload of the planned work element, with the timephased block of the assignment's stretches.
    static std::vector<uint8_t> plannedWork(const KVMPPAssignment& assignment);

private:
    void writeVar2Data();
    void writeVarMeta();
    void writeFixedData();
    void writeFixedMeta();
    void writeFixed2Data();
    void writeFixed2Meta();

    void writeHeaderElements();
    void writeAssignmentElements(const KVMPPAssignment& assignment);
    void writeNumberedBaselines(const KVMPPAssignment& assignment);
    void writeAssignmentFixedData(const KVMPPAssignment& assignment);
    void writeAssignmentFixedMeta(const KVMPPAssignment& assignment);
    void writeAssignmentFixed2Meta(const KVMPPAssignment& assignment);
    // The assignments by number.
    std::map<uint64_t, const KVMPPAssignment*> assignmentsByID() const;

    std::unique_ptr<MPPVarElementList> m_elements;
    TVDate m_streamDate;
};
