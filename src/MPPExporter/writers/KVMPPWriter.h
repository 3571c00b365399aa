#pragma once

#include "MPPExporter/writers/KVMPP15VarMeta.h"
#include "MPPExporter/writers/KVMPPFixedMeta.h"
#include "MPPExporter/writers/KVMPPFormatReader.h"
#include "MPPExporter/writers/KVMPPFormatWriter.h"

#include <functional>
#include <memory>
#include <string>

class KVMPPProject;

// Name of the exceptions of a stream that can't be read from the template or written to the output.
inline constexpr const char* kWriteToStreamException = "WriteToStreamException";
inline constexpr const char* kReadFromStreamException = "ReadFromStreamException";

// The writer of one entry of the template walk. This base copies the template's entry whole: a
// stream byte for byte, a storage with everything under it, however deep, so that nothing the export
// does not understand is lost. Subclasses regenerate a storage's streams from the project instead.
class KVMPPWriter {
public:
    // `layoutVersion` is the application whose layout the template holds (15 or 16).
    KVMPPWriter(std::unique_ptr<KVMPPFormatWriter> writer, std::unique_ptr<KVMPPFormatReader> reader,
                int32_t layoutVersion);
    virtual ~KVMPPWriter();
    KVMPPWriter(const KVMPPWriter&) = delete;
    KVMPPWriter& operator=(const KVMPPWriter&) = delete;

    // Writes the entry; false on any failure.
    virtual bool writeDataForProject(const KVMPPProject* project);

    // Copies a template entry to an output entry of the same kind, storages with all they hold.
    static bool writeStreamFromReader(KVMPPFormatReader& reader, KVMPPFormatWriter& writer);
    // Writes the block's buffer to the stream, then clears the buffer; the write's answer.
    static bool flushData(KVMPPData& data, KVMPPFormatWriter& writer);
    // Reshapes the model before the walk; the base has nothing to do.
    static void preprocessProject(KVMPPProject& /*project*/) {}

protected:
    // The pattern of a regenerating writer: once per object and with a project, runs `streams`; any
    // exception of the tool ends them and the answer is false.
    bool regenerate(const KVMPPProject* project, const std::function<void()>& streams);
    // Creates the stream `name` in the entry's storage, fills `block` and flushes it. A stream that
    // can't be made or written raises kWriteToStreamException.
    void writeStream(const std::string& name, KVMPPData& block, const std::function<void()>& fill);
    // Copies the template's stream `name` of this storage; a missing one raises
    // kReadFromStreamException, a failed write kWriteToStreamException.
    void cloneChildStreamFromTemplate(const std::string& name);

    const KVMPPProject& project() const { return *m_project; }
    KVMPPFormatReader& templateEntry() { return *m_reader; }
    KVMPPFormatWriter& outputEntry() { return *m_writer; }
    int32_t layoutVersion() const { return m_layoutVersion; }

    std::unique_ptr<KVMPPVar2Data> m_var2Data;
    std::unique_ptr<KVMPP15VarMeta> m_varMeta;
    std::unique_ptr<KVMPPFixedData> m_fixedData;
    std::unique_ptr<KVMPPFixedMeta> m_fixedMeta;
    std::unique_ptr<KVMPPFixedData> m_fixed2Data;
    std::unique_ptr<KVMPPFixedMeta> m_fixed2Meta;

private:
    const KVMPPProject* m_project = nullptr;
    std::unique_ptr<KVMPPFormatWriter> m_writer;
    std::unique_ptr<KVMPPFormatReader> m_reader;
    int32_t m_layoutVersion;
};
