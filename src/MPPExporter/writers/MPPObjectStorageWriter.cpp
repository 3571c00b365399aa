#include "MPPExporter/writers/MPPObjectStorageWriter.h"

#include "MPPExporter/writers/MPPFieldAliasProps.h"
#include "MPPImporter/format/MPPFormatConstants.h"
#include "MPPImporter/text/UnicodeText.h"

namespace {

// The header elements: the size of a record and its second word, and the first word of its fixed meta
// entry.
constexpr size_t kObjectHeaderRecordSize = 16;
constexpr uint16_t kObjectHeaderRecordWord = 0xFFFF;
constexpr uint32_t kObjectHeaderMetaWord = 4;

} // namespace

bool MPPObjectStorageWriter::writeDataForProject(const KVMPPProject* project) {
    return regenerate(project, [this] {
        const bool varData = storageLayout().varMetaEnding.has_value();
        if (varData) {
            writeVar2Data();
            writeVarMeta();
        }
        writeFixedData();
        writeFixedMeta();
        writeFixed2Data();
        writeFixed2Meta();
        if (!varData) {
            cloneChildStreamFromTemplate(kVarMetaStreamName);
        }
        writeProps();
    });
}

void MPPObjectStorageWriter::writeVar2Data() {
    m_var2Data = std::make_unique<KVMPPVar2Data>();
    m_elements = std::make_unique<MPPVarElementList>(*m_var2Data, layoutVersion());
    writeStream(kVar2DataStreamName, *m_var2Data, [this] { writeVar2DataElements(); });
}

void MPPObjectStorageWriter::writeVarMeta() {
    m_varMeta = std::make_unique<KVMPP15VarMeta>(*m_var2Data, *storageLayout().varMetaEnding);
    writeStream(kVarMetaStreamName, *m_varMeta, [this] { m_elements->writeMeta(*m_varMeta); });
}

void MPPObjectStorageWriter::writeFixedData() {
    const MPPObjectStorageLayout& layout = storageLayout();
    m_fixedData = std::make_unique<KVMPPFixedData>();
    writeStream(kFixedDataStreamName, *m_fixedData, [&] {
        for (size_t header = 0; header < layout.headerElements; ++header) {
            m_fixedData->startNewElement();
            m_fixedData->write2ByteInteger(static_cast<uint16_t>(header));
            m_fixedData->write2ByteInteger(kObjectHeaderRecordWord);
            m_fixedData->writeZeroesBlockOfSize(kObjectHeaderRecordSize - 4);
            m_fixedData->closeCurrentElement();
        }
        writeFixedDataRecords();
    });
}

void MPPObjectStorageWriter::writeFixedMeta() {
    const MPPObjectStorageLayout& layout = storageLayout();
    m_fixedMeta = std::make_unique<KVMPPFixedMeta>(*m_fixedData);
    writeStream(kFixedMetaStreamName, *m_fixedMeta, [&] {
        m_fixedMeta->writeMetaHeader();
        for (size_t header = 0; header < layout.headerElements; ++header) {
            m_fixedMeta->writeNextElementStartWithInt(kObjectHeaderMetaWord);
            m_fixedMeta->write2ByteInteger(layout.headerMetaMark);
            m_fixedMeta->writeZeroesBlockOfSize(layout.fixedMetaEntrySize - KVMPPFixedMeta::kEntryStart - 2);
        }
        writeFixedMetaEntries();
    });
}

void MPPObjectStorageWriter::writeFixed2Data() {
    const MPPObjectStorageLayout& layout = storageLayout();
    m_fixed2Data = std::make_unique<KVMPPFixedData>();
    writeStream(kFixed2DataStreamName, *m_fixed2Data, [&] {
        const std::vector<uint8_t> record(layout.fixed2RecordSize, 0);
        for (size_t header = 0; header < layout.headerElements; ++header) {
            m_fixed2Data->writeRecord(record);
        }
        writeFixed2DataRecords();
    });
}

void MPPObjectStorageWriter::writeFixed2Meta() {
    const MPPObjectStorageLayout& layout = storageLayout();
    m_fixed2Meta = std::make_unique<KVMPPFixedMeta>(*m_fixed2Data);
    writeStream(kFixed2MetaStreamName, *m_fixed2Meta, [&] {
        m_fixed2Meta->writeMetaHeader();
        const std::vector<uint8_t> entry(layout.fixed2MetaEntrySize, 0);
        for (size_t header = 0; header < layout.headerElements; ++header) {
            m_fixed2Meta->writeEntry(0, entry);
        }
        writeFixed2MetaEntries();
    });
}

void MPPObjectStorageWriter::writeCustomTexts(uint32_t id, MPPField textField, const MPPCustomFields& texts,
                                              bool filed) {
    const std::vector<std::string>& values = texts.values();
    for (size_t position = 1; position <= values.size(); ++position) {
        if (values[position - 1].empty()) {
            continue;
        }
        const auto number = static_cast<int64_t>(position);
        requireTextField(layoutVersion(), textField, number);
        const std::u16string text = utf16FromUTF8(values[position - 1]);
        if (filed) {
            m_elements->addField(id, textField, text, number);
        } else {
            m_elements->addUnfiledField(id, textField, text, number);
        }
    }
}

void MPPObjectStorageWriter::writeFieldNamesProps(const std::optional<std::vector<std::string>>& names,
                                                  const std::function<uint32_t(int64_t)>& typeForIndex,
                                                  const std::function<void(KVMPPProps&)>& header) {
    if (!names || names->empty()) {
        cloneChildStreamFromTemplate(kObjectPropsStreamName);
        return;
    }
    KVMPPProps props;
    writeStream(kObjectPropsStreamName, props, [&] {
        props.open();
        if (header) {
            header(props);
        }
        writeFieldAliasElement(props, *names, typeForIndex, storageLayout().varMetaEnding.value_or(0));
        props.close();
    });
}
