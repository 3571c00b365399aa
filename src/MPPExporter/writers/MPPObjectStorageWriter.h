#pragma once

#include "MPPExporter/MPPObjects/MPPCustomFields.h"
#include "MPPExporter/writers/KVMPPFixedData.h"
#include "MPPExporter/writers/KVMPPFixedMeta.h"
#include "MPPExporter/writers/KVMPPProps.h"
#include "MPPExporter/writers/KVMPPWriter.h"
#include "MPPExporter/writers/MPPVarElementList.h"
#include "MPPImporter/format/MPPFormatConstants.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// The property stream of an object storage.
inline constexpr const char* kObjectPropsStreamName = "Props";
// The largest number of a numbered baseline (Baseline 1 to 10 besides the Baseline).
inline constexpr int64_t kMaxBaselineNumber = kMPPBaselineCount - 1;
// -1.0e-6, the value that the application keeps in unset baseline figures.
inline constexpr double kUnsetFigure = -1.0e-6;

// The frame of an object storage's streams: the header elements that open both fixed data streams,
// their meta entries, and the ending of the variable meta entries.
struct MPPObjectStorageLayout {
    // Header elements in front of the records of each fixed data stream. A header element of the
    // fixed data holds its index, 0xFFFF and zeros (16 bytes); one of the second fixed data only zeros.
    size_t headerElements = 0;
    size_t fixed2RecordSize = 0;
    // A fixed meta entry: a header element's entry holds 4 and the mark, the rest zeros.
    size_t fixedMetaEntrySize = 0;
    uint16_t headerMetaMark = 0;
    // A second fixed meta entry; a header element's holds zeros.
    size_t fixed2MetaEntrySize = 0;
    // The ending of the variable meta entries; none where the storage has no variable data of its own.
    std::optional<uint16_t> varMetaEnding;
};

// A writer that regenerates an object storage ("TBkndTask", "TBkndRsc", ...). Its stream operations
// write the streams in the order of the application's files: the variable data and its meta stream,
// the fixed data and its meta stream, the second fixed data and its meta stream, then the property
// stream. Each makes its stream's block and writes the header elements and the meta stream's header;
// the subclass writes what belongs to its objects. A storage without variable data of its own keeps
// the template's variable meta stream, behind the fixed streams.
class MPPObjectStorageWriter : public KVMPPWriter {
public:
    using KVMPPWriter::KVMPPWriter;

    bool writeDataForProject(const KVMPPProject* project) final;

protected:
    virtual const MPPObjectStorageLayout& storageLayout() const = 0;
    // The objects' elements, records and entries, behind the header elements; a storage without
    // variable data has no elements.
    virtual void writeVar2DataElements() {}
    virtual void writeFixedDataRecords() = 0;
    virtual void writeFixedMetaEntries() = 0;
    virtual void writeFixed2DataRecords() = 0;
    virtual void writeFixed2MetaEntries() = 0;
    // The property stream; a storage without one has nothing to write.
    virtual void writeProps() {}

    // The property stream of a kind's custom fields: the template's where they have no names, else
    // the elements that `header` writes and the element of the names, whose property numbers
    // `typeForIndex` gives.
    void writeFieldNamesProps(const std::optional<std::vector<std::string>>& names,
                              const std::function<uint32_t(int64_t)>& typeForIndex,
                              const std::function<void(KVMPPProps&)>& header = {});

    // The elements of an object's custom texts that hold text, each under the copy of `textField`
    // (taskCustomText or resourceCustomText) of its position; named by their place in the element order
    // unless `filed`. A position that the layout keeps no text field for raises
    // kUnknownTextFieldException.
    void writeCustomTexts(uint32_t id, MPPField textField, const MPPCustomFields& texts, bool filed);

    // The elements of the variable data, from its stream on.
    std::unique_ptr<MPPVarElementList> m_elements;

private:
    void writeVar2Data();
    void writeVarMeta();
    void writeFixedData();
    void writeFixedMeta();
    void writeFixed2Data();
    void writeFixed2Meta();
};
