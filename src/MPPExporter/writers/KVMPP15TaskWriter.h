#pragma once

#include "MPPExporter/writers/MPPFieldAliasProps.h"
#include "MPPExporter/writers/MPPObjectStorageWriter.h"
#include "MPPImporter/format/MPPFieldCatalog.h"

#include <cstdint>
#include <span>
#include <vector>

class KVMPPTask;
class KVMPPTaskBaseline;

// Exception names of the task writer.
inline constexpr const char* kTooManyBaselinesException = "TooManyBaselinesException";

// Regenerates the storage "TBkndTask" from the project's tasks: the project summary record first,
// then one record per task in ID order, in the fixed, second fixed and variable stream pairs and the
// property stream. Fields that the readers read by the field catalogue are placed by the same rows,
// in the layout of the template's application.
class KVMPP15TaskWriter : public MPPObjectStorageWriter {
public:
    using MPPObjectStorageWriter::MPPObjectStorageWriter;

    // Makes the document's root task the project summary: the project takes over its values, the
    // tasks are numbered from 1 in ID order, and references to the root point at the project. Each
    // task's first baseline becomes its Baseline, the others keep their numbers.
    static void preprocessProject(KVMPPProject& project);
    // The property number of the custom text field at a 1-based position; a position outside 1 to 30
    // raises kUnknownTextFieldException.
    static uint32_t getTextFieldTypeForIndex(int64_t position);

private:
    const MPPObjectStorageLayout& storageLayout() const override;

    void writeVar2DataElements() override;
    void writeProjectHeaderElementsToVar2Data();
    void doWriteTaskVar2Data(uint32_t id, const KVMPPTask& task);
    // The elements of the project summary or of one task, in the order the application writes them.
    void doWriteVarElements(uint32_t id, const KVMPPTask& task, bool isProject);
    // Notes as RTF and the custom texts, found by the meta stream in element order.
    void writeNotesAndCustomTexts(uint32_t id, const KVMPPTask& task);
    // The elements of the baselines of `task` that stand before and behind the fixed 0x496 group.
    void writeBaselineGroup1(uint32_t id, const KVMPPTask& task, bool isProject);
    void writeBaselineGroup2(uint32_t id, const KVMPPTask& task);
    uint32_t propertyNumber(MPPField field) const;

    void writeFixedDataRecords() override;
    void writeTaskFixedData(const KVMPPTask& task, bool isProject);
    void writeFixedMetaEntries() override;
    void writeTaskFixedMeta(const KVMPPTask& task, bool isProject);
    // The custom text bitmap of the fixed meta entry.
    static std::vector<uint8_t> fillCustomTextFields(const KVMPPTask& task);
    void writeFixed2DataRecords() override;
    void writeTaskFixed2Data(const KVMPPTask& task, bool isProject);
    void writeFixed2MetaEntries() override;
    void writeTaskFixed2Meta(const KVMPPTask& task, bool isProject);

    // The property stream, with the names of the custom fields.
    void writeProps() override;

    // Encodes a catalogue field into a record of `block` at its place in the template's layout.
    void putField(std::span<uint8_t> record, MPPFieldBlock block, MPPField field,
                  const MPPFieldValue& value) const;
};
