#pragma once

#include "MPPExporter/MPPObjects/KVMPPResourceBaseline.h"
#include "MPPExporter/writers/MPPObjectStorageWriter.h"
#include "MPPImporter/format/MPPFieldCatalog.h"

#include <cstdint>
#include <optional>

class KVMPPResource;

// Exception names of the resource writer.
inline constexpr const char* kUnknownBaselineWorkException = "UnknownBaselineWorkException";
inline constexpr const char* kUnknownBaselineCostException = "UnknownBaselineCostException";

// Regenerates the storage "TBkndRsc": after three header elements the default resource (ID 0), which
// the application expects in every plan, then the project's resources in list order, in the fixed,
// second fixed and variable stream pairs. Fields that the readers read are placed by the catalogue.
class KVMPP15ResourceWriter : public MPPObjectStorageWriter {
public:
    using MPPObjectStorageWriter::MPPObjectStorageWriter;

    // Drops the mapping's dummy resource (ID 0), for which the default element stands, and makes each
    // resource's first baseline its Baseline.
    static void preprocessProject(KVMPPProject& project);
    // The sheet position word of the n-th resource (from 1; 0 for the default resource): the upper half
    // of the double n + 1 up to 255, then the table's values, and 0 above 262143.
    static uint32_t calculateResourcePositionInResourceSheet(uint64_t n);
    // The property number of the resource's custom text field at a 1-based position; a position outside
    // 1 to 30 raises kUnknownTextFieldException.
    static uint32_t getTextFieldTypeForIndex(int64_t position);

private:
    const MPPObjectStorageLayout& storageLayout() const override;

    void writeVar2DataElements() override;
    // The elements of every resource; `baseline` is the resource's Baseline.
    void writeCommonElements(uint32_t id, const std::optional<KVMPPResourceBaseline>& baseline);
    // The mark of a Baseline with its work in thousandths of a minute, or none for the plan's mark.
    void writeBaselineMark(uint32_t id, std::optional<double> work);
    void writeDefaultResourceBaselines();
    void writeNumberedBaseline(uint32_t id, const KVMPPResourceBaseline& baseline);
    void writeResourceElements(const KVMPPResource& resource);

    void writeFixedDataRecords() override;
    void writeResourceFixedData(const KVMPPResource& resource, bool isDefault);
    void writeFixedMetaEntries() override;
    void writeResourceFixedMeta(const KVMPPResource& resource, bool isDefault);
    // Whether the project's first task keeps a list of baselines, and whether it has its Baseline.
    bool firstTaskHasBaselineList() const;
    bool firstTaskHasBaseline0() const;

    void writeFixed2DataRecords() override;
    void writeFixed2MetaEntries() override;
    void writeResourceFixed2Meta(const KVMPPResource& resource, bool isDefault);

    // The property stream, with the names of the custom fields.
    void writeProps() override;
};
