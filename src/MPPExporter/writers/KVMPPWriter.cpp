#include "MPPExporter/writers/KVMPPWriter.h"

#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPExporter/MPPObjects/KVMPPProject.h"

#include <vector>

namespace {

std::string failedWrite(const std::string& name) {
    return "Attempt to write " + name + " failed";
}

} // namespace

KVMPPWriter::KVMPPWriter(std::unique_ptr<KVMPPFormatWriter> writer, std::unique_ptr<KVMPPFormatReader> reader,
                         int32_t layoutVersion)
    : m_writer(std::move(writer)), m_reader(std::move(reader)), m_layoutVersion(layoutVersion) {}

KVMPPWriter::~KVMPPWriter() = default;

bool KVMPPWriter::writeDataForProject(const KVMPPProject* /*project*/) {
    return writeStreamFromReader(*m_reader, *m_writer);
}

bool KVMPPWriter::writeStreamFromReader(KVMPPFormatReader& reader, KVMPPFormatWriter& writer) {
    if (reader.isDirectory() != writer.isDirectory()) {
        return false;
    }
    if (!reader.isDirectory()) {
        KVMPPData data;
        std::vector<uint8_t> bytes;
        if (!reader.getData(bytes)) {
            return false;
        }
        data.writeData(bytes.data(), bytes.size());
        return flushData(data, writer);
    }
    const int32_t count = reader.numberOfChildren();
    for (int32_t index = 0; index < count; ++index) {
        std::unique_ptr<KVMPPFormatReader> child = reader.createChildReaderAtIndex(index);
        std::unique_ptr<KVMPPFormatWriter> copy =
            child ? writer.newChildWriterWithName(child->getName(), child->isDirectory()) : nullptr;
        if (!copy || !writeStreamFromReader(*child, *copy)) {
            return false;
        }
    }
    return count >= 0;
}

bool KVMPPWriter::flushData(KVMPPData& data, KVMPPFormatWriter& writer) {
    const bool written = writer.writeData(data);
    data.clearBuffer();
    return written;
}

bool KVMPPWriter::regenerate(const KVMPPProject* project, const std::function<void()>& streams) {
    if (project == nullptr || m_project != nullptr) {
        return false;
    }
    m_project = project;
    try {
        streams();
    } catch (const TVException& exception) {
        // The walk only learns that the entry failed; the log tells the operator why.
        tvLog(stringWithFormat("EXCEPTION: %s\n%s", exception.name().c_str(), exception.reason().c_str()));
        return false;
    }
    return true;
}

void KVMPPWriter::writeStream(const std::string& name, KVMPPData& block, const std::function<void()>& fill) {
    std::unique_ptr<KVMPPFormatWriter> stream = m_writer->newChildWriterWithName(name, false);
    if (!stream) {
        throw TVException(kWriteToStreamException, failedWrite(name));
    }
    fill();
    if (!flushData(block, *stream)) {
        throw TVException(kWriteToStreamException, failedWrite(name));
    }
}

void KVMPPWriter::cloneChildStreamFromTemplate(const std::string& name) {
    std::unique_ptr<KVMPPFormatReader> source = m_reader->childStreamReaderWithName(name);
    if (!source) {
        throw TVException(kReadFromStreamException, "Attempt to read " + name + " stream failed");
    }
    std::unique_ptr<KVMPPFormatWriter> stream = m_writer->newChildWriterWithName(name, false);
    if (!stream || !writeStreamFromReader(*source, *stream)) {
        throw TVException(kWriteToStreamException, "Attempt to write " + name + " stream failed");
    }
}
